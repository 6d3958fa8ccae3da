// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include <configarchive.h>
#include <notifyrccheck.h>
#include <targz.h>
#include <usernotifications.h>

#include <archive.h>
#include <archive_entry.h>
#include <cstdlib>

namespace {

using namespace AdminEventsHelper;

la_ssize_t append(archive * /*writer*/, void *bytes, const void *block, size_t size)
{
    static_cast<QByteArray *>(bytes)->append(static_cast<const char *>(block), static_cast<int>(size));
    return static_cast<la_ssize_t>(size);
}

QByteArray compressed(const QByteArray &text)
{
    QByteArray bytes;
    archive *const writer = archive_write_new();
    archive_entry *const entry = archive_entry_new();
    archive_write_add_filter_gzip(writer);
    archive_write_set_format_raw(writer);
    archive_write_set_bytes_in_last_block(writer, 1);
    archive_entry_set_filetype(entry, AE_IFREG);
    archive_write_open2(writer, &bytes, nullptr, append, nullptr, nullptr);
    archive_write_header(writer, entry);
    archive_write_data(writer, text.constData(), static_cast<size_t>(text.size()));
    archive_write_close(writer);
    archive_entry_free(entry);
    archive_write_free(writer);
    return bytes;
}

/// A list of files, then a zero, then the content of the event settings; after another zero, that of a user's
/// notification settings.
QByteArray archiveOf(const QByteArray &text)
{
    const QList<QByteArray> parts = text.split('\0');
    TarGz::Entries entries{{QStringLiteral("manifest.json"), parts.at(0)}};
    if (parts.size() > 1) {
        entries.insert(QStringLiteral("etc/nivra-syslog.conf"), parts.at(1));
    }
    if (parts.size() > 2) {
        entries.insert(QStringLiteral("home/.config/nivra-event-watcher_x.notifyrc"), parts.at(2));
    }
    return TarGz::pack(entries, QStringLiteral("manifest.json")).value();
}

} // namespace

/// Any bytes, any stream in a sound compression and any list of files in a sound archive are refused with a
/// text, or hold what an archive can be made of again.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    if (size == 0) {
        return 0;
    }
    QByteArray bytes(reinterpret_cast<const char *>(data) + 1, static_cast<int>(size) - 1);
    constexpr int kinds = 3;
    if (data[0] % kinds == 1) {
        bytes = compressed(bytes);
    } else if (data[0] % kinds == 2) {
        bytes = archiveOf(bytes);
    }
    const auto archive = ConfigArchive::unpack(bytes);
    if (!archive) {
        if (archive.error().isEmpty()) {
            std::abort();
        }
        return 0;
    }
    const auto packed = archive.value().pack();
    const Result<ConfigArchive> again
        = packed ? ConfigArchive::unpack(packed.value()) : Result<ConfigArchive>(packed.outcome());
    if (!again || again.value().files.size() != archive.value().files.size()
        || again.value().ownSettings != archive.value().ownSettings) {
        std::abort();
    }
    const auto own = archive.value().ownSettings.value_or(UserNotifications::Files());
    for (const QByteArray &content : own) {
        const Outcome checked = NotifyrcCheck::check(QStringLiteral("x"), content);
        if (checked && content.contains('\0')) {
            std::abort();
        }
    }
    return 0;
}
