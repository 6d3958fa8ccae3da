// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "mainfilerows.h"

#include "resulttable.h"

#include <losscheck.h>
#include <maintree.h>
#include <treeitem.h>

namespace {
QByteArray destinations(int count)
{
    QByteArray text;
    for (int i = 0; i < count; ++i) {
        const QByteArray number = QByteArray::number(i);
        text += "destination d" + number + " {\n    file(\"/var/log/" + number
            + "\");\n};\n\nlog {\n    source(s);\n    destination(d" + number + ");\n};\n\n";
    }
    return text;
}

/// One block of parameters that never ends.
QByteArray withoutEnd(int bytes)
{
    return "destination d {\n" + QByteArray("    file(\"/var/log/a\");\n").repeated(bytes / 24);
}

/// The same, with the braces balanced but for the semicolon.
QByteArray withoutSemicolon(int bytes)
{
    return withoutEnd(bytes) + "}\n";
}

QByteArray commentsBeforeABlock(int lines)
{
    return QByteArray("# a comment of some length, as people write them\n").repeated(lines)
        + "log {\n    source(s);\n    destination(d);\n};\n";
}

QByteArray openParentheses(int bytes)
{
    return "destination d {\n" + QByteArray("    ((\"\n").repeated(bytes / 8) + "};\n";
}

struct Sample
{
    const char *name;
    QByteArray (*make)(int);
    int size;
    double limit; ///< milliseconds
    int iterations; ///< of short work more, or one disturbance decides
};

const Sample samples[] = {
    {"10,000 destinations", destinations, 10000, 400, 1},
    {"400 kB without an end", withoutEnd, 400000, 100, 4},
    {"400 kB without \"};\"", withoutSemicolon, 400000, 100, 4},
    {"1,000 comment lines", commentsBeforeABlock, 1000, 20, 60},
    {"400 kB of parentheses", openParentheses, 400000, 100, 4},
};

std::string timerName(const char *what, const Sample &sample, int part)
{
    return std::string(what) + "/" + sample.name + "/" + std::to_string(part);
}

void addSample(PairedTimer &timer, const Sample &sample, int part)
{
    const QByteArray content = sample.make(sample.size / part);
    timer.add(timerName("read", sample, part), sample.iterations, [content](benchmark::State &state) {
        for (auto _ : state) {
            benchmark::DoNotOptimize(MainTree::read(content)->childCount());
        }
    });
    timer.add(timerName("check", sample, part), sample.iterations, [content](benchmark::State &state) {
        const auto root = MainTree::read(content);
        for (auto _ : state) {
            benchmark::DoNotOptimize(LossCheck::findings(content, content, *root).size());
        }
    });
}
} // namespace

void MainFileRows::add(PairedTimer &timer)
{
    for (const Sample &sample : samples) {
        addSample(timer, sample, 1);
        addSample(timer, sample, 2);
    }
}

void MainFileRows::report(const PairedTimer &timer, ResultTable &table)
{
    for (const Sample &sample : samples) {
        for (const char *what : {"read", "check"}) {
            const double whole = timer.median(timerName(what, sample, 1));
            const double half = timer.median(timerName(what, sample, 2));
            const double limit = std::string(what) == "check" ? 5 * sample.limit : sample.limit;
            table.addBound(std::string("main file: ") + what, sample.name, whole, limit);
            table.addRatio(std::string("main file: ") + what + ", double size", sample.name, whole, half,
                           2.2);
        }
    }
}
