// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include "eventtreeitem.h"
#include "overridemerge.h"

#include <QHash>
#include <QJsonArray>
#include <QJsonValue>
#include <QPair>
#include <QSet>
#include <QStringList>

class NodeDictionary;

/**
 * Turns the JSON values of an event's description into nodes: kinds, texts,
 * check states, what came from the override, and the dictionary's options.
 */
class EventNodeFactory
{
public:
    /**
     * @param dictionary display options by node name; kept by reference
     * @param users, groups the system's accounts, added to every "users" and "groups" object
     * @param russian show the dictionary's Russian names
     */
    EventNodeFactory(const NodeDictionary &dictionary, QStringList users, QStringList groups, bool russian);

    /**
     * Makes the node of an event and everything below it.
     *
     * @param marks what in @p description came from the override
     * @param parent the node to append to, may be null
     */
    [[nodiscard]] EventTreeItem *createEvent(const QString &id, const QJsonObject &description,
                                             const OverlayMarks &marks, EventTreeItem *parent) const;
    /// Applies the dictionary to one parameter, list or users/groups node.
    void checkDictionary(EventTreeItem *node) const;

private:
    struct Origin; // what is known of where a value came from

    EventTreeItem *createNode(const QString &name, const QJsonValue &value, const Origin &origin,
                              EventTreeItem *parent) const;
    void createMembers(EventTreeItem *node, const QJsonObject &object, const Origin &origin) const;
    void createSubjects(EventTreeItem *node, const QJsonObject &object, const Origin &origin) const;
    [[nodiscard]] QString shared(const QString &text) const;
    [[nodiscard]] QString kept(QString &text) const;
    [[nodiscard]] QVector<QVariant> rowOf(const QString &name, const QJsonValue &value) const;

    const NodeDictionary &m_dictionary;
    QStringList m_users;
    QStringList m_groups;
    bool m_russian;
    mutable QSet<QString> m_strings; // one copy of every short text of a large tree
    // Rows by the places of their two texts, which m_strings keeps.
    mutable QHash<QPair<const QChar *, const QChar *>, QVector<QVariant>> m_rows;
};
