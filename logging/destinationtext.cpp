// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "destinationtext.h"

#include "configtokens.h"
#include "destinationsdictionary.h"
#include "losscheck.h"

#include <textcheck.h>
#include <treeitem.h>

#include <KLocalizedString>

#include <QTextCodec>

namespace {
/// The order of the values of a new destination.
enum Field { Kind, Name, Address, Port, Protocol, FieldCount };

QString field(const QVector<QVariant> &values, Field which)
{
    return values.value(which).toString();
}

bool survives(const QVector<QVariant> &values)
{
    TreeItem root({QStringLiteral("Parameter"), QStringLiteral("Name"), QStringLiteral("Value")});
    root.appendChildDestination(DestinationText::makeBlock(values, &root));
    const QString value = DestinationText::value(values);
    return LossCheck::notReadBack(root).isEmpty()
        && DestinationText::firstQuoted(value) == field(values, Address);
}

/// The character without which the address could be kept; null when it is not one alone.
QChar culprit(QVector<QVariant> values)
{
    const QString address = field(values, Address);
    for (int i = 0; i < address.size(); ++i) {
        const QChar character = address.at(i);
        if (address.indexOf(character) < i) {
            continue; // looked at already
        }
        values[Address] = QString(address).remove(character);
        if (!values.at(Address).toString().isEmpty() && survives(values)) {
            return character;
        }
    }
    return {};
}
} // namespace

QString DestinationText::quoted(const QString &text)
{
    QString escaped = text;
    escaped.replace(QLatin1Char('\\'), QLatin1String("\\\\"));
    escaped.replace(QLatin1Char('"'), QLatin1String("\\\""));
    escaped.replace(QLatin1Char('`'), QLatin1String("``"));
    return QLatin1Char('"') + escaped + QLatin1Char('"');
}

QString DestinationText::value(const QVector<QVariant> &values)
{
    QString text = quoted(field(values, Address));
    if (values.size() == FieldCount && field(values, Kind) == DestinationsDictionary::networkParameter()) {
        text += QLatin1String(" port(") + field(values, Port) + QLatin1String(") transport(")
            + field(values, Protocol) + QLatin1String(") flags(syslog-protocol)");
    }
    return text;
}

QString DestinationText::firstQuoted(const QString &value)
{
    const ConfigTokens tokens(value);
    for (const ConfigTokens::Token &token : tokens.tokens()) {
        if (token.kind != ConfigTokens::String) {
            continue;
        }
        QString text = tokens.view(token).mid(1).chopped(token.size > 1 ? 1 : 0).toString();
        if (tokens.view(token).startsWith(QLatin1Char('"'))) {
            QString plain;
            for (int i = 0; i < text.size(); ++i) {
                i += text.at(i) == QLatin1Char('\\') && i + 1 < text.size() ? 1 : 0;
                plain += text.at(i);
            }
            text = plain;
        }
        text.replace(QLatin1String("``"), QLatin1String("`"));
        return text.isNull() ? QStringLiteral("") : text;
    }
    return {};
}

QString DestinationText::shown(const QString &kind, const QString &value)
{
    if (kind == DestinationsDictionary::fileParameter()) {
        const QString path = firstQuoted(value);
        return path.isNull() ? value.simplified() : path;
    }
    if (kind == DestinationsDictionary::networkParameter()) {
        QString text = value.simplified();
        if (text.startsWith(QLatin1Char('"'))) {
            text.remove(0, 1);
        }
        text = text.split(QLatin1String("\" ")).join(QLatin1Char(' '));
        return text.endsWith(QLatin1Char('"')) && text.count(QLatin1Char('"')) == 1 ? text.chopped(1) : text;
    }
    return value.simplified();
}

QString DestinationText::bareName(const QString &text)
{
    const QString name = text.trimmed();
    const QString inQuotes = firstQuoted(name);
    return !inQuotes.isNull() && quoted(inQuotes).size() == name.size() ? inQuotes : name;
}

TreeItem *DestinationText::makeBlock(const QVector<QVariant> &values, TreeItem *root)
{
    auto *block = new TreeItem({QStringLiteral("destination"), field(values, Name), QVariant()}, root);
    block->appendChild(new TreeItem({field(values, Kind), QVariant(), value(values)}, block));
    return block;
}

QString DestinationText::keepingError(const QVector<QVariant> &values)
{
    const QString address = field(values, Address);
    if (address.trimmed().isEmpty()) {
        return i18n("The file path is empty.");
    }
    if (TextCheck::holdsControl(address)) {
        return i18n("The file path holds a line break or another control character.");
    }
    if (!QTextCodec::codecForLocale()->canEncode(address)) {
        return i18n("The file path holds characters that the character encoding of this session lacks.");
    }
    if (survives(values)) {
        return {};
    }
    const QChar character = culprit(values);
    return character.isNull()
        ? i18n("The file path cannot be written to the configuration file and read back unchanged.")
        : i18n("The file path cannot be kept in the configuration file because of the character “%1”.",
               QString(character));
}
