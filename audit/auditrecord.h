// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <QString>

/// A row of the audit dialog: a user or group and what is recorded of it.
struct AuditRecord
{
    QString name;
    bool success = false;
    bool failure = false;

    [[nodiscard]] bool operator==(const AuditRecord &other) const = default;
};
