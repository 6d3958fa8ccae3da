// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include "pairedtimer.h"

class ResultTable;

/// Reading, checking and writing the main logging configuration, on files much larger than any real one. Each
/// is to stay below what a user notices, and to take twice the time for twice the file.
namespace MainFileRows {
void add(PairedTimer &timer);
void report(const PairedTimer &timer, ResultTable &table);
} // namespace MainFileRows
