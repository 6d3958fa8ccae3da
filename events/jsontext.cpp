// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "jsontext.h"

#include <QJsonDocument>
#include <QJsonObject>

namespace {
void appendEscaped(QString &target, const QString &text, bool shield)
{
    target += QLatin1Char('"');
    for (const QChar c : text) {
        if (c == QLatin1Char('"') || c == QLatin1Char('\\')) {
            target += QLatin1Char('\\');
            target += c;
        } else if (c.unicode() < 0x20 || c.unicode() == 0x7f || (shield && c == QLatin1Char('}'))) {
            target += QStringLiteral("\\u%1").arg(c.unicode(), 4, 16, QLatin1Char('0'));
        } else {
            target += c;
        }
    }
    target += QLatin1Char('"');
}
} // namespace

void JsonText::appendQuoted(QString &target, const QString &text)
{
    appendEscaped(target, text, false);
}

void JsonText::appendShielded(QString &target, const QString &text)
{
    appendEscaped(target, text, true);
}

QString JsonText::compact(const QJsonValue &value)
{
    // The serialiser takes whole documents only: wrap the value and take the brackets off again.
    const QByteArray json = QJsonDocument(QJsonArray{value}).toJson(QJsonDocument::Compact);
    return QString::fromUtf8(json.constData() + 1, json.size() - 2);
}

QString JsonText::arrayText(const QJsonArray &array)
{
    QStringList parts;
    parts.reserve(array.size());
    for (const QJsonValue &element : array) {
        if (element.isString()) {
            parts.append(element.toString());
            continue;
        }
        const QJsonValue path = element.toObject().value(QLatin1String("path"));
        parts.append(path.isString() ? path.toString() : compact(element));
    }
    return parts.join(QLatin1String(", "));
}

QJsonArray JsonText::parseArray(const QString &json, bool &ok)
{
    const QJsonDocument document = QJsonDocument::fromJson(json.toUtf8());
    ok = document.isArray();
    return document.array();
}

bool JsonText::isPlainList(const QJsonArray &array)
{
    for (const QJsonValue &element : array) {
        if (!element.isString() || element.toString().contains(QLatin1String(", "))) {
            return false;
        }
    }
    return true;
}
