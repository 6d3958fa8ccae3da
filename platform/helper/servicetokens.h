// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <QByteArray>
#include <QVector>

namespace AdminEventsHelper {

/** One piece of a configuration in the logging service's language. */
struct ServiceToken
{
    enum class Kind {
        Word,
        String, ///< In quotes of either kind; the text is without them, escapes as they stand.
        Open, ///< "(" or "{".
        Close, ///< ")" or "}".
        End, ///< ";".
        Other, ///< Any other sign.
        Pragma, ///< "@" and what follows up to the end of the line.
        Comment, ///< "#" and what follows up to the end of the line.
    };
    Kind kind = Kind::Other;
    QByteArray text;
    int line = 1;
    /** Where it begins in the text, in bytes. */
    int position = 0;
};

/**
 * Splits a configuration as the service's own scanner does (syslog-ng.conf(5)): strings in double quotes have
 * escapes and those in single quotes have none, "#" begins a comment everywhere outside of strings.
 * @return the pieces; the last one is an unfinished string, of kind Other, when a quote is never closed.
 */
QVector<ServiceToken> splitServiceConfig(const QByteArray &text);

} // namespace AdminEventsHelper
