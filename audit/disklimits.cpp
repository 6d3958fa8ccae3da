// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "disklimits.h"

#include <jsontext.h>
#include <textcheck.h>

#include <KLocalizedString>

#include <QJsonArray>
#include <QRegularExpression>

namespace {
const QLatin1String pathKey("path");
const QLatin1String bytesKey("limit_bytes");
const QLatin1String percentKey("limit_percent");

/// Takes a member out of an object: the text itself, or the number as text.
QString takeText(QJsonObject &object, QLatin1String key)
{
    return object.take(key).toVariant().toString();
}

DiskLimit rowOf(const QJsonValue &element)
{
    DiskLimit row;
    if (!element.isObject()) {
        // A list of bare directories; the limits are still to be named.
        row.path = element.toVariant().toString();
        row.bytes.clear();
        row.percent.clear();
        return row;
    }
    row.others = element.toObject();
    row.path = takeText(row.others, pathKey);
    row.bytes = takeText(row.others, bytesKey);
    row.percent = takeText(row.others, percentKey);
    return row;
}

void appendMember(QString &text, const QString &key, const QString &json)
{
    text += text.endsWith(QLatin1String("{ ")) ? QLatin1String() : QLatin1String(", ");
    JsonText::appendQuoted(text, key);
    text += QLatin1String(": ") + json;
}

QString quoted(const QString &text)
{
    QString json;
    JsonText::appendQuoted(json, text);
    return json;
}
} // namespace

QVector<DiskLimit> DiskLimits::fromJson(const QString &text)
{
    bool isArray = false;
    const QJsonArray array = JsonText::parseArray(text, isArray);
    QVector<DiskLimit> rows;
    rows.reserve(array.size());
    for (const QJsonValue &element : array) {
        rows.append(rowOf(element));
    }
    return rows;
}

QString DiskLimits::toJson(const QVector<DiskLimit> &rows)
{
    QString text = QStringLiteral("[ ");
    for (int i = 0; i < rows.size(); ++i) {
        const DiskLimit &row = rows.at(i);
        text += i > 0 ? QLatin1String(",{ ") : QLatin1String("{ ");
        appendMember(text, pathKey, quoted(row.path));
        appendMember(text, bytesKey, quoted(row.bytes));
        appendMember(text, percentKey, quoted(row.percent));
        for (auto it = row.others.begin(); it != row.others.end(); ++it) {
            appendMember(text, it.key(), JsonText::compact(*it));
        }
        text += QLatin1String(" }");
    }
    return text + QLatin1String(" ]");
}

QStringList DiskLimits::paths(const QVector<DiskLimit> &rows)
{
    QStringList paths;
    paths.reserve(rows.size());
    for (const DiskLimit &row : rows) {
        paths.append(row.path);
    }
    return paths;
}

QString DiskLimits::pathProblem(const QString &text)
{
    if (TextCheck::holdsControl(text)) {
        return i18n("The name of the directory cannot be saved: it holds a line break or another control "
                    "character.");
    }
    if (!text.startsWith(QLatin1Char('/'))) {
        return i18n("“%1” is not the absolute path of a directory.", text);
    }
    if (text.contains(QChar::ReplacementCharacter) || !TextCheck::survivesUtf8(text)) {
        return i18n("The name of the directory “%1” cannot be saved: it is not valid UTF-8.", text);
    }
    return {};
}

QString DiskLimits::bytesProblem(const QString &text)
{
    static const QRegularExpression digits(QStringLiteral("\\A[0-9]+\\z"));
    bool fits = false;
    text.toLongLong(&fits);
    return fits && digits.match(text).hasMatch()
        ? QString()
        : i18n("“%1” is not a number of bytes: type a whole number that is at least 0.", text);
}

QString DiskLimits::percentProblem(const QString &text)
{
    static const QRegularExpression decimal(QStringLiteral("\\A[0-9]+(\\.[0-9]+)?\\z"));
    constexpr double all = 100.0;
    const QString number = normalizedPercent(text);
    return decimal.match(number).hasMatch() && number.toDouble() <= all
        ? QString()
        : i18n("“%1” is not a percentage: type a number from 0 to 100.", text);
}

QString DiskLimits::normalizedPercent(const QString &text)
{
    return QString(text).replace(QLatin1Char(','), QLatin1Char('.'));
}
