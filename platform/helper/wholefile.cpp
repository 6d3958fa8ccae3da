// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#include "wholefile.h"

#include <KLocalizedString>

#include <cerrno>
#include <unistd.h>

namespace AdminEventsHelper {

Result<std::optional<QByteArray>> WholeFile::read(const SafeDirectory &directory, const QString &name,
                                                  int limit)
{
    const Result<std::optional<FileDescriptor>> file = directory.openRegular(name);
    if (!file) {
        return file.outcome();
    }
    if (!file.value()) {
        return std::optional<QByteArray>();
    }
    Result<QByteArray> bytes = read(*file.value(), directory.pathOf(name), limit);
    return bytes ? Result<std::optional<QByteArray>>(bytes.takeValue()) : bytes.outcome();
}

Result<QByteArray> WholeFile::read(const FileDescriptor &file, const QString &path, int limit)
{
    QByteArray bytes;
    QByteArray block(65536, Qt::Uninitialized);
    for (;;) {
        const ssize_t count = ::pread(file.get(), block.data(), std::size_t(block.size()), bytes.size());
        if (count < 0 && errno == EINTR) {
            continue;
        }
        if (count < 0) {
            return Outcome::failure(i18n("\"%1\" cannot be read: %2", path, systemError(errno)));
        }
        if (count == 0) {
            return bytes;
        }
        bytes.append(block.constData(), int(count));
        if (bytes.size() > limit) {
            return Outcome::failure(i18n("\"%1\" is larger than %2 bytes.", path, QString::number(limit)));
        }
    }
}

} // namespace AdminEventsHelper
