// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#include "configwatcher.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSet>

#include <sys/stat.h>
#include <utility>

namespace {

constexpr int quietTime = 50; // ms without a further notification
constexpr int longestDelay = 1000; // ms since the first notification
constexpr int armingRounds = 5;

/** 0 when there is nothing at @p path. */
quint64 inodeAt(const QString &path)
{
    struct stat info;
    return ::stat(QFile::encodeName(path).constData(), &info) == 0 ? quint64(info.st_ino) : 0;
}

/** At least @p count directories above @p path, as many as it takes to reach one that exists. */
QStringList directoriesAbove(QString path, int count)
{
    QStringList above;
    bool reached = false;
    while (path != QLatin1String("/") && (above.size() < count || !reached)) {
        path = QFileInfo(path).path();
        above.append(path);
        reached = reached || QFileInfo(path).isDir();
    }
    return above;
}

} // namespace

ConfigWatcher::ConfigWatcher(const QString &directory, const QString &file, QObject *parent)
    : QObject(parent)
    , m_directory(QDir::cleanPath(directory))
    , m_file(QDir::cleanPath(file))
{
    m_timer.setSingleShot(true);
    m_timer.setInterval(quietTime);
    connect(&m_timer, &QTimer::timeout, this, &ConfigWatcher::check);
    connect(&m_watcher, &QFileSystemWatcher::fileChanged, this, &ConfigWatcher::schedule);
    connect(&m_watcher, &QFileSystemWatcher::directoryChanged, this, &ConfigWatcher::schedule);
}

void ConfigWatcher::start()
{
    if (m_running)
        return;
    m_running = true;
    if (m_acknowledged)
        schedule();
    else
        acknowledge();
}

void ConfigWatcher::stop()
{
    m_running = false;
    m_timer.stop();
}

void ConfigWatcher::acknowledge()
{
    m_known = m_running ? watchAndSign() : signPaths(m_directory, m_file);
    m_acknowledged = true;
}

void ConfigWatcher::schedule()
{
    if (!m_running)
        return;
    if (!m_timer.isActive())
        m_firstNotification.start();
    else if (m_firstNotification.hasExpired(longestDelay - quietTime))
        return;
    m_timer.start();
}

void ConfigWatcher::check()
{
    const PathSignature present = watchAndSign();
    const bool directoryChanged = present.directory != m_known.directory;
    if (!directoryChanged && present.file == m_known.file)
        return;
    m_known = present;
    Q_EMIT changed(directoryChanged ? m_directory : m_file);
}

PathSignature ConfigWatcher::watchAndSign()
{
    for (int round = 0; round < armingRounds; ++round) {
        const PathSignature signature = signPaths(m_directory, m_file);
        // Only a signature taken with every watch in place leaves no gap for a change to slip through.
        if (!watchAll(signature))
            return signature;
    }
    schedule();
    return signPaths(m_directory, m_file);
}

bool ConfigWatcher::watchAll(const PathSignature &signature)
{
    QStringList wanted = signature.directory.keys();
    wanted += m_file;
    // A directory says nothing when it is renamed itself, the one above it does.
    wanted += directoriesAbove(m_directory, 2);
    wanted += directoriesAbove(m_file, 1);

    const QStringList held = m_watcher.files() + m_watcher.directories();
    const QSet<QString> heldPaths(held.begin(), held.end());
    QHash<QString, quint64> present;
    QStringList fresh;
    QStringList stale;
    for (const QString &path : std::as_const(wanted)) {
        const quint64 inode = inodeAt(path);
        if (inode == 0 || present.contains(path))
            continue;
        present.insert(path, inode);
        const bool isHeld = heldPaths.contains(path);
        if (isHeld && m_watched.value(path) == inode)
            continue;
        fresh.append(path);
        if (isHeld)
            stale.append(path);
    }
    for (const QString &path : held) {
        if (!present.contains(path))
            stale.append(path);
    }
    if (!stale.isEmpty())
        m_watcher.removePaths(stale);
    m_watched = present;
    return !fresh.isEmpty() && m_watcher.addPaths(fresh).size() < fresh.size();
}
