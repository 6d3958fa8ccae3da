// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#include "configarchive.h"

#include "checksum.h"
#include "fragmentcheck.h"
#include "notifyrccheck.h"
#include "shown.h"
#include "targz.h"
#include "usernotifications.h"

#include <KLocalizedString>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QJsonParseError>

#include <algorithm>
#include <limits>

namespace AdminEventsHelper {

namespace {

constexpr int formatVersion = 1;
constexpr int shownLength = 200;

QString manifestName()
{
    return QStringLiteral("manifest.json");
}
QString productName()
{
    return QStringLiteral("admin-events");
}

QString ownKey()
{
    return QStringLiteral("ownNotificationSettings");
}
QLatin1String ownDirectory()
{
    return QLatin1String("home/.config/");
}

/** The name of a file of the user's own notification settings; empty for any other entry. */
QString ownFileName(const QString &entry)
{
    const QString name = entry.startsWith(ownDirectory()) ? entry.mid(ownDirectory().size()) : QString();
    return NotifyrcCheck::isFileName(name.toStdString()) ? name : QString();
}

QString entryName(const ConfigTarget &target)
{
    return target.path().mid(1);
}

std::optional<ConfigTarget> targetOf(const QString &entry)
{
    const QList<ConfigTarget> targets = ConfigTarget::all();
    for (const ConfigTarget &target : targets) {
        if (entryName(target) == entry) {
            return target;
        }
    }
    const Result<QString> fragment = FragmentCheck::fileNameOf(QLatin1Char('/') + entry);
    return fragment ? std::optional<ConfigTarget>(ConfigArchive::fragmentTarget(fragment.value()))
                    : std::nullopt;
}

bool isKnown(const QString &entry)
{
    return !ownFileName(entry).isEmpty() || targetOf(entry).has_value();
}

Outcome badManifest(const QString &reason)
{
    return Outcome::failure(i18n("The list of files in the archive is not sound: %1", reason));
}

/** The number under a key; none when there is no whole number. */
std::optional<qint64> wholeNumber(const QJsonObject &object, QLatin1String key)
{
    const QJsonValue value = object.value(key);
    // Not toInt(): it takes 1.5 for its default.
    const double number = value.toDouble(-1);
    constexpr double largest = 1e15;
    if (!value.isDouble() || number < 0 || number > largest || number != double(qint64(number))) {
        return std::nullopt;
    }
    return qint64(number);
}

Result<QJsonObject> readManifest(const QByteArray &text)
{
    QJsonParseError error{};
    const QJsonDocument document = QJsonDocument::fromJson(text, &error);
    if (error.error != QJsonParseError::NoError) {
        return badManifest(
            i18n("it is not JSON: %1 (at byte %2)", error.errorString(), QString::number(error.offset)));
    }
    const QJsonObject manifest = document.object();
    if (manifest.value(QLatin1String("product")).toString() != productName()) {
        return Outcome::failure(i18n("The archive does not hold a configuration of security event logging."));
    }
    const std::optional<qint64> format = wholeNumber(manifest, QLatin1String("format"));
    if (!format) {
        return badManifest(i18n("it does not say in which format the archive is"));
    }
    if (*format != formatVersion) {
        return Outcome::failure(i18n("The archive has the format %1; this version reads only the format %2.",
                                     QString::number(*format), QString::number(formatVersion)));
    }
    return manifest;
}

Outcome unknownFile(const QString &name)
{
    return badManifest(i18n("\"%1\" is not a file of this configuration", shown(name, shownLength)));
}

/** The content that a row of the list tells of; none for a file that did not exist. */
Result<std::optional<QByteArray>> readFile(const QJsonObject &row, const TarGz::Entries &entries)
{
    const QString name = row.value(QLatin1String("name")).toString();
    if (!isKnown(name)) {
        return unknownFile(name);
    }
    const QJsonValue present = row.value(QLatin1String("present"));
    if (!present.isBool()) {
        return badManifest(i18n("it does not say whether \"%1\" is present", name));
    }
    if (present.toBool() != entries.contains(name)) {
        return present.toBool()
            ? Outcome::failure(i18n("\"%1\" is missing in the archive.", name))
            : badManifest(i18n("\"%1\" is in the archive although it is said to be absent", name));
    }
    if (!present.toBool()) {
        return std::optional<QByteArray>();
    }
    const QByteArray content = entries.value(name);
    if (wholeNumber(row, QLatin1String("size")) != content.size()
        || row.value(QLatin1String("sha256")).toString() != checksum(content)) {
        return Outcome::failure(i18n("\"%1\" in the archive does not have the size and checksum that it "
                                     "had when the archive was made.",
                                     name));
    }
    return std::optional<QByteArray>(content);
}

Outcome addFile(ConfigArchive &archive, const QString &name, const std::optional<QByteArray> &content)
{
    bool isNew = true;
    if (const QString own = ownFileName(name); !own.isEmpty()) {
        if (!archive.ownSettings || !content) {
            return unknownFile(name);
        }
        isNew = !archive.ownSettings->contains(own);
        archive.ownSettings->insert(own, *content);
        if (archive.ownSettings->size() > NotifyrcFiles::countLimit) {
            return badManifest(i18n("it names more than %1 files of notification settings",
                                    QString::number(NotifyrcFiles::countLimit)));
        }
    } else {
        const ConfigTarget target = *targetOf(name);
        isNew = !archive.files.contains(target.path());
        archive.files.insert(target.path(), {target, content});
    }
    return isNew ? Outcome::success() : badManifest(i18n("\"%1\" stands in it twice", name));
}

void pack(const QString &name, const std::optional<QByteArray> &content, QJsonArray &rows,
          TarGz::Entries &entries)
{
    QJsonObject row{{QStringLiteral("name"), name}, {QStringLiteral("present"), content.has_value()}};
    if (content) {
        row.insert(QStringLiteral("size"), content->size());
        row.insert(QStringLiteral("sha256"), checksum(*content));
        entries.insert(name, *content);
    }
    rows.append(row);
}

} // namespace

ConfigTarget ConfigArchive::fragmentTarget(const QString &fileName)
{
    return {FragmentCheck::directory(), fileName, ConfigTarget::Format::Fragment, 0644, false};
}

Result<QByteArray> ConfigArchive::pack() const
{
    QJsonArray rows;
    TarGz::Entries entries;
    for (const File &file : files) {
        AdminEventsHelper::pack(entryName(file.target), file.content, rows, entries);
    }
    const QMap<QString, QByteArray> own = ownSettings.value_or(QMap<QString, QByteArray>());
    for (auto it = own.cbegin(); it != own.cend(); ++it) {
        AdminEventsHelper::pack(ownDirectory() + it.key(), *it, rows, entries);
    }
    const QJsonObject manifest{{QStringLiteral("format"), formatVersion},
                               {QStringLiteral("product"), productName()},
                               {QStringLiteral("productVersion"), QStringLiteral(ADMINEVENTS_VERSION)},
                               {QStringLiteral("mainConfigVersion"), mainConfigVersion},
                               {ownKey(), ownSettings.has_value()},
                               {QStringLiteral("files"), rows}};
    entries.insert(manifestName(), QJsonDocument(manifest).toJson());
    return TarGz::pack(entries, manifestName());
}

Result<ConfigArchive> ConfigArchive::unpack(const QByteArray &bytes)
{
    Result<TarGz::Entries> unpacked
        = TarGz::unpack(bytes, [](const QString &name) { return name == manifestName() || isKnown(name); });
    if (!unpacked) {
        return unpacked.outcome();
    }
    TarGz::Entries entries = unpacked.takeValue();
    if (!entries.contains(manifestName())) {
        return Outcome::failure(i18n("The archive has no list of its files (\"%1\").", manifestName()));
    }
    const Result<QJsonObject> manifest = readManifest(entries.take(manifestName()));
    if (!manifest) {
        return manifest.outcome();
    }
    const std::optional<qint64> mainVersion
        = wholeNumber(manifest.value(), QLatin1String("mainConfigVersion"));
    if (!mainVersion) {
        return badManifest(i18n("it does not say which version the main configuration has"));
    }
    ConfigArchive archive;
    archive.mainConfigVersion = int(std::min<qint64>(*mainVersion, std::numeric_limits<int>::max()));
    if (manifest.value().value(ownKey()).toBool()) {
        archive.ownSettings.emplace();
    }
    const QJsonArray rows = manifest.value().value(QLatin1String("files")).toArray();
    for (const QJsonValue &row : rows) {
        const QString name = row.toObject().value(QLatin1String("name")).toString();
        const Result<std::optional<QByteArray>> content = readFile(row.toObject(), entries);
        if (!content) {
            return content.outcome();
        }
        if (Outcome added = addFile(archive, name, content.value()); !added) {
            return added;
        }
        entries.remove(name);
    }
    if (!entries.isEmpty()) {
        return badManifest(i18n("it does not name \"%1\", which is in the archive", entries.firstKey()));
    }
    if (archive.files.isEmpty()) {
        return badManifest(i18n("it names no file"));
    }
    return archive;
}

} // namespace AdminEventsHelper
