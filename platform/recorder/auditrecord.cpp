// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#include "auditrecord.h"

#include <QList>
#include <QPair>

#include <algorithm>

namespace NivraRecorder {

namespace {

constexpr char enrichedSeparator = '\x1d';
// What separates the keys of several rules in one field.
const QChar keySeparator(0x01);

bool isSpace(char c)
{
    return c == ' ' || c == '\n' || c == '\t' || c == '\r';
}

/** Fields whose values the kernel or a program writes as hexadecimal digits when they hold odd characters. */
bool mayBeEncoded(const QByteArray &name)
{
    static const QList<QByteArray> names{"name", "comm", "exe", "cwd", "key",
                                         "acct", "path", "dir", "cmd", "proctitle"};
    return names.contains(name);
}

bool isHexadecimal(const QByteArray &text)
{
    return !text.isEmpty() && text.size() % 2 == 0 && std::all_of(text.cbegin(), text.cend(), [](char c) {
        return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'F');
    });
}

QString decoded(const QByteArray &name, const QByteArray &value, bool isQuoted)
{
    if (isQuoted) {
        return QString::fromUtf8(value);
    }
    if (value == "(null)" || value == "(none)" || value == "?") {
        return {};
    }
    const bool isEncoded = mayBeEncoded(name) && isHexadecimal(value);
    QString text = QString::fromUtf8(isEncoded ? QByteArray::fromHex(value) : value);
    if (name == "key") {
        text.replace(keySeparator, QLatin1Char(','));
    }
    return text;
}

/** Reads "name=value", value possibly in quotes, and moves on. */
bool takeField(const QByteArray &text, int &position, QByteArray &name, QByteArray &value, char &quote)
{
    while (position < text.size() && (isSpace(text.at(position)) || text.at(position) == ',')) {
        ++position;
    }
    const int equals = text.indexOf('=', position);
    if (equals < 0) {
        return false;
    }
    // Words without a value may stand before.
    name = text.mid(position, equals - position);
    name = name.mid(name.lastIndexOf(' ') + 1);
    int begin = equals + 1;
    quote = begin < text.size() && (text.at(begin) == '"' || text.at(begin) == '\'') ? text.at(begin) : '\0';
    int end = 0;
    if (quote != '\0') {
        ++begin;
        end = text.indexOf(quote, begin);
        end = end < 0 ? text.size() : end;
        position = std::min(end + 1, int(text.size()));
    } else {
        end = begin;
        while (end < text.size() && !isSpace(text.at(end))) {
            ++end;
        }
        position = end;
    }
    value = text.mid(begin, end - begin);
    return true;
}

void readFields(const QByteArray &text, const QString &prefix, QHash<QString, QString> &fields)
{
    int position = 0;
    QByteArray name;
    QByteArray value;
    char quote = '\0';
    while (takeField(text, position, name, value, quote)) {
        if (name == "msg" && quote == '\'') {
            readFields(value, QStringLiteral("msg."), fields);
        } else {
            fields.insert(prefix + QString::fromLatin1(name), decoded(name, value, quote != '\0'));
        }
    }
}

/** Takes over what an enriched line says of the numbers, by the same name in capitals. */
void readNames(const QByteArray &text, QHash<QString, QString> &fields)
{
    QHash<QString, QString> names;
    readFields(text, QString(), names);
    for (auto it = names.cbegin(); it != names.cend(); ++it) {
        const QString field = it.key().toLower();
        if (fields.contains(field) && !it->isEmpty() && *it != QLatin1String("unset")
            && !it->startsWith(QLatin1String("unknown"))) {
            fields.insert(field, *it);
        }
    }
}

} // namespace

std::optional<AuditRecord> AuditRecord::parse(const QByteArray &line)
{
    // "node=NAME " may stand first.
    const int type = line.indexOf("type=");
    const int opening = line.indexOf(" msg=audit(", type);
    const int closing = opening < 0 ? -1 : line.indexOf("):", opening);
    if (type < 0 || (type > 0 && line.at(type - 1) != ' ') || closing < 0) {
        return std::nullopt;
    }
    AuditRecord record;
    record.type = QString::fromLatin1(line.mid(type + 5, opening - type - 5));
    const int event = opening + int(qstrlen(" msg=audit("));
    record.event = line.mid(event, closing - event);
    const QByteArray rest = line.mid(closing + 2);
    const int separator = rest.indexOf(enrichedSeparator);
    readFields(separator < 0 ? rest : rest.left(separator), QString(), record.fields);
    if (separator >= 0) {
        readNames(rest.mid(separator + 1), record.fields);
    }
    return record;
}

} // namespace NivraRecorder
