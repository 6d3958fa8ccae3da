// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <cstddef>
#include <functional>

/// Bytes of heap that @p work leaves allocated. What it makes for good in passing (caches) counts, so warm up
/// first.
[[nodiscard]] std::size_t bytesLeftBy(const std::function<void()> &work);

/// Gives back what was freed, so that whatever is measured next finds the heap as at the start of a program
/// and does not pay for the rubbish of what ran before.
void settleHeap();
