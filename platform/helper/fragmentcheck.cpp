// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#include "fragmentcheck.h"

#include <notificationkey.h>

#include <KLocalizedString>

#include <algorithm>

namespace AdminEventsHelper {

namespace {

constexpr int identifierLimit = 128;
constexpr int titleLimit = 1000;
constexpr int parameterLimit = 500;

/** What differs from fragment to fragment. */
struct Values
{
    QString id;
    QString type;
    QString user;
    QString group;
    QString title; // as it is written, with its quotes escaped
    QStringList parameters;
};

// The lines that the values are taken from.
enum Line {
    FilterLine = 0,
    MatchLine = 1,
    UserLine = 8,
    GroupLine = 9,
    TitleLine = 11,
    ParametersLine = 13,
    LineCount = 25 // with the empty one after the last line break
};

QString prefix()
{
    return QStringLiteral("mod-nivra-");
}

QString suffix()
{
    return QStringLiteral(".conf");
}

bool isWordCharacter(QChar c)
{
    return (c >= QLatin1Char('a') && c <= QLatin1Char('z'))
        || (c >= QLatin1Char('A') && c <= QLatin1Char('Z'))
        || (c >= QLatin1Char('0') && c <= QLatin1Char('9')) || c == QLatin1Char('_') || c == QLatin1Char('-');
}

bool isIdentifier(const QString &text)
{
    return !text.isEmpty() && text.size() <= identifierLimit
        && std::all_of(text.cbegin(), text.cend(), isWordCharacter);
}

/** Control characters, line separators and halves of characters. */
bool isUnprintable(QChar c)
{
    return c.category() == QChar::Other_Control || c == QChar::LineSeparator || c == QChar::ParagraphSeparator
        || c.isSurrogate();
}

bool holdsUnprintable(const QString &text)
{
    const QVector<uint> characters = text.toUcs4();
    return std::any_of(characters.cbegin(), characters.cend(),
                       [](uint character) { return character <= 0xffff && isUnprintable(QChar(character)); });
}

QString formatOf(int parameters)
{
    QStringList places;
    for (int i = 0; i < parameters; ++i) {
        places << QLatin1Char('{') + QString::number(i) + QLatin1Char('}');
    }
    return places.join(QLatin1Char(' '));
}

QString textOf(const Values &values)
{
    const QString filter = QLatin1String("nivra_") + values.id + QLatin1String("_filter");
    const QString destination = QLatin1String("nivra_") + values.id + QLatin1String("_dbus_dst");
    const auto option = [](const char *name, const QString &value) -> QString {
        return QLatin1String("\t\t\"") + QLatin1String(name) + QLatin1String("\", \"") + value
            + QLatin1String("\"");
    };
    const QStringList lines{
        QLatin1String("filter ") + filter + QLatin1String(" {"),
        QLatin1String("    match(\"^") + values.id + QLatin1String("$\" value(\"MSG.nivra-") + values.type
            + QLatin1String(".message_id\"));"),
        QStringLiteral("};"),
        QLatin1String("destination ") + destination + QLatin1String(" {"),
        QStringLiteral("    python("),
        QStringLiteral(
            "\tclass(\"syslog_ng_mod_nivra.nivra_syslog_ng_destination.NivraSyslogNgDestination\")"),
        QStringLiteral("\toptions(\"destination_type\", \"dbus\""),
        option("message_type", values.type),
        option("event_user", values.user),
        option("event_group", values.group),
        option("event_id", notificationKey(values.id)),
        option("event_title", values.title),
        option("event_icon", QString()),
        option("event_params", values.parameters.join(QLatin1Char(','))),
        option("event_format", formatOf(values.parameters.size())) + QLatin1Char(')'),
        QLatin1String("\tpersist-name(\"") + values.id + QLatin1String("\")"),
        QStringLiteral("\t);"),
        QStringLiteral("};"),
        QStringLiteral("log {"),
        QStringLiteral("    source(nivra_events_src);"),
        QStringLiteral("    parser(nivra_events_parser);"),
        QLatin1String("    filter(") + filter + QLatin1String(");"),
        QLatin1String("    destination(") + destination + QLatin1String(");"),
        QStringLiteral("};"),
        QString(),
    };
    Q_ASSERT(lines.size() == LineCount);
    return lines.join(QLatin1Char('\n'));
}

/** What stands between two texts that a line begins and ends with; a null string when it does not. */
QString between(const QString &line, const QString &before, const QString &after)
{
    if (line.size() < before.size() + after.size() || !line.startsWith(before) || !line.endsWith(after)) {
        return {};
    }
    const QString middle = line.mid(before.size(), line.size() - before.size() - after.size());
    return middle.isNull() ? QStringLiteral("") : middle;
}

QString optionValue(const QString &line, const char *name)
{
    return between(line, QLatin1String("\t\t\"") + QLatin1String(name) + QLatin1String("\", \""),
                   QStringLiteral("\""));
}

Values valuesOf(const QStringList &lines)
{
    Values values;
    values.id = between(lines.at(FilterLine), QStringLiteral("filter nivra_"), QStringLiteral("_filter {"));
    values.type
        = between(lines.at(MatchLine),
                  QLatin1String("    match(\"^") + values.id + QLatin1String("$\" value(\"MSG.nivra-"),
                  QStringLiteral(".message_id\"));"));
    values.user = optionValue(lines.at(UserLine), "event_user");
    values.group = optionValue(lines.at(GroupLine), "event_group");
    values.title = optionValue(lines.at(TitleLine), "event_title");
    const QString parameters = optionValue(lines.at(ParametersLine), "event_params");
    values.parameters = parameters.isEmpty() ? QStringList() : parameters.split(QLatin1Char(','));
    return values;
}

bool areRecipients(const QString &user, const QString &group)
{
    const QString everybody = QStringLiteral("@all");
    return (user == everybody && (group == everybody || group == QLatin1String("nivra-admin")))
        || (user.isEmpty() && group.isEmpty());
}

/** Whether a quoted value ends where it seems to and means itself to the service. */
bool isQuotable(const QString &value)
{
    return !value.contains(QLatin1Char('"')) && !value.contains(QLatin1Char('\\'))
        && !value.contains(QLatin1Char('`')) && !holdsUnprintable(value);
}

bool isTitle(const QString &value)
{
    QString plain = value;
    plain.remove(QLatin1String("\\\""));
    return value.size() <= titleLimit && isQuotable(plain);
}

bool isParameter(const QString &value)
{
    return !value.isEmpty() && value == value.trimmed() && isQuotable(value);
}

QString problemOf(const Values &values, const QString &fileName)
{
    if (!isIdentifier(values.id)) {
        return i18n("the event's identifier is not made of letters, digits, \"_\" and \"-\"");
    }
    if (!isIdentifier(values.type)) {
        return i18n("the message type is not made of letters, digits, \"_\" and \"-\"");
    }
    if (fileName != prefix() + QString(values.id).replace(QLatin1Char('-'), QLatin1Char('_')) + suffix()) {
        return i18n("it belongs to the event \"%1\"", values.id);
    }
    if (!areRecipients(values.user, values.group)) {
        return i18n("the recipients are unknown");
    }
    if (!isTitle(values.title)) {
        return i18n("the title is too long or holds a character that it must not hold");
    }
    if (values.parameters.size() > parameterLimit
        || !std::all_of(values.parameters.cbegin(), values.parameters.cend(), isParameter)) {
        return i18n("the list of parameters holds a name that it must not hold");
    }
    return {};
}

Outcome refuse(const QString &fileName, const QString &reason)
{
    return Outcome::failure(i18n("The notification file \"%1\" is refused: %2.", fileName, reason));
}

} // namespace

QStringList FragmentCheck::directory()
{
    return {QStringLiteral("etc"), QStringLiteral("syslog-ng"), QStringLiteral("conf.d")};
}

bool FragmentCheck::isFragmentName(const QString &fileName)
{
    const QString identifier = between(fileName, prefix(), suffix());
    return isIdentifier(identifier);
}

Result<QString> FragmentCheck::fileNameOf(const QString &path)
{
    const QString folder = QLatin1Char('/') + directory().join(QLatin1Char('/')) + QLatin1Char('/');
    const QString fileName = path.mid(folder.size());
    if (!path.startsWith(folder) || !isFragmentName(fileName)) {
        return Outcome::failure(i18n("\"%1\" is not a notification file of an event.", path));
    }
    return fileName;
}

Outcome FragmentCheck::check(const QString &fileName, const QByteArray &content)
{
    if (content.size() > sizeLimit) {
        return refuse(fileName, i18n("it is larger than %1 bytes", QString::number(sizeLimit)));
    }
    QString text = QString::fromUtf8(content);
    if (text.toUtf8() != content) {
        return refuse(fileName, i18n("it is not text in UTF-8"));
    }
    if (text.endsWith(QLatin1String("\n\n"))) {
        text.chop(1);
    }
    const QStringList lines = text.split(QLatin1Char('\n'));
    if (lines.size() != LineCount) {
        return refuse(fileName, i18n("it does not have the lines of a notification"));
    }
    const Values values = valuesOf(lines);
    if (const QString problem = problemOf(values, fileName); !problem.isEmpty()) {
        return refuse(fileName, problem);
    }
    const QStringList expected = textOf(values).split(QLatin1Char('\n'));
    for (int i = 0; i < LineCount; ++i) {
        if (lines.at(i) != expected.at(i)) {
            return refuse(fileName, i18n("line %1 is not that of a notification", QString::number(i + 1)));
        }
    }
    return Outcome::success();
}

} // namespace AdminEventsHelper
