// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#include "changejournal.h"

#include "checksum.h"
#include "fragmentcheck.h"
#include "helperlog.h"
#include "temporaryname.h"
#include "wholefile.h"

#include <KLocalizedString>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>

namespace AdminEventsHelper {

namespace {

QString noteName()
{
    return QStringLiteral("pending-changes");
}

/** Splits a path into its directory and file; false when it is not one that this program may change. */
bool isOurs(const QString &path, QStringList &directory, QString &name)
{
    const QList<ConfigTarget> targets = ConfigTarget::all();
    const bool known = std::any_of(targets.cbegin(), targets.cend(),
                                   [&path](const ConfigTarget &target) { return target.path() == path; });
    directory = path.mid(1).split(QLatin1Char('/'));
    name = directory.takeLast();
    return known || FragmentCheck::fileNameOf(path).ok();
}

Outcome takeBack(const SafeDirectory &directory, const QString &name, const ChangeJournal::Row &row)
{
    const Result<std::optional<QByteArray>> present = WholeFile::read(directory, name);
    if (!present) {
        return present.outcome();
    }
    const QString found = present.value() ? checksum(*present.value()) : QString();
    const bool hasFormer = !row.kept.isEmpty();
    if (hasFormer && !directory.mayHave(row.kept)) {
        return Outcome::success(); // it was never replaced
    }
    if (hasFormer) {
        const Result<std::optional<QByteArray>> former = WholeFile::read(directory, row.kept);
        if (!former) {
            return former.outcome();
        }
        // A second name of the same file: the replacement was about to happen.
        const bool isFormer = present.value() && former.value() && *present.value() == *former.value();
        if (found != row.sha256 && !isFormer) {
            logLine(LOG_WARNING, row.path + QLatin1String(" has been changed since; it stays"));
            return directory.remove(row.kept);
        }
        // Between two names of one file a rename does nothing.
        if (isFormer) {
            return directory.remove(row.kept);
        }
        return directory.rename(row.kept, name);
    }
    return present.value() && found == row.sha256 ? directory.remove(name) : Outcome::success();
}

Outcome takeBackAll(const SafeDirectory &root, const QJsonArray &rows)
{
    for (const QJsonValue &value : rows) {
        const QJsonObject object = value.toObject();
        const ChangeJournal::Row row{object.value(QLatin1String("path")).toString(),
                                     object.value(QLatin1String("kept")).toString(),
                                     object.value(QLatin1String("sha256")).toString()};
        QStringList names;
        QString name;
        if (!isOurs(row.path, names, name)
            || (!row.kept.isEmpty() && !TemporaryName::matches(row.kept, name))) {
            logLine(LOG_WARNING, QLatin1String("unknown pending change: ") + row.path);
            continue;
        }
        if (!root.mayHavePath(names)) {
            continue;
        }
        const Result<SafeDirectory> directory = root.descend(names);
        if (!directory) {
            return directory.outcome();
        }
        Outcome done = takeBack(directory.value(), name, row);
        if (done) {
            done = directory.value().sync();
        }
        if (!done) {
            return done;
        }
    }
    return Outcome::success();
}

Outcome removeLeftovers(const SafeDirectory &root, const QStringList &names)
{
    if (!root.mayHavePath(names)) {
        return Outcome::success();
    }
    const Result<SafeDirectory> directory = root.descend(names);
    const Result<QStringList> entries = directory ? directory.value().entries() : directory.outcome();
    if (!entries) {
        return entries.outcome();
    }
    const QString prefix = QLatin1Char('/') + names.join(QLatin1Char('/')) + QLatin1Char('/');
    for (const QString &entry : entries.value()) {
        const QString owner = TemporaryName::fileNameOf(entry);
        QStringList path;
        QString name;
        if (owner.isEmpty() || !isOurs(prefix + owner, path, name)) {
            continue;
        }
        if (Outcome removed = directory.value().remove(entry); !removed) {
            return removed;
        }
    }
    return Outcome::success();
}

/** Removes what was being kept or noted; nobody else is at it, since the directory is locked. */
Outcome removeUnfinished(const SafeDirectory &directory)
{
    const Result<QStringList> entries = directory.entries();
    if (!entries) {
        return entries.outcome();
    }
    for (const QString &entry : entries.value()) {
        if (TemporaryName::fileNameOf(entry).isEmpty()) {
            continue;
        }
        if (Outcome removed = directory.remove(entry); !removed) {
            return removed;
        }
    }
    return Outcome::success();
}

} // namespace

ChangeJournal::Row ChangeJournal::rowFor(const ConfigTarget &target, const QString &kept,
                                         const std::optional<QByteArray> &content)
{
    return {target.path(), kept, content ? checksum(*content) : QString()};
}

Outcome ChangeJournal::write(const SafeDirectory &directory, const QList<Row> &rows)
{
    QJsonArray array;
    for (const Row &row : rows) {
        array.append(QJsonObject{{QStringLiteral("path"), row.path},
                                 {QStringLiteral("kept"), row.kept},
                                 {QStringLiteral("sha256"), row.sha256}});
    }
    if (Outcome cleaned = TemporaryName::removeLeftovers(directory, noteName()); !cleaned) {
        return cleaned;
    }
    const QString temporary = TemporaryName::make(noteName());
    const Result<FileDescriptor> file = directory.createExclusive(temporary);
    if (!file) {
        return file.outcome();
    }
    Outcome outcome = writeAndFlush(file.value().get(), QJsonDocument(array).toJson(QJsonDocument::Compact),
                                    directory.pathOf(noteName()));
    if (outcome) {
        outcome = directory.rename(temporary, noteName());
    }
    if (!outcome) {
        // The first failure is the one to tell; a leftover goes with the next note.
        (void)directory.remove(temporary);
        return outcome;
    }
    return directory.sync();
}

Outcome ChangeJournal::remove(const SafeDirectory &directory)
{
    if (!directory.mayHave(noteName())) {
        return Outcome::success();
    }
    const Outcome removed = directory.remove(noteName());
    return removed ? directory.sync() : removed;
}

Outcome ChangeJournal::recover(const SafeDirectory &root, const SafeDirectory &directory)
{
    const Result<std::optional<QByteArray>> note = WholeFile::read(directory, noteName());
    if (!note) {
        return note.outcome();
    }
    if (note.value()) {
        logLine(LOG_WARNING, QStringLiteral("changes that were interrupted are taken back"));
        if (Outcome done = takeBackAll(root, QJsonDocument::fromJson(*note.value()).array()); !done) {
            return done;
        }
        if (Outcome removed = remove(directory); !removed) {
            return removed;
        }
    }
    QList<QStringList> directories{FragmentCheck::directory()};
    const QList<ConfigTarget> targets = ConfigTarget::all();
    for (const ConfigTarget &target : targets) {
        if (!directories.contains(target.directory)) {
            directories << target.directory;
        }
    }
    for (const QStringList &names : directories) {
        if (Outcome cleaned = removeLeftovers(root, names); !cleaned) {
            return cleaned;
        }
    }
    return removeUnfinished(directory);
}

} // namespace AdminEventsHelper
