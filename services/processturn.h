// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <QString>

#include <memory>

class QLockFile;

/**
 * The turn of one program among those of the same user that have privileged actions run by the helper of the
 * same message bus: two windows of the system settings, say. It is a lock file in the user's runtime
 * directory, and falls free when its program ends in whatever way.
 *
 * Where there is no such directory, or it cannot be written to, every program has its turn at any time.
 */
class ProcessTurn
{
public:
    ProcessTurn();
    /** Releases the turn. */
    ~ProcessTurn();

    /** @return false while another program has the turn; true when this one has it now, or had it before. */
    [[nodiscard]] bool take();
    void release();

    /** The path of the lock file; empty where there can be none. */
    [[nodiscard]] static QString lockPath();

private:
    std::unique_ptr<QLockFile> m_lock;
};
