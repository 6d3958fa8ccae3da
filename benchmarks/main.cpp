// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "mainfilerows.h"
#include "resulttable.h"
#include "rows.h"

#include <QApplication>

#include <cstdio>
#include <initializer_list>

namespace {
/// The environment in which every machine measures the same.
void settleEnvironment()
{
    qputenv("LC_ALL", "C.UTF-8");
    qunsetenv("LANGUAGE");
    qputenv("QT_QPA_PLATFORM", "offscreen");
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

void addRows(PairedTimer &timer, Input &shipped, Input &large, std::initializer_list<Input *> halves)
{
    Rows::addLoad(timer, shipped, 12);
    Rows::addClick(timer, shipped, 100);
    Rows::addSave(timer, shipped, 20);
    Rows::addKeystrokes(timer, shipped, 4);
    Rows::addLoad(timer, large, 1);
    Rows::addClick(timer, large, 10);
    Rows::addSave(timer, large, 2);
    Rows::addKeystrokes(timer, large, 1);
    for (Input *half : halves) {
        Rows::addLoadAlone(timer, *half, 1);
        Rows::addClickAlone(timer, *half, 10);
    }
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
    for (Input *input : {&shipped, &large, &fewerEvents, &fewerSubjects}) {
        if (!input->open()) {
            std::fprintf(stderr, "The catalog cannot be read: %s.\n", input->name.c_str());
            return 1;
        }
        std::printf("%s: %d nodes in a tree\n", input->name.c_str(), input->nodes.size());
    }

    PairedTimer timer;
    addRows(timer, shipped, large, {&fewerEvents, &fewerSubjects});
    MainFileRows::add(timer);
    if (!timer.run()) {
        for (const std::string &error : timer.errors()) {
            std::fprintf(stderr, "%s\n", error.c_str());
        }
        return 1;
    }
    ResultTable table;
    for (Input *input : {&shipped, &large}) {
        Rows::report(timer, *input, table);
        if (!Rows::reportMemory(*input, table)) {
            std::fputs("The memory cannot be measured.\n", stderr);
            return 1;
        }
    }
    Rows::reportGrowth(timer, large, fewerEvents, table);
    Rows::reportGrowth(timer, large, fewerSubjects, table);
    MainFileRows::report(timer, table);
    table.print();
    return 0;
}
