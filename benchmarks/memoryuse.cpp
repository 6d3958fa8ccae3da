// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "memoryuse.h"

#include <malloc.h>

namespace {
std::size_t bytesInUse()
{
    const auto info = mallinfo2();
    return info.uordblks + info.hblkhd;
}
} // namespace

std::size_t bytesLeftBy(const std::function<void()> &work)
{
    const std::size_t before = bytesInUse();
    work();
    const std::size_t after = bytesInUse();
    return after > before ? after - before : 0;
}

void settleHeap()
{
    malloc_trim(0);
}
