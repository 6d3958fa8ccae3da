// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#include "fragmentstore.h"

#include "argumentreader.h"
#include "backupstore.h"
#include "configarchive.h"
#include "filechanges.h"
#include "fragmentcheck.h"

#include <KLocalizedString>

#include <optional>

namespace AdminEventsHelper {

namespace {

Outcome applyAll(const QString &rootPath, const QMap<QString, std::optional<QByteArray>> &wanted)
{
    const Result<SafeDirectory> root = SafeDirectory::openRoot(rootPath);
    if (!root) {
        return root.outcome();
    }
    FileChanges changes(root.value());
    for (auto it = wanted.cbegin(); it != wanted.cend(); ++it) {
        if (Outcome added = changes.add(ConfigArchive::fragmentTarget(it.key()), *it); !added) {
            return added;
        }
    }
    const Result<BackupStore> backups = FileChanges::begin(root.value());
    return backups ? changes.carryOut(backups.value()) : backups.outcome();
}

} // namespace

Result<FragmentWriteRequest> FragmentWriteRequest::read(const QVariantMap &arguments)
{
    ArgumentReader reader(arguments);
    const QMap<QString, QString> texts
        = reader.texts(QStringLiteral("notifications"), countLimit, FragmentCheck::sizeLimit);
    if (Outcome complete = reader.outcome(); !complete) {
        return complete;
    }
    FragmentWriteRequest request;
    for (auto it = texts.cbegin(); it != texts.cend(); ++it) {
        const Result<QString> fileName = FragmentCheck::fileNameOf(it.key());
        if (!fileName) {
            return fileName.outcome();
        }
        const QByteArray content = it->toUtf8();
        if (Outcome checked = FragmentCheck::check(fileName.value(), content); !checked) {
            return checked;
        }
        request.fragments.insert(fileName.value(), content);
    }
    if (request.fragments.isEmpty()) {
        return Outcome::failure(i18n("The request names no notification file."));
    }
    return request;
}

Result<FragmentRemoveRequest> FragmentRemoveRequest::read(const QVariantMap &arguments)
{
    ArgumentReader reader(arguments);
    const QStringList paths
        = reader.strings(QStringLiteral("paths"), FragmentWriteRequest::countLimit, FragmentCheck::sizeLimit);
    if (Outcome complete = reader.outcome(); !complete) {
        return complete;
    }
    FragmentRemoveRequest request;
    for (const QString &path : paths) {
        const Result<QString> fileName = FragmentCheck::fileNameOf(path);
        if (!fileName) {
            return fileName.outcome();
        }
        request.fileNames << fileName.value();
    }
    request.fileNames.removeDuplicates();
    if (request.fileNames.isEmpty()) {
        return Outcome::failure(i18n("The request names no notification file."));
    }
    return request;
}

FragmentStore::FragmentStore(const QString &root)
    : m_root(root)
{
}

Outcome FragmentStore::write(const FragmentWriteRequest &request) const
{
    QMap<QString, std::optional<QByteArray>> wanted;
    for (auto it = request.fragments.cbegin(); it != request.fragments.cend(); ++it) {
        wanted.insert(it.key(), *it);
    }
    return applyAll(m_root, wanted);
}

Outcome FragmentStore::remove(const FragmentRemoveRequest &request) const
{
    QMap<QString, std::optional<QByteArray>> wanted;
    for (const QString &fileName : request.fileNames) {
        wanted.insert(fileName, std::nullopt);
    }
    return applyAll(m_root, wanted);
}

} // namespace AdminEventsHelper
