// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "watchpathcheck.h"

#include <textcheck.h>

#include <KLocalizedString>

#include <QFile>

#include <algorithm>
#include <cerrno>
#include <initializer_list>

#include <sys/stat.h>

namespace {
/// The path as it can stand in a message.
QString shown(QString path)
{
    std::replace_if(path.begin(), path.end(), TextCheck::isControl, QChar(QChar::ReplacementCharacter));
    return path;
}

/// Names that are no UTF-8 arrive with replacement characters or halves of pairs.
bool isText(const QString &path)
{
    return !path.contains(QChar::ReplacementCharacter) && TextCheck::survivesUtf8(path);
}

/// The comparison that auditctl(8) would split the path at, empty when there is none.
QString comparisonIn(const QString &path)
{
    for (const char *comparison : {"!=", ">=", "<=", "&="}) {
        if (path.contains(QLatin1String(comparison))) {
            return QString::fromLatin1(comparison);
        }
    }
    return {};
}

/// 0, or why the entry cannot be looked at.
int lookUp(const QString &path, bool followLink, bool &isDirectory)
{
    struct stat entry = {};
    const QByteArray name = QFile::encodeName(path);
    const int failed = followLink ? ::stat(name.constData(), &entry) : ::lstat(name.constData(), &entry);
    isDirectory = failed == 0 && S_ISDIR(entry.st_mode);
    return failed == 0 ? 0 : errno;
}
} // namespace

QString WatchPathCheck::problem(const QString &path, Target target)
{
    if (TextCheck::holdsControl(path)) {
        return i18n("“%1” cannot be watched: it holds a line break or another control character.",
                    shown(path));
    }
    if (!path.startsWith(QLatin1Char('/'))) {
        return i18n("“%1” cannot be watched: it is not an absolute path.", path);
    }
    if (!isText(path)) {
        return i18n("“%1” cannot be watched: its name is not valid UTF-8.", path);
    }
    if (std::any_of(path.begin(), path.end(), [](QChar c) { return c.isSpace(); })) {
        return i18n("“%1” cannot be watched: it holds a blank, at which audit rules are split.", path);
    }
    if (path.contains(QLatin1Char(','))) {
        return i18n("“%1” cannot be watched: it holds a comma, at which the list of paths is split.", path);
    }
    if (const QString comparison = comparisonIn(path); !comparison.isEmpty()) {
        return i18n("“%1” cannot be watched: it holds “%2”, which audit rules take for a comparison.", path,
                    comparison);
    }
    const bool isRoot = path.size() == 1;
    if (path.endsWith(QLatin1Char('/')) && !(isRoot && target == Target::Directory)) {
        return i18n("“%1” cannot be watched: it ends with a slash.", path);
    }
    if (const int size = path.toUtf8().size(); size > longestPath) {
        return i18n("“%1” cannot be watched: it is %2 bytes long, and the key of an audit rule may have %3.",
                    path, QString::number(size), QString::number(longestPath));
    }
    return {};
}

WatchPathCheck::Presence WatchPathCheck::presence(const QString &path)
{
    const auto isGone = [](int error) { return error == ENOENT || error == ENOTDIR; };
    bool isDirectory = false;
    if (!isGone(lookUp(path, false, isDirectory))) {
        return Presence::Present;
    }
    const QString parent = path.left(qMax(1, path.lastIndexOf(QLatin1Char('/'))));
    const int error = lookUp(parent, true, isDirectory);
    return isGone(error) || (error == 0 && !isDirectory) ? Presence::ParentMissing : Presence::Missing;
}

QString WatchPathCheck::note(const QString &path, Target target)
{
    switch (presence(path)) {
    case Presence::Present:
        return {};
    case Presence::ParentMissing:
        return i18n("“%1” is not watched until the directory that holds it exists and the logging service is "
                    "restarted.",
                    path);
    case Presence::Missing:
        break;
    }
    // A rule made for a path that is not there watches the path, and nothing below it.
    return target == Target::File
        ? i18n("“%1” does not exist yet. It is watched as soon as it is created.", path)
        : i18n("“%1” does not exist yet. What happens inside of it is recorded once it has been created and "
               "the logging service is restarted.",
               path);
}
