// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#include "helperlog.h"

#include <algorithm>

namespace AdminEventsHelper {

void logLine(int priority, const QString &line)
{
    QString plain = line;
    std::replace_if(
        plain.begin(), plain.end(), [](QChar c) { return c.category() == QChar::Other_Control; },
        QChar(QLatin1Char(' ')));
    ::syslog(LOG_AUTHPRIV | priority, "%s", qUtf8Printable(plain));
}

} // namespace AdminEventsHelper
