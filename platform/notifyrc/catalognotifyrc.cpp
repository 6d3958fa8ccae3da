// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#include "catalognotifyrc.h"

#include "notificationkey.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>

namespace {

const char licence[] = "# SPDX-FileCopyrightText: 2026 The admin-events authors\n"
                       "# SPDX-License-Identifier: GPL-2.0-or-later\n"
                       "# Made from the event catalog.\n";

QString text(const QJsonObject &object, const char *member)
{
    return object.value(QLatin1String(member)).toString();
}

/** A line "KEY=value" in which the value stays what it is. */
QString entry(const QString &key, QString value)
{
    value.replace(QLatin1Char('\\'), QLatin1String("\\\\")).replace(QLatin1Char('\n'), QLatin1String("\\n"));
    return key + QLatin1Char('=') + value.trimmed() + QLatin1Char('\n');
}

QString named(const char *key, const QString &english, const QString &russian)
{
    return entry(QLatin1String(key), english) + entry(QLatin1String(key) + QLatin1String("[ru]"), russian);
}

} // namespace

CatalogNotifyrc::CatalogNotifyrc(const QString &directory)
{
    const QStringList json{QStringLiteral("*.json")};
    const QDir catalog(directory);
    const QStringList groupFiles = catalog.entryList(json, QDir::Files, QDir::Name);
    for (const QString &file : groupFiles) {
        m_groups[QFileInfo(file).completeBaseName()].names
            = read(catalog.filePath(file)).value(QLatin1String("group-params")).toObject();
    }
    if (groupFiles.isEmpty()) {
        m_errors << directory + QLatin1String(": no groups");
    }
    const QStringList folders = catalog.entryList(QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name);
    for (const QString &folder : folders) {
        const QDir events(catalog.filePath(folder));
        const QStringList files = events.entryList(json, QDir::Files, QDir::Name);
        for (const QString &file : files) {
            addEvent(events.filePath(file));
        }
    }
}

QJsonObject CatalogNotifyrc::read(const QString &path)
{
    QFile file(path);
    QJsonParseError error{};
    const QJsonDocument document
        = file.open(QIODevice::ReadOnly) ? QJsonDocument::fromJson(file.readAll(), &error) : QJsonDocument();
    if (!document.isObject()) {
        m_errors << path + QLatin1String(": ") + (file.isOpen() ? error.errorString() : file.errorString());
    }
    return document.object();
}

void CatalogNotifyrc::addEvent(const QString &path)
{
    const QJsonObject event = read(path);
    const QJsonObject names = event.value(QLatin1String("message-params")).toObject();
    const QString key = notificationKey(text(names, "message_id"));
    if (key.isEmpty()) {
        return;
    }
    const QString group = text(event, "event-group");
    if (!m_groups.contains(group)) {
        m_errors << path + QLatin1String(": unknown group \"") + group + QLatin1Char('"');
    } else if (m_keys.contains(key)) {
        m_errors << path + QLatin1String(": the notification key \"") + key + QLatin1String("\" is that of ")
                + m_keys.value(key);
    } else {
        m_keys.insert(key, path);
        m_groups[group].events.insert(key, names);
    }
}

QMap<QString, QByteArray> CatalogNotifyrc::files() const
{
    QMap<QString, QByteArray> files;
    for (auto group = m_groups.cbegin(); group != m_groups.cend(); ++group) {
        const QString english = text(group->names, "name_en");
        const QString russian = text(group->names, "name_ru");
        QString content = QLatin1String("[Global]\n")
            + entry(QStringLiteral("IconName"), QStringLiteral("preferences-security-events"))
            + named("Name", QLatin1String("Security events: ") + english,
                    QStringLiteral("События безопасности: ") + russian)
            + named("Comment", english, russian);
        for (auto event = group->events.cbegin(); event != group->events.cend(); ++event) {
            const QString englishName = text(*event, "name_en");
            const QString russianName = text(*event, "name_ru");
            content += QLatin1String("\n[Event/") + event.key() + QLatin1String("]\n")
                + named("Name", englishName, russianName)
                + named("Comment", english + QLatin1String(": ") + englishName,
                        russian + QLatin1String(": ") + russianName)
                + entry(QStringLiteral("Action"), QStringLiteral("Popup"));
        }
        files.insert(QLatin1String("nivra-event-watcher_") + group.key() + QLatin1String(".notifyrc"),
                     licence + content.toUtf8());
    }
    return files;
}
