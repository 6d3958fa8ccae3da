// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "outcome.h"

#include <QByteArray>
#include <QString>

#include <sys/types.h>

namespace AdminEventsHelper {

/** A child process that has become another user: it can do what that user may do, and no more. */
namespace CallerProcess {

/** How long the child may take, in milliseconds. */
constexpr int timeLimitMs = 30000;

/**
 * What the child does.
 *
 * It runs between fork() and _exit(), beside threads that the child does not have: system calls only, and
 * everything that it needs has been allocated before.
 */
class Work
{
public:
    virtual ~Work() = default;
    /** @param pipe takes what the child tells, by put(). */
    virtual void run(int pipe) const = 0;
};

/** What the child has told. */
struct Report
{
    QByteArray bytes;
    bool isWhole = true; ///< it did not tell more than was asked for
    bool endedWell = true;
};

/**
 * Runs the work as a user, and waits until it is done.
 * @param path names the file in messages.
 * @param most how many bytes the work may tell.
 * @return a failure when the child could not become the user, or did not answer.
 */
Result<Report> run(uid_t user, const Work &work, const QString &path, qsizetype most);

/** Writes all bytes; whether it did. For the child. */
bool put(int descriptor, const void *bytes, size_t size);

} // namespace CallerProcess

} // namespace AdminEventsHelper
