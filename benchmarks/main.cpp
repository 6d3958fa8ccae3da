// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "mainfilerows.h"
#include "resulttable.h"
#include "rows.h"

#include <QApplication>

#include <cstdio>

namespace {
/// The environment in which every machine measures the same.
void settleEnvironment()
{
    qputenv("LC_ALL", "C.UTF-8");
    qunsetenv("LANGUAGE");
    qputenv("QT_QPA_PLATFORM", "offscreen");
}

/// The site with its page; false when it cannot be read, which has been said.
bool open(Input &input)
{
    if (!input.open()) {
        std::fprintf(stderr, "The catalog cannot be read: %s.\n", input.name.c_str());
        return false;
    }
    std::printf("%s: %d nodes in a tree\n", input.name.c_str(), input.nodes.size());
    return true;
}

bool run(PairedTimer &timer)
{
    const bool measured = timer.run();
    for (const std::string &error : timer.errors()) {
        std::fprintf(stderr, "%s\n", error.c_str());
    }
    return measured;
}

bool report(const PairedTimer &timer, const Input &input, ResultTable &table)
{
    Rows::report(timer, input, table);
    if (!Rows::reportMemory(input, table)) {
        std::fputs("The memory cannot be measured.\n", stderr);
        return false;
    }
    return true;
}

/// On its own and first: what a large site leaves of the heap would slow down a small one.
bool measureShipped(Input &shipped, ResultTable &table)
{
    if (!open(shipped)) {
        return false;
    }
    PairedTimer timer;
    Rows::addLoad(timer, shipped, 12);
    Rows::addClick(timer, shipped, 100);
    Rows::addSave(timer, shipped, 20);
    Rows::addKeystrokes(timer, shipped, 4);
    return run(timer) && report(timer, shipped, table);
}

bool measureLarge(Input &large, Input &fewerEvents, Input &fewerSubjects, ResultTable &table)
{
    if (!open(large) || !open(fewerEvents) || !open(fewerSubjects)) {
        return false;
    }
    PairedTimer timer;
    Rows::addLoad(timer, large, 1);
    Rows::addClick(timer, large, 20);
    Rows::addSave(timer, large, 2);
    Rows::addKeystrokes(timer, large, 1);
    for (Input *half : {&fewerEvents, &fewerSubjects}) {
        Rows::addLoadAlone(timer, *half, 1);
        Rows::addClickAlone(timer, *half, 20);
    }
    if (!run(timer) || !report(timer, large, table)) {
        return false;
    }
    Rows::reportGrowth(timer, large, fewerEvents, table);
    Rows::reportGrowth(timer, large, fewerSubjects, table);
    return true;
}

bool measureMainFiles(ResultTable &table)
{
    PairedTimer timer;
    MainFileRows::add(timer);
    if (!run(timer)) {
        return false;
    }
    MainFileRows::report(timer, table);
    return true;
}

bool makeSites(Input &shipped, Input &large, Input &fewerEvents, Input &fewerSubjects)
{
    const SiteSize size{1000, 20, 200, 600};
    shipped.name = "shipped";
    large.name = "large site";
    fewerEvents.name = "half events";
    fewerSubjects.name = "half subjects";
    return shipped.site.makeShipped(100) && large.site.makeLarge(size)
        && fewerEvents.site.makeLarge({size.events / 2, size.groups, size.auditEvents / 2, size.subjects})
        && fewerSubjects.site.makeLarge({size.events, size.groups, size.auditEvents, size.subjects / 2});
}

} // namespace

/// Prints how the page's costs compare with the work that cannot be avoided. Fails only where it cannot
/// measure.
int main(int argc, char *argv[])
{
    settleEnvironment();
    const QApplication application(argc, argv);
    Input shipped;
    Input large;
    Input fewerEvents;
    Input fewerSubjects;
    if (!makeSites(shipped, large, fewerEvents, fewerSubjects)) {
        std::fputs("The sites cannot be written.\n", stderr);
        return 1;
    }
    ResultTable table;
    if (!measureShipped(shipped, table) || !measureLarge(large, fewerEvents, fewerSubjects, table)
        || !measureMainFiles(table)) {
        return 1;
    }
    table.print();
    return 0;
}
