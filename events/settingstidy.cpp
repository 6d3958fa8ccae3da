// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "settingstidy.h"

void SettingsTidy::tidy(QString &text, bool hasAuditEvents)
{
    // All that needs repair ends like this, and most events have nothing of it.
    if (!text.contains(QLatin1String("  }"))) {
        return;
    }
    const QString objectEnd = QStringLiteral("},  }");
    const QString objectsClosed = QStringLiteral("} }");
    text.replace(objectEnd, objectsClosed);
    if (hasAuditEvents) {
        text.replace(objectEnd, objectsClosed);
    }
    text.replace(QLatin1String("],  }"), QLatin1String("] }"));
    text.replace(QLatin1String("\",  }"), QLatin1String("\" }"));
    // An event that is marked but contributes nothing is one that is switched off.
    text.replace(QLatin1String(":  }"), QLatin1String(": { \"enabled\": \"0\" }"));
    // Neighbouring ends overlap, so one pass closes every other level only.
    while (text.contains(objectEnd)) {
        text.replace(objectEnd, objectsClosed);
    }
}
