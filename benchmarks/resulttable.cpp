// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "resulttable.h"

#include <algorithm>
#include <array>
#include <cstdio>

namespace {
std::string formatted(double value, int digits, const char *unit = "")
{
    std::array<char, 64> text{};
    std::snprintf(text.data(), text.size(), "%.*f%s%s", digits, value, *unit ? " " : "", unit);
    return text.data();
}
} // namespace

void ResultTable::addRatio(const std::string &what, const std::string &input, double measured, double base,
                           double limit, const char *unit)
{
    const double ratio = measured / base;
    m_rows.push_back({what, input, formatted(measured, 3, unit), formatted(base, 3, unit),
                      formatted(ratio, 2), formatted(limit, 1), ratio <= limit});
}

void ResultTable::addBound(const std::string &what, const std::string &input, double measured, double limit,
                           const char *unit)
{
    m_rows.push_back(
        {what, input, formatted(measured, 3, unit), "", "", formatted(limit, 0, unit), measured <= limit});
}

void ResultTable::print() const
{
    const char *format = "%-28s %-14s %14s %14s %7s %8s  %s\n";
    std::printf(format, "what", "input", "measured", "base", "ratio", "limit", "");
    for (const Row &row : m_rows) {
        std::printf(format, row.what.c_str(), row.input.c_str(), row.measured.c_str(), row.base.c_str(),
                    row.ratio.c_str(), row.limit.c_str(), row.passed ? "met" : "MISSED");
    }
    const auto met = std::count_if(m_rows.begin(), m_rows.end(), [](const Row &row) { return row.passed; });
    std::printf("%d of %d met\n", static_cast<int>(met), static_cast<int>(m_rows.size()));
}
