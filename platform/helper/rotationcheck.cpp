// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#include "rotationcheck.h"

#include "logfilepath.h"
#include "shown.h"

#include <KLocalizedString>
#include <QSet>

#include <algorithm>

namespace AdminEventsHelper {

namespace {

// Of the rotation file that is installed with the page.
const QByteArray shippedScript("postrotate\ninvoke-rc.d syslog-ng reload > /dev/null");

bool isScript(const QByteArray &word)
{
    static const QSet<QByteArray> words{"prerotate", "postrotate", "firstaction", "lastaction", "preremove"};
    return words.contains(word);
}

bool isPrivileged(const QByteArray &word)
{
    static const QSet<QByteArray> words{"compresscmd", "uncompresscmd", "compressoptions", "include",
                                        "su",          "olddir",        "createolddir",    "mail"};
    return words.contains(word);
}

/** Directives whose value becomes a part of a file's name. */
bool isNamePart(const QByteArray &word)
{
    static const QSet<QByteArray> words{"extension", "addextension", "compressext", "dateformat"};
    return words.contains(word);
}

bool isDirective(const QByteArray &word)
{
    static const QSet<QByteArray> words{"hourly",          "daily",          "weekly",
                                        "monthly",         "yearly",         "rotate",
                                        "start",           "size",           "minsize",
                                        "maxsize",         "maxage",         "minage",
                                        "create",          "nocreate",       "copy",
                                        "nocopy",          "copytruncate",   "nocopytruncate",
                                        "renamecopy",      "norenamecopy",   "compress",
                                        "nocompress",      "delaycompress",  "nodelaycompress",
                                        "dateext",         "nodateext",      "dateyesterday",
                                        "datehourago",     "ifempty",        "notifempty",
                                        "missingok",       "nomissingok",    "ignoreduplicates",
                                        "mailfirst",       "maillast",       "nomail",
                                        "noolddir",        "nocreateolddir", "sharedscripts",
                                        "nosharedscripts", "shred",          "noshred",
                                        "shredcycles",     "allowhardlink",  "noallowhardlink",
                                        "tabooext",        "taboopat"};
    return words.contains(word) || isNamePart(word) || isPrivileged(word);
}

/** The words of a line; braces are words of their own, quotes keep blanks together and are kept. */
QList<QByteArray> wordsOf(const QByteArray &line)
{
    QList<QByteArray> words;
    QByteArray word;
    char quote = 0;
    for (const char c : line) {
        const bool isBlank = c == ' ' || c == '\t' || c == '\r';
        const bool isBrace = c == '{' || c == '}';
        if (quote == 0 && (isBlank || isBrace)) {
            if (!word.isEmpty()) {
                words << word;
            }
            word.clear();
            if (isBrace) {
                words << QByteArray(1, c);
            }
            continue;
        }
        quote = quote == c ? char(0) : (quote == 0 && (c == '"' || c == '\'') ? c : quote);
        word += c;
    }
    if (!word.isEmpty()) {
        words << word;
    }
    return words;
}

struct Problem
{
    int line = 0;
    QString text;
};

/** Reads a rotation file and collects what needs to be known from a former one. */
class Reader
{
public:
    /** The first line that is not sound; its line is 0 when all are. */
    Problem read(const QByteArray &text)
    {
        const QList<QByteArray> lines = text.split('\n');
        for (m_line = 1; m_line <= lines.size() && m_problem.text.isEmpty(); ++m_line) {
            const QByteArray line = lines.at(m_line - 1).trimmed();
            if (!m_scriptName.isEmpty()) {
                readScript(line);
            } else if (!line.startsWith('#')) {
                readWords(wordsOf(line), line);
            }
        }
        if (m_problem.text.isEmpty() && (m_inSection || !m_scriptName.isEmpty() || !m_files.isEmpty())) {
            m_line = lines.size();
            fail(i18n("the end of a section or script is missing"));
        }
        return m_problem;
    }

    /** With the line each stands on. */
    const QList<QPair<QByteArray, int>> &privileges() const { return m_privileges; }

private:
    void fail(const QString &text)
    {
        if (m_problem.text.isEmpty()) {
            m_problem = {m_line, text};
        }
    }

