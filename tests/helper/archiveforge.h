// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <QByteArray>
#include <QCryptographicHash>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QList>
#include <QString>

#include <archive.h>
#include <archive_entry.h>

/** One entry of an archive, sound or not. */
struct ForgedEntry
{
    QByteArray name;
    QByteArray content = QByteArray();
    unsigned int type = AE_IFREG;
    QByteArray hardLinkTo = QByteArray();
    QByteArray symbolicLinkTo = QByteArray();
};

inline la_ssize_t appendForged(archive * /*writer*/, void *bytes, const void *block, size_t size)
{
    static_cast<QByteArray *>(bytes)->append(static_cast<const char *>(block), int(size));
    return la_ssize_t(size);
}

/** Writes what an honest program would not; nothing is checked. */
inline QByteArray forgeArchive(const QList<ForgedEntry> &entries, int filter = ARCHIVE_FILTER_GZIP,
                               int layers = 1)
{
    QByteArray bytes;
    archive *const writer = archive_write_new();
    for (int i = 0; i < layers; ++i) {
        archive_write_add_filter(writer, filter);
    }
    archive_write_set_format_gnutar(writer);
    archive_write_set_bytes_in_last_block(writer, 1);
    archive_write_open2(writer, &bytes, nullptr, appendForged, nullptr, nullptr);
    for (const ForgedEntry &forged : entries) {
        archive_entry *const entry = archive_entry_new();
        archive_entry_set_pathname(entry, forged.name.constData());
        archive_entry_set_filetype(entry, forged.type);
        archive_entry_set_perm(entry, 0644);
        archive_entry_set_size(entry, forged.type == AE_IFREG ? forged.content.size() : 0);
        if (!forged.hardLinkTo.isEmpty()) {
            archive_entry_set_hardlink(entry, forged.hardLinkTo.constData());
        }
        if (!forged.symbolicLinkTo.isEmpty()) {
            archive_entry_set_symlink(entry, forged.symbolicLinkTo.constData());
        }
        archive_write_header(writer, entry);
        archive_write_data(writer, forged.content.constData(), size_t(forged.content.size()));
        archive_entry_free(entry);
    }
    archive_write_close(writer);
    archive_write_free(writer);
    return bytes;
}

/** A row of the archive's list of files. */
inline QJsonObject manifestRow(const QByteArray &name, const QByteArray &content)
{
    return {{QStringLiteral("name"), QString::fromUtf8(name)},
            {QStringLiteral("present"), true},
            {QStringLiteral("size"), content.size()},
            {QStringLiteral("sha256"),
             QString::fromLatin1(QCryptographicHash::hash(content, QCryptographicHash::Sha256).toHex())}};
}

inline QJsonObject absentRow(const QByteArray &name)
{
    return {{QStringLiteral("name"), QString::fromUtf8(name)}, {QStringLiteral("present"), false}};
}

inline QJsonObject manifestOf(const QJsonArray &rows)
{
    return {{QStringLiteral("format"), 1},
            {QStringLiteral("product"), QStringLiteral("admin-events")},
            {QStringLiteral("productVersion"), QStringLiteral("0")},
            {QStringLiteral("mainConfigVersion"), 1},
            {QStringLiteral("files"), rows}};
}

inline ForgedEntry manifestEntry(const QJsonObject &manifest)
{
    return {"manifest.json", QJsonDocument(manifest).toJson()};
}

/** An archive that is as it should be, of these files; the manifest may be altered. */
inline QByteArray soundArchive(const QList<ForgedEntry> &files, const QString &key = QString(),
                               const QJsonValue &value = QJsonValue())
{
    QJsonArray rows;
    for (const ForgedEntry &file : files) {
        rows.append(manifestRow(file.name, file.content));
    }
    QJsonObject manifest = manifestOf(rows);
    if (!key.isEmpty()) {
        manifest.insert(key, value);
    }
    return forgeArchive(QList<ForgedEntry>{manifestEntry(manifest)} + files);
}
