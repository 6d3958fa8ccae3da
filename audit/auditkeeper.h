// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "auditsettings.h"

#include <functional>

class AuditService;
class EventTreeItem;

/**
 * Knows what the system records of whom, and brings it into agreement with the event tree on saving.
 *
 * The settings are read once; from then on they are what was read or last written. What could not be read is
 * never written.
 */
class AuditKeeper
{
public:
    /// @param service must outlive this object
    explicit AuditKeeper(AuditService &service);

    /**
     * Reads the settings of all given accounts and of all others, unless that was done or tried before.
     * @return false when they could not be read, now or before; readError() then says why.
     */
    [[nodiscard]] bool read(const QStringList &users, const QStringList &groups);

    /// True once read() has been called.
    [[nodiscard]] bool wasAsked() const { return m_state != State::NotRead; }

    /**
     * To be called when somebody else has replaced the settings, as an import does: the tree then shows those
     * saved with the events, and the next write() sends all of them.
     */
    void forget();

    /// Copies what was read, nothing before that, into a tree; see AuditTree::synchronize().
    void copyInto(EventTreeItem &root) const;

    /**
     * Collects what the edited tree asks for, for write().
     *
     * @param reference the tree as loaded
     * @param pause called after every event; neither tree nor this object may be destroyed in it
     * @return true when it asks for something else than the tree as loaded did
     */
    [[nodiscard]] bool collect(
        const EventTreeItem &working, const EventTreeItem &reference, const QStringList &users,
        const QStringList &groups, const std::function<void()> &pause = [] {});

    /// Why the collected settings cannot be written; empty when they can. Asks nobody.
    [[nodiscard]] QString refusal() const;

    /**
     * Writes the collected settings where they differ from the system's: groups, users, then all others.
     * @return false when one of the three failed; writeError() then says why, and what was written before it
     * stays.
     */
    [[nodiscard]] bool write();

    /// Empty unless read() failed.
    [[nodiscard]] QString readError() const { return m_readError; }
    /// Empty unless the last write() failed.
    [[nodiscard]] QString writeError() const { return m_writeError; }

private:
    enum class State { NotRead, Read, Failed };

    [[nodiscard]] bool readAll(const QStringList &users, const QStringList &groups);

    /// What write() has to send.
    [[nodiscard]] AuditSettings pending() const;

    AuditService &m_service;
    bool m_forgotten = false;
    State m_state = State::NotRead;
    AuditSettings m_system;
    AuditSettings m_collected;
    QString m_readError;
    QString m_writeError;
};
