// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <QByteArray>
#include <QHash>
#include <QString>

#include <optional>

namespace NivraRecorder {

/**
 * One line of the audit daemon, "type=TYPE msg=audit(TIME:SERIAL): FIELD=VALUE ..." (auditd.conf(5),
 * "log_format").
 *
 * Of an enriched line, the names after the separator take the place of the numbers that they interpret.
 */
struct AuditRecord
{
    QString type;
    QByteArray event; ///< time and serial number: the same for all records of an event
    /** Fields by name; those inside the quotes of "msg" by "msg." and their name. Values are decoded. */
    QHash<QString, QString> fields;

    /** Nothing for a line of another form. */
    [[nodiscard]] static std::optional<AuditRecord> parse(const QByteArray &line);
};

} // namespace NivraRecorder
