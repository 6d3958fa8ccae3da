// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#include "repetitionsettings.h"

#include <nivraevents.h>
#include <notificationkey.h>

#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>
#include <QStringList>

#include <algorithm>

namespace NivraWatcher {

namespace {

QJsonObject object(const char *json)
{
    return json == nullptr ? QJsonObject() : QJsonDocument::fromJson(json).object();
}

/** A number that the file may hold as a text. */
int number(const QJsonValue &value)
{
    return value.isString() ? value.toString().toInt() : value.toInt();
}

int intervalOf(const QJsonObject &event, const QJsonObject &overridden)
{
    const QString member = QStringLiteral("notification_repetition");
    QJsonObject repetition = event.value(member).toObject();
    const QJsonObject changes = overridden.value(member).toObject();
    for (auto it = changes.begin(); it != changes.end(); ++it) {
        repetition.insert(it.key(), it.value());
    }
    if (number(repetition.value(QStringLiteral("enabled"))) != 1) {
        return 0;
    }
    return std::clamp(number(repetition.value(QStringLiteral("interval"))), RepetitionSettings::shortest,
                      RepetitionSettings::longest);
}

} // namespace

RepetitionSettings::RepetitionSettings(const QString &settingsFile)
    : m_settingsFile(settingsFile)
    , m_fragments(QFileInfo(settingsFile).path() + QLatin1String("/syslog-ng/conf.d"))
{
}

int RepetitionSettings::interval(const QString &key)
{
    const QFileInfo file(m_settingsFile);
    if (!m_loaded || file.lastModified() != m_modified || file.size() != m_size) {
        m_modified = file.lastModified();
        m_size = file.size();
        load();
    }
    const auto found = m_repetitions.constFind(key);
    return found == m_repetitions.cend() || isSwitchedOff(*found) ? 0 : found->interval;
}

bool RepetitionSettings::isSwitchedOff(const Repetition &repetition) const
{
    const QFileInfo directory(m_fragments);
    return directory.isDir() && directory.isExecutable() && !QFile::exists(repetition.fragment);
}

void RepetitionSettings::load()
{
    m_loaded = true;
    m_repetitions.clear();
    if (nvev_init() < 0) {
        qWarning("the event catalog cannot be read: no notification is repeated");
        return;
    }
    char **ids = nvev_get_event_ids();
    const uint64_t count = ids == nullptr ? 0 : nvev_events_count();
    for (uint64_t i = 0; i < count; ++i) {
        if (ids[i] == nullptr) {
            continue;
        }
        const QJsonObject event = object(nvev_get_event_json(ids[i]));
        const QString messageId = event.value(QStringLiteral("message-params"))
                                      .toObject()
                                      .value(QStringLiteral("message_id"))
                                      .toString();
        const int interval = intervalOf(event, object(nvev_get_override_event_json(ids[i])));
        if (!messageId.isEmpty() && interval > 0) {
            const QString name = QString(messageId).replace(QLatin1Char('-'), QLatin1Char('_'));
            const QString fragment
                = m_fragments + QLatin1String("/mod-nivra-") + name + QLatin1String(".conf");
            m_repetitions.insert(notificationKey(messageId), {interval, fragment});
        }
    }
    nvev_free_string_array(ids);
    nvev_free();
}

} // namespace NivraWatcher
