// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include "jsontext.h"
#include "nivraevents.h"

#include <QByteArray>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

/// A root directory with a catalog; the library's paths lead into it while it lives.
class Sandbox
{
public:
    Sandbox()
    {
        QDir().mkpath(catalog());
        QDir().mkpath(m_directory.filePath(QStringLiteral("etc")));
        qputenv("ADMINEVENTS_ROOT", QFile::encodeName(m_directory.path()));
    }
    ~Sandbox() { qunsetenv("ADMINEVENTS_ROOT"); }
    Sandbox(const Sandbox &) = delete;
    Sandbox &operator=(const Sandbox &) = delete;

    QString root() const { return m_directory.path(); }
    QString catalog(const QString &name = QString()) const
    {
        return m_directory.filePath(QStringLiteral("usr/share/syslog-ng-mod-nivra/event-settings/") + name);
    }
    QString settings() const { return m_directory.filePath(QStringLiteral("etc/nivra-syslog.conf")); }

    /// Writes a file of the catalog, with its directory.
    void add(const char *name, const QByteArray &content = "{}") const
    {
        write(catalog(QString::fromUtf8(name)), content);
    }
    void setSettings(const QByteArray &content) const { write(settings(), content); }

    static void write(const QString &path, const QByteArray &content)
    {
        QDir().mkpath(QFileInfo(path).path());
        QFile file(path);
        if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size()) {
            qFatal("cannot write %s", qPrintable(path));
        }
    }

private:
    QTemporaryDir m_directory;
};

/// One initialisation of the library, given back at the end.
class Session
{
public:
    Session()
        : m_result(nvev_init())
    {
    }
    ~Session() { nvev_free(); }
    Session(const Session &) = delete;
    Session &operator=(const Session &) = delete;

    int result() const { return m_result; }

private:
    int m_result;
};

namespace Library {

/// The entries of an array, a null string for a missing one. The array is released.
inline QStringList take(char **array, quint64 count)
{
    QStringList ids;
    for (quint64 i = 0; i < count; ++i) {
        ids.append(array[i] ? QString::fromUtf8(array[i]) : QString());
    }
    nvev_free_string_array(array);
    return ids;
}

inline QStringList groups()
{
    return take(nvev_get_group_ids(), nvev_groups_count());
}

inline QStringList events()
{
    return take(nvev_get_event_ids(), nvev_events_count());
}

/// Copies of the texts, null when the library has none.
inline QByteArray groupText(const char *id)
{
    return QByteArray(nvev_get_group_json(id));
}

inline QByteArray eventText(const char *id)
{
    return QByteArray(nvev_get_event_json(id));
}

inline QByteArray overrideText(const char *id)
{
    return QByteArray(nvev_get_override_event_json(id));
}

} // namespace Library
