// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "directory.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <string_view>

namespace Nivra {

namespace {

constexpr off_t LargestFile = off_t{512} << 20;
constexpr std::size_t ReadStep = std::size_t{64} << 10;
constexpr std::string_view ByteOrderMark = "\xEF\xBB\xBF";

// One byte more than the expected size, so that the end of the file shows in the same round.
int readAll(int file, std::size_t expected, std::string &text)
{
    text.resize(expected + 1);
    std::size_t filled = 0;
    for (;;) {
        if (filled == text.size()) {
            if (filled > static_cast<std::size_t>(LargestFile)) {
                return EFBIG;
            }
            text.resize(filled + ReadStep);
        }
        const ssize_t count = ::read(file, text.data() + filled, text.size() - filled);
        if (count < 0 && errno != EINTR) {
            return errno;
        }
        filled += count > 0 ? static_cast<std::size_t>(count) : 0;
        // A round that gave the expected size and not the byte beyond it met the end: no other round need
        // ask.
        if (count == 0 || (count > 0 && filled == expected)) {
            text.resize(filled);
            return 0;
        }
    }
}

enum class Kind { Directory, File, Other };

Kind kindOf(int directory, const dirent &entry)
{
    if (entry.d_type == DT_REG) {
        return Kind::File;
    }
    if (entry.d_type == DT_DIR) {
        return Kind::Directory;
    }
    if (entry.d_type != DT_LNK && entry.d_type != DT_UNKNOWN) {
        return Kind::Other;
    }
    struct stat status
    {
    };
    // A link that leads nowhere stands for a file that cannot be read.
    if (fstatat(directory, entry.d_name, &status, 0) != 0 || S_ISREG(status.st_mode)) {
        return Kind::File;
    }
    return S_ISDIR(status.st_mode) ? Kind::Directory : Kind::Other;
}

} // namespace

int readFile(int directory, const std::string &name, std::string &text)
{
    // Not blocking: a FIFO must not hold up the caller before it is seen to be one.
    const int file = openat(directory, name.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
    if (file < 0) {
        return errno;
    }
    struct stat status
    {
    };
    int error = 0;
    if (fstat(file, &status) != 0) {
        error = errno;
    } else if (!S_ISREG(status.st_mode)) {
        error = EINVAL;
    } else if (status.st_size > LargestFile) {
        error = EFBIG;
    } else {
        error = readAll(file, static_cast<std::size_t>(status.st_size), text);
    }
    close(file);
    if (error != 0) {
        text.clear();
    } else if (std::string_view(text).starts_with(ByteOrderMark)) {
        text.erase(0, ByteOrderMark.size());
    }
    return error;
}

int Directory::open(const std::string &path)
{
    return openAt(AT_FDCWD, path);
}

int Directory::openIn(const Directory &parent, const std::string &name)
{
    return openAt(parent.descriptor(), name);
}

int Directory::openAt(int parent, const std::string &name)
{
    const int descriptor = openat(parent, name.c_str(), O_RDONLY | O_CLOEXEC | O_DIRECTORY);
    if (descriptor < 0) {
        return errno;
    }
    m_stream.reset(fdopendir(descriptor));
    if (m_stream) {
        return 0;
    }
    const int error = errno;
    close(descriptor);
    return error;
}

int Directory::descriptor() const
{
    return dirfd(m_stream.get());
}

int Directory::list(Content &content) const
{
    for (;;) {
        errno = 0;
        const dirent *entry = readdir(m_stream.get());
        if (!entry) {
            break;
        }
        if (entry->d_name[0] == '.') {
            continue;
        }
        const Kind kind = kindOf(descriptor(), *entry);
        if (kind == Kind::Directory) {
            content.directories.emplace_back(entry->d_name);
        } else if (kind == Kind::File) {
            content.files.emplace_back(entry->d_name);
        }
    }
    const int error = errno;
    std::sort(content.directories.begin(), content.directories.end());
    std::sort(content.files.begin(), content.files.end());
    return error;
}

int Directory::read(const std::string &name, std::string &text) const
{
    return readFile(descriptor(), name, text);
}

} // namespace Nivra
