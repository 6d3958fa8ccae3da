// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <dirent.h>

#include <memory>
#include <string>
#include <vector>

namespace Nivra {

/**
 * Reads a file whole.
 * @param directory open directory that a relative name starts from, or AT_FDCWD
 * @param name      name or path
 * @param text      receives the content without a UTF-8 byte order mark
 * @return 0 or an error number; EINVAL for what is no regular file, EFBIG above 512 MiB
 */
[[nodiscard]] int readFile(int directory, const std::string &name, std::string &text);

/**
 * An open directory. Names are bytes: what the locale cannot express is found and read too.
 */
class Directory
{
public:
    /// What a directory holds, hidden names left out, each list in byte order.
    struct Content
    {
        std::vector<std::string> directories;
        /// Regular files and symbolic links that lead nowhere.
        std::vector<std::string> files;
    };

    /// Opens a directory by its path. @return 0 or an error number
    [[nodiscard]] int open(const std::string &path);
    /// Opens a directory that stands in another one. @return 0 or an error number
    [[nodiscard]] int openIn(const Directory &parent, const std::string &name);
    /// Lists an open directory, once. @return 0 or an error number
    [[nodiscard]] int list(Content &content) const;
    /// Reads a file that stands here, as readFile().
    [[nodiscard]] int read(const std::string &name, std::string &text) const;

private:
    struct Closer
    {
        void operator()(DIR *stream) const { closedir(stream); }
    };

    int openAt(int parent, const std::string &name);
    int descriptor() const;

    std::unique_ptr<DIR, Closer> m_stream;
};

} // namespace Nivra
