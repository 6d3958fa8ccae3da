// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "settingstidy.h"

void SettingsTidy::tidy(QString &text)
{
    // All that needs repair ends like this, and most events have nothing of it.
    const QLatin1String end("  }");
    int next = text.indexOf(end);
    if (next < 0) {
        return;
    }
    QString tidied;
    tidied.reserve(text.size());
    int copied = 0;
    while (next >= 0) {
        tidied.append(text.constData() + copied, next - copied);
        // What was repaired just now may be what the next bracket closes.
        if (tidied.endsWith(QLatin1String("},")) || tidied.endsWith(QLatin1String("],"))
            || tidied.endsWith(QLatin1String("\","))) {
            tidied.chop(1);
            tidied += QLatin1String(" }");
        } else if (tidied.endsWith(QLatin1Char(':'))) {
            // An event that is marked but contributes nothing is one that is switched off.
            tidied += QLatin1String(" { \"enabled\": \"0\" }");
        } else {
            tidied += end;
        }
        copied = next + end.size();
        next = text.indexOf(end, copied);
    }
    tidied.append(text.constData() + copied, text.size() - copied);
    text = tidied;
}
