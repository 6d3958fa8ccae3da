// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#include "targz.h"

#include "shown.h"

#include <KLocalizedString>
#include <QtEndian>

#include <algorithm>
#include <archive.h>
#include <archive_entry.h>
#include <ctime>
#include <memory>

namespace AdminEventsHelper {

using namespace TarGz;

namespace {

using Reader = std::unique_ptr<archive, int (*)(archive *)>;
using Writer = std::unique_ptr<archive, int (*)(archive *)>;
using Entry = std::unique_ptr<archive_entry, void (*)(archive_entry *)>;

constexpr int fileMode = 0600;

QString reasonOf(archive *from)
{
    const char *const text = archive_error_string(from);
    return text == nullptr ? i18n("unknown error") : shown(QString::fromLocal8Bit(text));
}

Outcome unreadable(archive *from)
{
    return Outcome::failure(i18n("The archive is damaged or incomplete: %1", reasonOf(from)));
}

Outcome tooLarge()
{
    return Outcome::failure(i18n("The archive holds more than %1 bytes, or more than %2 times its own size.",
                                 QString::number(contentLimit), QString::number(ratioLimit)));
}

// The whole stream first: whatever the archive says of itself, no more than the limit is ever unpacked.
Result<QByteArray> uncompress(const QByteArray &bytes)
{
    const Reader reader(archive_read_new(), archive_read_free);
    archive_read_support_filter_gzip(reader.get());
    archive_read_support_format_raw(reader.get());
    archive_entry *header = nullptr;
    if (archive_read_open_memory(reader.get(), bytes.constData(), static_cast<size_t>(bytes.size()))
            != ARCHIVE_OK
        || archive_read_next_header(reader.get(), &header) != ARCHIVE_OK) {
        return unreadable(reader.get());
    }
    // Two layers mean one stream inside the other.
    if (archive_filter_count(reader.get()) != 2
        || archive_filter_code(reader.get(), 0) != ARCHIVE_FILTER_GZIP) {
        return Outcome::failure(i18n("The file is not a tar archive compressed with gzip."));
    }
    const qint64 limit
        = std::min<qint64>(contentLimit, std::max<qint64>(ratioFloor, qint64(bytes.size()) * ratioLimit));
    QByteArray content;
    for (;;) {
        const void *block = nullptr;
        size_t size = 0;
        la_int64_t offset = 0;
        const int status = archive_read_data_block(reader.get(), &block, &size, &offset);
        if (status == ARCHIVE_EOF) {
            break;
        }
        if (status != ARCHIVE_OK) {
            return unreadable(reader.get());
        }
        if (content.size() + qint64(size) > limit) {
            return tooLarge();
        }
        content.append(static_cast<const char *>(block), static_cast<int>(size));
    }
    // A stream that lost its very end is not noticed otherwise: it ends with the size of what it holds.
    constexpr int sizeBytes = 4;
    if (bytes.size() < sizeBytes
        || qFromLittleEndian<quint32>(bytes.constData() + bytes.size() - sizeBytes)
            != quint32(content.size())) {
        return Outcome::failure(i18n("The archive is damaged or incomplete: %1",
                                     i18n("its size is not the one that it had when it was made")));
    }
    return content;
}

Result<QByteArray> readData(archive *reader, const QString &name)
{
    QByteArray content;
    for (;;) {
        const void *block = nullptr;
        size_t size = 0;
        la_int64_t offset = 0;
        const int status = archive_read_data_block(reader, &block, &size, &offset);
        if (status == ARCHIVE_EOF) {
            return content;
        }
        if (status != ARCHIVE_OK) {
            return unreadable(reader);
        }
        if (offset != content.size() || content.size() + qint64(size) > entryLimit) {
            return Outcome::failure(i18n("\"%1\" in the archive is larger than %2 bytes.", shown(name),
                                         QString::number(entryLimit)));
        }
        content.append(static_cast<const char *>(block), static_cast<int>(size));
    }
}

Result<QString> nameOf(archive_entry *entry, const std::function<bool(const QString &)> &isKnown)
{
    const char *const text = archive_entry_pathname_utf8(entry);
    if (text == nullptr) {
        return Outcome::failure(i18n("An entry of the archive bears a name that is not text in UTF-8."));
    }
    const QString name = QString::fromUtf8(text);
    if (!isKnown(name)) {
        return Outcome::failure(
            i18n("\"%1\" in the archive is not a file of this configuration.", shown(name)));
    }
    if (archive_entry_filetype(entry) != AE_IFREG || archive_entry_hardlink_utf8(entry) != nullptr
        || archive_entry_symlink_utf8(entry) != nullptr || archive_entry_sparse_count(entry) != 0) {
        return Outcome::failure(i18n("\"%1\" in the archive is not a regular file.", shown(name)));
    }
    if (!archive_entry_size_is_set(entry) || archive_entry_size(entry) > entryLimit) {
        return Outcome::failure(
            i18n("\"%1\" in the archive is larger than %2 bytes.", shown(name), QString::number(entryLimit)));
    }
    return name;
}

la_ssize_t appendTo(archive * /*writer*/, void *bytes, const void *block, size_t size)
{
    static_cast<QByteArray *>(bytes)->append(static_cast<const char *>(block), static_cast<int>(size));
    return static_cast<la_ssize_t>(size);
}

bool addEntry(archive *writer, const QString &name, const QByteArray &content)
{
    const Entry entry(archive_entry_new(), archive_entry_free);
    archive_entry_set_pathname(entry.get(), name.toLatin1().constData());
    archive_entry_set_filetype(entry.get(), AE_IFREG);
    archive_entry_set_perm(entry.get(), fileMode);
    archive_entry_set_mtime(entry.get(), std::time(nullptr), 0);
    archive_entry_set_size(entry.get(), content.size());
    return archive_write_header(writer, entry.get()) == ARCHIVE_OK
        && archive_write_data(writer, content.constData(), static_cast<size_t>(content.size()))
        == content.size();
}

} // namespace

Result<TarGz::Entries> TarGz::unpack(const QByteArray &archive,
                                     const std::function<bool(const QString &)> &isKnown)
{
    if (archive.isEmpty()) {
        return Outcome::failure(i18n("The archive is empty."));
    }
    if (archive.size() > archiveLimit) {
        return Outcome::failure(i18n("The archive is larger than %1 bytes.", QString::number(archiveLimit)));
    }
    const Result<QByteArray> tar = uncompress(archive);
    if (!tar) {
        return tar.outcome();
    }
    const Reader reader(archive_read_new(), archive_read_free);
    archive_read_support_format_tar(reader.get());
    if (archive_read_open_memory(reader.get(), tar.value().constData(),
                                 static_cast<size_t>(tar.value().size()))
        != ARCHIVE_OK) {
        return unreadable(reader.get());
    }
    Entries entries;
    for (;;) {
        archive_entry *header = nullptr;
        const int status = archive_read_next_header(reader.get(), &header);
        if (status == ARCHIVE_EOF) {
            return entries;
        }
        if (status != ARCHIVE_OK) {
            return unreadable(reader.get());
        }
        const Result<QString> name = nameOf(header, isKnown);
        if (!name) {
            return name.outcome();
        }
        if (entries.contains(name.value())) {
            return Outcome::failure(i18n("\"%1\" stands twice in the archive.", name.value()));
        }
        if (entries.size() >= countLimit) {
            return Outcome::failure(
                i18n("The archive holds more than %1 files.", QString::number(countLimit)));
        }
        Result<QByteArray> content = readData(reader.get(), name.value());
        if (!content) {
            return content.outcome();
        }
        entries.insert(name.value(), content.takeValue());
    }
}

Result<QByteArray> TarGz::pack(const Entries &entries, const QString &first)
{
    QByteArray bytes;
    const Writer writer(archive_write_new(), archive_write_free);
    archive_write_add_filter_gzip(writer.get());
    archive_write_set_format_pax_restricted(writer.get());
    // No zeros after the end.
    archive_write_set_bytes_in_last_block(writer.get(), 1);
    bool written
        = archive_write_open2(writer.get(), &bytes, nullptr, appendTo, nullptr, nullptr) == ARCHIVE_OK
        && (!entries.contains(first) || addEntry(writer.get(), first, entries.value(first)));
    for (auto it = entries.cbegin(); written && it != entries.cend(); ++it) {
        written = it.key() == first || addEntry(writer.get(), it.key(), *it);
    }
    if (!written || archive_write_close(writer.get()) != ARCHIVE_OK) {
        return Outcome::failure(i18n("The archive cannot be made: %1", reasonOf(writer.get())));
    }
    return bytes;
}

} // namespace AdminEventsHelper
