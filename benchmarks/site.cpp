// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "site.h"

#include <systempaths.h>

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>

namespace {
constexpr quint32 seed = 20260101;

QString dataDirectory(QLatin1String name)
{
    return QStringLiteral(ADMINEVENTS_DATA_DIR) + QLatin1Char('/') + name;
}

QStringList jsonFilesBelow(const QString &directory)
{
    QStringList files;
    QDirIterator it(directory, {QStringLiteral("*.json")}, QDir::Files, QDirIterator::Subdirectories);
    while (it.hasNext()) {
        files.append(it.next());
    }
    files.sort(); // the file system's order is not the same everywhere
    return files;
}

QByteArray contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

bool copyTree(const QString &from, const QString &to)
{
    const QStringList files = jsonFilesBelow(from);
    for (const QString &file : files) {
        const QString target = to + file.mid(from.size());
        if (!QDir().mkpath(QFileInfo(target).path()) || !QFile::copy(file, target)) {
            return false;
        }
    }
    return !files.isEmpty();
}
} // namespace

void Site::select() const
{
    qputenv("ADMINEVENTS_ROOT", QFile::encodeName(m_root.path()));
}

bool Site::prepareRoot()
{
    select();
    const QString dictionary = SystemPaths::resolve(SystemPaths::nodeDictionary());
    return m_root.isValid() && QDir().mkpath(QFileInfo(dictionary).path())
        && QFile::copy(dataDirectory(QLatin1String("zep-admin-events/eventsdictionary.json")), dictionary);
}

bool Site::makeShipped(int subjects)
{
    m_accounts = Accounts::ofSystem(subjects);
    SiteMaker maker(seed);
    return prepareRoot()
        && copyTree(dataDirectory(QLatin1String("event-settings")),
                    SystemPaths::resolve(SystemPaths::eventSettingsDirectory()))
        && writeSettings(maker, 3) && readDocuments();
}

bool Site::makeLarge(const SiteSize &size)
{
    m_accounts = Accounts::ofSystem(size.subjects);
    SiteMaker maker(seed);
    return prepareRoot()
        && maker.writeCatalog(SystemPaths::resolve(SystemPaths::eventSettingsDirectory()), size, m_accounts)
        && writeSettings(maker, 2) && readDocuments();
}

bool Site::writeSettings(SiteMaker &maker, int everyNth)
{
    QJsonObject settings;
    int number = 0;
    const QStringList files = jsonFilesBelow(SystemPaths::resolve(SystemPaths::eventSettingsDirectory()));
    for (const QString &file : files) {
        const QJsonObject event = QJsonDocument::fromJson(contentOf(file)).object();
        if (!event.contains(QLatin1String("group-params")) && number++ % everyNth == 0) {
            settings.insert(QFileInfo(file).baseName(), maker.makeOverride(event, m_accounts));
        }
    }
    return writeJson(SystemPaths::resolve(SystemPaths::eventSettingsFile()), settings);
}

bool Site::readDocuments()
{
    m_files = jsonFilesBelow(SystemPaths::resolve(SystemPaths::eventSettingsDirectory()));
    m_files.append(SystemPaths::resolve(SystemPaths::eventSettingsFile()));
    m_files.append(SystemPaths::resolve(SystemPaths::nodeDictionary()));
    for (const QString &file : qAsConst(m_files)) {
        m_documents.append(contentOf(file));
        if (m_documents.constLast().isEmpty()) {
            return false;
        }
    }
    return true;
}
