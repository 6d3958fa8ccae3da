// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QString>
#include <QStringList>
#include <QVector>

/**
 * What one pass over a rotation file finds, line by line. The file is one section in the language of
 * logrotate(8): the names of log files (over one or more lines), "{", one directive a line, "}".
 */
struct RotationScan
{
    struct Directive
    {
        int line = 0; ///< counted from 1
        QString keyword;
        QString value; ///< single blanks between the words; empty for a script
        QStringList script; ///< the lines of prerotate and postrotate, blanks normalised
        bool isScript = false;
    };

    /// What precedes the opening brace, with single blanks.
    QString header;
    /// In file order; no comments, no braces.
    QVector<Directive> directives;
    /// Sentences for the user, translated, with line numbers: what the directives do not carry.
    QStringList losses;
    /// Why the file cannot be taken over, a translated sentence with the line; empty when it can.
    QString error;

    [[nodiscard]] bool isGood() const { return error.isEmpty(); }
};

/// @param text a whole rotation file
[[nodiscard]] RotationScan scanRotation(const QString &text);
