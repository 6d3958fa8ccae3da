// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "jsontext.h"

#include <QJsonDocument>
#include <QJsonObject>

namespace {
/// Whether a character stands for itself; of surrogates, only pairs do.
bool isPlain(QChar character)
{
    const ushort code = character.unicode();
    return code >= 0x20 && code != '"' && code != '\\' && code != 0x7f && !character.isSurrogate();
}

// No early end: nearly all texts are plain, and this way the compiler looks at many letters at once.
bool isAllPlain(const QString &text)
{
    bool plain = true;
    for (const QChar character : text) {
        plain = isPlain(character) && plain;
    }
    return plain;
}
} // namespace

void JsonText::appendQuoted(QString &target, const QString &text)
{
    target += QLatin1Char('"');
    if (isAllPlain(text)) {
        target += text;
        target += QLatin1Char('"');
        return;
    }
    const QChar *plain = text.constData(); // start of what needs no escape and is not copied yet
    const QChar *end = plain + text.size();
    for (const QChar *c = plain; c != end; ++c) {
        if (isPlain(*c)) {
            continue;
        }
        if (c->isHighSurrogate() && c + 1 != end && (c + 1)->isLowSurrogate()) {
            ++c;
            continue;
        }
        target.append(plain, static_cast<int>(c - plain));
        plain = c + 1;
        const ushort code = c->unicode();
        if (code == '"' || code == '\\') {
            target += QLatin1Char('\\');
            target += *c;
        } else {
            target += QStringLiteral("\\u%1").arg(code, 4, 16, QLatin1Char('0'));
        }
    }
    target.append(plain, static_cast<int>(end - plain));
    target += QLatin1Char('"');
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
