// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "pathsignature.h"

#include <QElapsedTimer>
#include <QFileSystemWatcher>
#include <QHash>
#include <QObject>
#include <QString>
#include <QTimer>

/**
 * Tells when somebody else changes the event catalog (a directory with all below it) or the event settings
 * file.
 *
 * It compares states instead of trusting single notifications: what counts is whether the present state
 * differs from the one last acknowledged, however it came about: written in place, replaced by rename,
 * deleted, created again. Neither the directory nor the file has to exist. Notifications are collected for
 * about 50 ms (at most 1 s while they keep coming). GUI thread only.
 */
class ConfigWatcher : public QObject
{
    Q_OBJECT

public:
    /** @param directory, @param file absolute paths on this machine, already resolved. */
    ConfigWatcher(const QString &directory, const QString &file, QObject *parent);

    /**
     * Begins to watch. Reports what has changed since the last acknowledged state, once the event loop runs;
     * when nothing was acknowledged yet, the present state counts as known. Does nothing when already
     * started.
     */
    void start();

    /** Ends the watch: nothing is emitted until start(), also not for notifications already under way. */
    void stop();

    [[nodiscard]] bool isRunning() const { return m_running; }

    /**
     * Takes the present state as known. Call it after an own save, and before (not after) an own load, so
     * that a change made while the load reads is still reported.
     */
    void acknowledge();

Q_SIGNALS:
    /**
     * The state differs from the acknowledged one, and is the acknowledged one from now on.
     * @param path the watched directory when something in it changed, else the watched file.
     */
    void changed(const QString &path);

private:
    void schedule();
    void check();
    PathSignature watchAndSign();
    /** Brings the watches in line with what exists now. Returns true when it added any. */
    bool watchAll(const PathSignature &signature);

    const QString m_directory;
    const QString m_file;
    QFileSystemWatcher m_watcher;
    QTimer m_timer;
    QElapsedTimer m_firstNotification;
    // The inode under each watched path: a watch stays with its inode when another takes the path over.
    QHash<QString, quint64> m_watched;
    PathSignature m_known;
    bool m_acknowledged = false;
    bool m_running = false;
};