    void readScript(const QByteArray &line)
    {
        if (line != "endscript") {
            // The page drops comments and blanks; a comment after a continued line is none.
            if (m_script.endsWith('\\') || (!line.isEmpty() && !line.startsWith('#'))) {
                m_script += '\n' + line.simplified();
            }
            return;
        }
        m_privileges.append({m_scriptName + m_script, m_scriptLine});
        m_scriptName.clear();
        m_script.clear();
    }

    void readWords(QList<QByteArray> words, const QByteArray &line)
    {
        while (!words.isEmpty() && m_problem.text.isEmpty()) {
            const QByteArray first = words.first();
            if (first == "{") {
                if (m_inSection || m_files.isEmpty()) {
                    fail(i18n("a section begins without files"));
                }
                m_inSection = true;
                m_files.clear();
                words.removeFirst();
            } else if (first == "}") {
                if (!m_inSection) {
                    fail(i18n("a section ends that did not begin"));
                }
                m_inSection = false;
                words.removeFirst();
            } else if (!m_inSection
                       && (first.startsWith('/') || first.startsWith('"') || first.startsWith('\''))) {
                m_files << first;
                lookAtFile(first);
                words.removeFirst();
            } else if (!m_files.isEmpty()) {
                fail(i18n("\"%1\" is no absolute path of a file", shown(first)));
            } else {
                const int brace = words.indexOf("}");
                readDirective(words.mid(0, brace), line);
                words = brace < 0 ? QList<QByteArray>() : words.mid(brace);
            }
        }
    }

    void readDirective(const QList<QByteArray> &words, const QByteArray &line)
    {
        const QByteArray name = words.first().split('=').first();
        if (isScript(name)) {
            if (words.size() > 1) {
                fail(i18n("a script begins on the line of its directive"));
            }
            m_scriptName = name;
            m_scriptLine = m_line;
            return;
        }
        if (!isDirective(name)) {
            fail(i18n("\"%1\" is no directive", shown(words.first())));
        }
        const bool isPath = std::any_of(words.cbegin() + 1, words.cend(),
                                        [](const QByteArray &word) { return word.contains('/'); });
        if (isPrivileged(name) || (isNamePart(name) && isPath) || line.contains('\\')) {
            m_privileges.append({line.simplified(), m_line});
        }
    }

    void lookAtFile(const QByteArray &word)
    {
        QByteArray file = word;
        if (file.startsWith('"') || file.startsWith('\'')) {
            file = file.mid(1, file.size() - 2);
        }
        const bool isLog = isLogFilePath(file) && !file.contains('$')
            && (file.startsWith("/var/log/") || file.startsWith("/vortan/log/"));
        if (!isLog) {
            m_privileges.append({file, m_line});
        }
    }

    QList<QPair<QByteArray, int>> m_privileges;
    QList<QByteArray> m_files;
    QByteArray m_scriptName;
    QByteArray m_script;
    int m_scriptLine = 0;
    int m_line = 0;
    bool m_inSection = false;
    Problem m_problem;
};

} // namespace

Outcome RotationCheck::check(const QString &path, const QByteArray &content, const QList<QByteArray> &former)
{
    if (former.contains(content)) {
        return Outcome::success();
    }
    Reader reader;
    if (const Problem problem = reader.read(content); !problem.text.isEmpty()) {
        return Outcome::failure(i18n("Line %1 of the new content of \"%2\": %3.",
                                     QString::number(problem.line), path, problem.text));
    }
    QSet<QByteArray> known{shippedScript};
    for (const QByteArray &text : former) {
        Reader before;
        (void)before.read(text);
        for (const auto &[privilege, line] : before.privileges()) {
            known.insert(privilege);
        }
    }
    for (const auto &[privilege, line] : reader.privileges()) {
        if (!known.contains(privilege)) {
            return Outcome::failure(i18n(
                "Line %1 of the new content of \"%2\" could run programs or change files that are no logs, "
                "which the present one does not: %3",
                QString::number(line), path, shown(QByteArray(privilege).replace('\n', "; "))));
        }
    }
    return Outcome::success();
}

} // namespace AdminEventsHelper
