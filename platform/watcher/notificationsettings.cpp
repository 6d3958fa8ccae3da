// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#include "notificationsettings.h"

#include <KConfig>
#include <KConfigGroup>

#include <QDir>
#include <QStandardPaths>
#include <QStringList>

namespace NivraWatcher {

namespace {

/** The first value among the files' groups; a null string when none has the entry. */
QString firstEntry(const QList<KConfigGroup> &groups, const char *name)
{
    for (const KConfigGroup &group : groups) {
        QString value = group.readEntry(name, QString());
        if (!value.isNull()) {
            return value;
        }
    }
    return {};
}

} // namespace

NotificationSettings::NotificationSettings()
{
    reparse();
}

NotificationSettings::Files NotificationSettings::filesIn(const QString &directory, const QString &pattern)
{
    Files files;
    const QStringList names = QDir(directory).entryList({pattern}, QDir::Files, QDir::Name);
    for (const QString &name : names) {
        files << QSharedPointer<KConfig>::create(directory + QLatin1Char('/') + name, KConfig::SimpleConfig);
    }
    return files;
}

void NotificationSettings::reparse()
{
    const QString ofOneGroup = QStringLiteral("nivra-event-watcher_*.notifyrc");
    const QString own = QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation);
    m_files = filesIn(own, ofOneGroup) + filesIn(own, QStringLiteral("nivra-event-watcher.notifyrc"));
    const QStringList shipped
        = QStandardPaths::locateAll(QStandardPaths::GenericDataLocation, QStringLiteral("knotifications5"),
                                    QStandardPaths::LocateDirectory);
    for (const QString &directory : shipped) {
        m_files += filesIn(directory, ofOneGroup);
    }
}

std::optional<Presentation> NotificationSettings::find(const QString &key) const
{
    const QString name = QLatin1String("Event/") + key;
    QList<KConfigGroup> groups;
    for (const QSharedPointer<KConfig> &file : m_files) {
        if (file->hasGroup(name)) {
            groups << file->group(name);
        }
    }
    if (groups.isEmpty()) {
        return std::nullopt;
    }
    const QStringList actions = firstEntry(groups, "Action").split(QLatin1Char('|'));
    Presentation presentation;
    presentation.name = firstEntry(groups, "Name");
    presentation.popup = actions.contains(QLatin1String("Popup"));
    presentation.sound = actions.contains(QLatin1String("Sound"));
    presentation.log = actions.contains(QLatin1String("Logfile"));
    presentation.execute = actions.contains(QLatin1String("Execute"));
    presentation.soundFile = firstEntry(groups, "Sound");
    presentation.logFile = firstEntry(groups, "Logfile");
    presentation.command = firstEntry(groups, "Execute");
    const QString scheme = QStringLiteral("file://");
    // The rest is a path as it was typed, in which a "%" means itself.
    if (presentation.logFile.startsWith(scheme)) {
        presentation.logFile.remove(0, scheme.size());
    }
    return presentation;
}

} // namespace NivraWatcher
