// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QByteArray>
#include <QObject>
#include <QString>
#include <QStringList>

class TreeItem;

/// Reads one configuration file into a tree.
class AbstractConfigParser : public QObject
{
    Q_OBJECT

public:
    /// @param configFile the file as it is on this machine (see SystemPaths::resolve())
    AbstractConfigParser(const QString &configFile, QObject *parent);

    /**
     * Reads the file anew and makes its tree.
     * @return a root that the caller owns; without children when the file could not be read, see
     *         errorString().
     */
    [[nodiscard]] virtual TreeItem *parse() const = 0;

    [[nodiscard]] const QString &configFile() const { return m_configFile; }
    /// Why the last reading failed, translated, with the path; empty after a success.
    [[nodiscard]] const QString &errorString() const { return m_errorString; }
    void setErrorString(const QString &text) const { m_errorString = text; }

    /// The whole file as text, see decode(); empty on failure, see errorString(). Anything but a regular file
    /// is a failure.
    [[nodiscard]] QString readConfig() const;
    /// The bytes of the file, for callers that compare files; empty on failure, see errorString(). A file
    /// without text is a failure, too.
    [[nodiscard]] QByteArray readBytes() const;

    /// The text that the bytes of a file stand for: UTF-8, up to the first zero byte.
    [[nodiscard]] static QString decode(const QByteArray &bytes);
    /// What decode() loses of the bytes of a file, a byte order mark aside: sentences for the user,
    /// translated, with line numbers.
    [[nodiscard]] static QStringList lostByDecoding(const QByteArray &bytes);

private:
    QString m_configFile;
    mutable QString m_errorString;
};
