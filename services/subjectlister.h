// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <QStringList>

/** The names of the system's users and groups, in the order in which the system lists them. */
struct Subjects
{
    QStringList users;
    QStringList groups;
};

/**
 * Asks "getent", found through the search path, for the users and the groups, both at the same time. Blocks
 * until both have answered, at most 30 s for each; a list that could not be had is empty.
 */
[[nodiscard]] Subjects listSubjects();
