// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#include "notificationkey.h"

QString notificationKey(const QString &messageId)
{
    QString key;
    bool raise = false;
    for (const QChar c : messageId) {
        if (c == QLatin1Char('_') || c == QLatin1Char('-')) {
            raise = true;
        } else {
            key += raise ? c.toUpper() : c;
            raise = false;
        }
    }
    return key;
}
