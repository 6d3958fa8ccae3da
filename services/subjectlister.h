// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "programoutput.h"

#include <QStringList>

/** The names of the system's users and groups, in the order in which the system lists them. */
struct Subjects
{
    QStringList users;
    QStringList groups;
};

/**
 * Asks "getent", found through the search path, for the users and the groups: both at the same time, and
 * while its owner does something else.
 */
class SubjectLister
{
public:
    /// Begins to ask.
    SubjectLister();

    /// Blocks until both have answered, at most 30 s for each; a list that could not be had is empty.
    [[nodiscard]] Subjects subjects();

private:
    ProgramOutput m_users;
    ProgramOutput m_groups;
};
