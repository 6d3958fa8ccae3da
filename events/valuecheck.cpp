// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "valuecheck.h"

#include "eventtreeitem.h"
#include "nodedictionary.h"

#include <textcheck.h>

#include <KLocalizedString>

#include <algorithm>

namespace {
bool isDecimal(const QString &text)
{
    return !text.isEmpty() && std::all_of(text.begin(), text.end(), [](QChar c) {
        return c >= QLatin1Char('0') && c <= QLatin1Char('9');
    });
}
} // namespace

QString ValueCheck::problem(const EventTreeItem &item, const QString &text, const NodeDictionary &dictionary)
{
    const QString name = item.value(0).toString();
    if (TextCheck::holdsControl(text) || !TextCheck::survivesUtf8(text)) {
        return i18n("“%1” cannot hold line breaks or control characters.", name);
    }
    if (item.nativeName == QLatin1String("enabled") && !item.isSubject() && text != QLatin1String("0")
        && text != QLatin1String("1")) {
        return i18n("“%1” is a switch: type 1 for on or 0 for off.", name);
    }
    const NodeDictionary::Entry *entry = item.isSubject() ? nullptr : dictionary.find(item.nativeName);
    const bool isNumber = entry && entry->isNumber;
    if (isNumber && entry->hasRange) {
        bool ok = false;
        const qint64 number = text.toLongLong(&ok);
        if (!ok || !isDecimal(text) || number < entry->minimum || number > entry->maximum) {
            return i18n("“%1” must be a whole number from %2 to %3.", name, QString::number(entry->minimum),
                        QString::number(entry->maximum));
        }
        return {};
    }
    // Without a declared type the present value tells: a number stays a number.
    if ((isNumber || (item.kind == EventTreeItem::Parameter && isDecimal(item.value(1).toString())))
        && !isDecimal(text)) {
        return i18n("“%1” must be a whole number.", name);
    }
    return {};
}
