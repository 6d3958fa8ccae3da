// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include "baseline.h"
#include "page.h"
#include "pairedtimer.h"
#include "site.h"

#include <memory>
#include <vector>

class ResultTable;

/// A site, the page that shows it, and what the baselines need of both.
struct Input
{
    std::string name;
    Site site;
    std::unique_ptr<Page> page;
    QVector<Baseline::PlainNode> nodes; ///< of one tree
    std::vector<double> slowestKeystrokes; ///< milliseconds, one a pass

    /// Opens the page on the site; false when it cannot be read.
    [[nodiscard]] bool open();
};

/**
 * The measured operations. Each add function registers one with its
 * baseline under the names that the report functions look up.
 */
namespace Rows {
void addLoad(PairedTimer &timer, Input &input, int iterations);
void addClick(PairedTimer &timer, Input &input, int iterations);
/// The same without a baseline, for what is only compared with the like on another input.
void addLoadAlone(PairedTimer &timer, Input &input, int iterations);
void addClickAlone(PairedTimer &timer, Input &input, int iterations);
void addSave(PairedTimer &timer, Input &input, int iterations);
/// @param passes how often the whole query is typed and deleted again
void addKeystrokes(PairedTimer &timer, Input &input, int passes);

/// The ratios of everything that was added for @p input.
void report(const PairedTimer &timer, const Input &input, ResultTable &table);
/// How much longer load and click take on @p large than on @p half.
void reportGrowth(const PairedTimer &timer, const Input &large, const Input &half, ResultTable &table);
/// Measures the memory of one tree and of its baseline; false when the tree cannot be read.
[[nodiscard]] bool reportMemory(const Input &input, ResultTable &table);
} // namespace Rows
