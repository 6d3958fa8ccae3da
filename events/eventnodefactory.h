// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include "eventtreeitem.h"
#include "nodedictionary.h"
#include "overridemerge.h"

#include <QHash>
#include <QJsonArray>
#include <QJsonValue>
#include <QSet>
#include <QStringList>

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
    EventNodeFactory(const NodeDictionary &dictionary, const QStringList &users, const QStringList &groups,
                     bool russian);

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
    /// What is known of a name; one large tree bears few names many times.
    struct Name
    {
        QString text;
        QString key; // as it stands before a value in a JSON text
        const NodeDictionary::Entry *entry = nullptr;
        bool overlay = false; // a record, or what looks like one
        QHash<QString, QVector<QVariant>> rows; // by value; nodes share a row until it is written
    };

    /// One of the system's accounts, as it stands where nothing is said of it: all is switched off.
    struct Account
    {
        QString name;
        QVector<QVariant> row; // shared by all nodes of the account
        QString member; // of the JSON text
    };

    [[nodiscard]] static QVector<Account> switchedOff(const QStringList &names);
    EventTreeItem *createNode(Name &name, const QJsonValue &value, const Origin &origin,
                              EventTreeItem *parent) const;
    void createMembers(EventTreeItem *node, const QJsonObject &object, const Origin &origin) const;
    void createSubjects(EventTreeItem *node, const QJsonObject &object, const Origin &origin) const;
    [[nodiscard]] QString shared(const QString &text) const;
    void closeObject(EventTreeItem *node, int start) const;
    [[nodiscard]] Name &nameOf(const QString &text) const;
    [[nodiscard]] QVector<QVariant> rowOf(Name &name, const QJsonValue &value) const;
    void applyEntry(EventTreeItem *node, const NodeDictionary::Entry *entry) const;

    const NodeDictionary &m_dictionary;
    QVector<Account> m_users;
    QVector<Account> m_groups;
    bool m_russian;
    mutable QString m_json; // of the event at hand; every object below it is a part of that text
    mutable QHash<QString, Name> m_names;
    mutable QSet<QString> m_texts; // one copy of every short text
};
