// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "fuzzinput.h"

#include <changemarker.h>
#include <configaccessservice.h>
#include <eventswriter.h>
#include <eventtreeitem.h>
#include <singleeventsparser.h>
#include <systempaths.h>

#include <QTemporaryDir>

#include <memory>

/// A machine with one group of events, and a page over it.
class EventsMachine
{
public:
    EventsMachine()
    {
        qputenv("ADMINEVENTS_ROOT", m_root.path().toUtf8());
        putFile(catalogFile(QStringLiteral("g.json")),
                "{\"group-params\": {\"name_en\": \"G\", \"name_ru\": \"G\", \"order\": \"1\"}}");
    }

    void putEvent(const QByteArray &json) const { putFile(catalogFile(QStringLiteral("g/e.json")), json); }
    void putSettings(const QByteArray &json) const
    {
        putFile(SystemPaths::resolve(SystemPaths::eventSettingsFile()), json);
    }
    void putDictionary(const QByteArray &json) const
    {
        putFile(SystemPaths::resolve(SystemPaths::nodeDictionary()), json);
    }

    /// Reads all files. @return false when the page would not open
    [[nodiscard]] bool load()
    {
        const SingleEventsParser parser({QStringLiteral("root"), QStringLiteral("enabled")},
                                        {QStringLiteral("root"), QStringLiteral("succ")}, nullptr);
        m_working.reset(parser.parse());
        m_reference.reset(parser.parse());
        return parser.isConfigCorrect() && m_working && m_reference;
    }

    [[nodiscard]] EventTreeItem &tree() const { return *m_working; }
    /// The content that saving now would give the settings file.
    [[nodiscard]] QByteArray settings()
    {
        ChangeMarker::markAll(*m_reference, *m_working);
        EventsWriter writer(m_service, SystemPaths::eventSettingsFile(), SystemPaths::auditRulesFile());
        require(writer.prepare(m_working.get()), "what is saved is JSON");
        return writer.settingsContent(m_working.get());
    }

private:
    static QString catalogFile(const QString &name)
    {
        return SystemPaths::resolve(SystemPaths::eventSettingsDirectory()) + QLatin1Char('/') + name;
    }

    QTemporaryDir m_root;
    ConfigAccessService m_service{nullptr};
    std::unique_ptr<EventTreeItem> m_working;
    std::unique_ptr<EventTreeItem> m_reference;
};
