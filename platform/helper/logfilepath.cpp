// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#include "logfilepath.h"

#include <QList>

#include <algorithm>
#include <array>

namespace AdminEventsHelper {

namespace {

constexpr std::array<const char *, 16> systemDirectories{
    "/bin/",         "/boot/",    "/dev/",  "/etc/", "/lib/", "/lib32/",          "/lib64/",
    "/libx32/",      "/proc/",    "/sbin/", "/sys/", "/usr/", "/var/spool/cron/", "/var/lib/",
    "/run/systemd/", "/run/udev/"};
constexpr std::array<const char *, 8> harmlessDevices{"/dev/console",  "/dev/kmsg",   "/dev/log",
                                                      "/dev/null",     "/dev/stderr", "/dev/stdout",
                                                      "/dev/xconsole", "/proc/kmsg"};

bool isTerminal(const QByteArray &path)
{
    const QByteArray number = path.mid(8);
    return path.startsWith("/dev/tty")
        && std::all_of(number.cbegin(), number.cend(), [](char c) { return c >= '0' && c <= '9'; });
}

} // namespace

bool isLogFilePath(const QByteArray &path)
{
    const bool isHarmless = isTerminal(path)
        || std::any_of(harmlessDevices.cbegin(), harmlessDevices.cend(),
                       [&path](const char *device) { return path == device; });
    if (isHarmless) {
        return true;
    }
    const QList<QByteArray> names = path.split('/');
    // An escape could hide what the path is.
    if (!path.startsWith('/') || path.contains('\\') || path.contains("//")
        || std::any_of(names.cbegin(), names.cend(),
                       [](const QByteArray &name) { return name.startsWith('.'); })) {
        return false;
    }
    const int macro = path.indexOf('$');
    const QByteArray fixed = macro < 0 ? path : path.left(path.lastIndexOf('/', macro) + 1);
    return std::none_of(systemDirectories.cbegin(), systemDirectories.cend(), [&](const char *directory) {
        return fixed.startsWith(directory) || (macro >= 0 && QByteArray(directory).startsWith(fixed));
    });
}

} // namespace AdminEventsHelper
