// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <QtGlobal>

#include <csignal>
#include <sys/resource.h>

/** What @p call returns while no file may grow over 10,000 bytes: writes fail in the middle, as on a full
 * disk. */
template <typename Call> auto asOnAFullDisk(const Call &call)
{
    rlimit former = {};
    const auto handler = std::signal(SIGXFSZ, SIG_IGN);
    bool isSet = ::getrlimit(RLIMIT_FSIZE, &former) == 0;
    rlimit tight = former;
    tight.rlim_cur = 10000;
    isSet = isSet && ::setrlimit(RLIMIT_FSIZE, &tight) == 0;
    auto result = call();
    if (!isSet || ::setrlimit(RLIMIT_FSIZE, &former) != 0) {
        qFatal("the size of files cannot be limited");
    }
    std::signal(SIGXFSZ, handler);
    return result;
}
