// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#include "auditruleform.h"

#include <QSet>

#include <algorithm>

namespace AdminEventsHelper {

namespace {

QList<QByteArray> wordsOf(const QByteArray &line)
{
    QList<QByteArray> words = line.simplified().split(' ');
    words.removeAll(QByteArray());
    return words;
}

QByteArray sortedList(const QByteArray &list)
{
    QList<QByteArray> parts = list.split(',');
    std::sort(parts.begin(), parts.end());
    return parts.join(',');
}

QByteArray sortedLetters(QByteArray letters)
{
    std::sort(letters.begin(), letters.end());
    return letters;
}

QByteArray withoutSlash(QByteArray path)
{
    while (path.size() > 1 && path.endsWith('/')) {
        path.chop(1);
    }
    return path;
}

/** "b64" or "b32" for the name of a processor. */
QByteArray widthOf(const QByteArray &processor)
{
    static const QSet<QByteArray> wide{"b64",   "x86_64", "aarch64", "ppc64",   "ppc64le",
                                       "s390x", "ia64",   "alpha",   "riscv64", "loongarch64"};
    return wide.contains(processor) ? QByteArray("b64") : QByteArray("b32");
}

bool isUnset(const QByteArray &value)
{
    return value == "-1" || value == "4294967295" || value == "unset";
}

// What a line says, part by part.
class Rule
{
public:
    Rule(const QByteArray &line, bool foldProcessors)
        : m_foldProcessors(foldProcessors)
    {
        const QList<QByteArray> words = wordsOf(line);
        for (int i = 0; i < words.size(); i += 2) {
            take(words.at(i), words.value(i + 1));
        }
    }

    QByteArray text() const
    {
        QList<QByteArray> parts = m_parts;
        if (m_isWatch) {
            // What a watch leaves out.
            parts << QByteArray("-a always,exit")
                  << QByteArray("perm=") + (m_perm.isEmpty() ? "arwx" : m_perm);
        } else if (!m_perm.isEmpty()) {
            parts << QByteArray("perm=") + m_perm;
        }
        std::sort(parts.begin(), parts.end());
        QList<QByteArray> calls = m_calls;
        calls.removeAll("all");
        std::sort(calls.begin(), calls.end());
        return parts.join(' ') + " calls=" + calls.join(',') + " key=" + m_keys.join(' ');
    }

private:
    void take(const QByteArray &option, const QByteArray &value)
    {
        if (option == "-w") {
            m_isWatch = true;
            m_parts << QByteArray("path=") + withoutSlash(value);
        } else if (option == "-a" || option == "-A") {
            m_parts << QByteArray("-a ") + sortedList(value);
        } else if (option == "-p") {
            m_perm = sortedLetters(value);
        } else if (option == "-k") {
            m_keys << value;
        } else if (option == "-S") {
            m_calls << value.split(',');
        } else if (option == "-F") {
            takeField(value);
        } else {
            m_parts << option + ' ' + value;
        }
    }

    void takeField(const QByteArray &field)
    {
        int start = 0;
        while (start < field.size() && !QByteArray("=!<>&").contains(field.at(start))) {
            ++start;
        }
        int end = start;
        while (end < field.size() && QByteArray("=!<>&").contains(field.at(end))) {
            ++end;
        }
        const QByteArray name = field.left(start);
        const QByteArray comparison = field.mid(start, end - start);
        QByteArray value = field.mid(end);
        if (name == "key") {
            m_keys << value;
        } else if (name == "perm") {
            m_perm = sortedLetters(value);
        } else if (name == "path" || name == "dir") {
            m_parts << "path" + comparison + withoutSlash(value);
        } else {
            if (name == "arch" && m_foldProcessors) {
                value = widthOf(value);
            }
            m_parts << name + comparison + (isUnset(value) ? QByteArray("unset") : value);
        }
    }

    bool m_foldProcessors;
    bool m_isWatch = false;
    QByteArray m_perm;
    QList<QByteArray> m_parts;
    QList<QByteArray> m_calls;
    QList<QByteArray> m_keys;
};

} // namespace

bool AuditRuleForm::isRule(const QByteArray &line)
{
    const QByteArray first = wordsOf(line).value(0);
    return first == "-a" || first == "-A" || first == "-w";
}

QByteArray AuditRuleForm::canonical(const QByteArray &line, bool foldProcessors)
{
    return Rule(line, foldProcessors).text();
}

bool AuditRuleForm::isForeign(const QByteArray &line, const QByteArray &machine)
{
    static const QSet<QByteArray> intel{"i386", "i486", "i586", "i686"};
    const auto isArm = [](const QByteArray &name) { return name.startsWith("arm"); };
    for (const QByteArray &word : wordsOf(line)) {
        if (!word.startsWith("arch=")) {
            continue;
        }
        const QByteArray processor = word.mid(int(qstrlen("arch=")));
        const bool own = processor == machine || processor == "b64" || processor == "b32"
            || ((machine == "x86_64" || intel.contains(machine)) && intel.contains(processor))
            || ((machine == "aarch64" || isArm(machine)) && isArm(processor));
        return !own;
    }
    return false;
}

QHash<QByteArray, int> AuditRuleForm::counts(const QList<QByteArray> &lines)
{
    QHash<QByteArray, int> counts;
    QSet<QByteArray> seen;
    for (const QByteArray &line : lines) {
        const QByteArray exact = canonical(line, false);
        if (!seen.contains(exact)) {
            seen.insert(exact);
            ++counts[canonical(line, true)];
        }
    }
    return counts;
}

QList<QByteArray> AuditRuleForm::missing(const QList<QByteArray> &wanted, const QList<QByteArray> &present)
{
    // The kernel's list has no two equal rules, but shows those of different processors alike.
    QHash<QByteArray, int> left;
    for (const QByteArray &line : present) {
        ++left[canonical(line, true)];
    }
    QSet<QByteArray> seen;
    QList<QByteArray> missing;
    for (const QByteArray &line : wanted) {
        const QByteArray exact = canonical(line, false);
        if (!seen.contains(exact) && --left[canonical(line, true)] < 0) {
            missing << line;
        }
        seen.insert(exact);
    }
    return missing;
}

} // namespace AdminEventsHelper
