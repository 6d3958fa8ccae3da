// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QJsonObject>
#include <QJsonValue>
#include <QRandomGenerator>
#include <QStringList>

/**
 * Makes random catalogs and settings files that use every feature of an event
 * description, with names and values chosen to be mistaken for something else.
 * One seed gives one catalog, on every machine.
 */
class CatalogMaker
{
public:
    explicit CatalogMaker(quint32 seed);

    /// Writes groups and events below @p root, where the catalog library looks for them.
    void writeCatalog(const QString &root);
    /// Writes, for every other seed, a node dictionary with Russian names for members that code looks up by
    /// name.
    void writeDictionary(const QString &root);
    /// Random settings for some of the events, some that the catalog does not know, and some malformed.
    [[nodiscard]] QJsonObject makeSettings();

    [[nodiscard]] QStringList users() const;
    [[nodiscard]] QStringList groups() const;
    /// A value that is hard to carry: quotes, braces, separators, Cyrillic, blanks at the ends.
    [[nodiscard]] QString hostileText();
    [[nodiscard]] int below(int limit);
    [[nodiscard]] bool chance(int percent);

private:
    [[nodiscard]] QString pick(const QStringList &choices);
    [[nodiscard]] QJsonObject makeEvent(const QString &id, const QString &group);
    [[nodiscard]] QJsonObject makeAuditEvents(bool override);
    [[nodiscard]] QJsonObject makeSubjects(bool override);
    [[nodiscard]] QJsonObject makeOutcome(bool override);
    [[nodiscard]] QJsonObject makeExtended();
    [[nodiscard]] QJsonValue anyValue(int depth);
    [[nodiscard]] QJsonArray makeArray(int depth);
    [[nodiscard]] QJsonObject overrideOf(const QJsonObject &event, int depth);
    [[nodiscard]] QString switchValue();

    QRandomGenerator m_random;
    QStringList m_eventIds;
    QHash<QString, QJsonObject> m_events;
};
