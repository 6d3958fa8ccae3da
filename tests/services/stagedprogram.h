// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <QDir>
#include <QFile>
#include <QStringList>
#include <QTemporaryDir>

/** A directory of shell scripts that is the whole search path while the object lives. */
class StagedPrograms
{
public:
    StagedPrograms()
        : m_formerPath(qgetenv("PATH"))
    {
        qputenv("PATH", QFile::encodeName(m_directory.path()));
    }
    ~StagedPrograms() { qputenv("PATH", m_formerPath); }
    StagedPrograms(const StagedPrograms &) = delete;
    StagedPrograms &operator=(const StagedPrograms &) = delete;

    [[nodiscard]] QString path(const QString &name) const { return m_directory.filePath(name); }

    /** @param body shell text; the variable "here" names the directory, external programs need their full
     * path. */
    [[nodiscard]] bool add(const QString &name, const QByteArray &body) const
    {
        QFile script(path(name));
        const QByteArray text
            = "#!/bin/sh\nhere='" + QFile::encodeName(m_directory.path()) + "'\n" + body + "\n";
        return script.open(QIODevice::WriteOnly) && script.write(text) == text.size()
            && script.setPermissions(QFileDevice::ReadOwner | QFileDevice::WriteOwner
                                     | QFileDevice::ExeOwner);
    }

    [[nodiscard]] bool put(const QString &name, const QByteArray &content) const
    {
        QFile file(path(name));
        return file.open(QIODevice::WriteOnly) && file.write(content) == content.size();
    }

    /** The lines of a file in the directory; none when there is no such file. */
    [[nodiscard]] QStringList lines(const QString &name) const
    {
        QFile file(path(name));
        if (!file.open(QIODevice::ReadOnly))
            return {};
        return QString::fromUtf8(file.readAll()).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    }

private:
    QTemporaryDir m_directory;
    QByteArray m_formerPath;
};
