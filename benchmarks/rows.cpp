// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "rows.h"

#include "memoryuse.h"
#include "resulttable.h"

#include <configaccessservice.h>
#include <eventswriter.h>
#include <eventtreeitem.h>
#include <singleeventsparser.h>
#include <systempaths.h>

#include <QCoreApplication>
#include <QJsonDocument>
#include <QSignalBlocker>

#include <algorithm>
#include <chrono>

namespace {
std::string measuredName(const char *what, const Input &input)
{
    return std::string(what) + ' ' + input.name;
}

std::string baseName(const char *what, const Input &input)
{
    return measuredName(what, input) + " base";
}

/// What an administrator types: a word letter by letter, and back again.
const QStringList &queries()
{
    static const QStringList steps = [] {
        const QString word = QStringLiteral("session");
        QStringList list;
        for (int length = 1; length <= word.size(); ++length) {
            list.append(word.left(length));
        }
        for (int length = word.size() - 1; length >= 0; --length) {
            list.append(word.left(length));
        }
        return list;
    }();
    return steps;
}

double millisecondsSince(std::chrono::steady_clock::time_point start)
{
    return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count();
}

double medianOf(std::vector<double> values)
{
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

void typeQueries(benchmark::State &state, Input &input)
{
    Page &page = *input.page;
    page.type(QString());
    page.layOut();
    const int all = page.shownEvents();
    int step = 0;
    int fewest = all;
    double slowest = 0;
    for (auto _ : state) {
        state.PauseTiming();
        page.openGroups();
        const auto start = std::chrono::steady_clock::now();
        state.ResumeTiming();
        page.type(queries().at(step));
        state.PauseTiming();
        // The view's part is no part of the comparison, but of the time that the page keeps its user waiting.
        page.layOut();
        slowest = std::max(slowest, millisecondsSince(start));
        fewest = std::min(fewest, page.shownEvents());
        if (++step == queries().size()) {
            input.slowestKeystrokes.push_back(slowest);
            step = 0;
            slowest = 0;
        }
        state.ResumeTiming();
    }
    if (fewest == 0 || fewest == all || page.shownEvents() != all) {
        state.SkipWithError("the query does not narrow the list");
    }
}
} // namespace

bool Input::open()
{
    page = std::make_unique<Page>(site);
    if (page->isValid()) {
        nodes = Baseline::plainNodes(page->referenceRoot());
    }
    return !nodes.isEmpty() && page->lastEvent().isValid();
}

void Rows::addLoadAlone(PairedTimer &timer, Input &input, int iterations)
{
    const auto load = [&input](benchmark::State &state) {
        for (auto _ : state) {
            state.PauseTiming();
            {
                CheckableTreeModel working(input.page->storage());
                CheckableTreeModel reference(input.page->storage());
                settleHeap();
                state.ResumeTiming();
                const bool loaded = Page::load(input.site, working, reference);
                state.PauseTiming();
                if (!loaded || working.rowCount() != reference.rowCount()) {
                    state.SkipWithError("the catalog cannot be read");
                }
            }
            state.ResumeTiming();
        }
    };
    timer.add(measuredName("load", input), iterations, load, PairedTimer::Clock::Wall);
}

void Rows::addLoad(PairedTimer &timer, Input &input, int iterations)
{
    addLoadAlone(timer, input, iterations);
    const auto plainLoad = [&input](bool read) {
        return [&input, read](benchmark::State &state) {
            for (auto _ : state) {
                state.PauseTiming();
                {
                    QStandardItemModel model;
                    settleHeap();
                    state.ResumeTiming();
                    const int objects = Baseline::parseDocuments(
                        read ? Baseline::readFiles(input.site.files()) : input.site.documents());
                    Baseline::fillModel(model, input.nodes);
                    state.PauseTiming();
                    if (objects != input.site.documents().size()
                        || model.rowCount() != input.page->working().rowCount()) {
                        state.SkipWithError("the baseline did not do the same work");
                    }
                }
                state.ResumeTiming();
            }
        };
    };
    timer.add(baseName("load", input), iterations, plainLoad(false), PairedTimer::Clock::Wall);
    timer.add(baseName("load with reading", input), iterations, plainLoad(true), PairedTimer::Clock::Wall);
}

void Rows::addClickAlone(PairedTimer &timer, Input &input, int iterations)
{
    timer.add(measuredName("click", input), iterations, [&input](benchmark::State &state) {
        Page &page = *input.page;
        const QModelIndex event = page.lastEvent();
        // What the view does until it shows the change is no part of knowing it.
        const QSignalBlocker unseen(page.working());
        bool changed = false;
        for (auto _ : state) {
            const bool now = page.click(event);
            if (now == changed) {
                state.SkipWithError("a click did not switch between changed and unchanged");
            }
            changed = now;
        }
    });
}

void Rows::addClick(PairedTimer &timer, Input &input, int iterations)
{
    addClickAlone(timer, input, iterations);
    timer.add(measuredName("click with view", input), iterations, [&input](benchmark::State &state) {
        const QModelIndex event = input.page->lastEvent();
        for (auto _ : state) {
            benchmark::DoNotOptimize(input.page->click(event));
            QCoreApplication::processEvents();
        }
    });
    timer.add(baseName("click", input), iterations, [&input](benchmark::State &state) {
        for (auto _ : state) {
            benchmark::DoNotOptimize(Baseline::visit(input.page->workingRoot())
                                     + Baseline::visit(input.page->referenceRoot()));
        }
    });
}

void Rows::addSave(PairedTimer &timer, Input &input, int iterations)
{
    const auto newWriter = [](ConfigAccessService &service) {
        return EventsWriter(service, SystemPaths::eventSettingsFile(), SystemPaths::auditRulesFile());
    };
    timer.add(measuredName("save", input), iterations, [&input, newWriter](benchmark::State &state) {
        ConfigAccessService service(nullptr);
        EventsWriter writer = newWriter(service);
        for (auto _ : state) {
            if (writer.settingsContent(input.page->referenceItem()).isEmpty()) {
                state.SkipWithError("the settings cannot be written");
            }
        }
    });
    timer.add(baseName("save", input), iterations, [&input, newWriter](benchmark::State &state) {
        ConfigAccessService service(nullptr);
        const QByteArray content = newWriter(service).settingsContent(input.page->referenceItem());
        const QJsonObject settings = QJsonDocument::fromJson(content).object();
        for (auto _ : state) {
            if (QJsonDocument(settings).toJson(QJsonDocument::Indented).size() != content.size()) {
                state.SkipWithError("the baseline did not write the same settings");
            }
        }
    });
}

void Rows::addKeystrokes(PairedTimer &timer, Input &input, int passes)
{
    const int iterations = passes * queries().size();
    timer.add(measuredName("keystroke", input), iterations,
              [&input](benchmark::State &state) { typeQueries(state, input); });
    timer.add(baseName("keystroke", input), iterations, [&input](benchmark::State &state) {
        int step = 0;
        for (auto _ : state) {
            benchmark::DoNotOptimize(Baseline::matchAll(input.page->workingRoot(), queries().at(step)));
            step = (step + 1) % queries().size();
        }
    });
}

void Rows::report(const PairedTimer &timer, const Input &input, ResultTable &table)
{
    const auto add = [&](const char *what, double limit) {
        table.addRatio(what, input.name, timer.median(measuredName(what, input)),
                       timer.median(baseName(what, input)), limit);
    };
    add("load", 1.0);
    // A load reads files, which the baseline above is spared. What is left of the ratio when it is not:
    table.addRatio("load, base reads too", input.name, timer.median(measuredName("load", input)),
                   timer.median(baseName("load with reading", input)), 1.0);
    add("click", 3);
    add("save", 3);
    add("keystroke", 3);
    constexpr double longestWait = 100;
    table.addBound("click with view", input.name, timer.median(measuredName("click with view", input)),
                   longestWait);
    table.addBound("slowest keystroke", input.name, medianOf(input.slowestKeystrokes), longestWait);
}

void Rows::reportGrowth(const PairedTimer &timer, const Input &large, const Input &half, ResultTable &table)
{
    for (const char *what : {"load", "click"}) {
        table.addRatio(std::string("growth of ") + what, half.name, timer.median(measuredName(what, large)),
                       timer.median(measuredName(what, half)), 2.2);
    }
}

bool Rows::reportMemory(const Input &input, ResultTable &table)
{
    std::unique_ptr<EventTreeItem> tree;
    const std::size_t treeBytes = bytesLeftBy([&] {
        input.site.select();
        const SingleEventsParser parser(input.site.accounts().users, input.site.accounts().groups, nullptr);
        tree.reset(parser.parse());
    });
    if (!tree || Baseline::plainNodes(*tree).size() != input.nodes.size()) {
        return false;
    }
    std::unique_ptr<QStandardItemModel> model;
    const std::size_t modelBytes = bytesLeftBy([&] {
        model = std::make_unique<QStandardItemModel>();
        Baseline::fillModel(*model, Baseline::detached(input.nodes));
    });
    const double count = input.nodes.size();
    table.addRatio("memory per node", input.name, static_cast<double>(treeBytes) / count,
                   static_cast<double>(modelBytes) / count, 0.5, "B");
    return true;
}
