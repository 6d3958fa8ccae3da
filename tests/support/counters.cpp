// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

// Part of the programs that count which lines run. Counters are written when a process ends in the ordinary
// way; these programs are ended by their tests, or end a child of theirs past everything that exit() does.

#include <csignal>

extern "C" {
void __gcov_dump();
[[noreturn]] void __real__exit(int status);

// The linker puts it in the place of _exit().
[[noreturn]] void __wrap__exit(int status)
{
    __gcov_dump();
    __real__exit(status);
}
}

namespace {

void dumpAndEnd(int number)
{
    __gcov_dump();
    std::signal(number, SIG_DFL);
    std::raise(number);
}

[[gnu::constructor]] void catchEnd()
{
    std::signal(SIGTERM, dumpAndEnd);
}

} // namespace
