// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#include "systemmessage.h"

#include <QDateTime>
#include <QHash>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>
#include <QStringList>

namespace NivraRecorder {

namespace {

// What is longer is no message about a person.
constexpr int textLimit = 8192;
// Debian gives people numbers from here on.
constexpr int firstUserId = 1000;

/** The journal writes what is no text in UTF-8 as an array of bytes. */
QString textOf(const QJsonValue &value)
{
    if (!value.isArray()) {
        return value.toString();
    }
    QByteArray bytes;
    const QJsonArray array = value.toArray();
    for (const QJsonValue &byte : array) {
        bytes.append(static_cast<char>(byte.toInt()));
    }
    return QString::fromUtf8(bytes);
}

QString timeOf(const QString &microseconds)
{
    return QDateTime::fromMSecsSinceEpoch(microseconds.toLongLong() / 1000).toString(Qt::ISODate);
}

/** The names under which programs write "NAME=VALUE" about a parameter. */
const QHash<QString, QStringList> &assignments()
{
    static const QHash<QString, QStringList> names = [] {
        QHash<QString, QStringList> made;
        const auto add = [&made](const char *parameter, const char *written) {
            made.insert(QLatin1String(parameter), QString::fromLatin1(written).split(QLatin1Char(' ')));
        };
        add("address", "rhost server");
        add("command", "COMMAND comm");
        add("connection_name", "name");
        add("destination_address", "DST");
        add("destination_port", "DPT");
        add("free_bytes", "free_bytes");
        add("free_percent", "free_percent");
        add("group_id", "GID");
        add("group_name", "name");
        add("interface", "iface IN");
        add("log_file", "filename");
        add("path", "path name");
        add("product", "idProduct");
        add("profile", "profile");
        add("protocol", "PROTO");
        add("reason", "error");
        add("source_address", "SRC");
        add("source_port", "SPT");
        add("target_user", "USER name");
        add("terminal", "TTY tty");
        add("user", "user");
        add("user_id", "UID uid");
        add("vendor", "idVendor");
        add("version", "version");
        add("working_directory", "PWD CWD");
        return made;
    }();
    return names;
}

/** The words around a parameter's value, the most certain first. */
const QHash<QString, QStringList> &phrases()
{
    static const QHash<QString, QStringList> patterns{
        {QStringLiteral("address"),
         {QStringLiteral(
              "\\bfrom (?:(?:authenticating |invalid )?user \\S+ )?([0-9A-Fa-f.:]+)(?: port|$|\\s)"),
          QStringLiteral("\\bby (?:(?:authenticating |invalid )?user \\S+ )?([0-9A-Fa-f.:]+) port"),
          QStringLiteral("\\b(?:Ban|Unban) (\\S+)")}},
        {QStringLiteral("command"),
         {QStringLiteral("\\bCMD \\((.*)\\)$"), QStringLiteral("\\b[Pp]rocess \\d+ \\(([^)]+)\\)")}},
        {QStringLiteral("device"),
         {QStringLiteral("\\[(sd[a-z]+)\\]"), QStringLiteral("\\bdev(?:ice)? ([\\w/]+)"),
          QStringLiteral("\\b(?:Mounted|Unmounted|Ejected) (/dev/\\S+?),? ")}},
        {QStringLiteral("exit_code"), {QStringLiteral("\\bstatus=(\\d+)")}},
        {QStringLiteral("group_name"),
         {QStringLiteral("\\bgroup '([^']+)'"), QStringLiteral("\\bgroup ([\\w-]+)")}},
        {QStringLiteral("interface"), {QStringLiteral("\\bdevice \\(([^)]+)\\)")}},
        {QStringLiteral("method"), {QStringLiteral("\\b(?:Accepted|Failed) (\\S+) for ")}},
        {QStringLiteral("mount_point"), {QStringLiteral("\\bMounted \\S+ at (\\S+)")}},
        {QStringLiteral("new_value"),
         {QStringLiteral("\\bto '([^']+)'"), QStringLiteral("\\bto <([^>]+)>"),
          QStringLiteral("\\bto (.+?)\\.?$")}},
        {QStringLiteral("reason"),
         {QStringLiteral("\\bbecause (.+)$"), QStringLiteral("\\bresult '([^']+)'"),
          QStringLiteral("\\berror: (.+)$")}},
        {QStringLiteral("remote_port"), {QStringLiteral("\\bport (\\d+)")}},
        {QStringLiteral("rule"), {QStringLiteral("^(?:NOTICE )?\\[([^\\]]+)\\]")}},
        {QStringLiteral("service"),
         {QStringLiteral("^(\\S+\\.\\w+): "), QStringLiteral("\\b(?:Started|Stopped|start) (\\S+\\.\\w+)")}},
        {QStringLiteral("session_id"), {QStringLiteral("\\b[Ss]ession (\\w+)")}},
        {QStringLiteral("target_user"),
         {QStringLiteral("\\(to (\\S+)\\)"), QStringLiteral("\\buser '([^']+)'"),
          QStringLiteral("\\bsession opened for user ([^\\s(]+)"),
          QStringLiteral("\\bfor (?:user )?'?([^'\\s]+)'?$")}},
        {QStringLiteral("terminal"),
         {QStringLiteral("\\bLOGIN ON (\\S+)"), QStringLiteral("\\bon '?((?:/dev/)?(?:tty|pts/)\\w*)")}},
        {QStringLiteral("user"),
         {QStringLiteral("^\\s*(\\S+) : "), QStringLiteral("\\(to \\S+\\) (\\S+) on "),
          QStringLiteral("\\bby ([^\\s()]+)\\(uid=\\d+\\)"),
          QStringLiteral("\\bsession opened for user ([^\\s(]+)"),
          QStringLiteral("\\b[Ii]nvalid user (\\S*) from "), QStringLiteral("\\bfor (\\S+) from "),
          QStringLiteral("\\b[Uu]ser (\\S+) (?:from |[0-9A-Fa-f.:]+ port|not allowed)"),
          QStringLiteral("\\bLOGIN ON \\S+ BY ([^\\s']+)"), QStringLiteral("\\bFOR '([^']+)'"),
          QStringLiteral("^\\((\\S+)\\) "), QStringLiteral("\\bof user ([^\\s.]+)"),
          QStringLiteral("^(\\S+): Executing command"), QStringLiteral("\\bunix-user:([^\\s)]+)")}},
        {QStringLiteral("version"),
         {QStringLiteral("\\b[Vv]ersion (\\S+)"), QStringLiteral("version='([^']+)'")}},
    };
    return patterns;
}

QString assigned(const QString &text, const QString &name)
{
    // A command is the rest of its line; other values end at a blank or with their quote.
    const QString value = name == QLatin1String("COMMAND")
        ? QStringLiteral("(.*)")
        : QStringLiteral("(?|\"([^\"]*)\"|'([^']*)'|([^\\s;,]*))");
    const QRegularExpression pattern(QLatin1String("(?:^|[\\s;,\\[(])") + QRegularExpression::escape(name)
                                     + QLatin1Char('=') + value);
    return pattern.match(text).captured(1);
}

} // namespace

std::optional<SystemMessage> SystemMessage::parse(const QByteArray &line)
{
    const QJsonObject entry = QJsonDocument::fromJson(line).object();
    SystemMessage message;
    message.text = textOf(entry.value(QStringLiteral("MESSAGE"))).left(textLimit);
    message.program = textOf(entry.value(QStringLiteral("SYSLOG_IDENTIFIER")));
    if (message.program.isEmpty()) {
        message.program = textOf(entry.value(QStringLiteral("_COMM")));
    }
    if (message.text.isEmpty() || message.program.isEmpty()) {
        return std::nullopt;
    }
    message.pid = textOf(entry.value(QStringLiteral("_PID")));
    message.host = textOf(entry.value(QStringLiteral("_HOSTNAME")));
    message.time = timeOf(textOf(entry.value(QStringLiteral("__REALTIME_TIMESTAMP"))));
    bool hasUser = false;
    const int user = textOf(entry.value(QStringLiteral("_UID"))).toInt(&hasUser);
    message.isOfSystem = textOf(entry.value(QStringLiteral("_TRANSPORT"))) == QLatin1String("kernel")
        || (hasUser && user < firstUserId);
    return message;
}

QString SystemMessage::find(const QString &name) const
{
    const QStringList written = assignments().value(name);
    for (const QString &one : written) {
        const QString value = assigned(text, one);
        if (!value.isEmpty()) {
            return value;
        }
    }
    const QStringList patterns = phrases().value(name);
    for (const QString &pattern : patterns) {
        const QString value = QRegularExpression(pattern).match(text).captured(1);
        if (!value.isEmpty()) {
            return value;
        }
    }
    return {};
}

} // namespace NivraRecorder
