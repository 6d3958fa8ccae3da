// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <string>
#include <vector>

/// What was measured, as one table.
class ResultTable
{
public:
    /**
     * Adds a row whose ratio @p measured / @p base is to stay within @p limit.
     * @param unit of both quantities
     */
    void addRatio(const std::string &what, const std::string &input, double measured, double base,
                  double limit, const char *unit = "ms");
    /// Adds a row whose quantity itself is to stay within @p limit.
    void addBound(const std::string &what, const std::string &input, double measured, double limit,
                  const char *unit = "ms");
    void print() const;

private:
    struct Row
    {
        std::string what;
        std::string input;
        std::string measured;
        std::string base;
        std::string ratio;
        std::string limit;
        bool passed = false;
    };

    std::vector<Row> m_rows;
};
