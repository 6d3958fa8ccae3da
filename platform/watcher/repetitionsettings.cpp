// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#include "repetitionsettings.h"

#include <notificationkey.h>

#include <QFile>
#include <QFileInfo>
#include <QJsonObject>

#include <algorithm>

namespace NivraWatcher {

namespace {

/** A number that the file may hold as a text. */
int number(const QJsonValue &value)
{
    return value.isString() ? value.toString().toInt() : value.toInt();
}

int intervalOf(const QJsonObject &event)
{
    const QJsonObject repetition = event.value(QStringLiteral("notification_repetition")).toObject();
    if (number(repetition.value(QStringLiteral("enabled"))) != 1) {
        return 0;
    }
    return std::clamp(number(repetition.value(QStringLiteral("interval"))), RepetitionSettings::shortest,
                      RepetitionSettings::longest);
}

} // namespace

RepetitionSettings::RepetitionSettings(const QString &settingsFile)
    : m_reader(settingsFile)
    , m_fragments(QFileInfo(settingsFile).path() + QLatin1String("/syslog-ng/conf.d"))
{
}

int RepetitionSettings::interval(const QString &key)
{
    if (m_reader.hasChanged()) {
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
    m_repetitions.clear();
    const bool isRead = EventReader::read([this](const QJsonObject &event) {
        const QString messageId = event.value(QStringLiteral("message-params"))
                                      .toObject()
                                      .value(QStringLiteral("message_id"))
                                      .toString();
        const int interval = intervalOf(event);
        if (!messageId.isEmpty() && interval > 0) {
            const QString name = QString(messageId).replace(QLatin1Char('-'), QLatin1Char('_'));
            const QString fragment
                = m_fragments + QLatin1String("/mod-nivra-") + name + QLatin1String(".conf");
            m_repetitions.insert(notificationKey(messageId), {interval, fragment});
        }
    });
    if (!isRead) {
        qWarning("the event catalog cannot be read: no notification is repeated");
    }
}

} // namespace NivraWatcher
