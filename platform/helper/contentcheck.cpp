// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#include "contentcheck.h"

#include "auditsettingsstore.h"
#include "backupstore.h"
#include "fragmentcheck.h"
#include "loggingcheck.h"
#include "rotationcheck.h"
#include "shown.h"
#include "wholefile.h"

#include <KLocalizedString>
#include <QJsonDocument>
#include <QJsonParseError>
#include <QStringList>

#include <algorithm>

namespace AdminEventsHelper {

namespace {

Outcome checkEventSettings(const QString &path, const QByteArray &content)
{
    if (content.isEmpty()) {
        return Outcome::success();
    }
    QJsonParseError error{};
    const QJsonDocument document = QJsonDocument::fromJson(content, &error);
    if (error.error != QJsonParseError::NoError) {
        return Outcome::failure(i18n("The new content of \"%1\" is not JSON: %2 (at byte %3)", path,
                                     error.errorString(), QString::number(error.offset)));
    }
    if (!document.isObject()) {
        return Outcome::failure(i18n("The new content of \"%1\" is not a JSON object.", path));
    }
    return Outcome::success();
}

bool isAddedList(const QByteArray &word)
{
    const QList<QByteArray> parts = word.split(',');
    if (parts.size() != 2 || !parts.contains("always")) {
        return false;
    }
    const QByteArray list = parts.at(0) == "always" ? parts.at(1) : parts.at(0);
    // "exclude" and "filesystem" take events out of the record.
    return list == "exit" || list == "task" || list == "user" || list == "io_uring";
}

bool isPermissions(const QByteArray &word)
{
    return !word.isEmpty()
        && std::all_of(word.cbegin(), word.cend(), [](char c) { return QByteArray("rwxa").contains(c); });
}

bool isValue(const QByteArray &word)
{
    return !word.isEmpty() && !word.startsWith('-');
}

// Every option is looked at: the program that loads the rules takes several on a line, also those that
// delete.
bool isRule(const QByteArray &line)
{
    QByteArray plain = line;
    plain.replace('\t', ' ');
    QList<QByteArray> words = plain.split(' ');
    words.removeAll(QByteArray());
    if (words.size() < 2 || words.size() % 2 != 0) {
        return false;
    }
    const bool isWatch = words.at(0) == "-w";
    if (isWatch ? !words.at(1).startsWith('/') : (words.at(0) != "-a" || !isAddedList(words.at(1)))) {
        return false;
    }
    for (int i = 2; i < words.size(); i += 2) {
        const QByteArray &option = words.at(i);
        const QByteArray &value = words.at(i + 1);
        const bool known = isWatch
            ? (option == "-p" && isPermissions(value)) || (option == "-k" && isValue(value))
            : QList<QByteArray>({"-F", "-C", "-S", "-k"}).contains(option) && isValue(value);
        if (!known) {
            return false;
        }
    }
    return true;
}

bool hasControlCharacter(const QByteArray &line)
{
    return std::any_of(line.cbegin(), line.cend(), [](char c) {
        const auto byte = static_cast<unsigned char>(c);
        return (byte < 0x20 && c != '\t') || byte == 0x7f;
    });
}

Outcome checkAuditRules(const QString &path, const QByteArray &content)
{
    const QList<QByteArray> lines = content.split('\n');
    for (int i = 0; i < lines.size(); ++i) {
        const QByteArray trimmed = lines.at(i).trimmed();
        const bool isRemark = trimmed.isEmpty() || trimmed.startsWith('#');
        if (hasControlCharacter(lines.at(i)) || !(isRemark || isRule(lines.at(i)))) {
            return Outcome::failure(
                i18n("Line %1 of the new content of \"%2\" is not a rule that may be written: %3",
                     QString::number(i + 1), path, shown(lines.at(i))));
        }
    }
    return Outcome::success();
}

} // namespace

bool ContentCheck::isAuditRule(const QByteArray &line)
{
    return !hasControlCharacter(line) && isRule(line);
}

Result<QList<QByteArray>> ContentCheck::formerTexts(const SafeDirectory &root, const ConfigTarget &target)
{
    QList<QByteArray> texts;
    if (target.format != ConfigTarget::Format::MainConfiguration
        && target.format != ConfigTarget::Format::Rotation) {
        return texts;
    }
    const Result<SafeDirectory> directory = root.descend(target.directory);
    if (!directory) {
        return directory.outcome();
    }
    const Result<std::optional<QByteArray>> present = WholeFile::read(directory.value(), target.fileName);
    if (!present) {
        return present.outcome();
    }
    if (present.value()) {
        texts << *present.value();
    }
    return texts + BackupStore::kept(root, target.fileName);
}

Outcome ContentCheck::check(const ConfigTarget &target, const QByteArray &content,
                            const QList<QByteArray> &former)
{
    const QString path = target.path();
    if (content.size() > sizeLimit) {
        return Outcome::failure(
            i18n("The new content of \"%1\" is larger than %2 bytes.", path, QString::number(sizeLimit)));
    }
    if (const int position = content.indexOf('\0'); position >= 0) {
        return Outcome::failure(i18n("The new content of \"%1\" holds a zero byte (at byte %2).", path,
                                     QString::number(position)));
    }
    switch (target.format) {
    case ConfigTarget::Format::EventSettings:
        return checkEventSettings(path, content);
    case ConfigTarget::Format::AuditRules:
        return checkAuditRules(path, content);
    case ConfigTarget::Format::MainConfiguration:
        return LoggingCheck::check(path, content, former);
    case ConfigTarget::Format::Rotation:
        return RotationCheck::check(path, content, former);
    case ConfigTarget::Format::SubjectRules:
        return AuditSettingsStore::check(path, content);
    case ConfigTarget::Format::Fragment:
        return FragmentCheck::check(target.fileName, content);
    }
    return Outcome::success();
}

} // namespace AdminEventsHelper
