// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "pairedtimer.h"

#include <algorithm>
#include <array>

namespace {
constexpr int repetitions = 15;
}

class PairedTimer::Collector : public benchmark::BenchmarkReporter
{
public:
    explicit Collector(PairedTimer &timer)
        : m_timer(timer)
    {
    }

    bool ReportContext(const Context &) override { return true; }

    void ReportRuns(const std::vector<Run> &runs) override
    {
        for (const Run &run : runs) {
            if (run.error_occurred) {
                m_timer.m_errors.push_back(run.run_name.function_name + ": " + run.error_message);
            } else if (run.run_type == Run::RT_Iteration) {
                const std::string &name = run.run_name.function_name;
                m_timer.m_times[name].push_back(m_timer.m_onTheWall.count(name) > 0
                                                    ? run.GetAdjustedRealTime()
                                                    : run.GetAdjustedCPUTime());
            }
        }
    }

private:
    PairedTimer &m_timer;
};

void PairedTimer::add(const std::string &name, int iterations, const Function &function, Clock clock)
{
    auto *registered = benchmark::RegisterBenchmark(name.c_str(), function);
    registered->Iterations(iterations)->Repetitions(repetitions)->Unit(benchmark::kMillisecond);
    if (clock == Clock::Wall) {
        registered->UseRealTime();
        m_onTheWall.insert(name);
    }
}

bool PairedTimer::run()
{
    std::array<char, 20> program{"adminevents"};
    std::array<char, 48> interleave{"--benchmark_enable_random_interleaving=true"};
    std::array<char *, 3> arguments{program.data(), interleave.data(), nullptr};
    int count = 2;
    benchmark::Initialize(&count, arguments.data());
    Collector collector(*this);
    benchmark::RunSpecifiedBenchmarks(&collector);
    benchmark::ClearRegisteredBenchmarks();
    return m_errors.empty();
}

double PairedTimer::median(const std::string &name) const
{
    std::vector<double> times = m_times.at(name);
    const auto middle = times.begin() + static_cast<std::ptrdiff_t>(times.size() / 2);
    std::nth_element(times.begin(), middle, times.end());
    return *middle;
}
