// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <benchmark/benchmark.h>

#include <functional>
#include <map>
#include <set>
#include <string>
#include <vector>

/**
 * Times functions with Google Benchmark. All are run several times in random
 * order, so that a disturbance hits none of them alone, and the median counts.
 */
class PairedTimer
{
public:
    using Function = std::function<void(benchmark::State &)>;

    enum class Clock {
        Thread, ///< processor time of the calling thread: other programs on the machine do not change it much
        Wall ///< for work that is done in more than one thread
    };

    /// @param iterations how often the function's loop is run each time
    void add(const std::string &name, int iterations, const Function &function, Clock clock = Clock::Thread);
    /// Runs everything; false when a function reported an error, whose texts errors() has.
    [[nodiscard]] bool run();

    /// The median in milliseconds for one pass of the loop.
    [[nodiscard]] double median(const std::string &name) const;
    [[nodiscard]] const std::vector<std::string> &errors() const { return m_errors; }

private:
    class Collector;

    std::set<std::string> m_onTheWall; // names
    std::map<std::string, std::vector<double>> m_times;
    std::vector<std::string> m_errors;
};
