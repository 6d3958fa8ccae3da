// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <QtGlobal>

#include <ctime>

extern "C" __attribute__((weak)) void __asan_init();

/**
 * How long this process has been at work since the clock was made: what other processes take of the machine
 * does not count. Time under the address sanitizer counts for a tenth, roughly what it costs.
 */
class CpuClock
{
public:
    /** Milliseconds since the clock was made or restarted. */
    [[nodiscard]] qint64 elapsed() const
    {
        const int slowness = &__asan_init == nullptr ? 1 : 10;
        return qint64(std::clock() - m_start) * 1000 / CLOCKS_PER_SEC / slowness;
    }

    /** The same, and starts again. */
    qint64 restart()
    {
        const qint64 milliseconds = elapsed();
        m_start = std::clock();
        return milliseconds;
    }

private:
    std::clock_t m_start = std::clock();
};
