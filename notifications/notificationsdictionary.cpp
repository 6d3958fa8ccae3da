// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#include "notificationsdictionary.h"

#include <regularfile.h>
#include <systempaths.h>

#include <QDir>
#include <QStandardPaths>

namespace {
const QLatin1String suffix(".notifyrc");
}

NotificationsDictionary *NotificationsDictionary::Instance()
{
    static NotificationsDictionary dictionary;
    return &dictionary;
}

void NotificationsDictionary::init()
{
    m_files.clear();
    m_names.clear();
    const QDir directory(SystemPaths::resolve(SystemPaths::notificationDirectory()));
    const QStringList names = directory.entryList(QDir::Files, QDir::Name);
    for (const QString &name : names) {
        if (name.contains(QLatin1String("nivra-event-watcher_")) && name.endsWith(suffix)) {
            readFile(name.chopped(suffix.size()));
        }
    }
}

void NotificationsDictionary::readFile(const QString &fileName)
{
    const QString text = QString::fromUtf8(readRegularFile(systemFile(fileName)).bytes);
    const QStringList lines = text.split(QLatin1Char('\n'));
    const QString opening = QStringLiteral("[Event/");
    const QString russianName = QStringLiteral("Name[ru]");
    QString key;
    for (const QString &fullLine : lines) {
        const QString line = fullLine.trimmed();
        if (line.startsWith(QLatin1Char('['))) {
            const bool isEvent = line.startsWith(opening) && line.endsWith(QLatin1Char(']'));
            key = isEvent ? line.mid(opening.size()).chopped(1) : QString();
            if (!key.isEmpty() && !m_files.contains(key)) {
                m_files.insert(key, fileName);
            }
        } else if (!key.isEmpty() && line.section(QLatin1Char('='), 0, 0).trimmed() == russianName) {
            m_names.insert(key, line.section(QLatin1Char('='), 1).trimmed());
        }
    }
}

QString NotificationsDictionary::fileName(const QString &notificationKey) const
{
    return m_files.value(notificationKey);
}

QString NotificationsDictionary::displayName(const QString &notificationKey) const
{
    return m_names.value(notificationKey);
}

QString NotificationsDictionary::systemFile(const QString &fileName)
{
    return SystemPaths::resolve(SystemPaths::notificationDirectory()) + QLatin1Char('/') + fileName + suffix;
}

QString NotificationsDictionary::ownFile(const QString &fileName)
{
    const QString home = QStandardPaths::standardLocations(QStandardPaths::HomeLocation).constFirst();
    return home + QLatin1String("/.config/") + fileName + suffix;
}
