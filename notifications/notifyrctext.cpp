// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#include "notifyrctext.h"

#include <algorithm>
#include <array>

namespace {
struct Member
{
    const char *name;
    QString NotifyrcGroup::*value;
};

constexpr std::array<Member, 5> members{{{"Action", &NotifyrcGroup::actions},
                                         {"Execute", &NotifyrcGroup::executeCommand},
                                         {"Logfile", &NotifyrcGroup::logFile},
                                         {"Sound", &NotifyrcGroup::soundFile},
                                         {"TTS", &NotifyrcGroup::tts}}};

bool opensGroup(const QByteArray &line)
{
    return line.trimmed().startsWith('[');
}

bool opensGroup(const QByteArray &line, const QString &key)
{
    return QString::fromUtf8(line.trimmed()) == QLatin1String("[Event/") + key + QLatin1Char(']');
}

/// The member that a line sets, null for any other line.
const Member *memberOf(const QByteArray &line)
{
    const QByteArray trimmed = line.trimmed();
    const auto *const found = std::find_if(members.begin(), members.end(), [&trimmed](const Member &member) {
        return trimmed.startsWith(member.name);
    });
    return found == members.end() ? nullptr : found;
}

void readMember(NotifyrcGroup &group, const Member &member, const QString &line)
{
    const QString value = line.section(QLatin1Char('='), 1, 1).simplified();
    group.*(member.value) = value;
    const QString name = QLatin1String(member.name);
    group.cutKeys.removeAll(name);
    if (value != line.section(QLatin1Char('='), 1).trimmed()) {
        group.cutKeys << name;
    }
}
} // namespace

NotifyrcGroup NotifyrcText::readGroup(const QByteArray &text, const QString &key)
{
    NotifyrcGroup group;
    bool inside = false;
    const QList<QByteArray> lines = text.split('\n');
    for (const QByteArray &line : lines) {
        if (opensGroup(line)) {
            inside = opensGroup(line, key);
            group.isDefined |= inside;
        } else if (const Member *member = inside ? memberOf(line) : nullptr) {
            readMember(group, *member, QString::fromUtf8(line));
        }
    }
    return group;
}

QByteArray NotifyrcText::withGroup(const QByteArray &text, const QString &key, const QStringList &content)
{
    const QByteArray replacement = content.join(QString()).toUtf8();
    QByteArray result;
    bool inside = false;
    bool placed = false;
    QList<QByteArray> lines = text.split('\n');
    if (lines.last().isEmpty()) {
        lines.removeLast(); // what follows the last line break is no line
    }
    for (const QByteArray &line : qAsConst(lines)) {
        if (opensGroup(line)) {
            inside = opensGroup(line, key);
            if (inside && !placed) {
                result += replacement;
                placed = true;
                continue;
            }
        } else if (inside && memberOf(line)) {
            continue;
        }
        result += line + '\n';
    }
    if (!placed) {
        return result + (result.isEmpty() || result.endsWith("\n\n") ? "" : "\n") + replacement;
    }
    return result;
}
