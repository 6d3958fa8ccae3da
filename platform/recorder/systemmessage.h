// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

namespace NivraRecorder {

/** A message of the system's journal. */
struct SystemMessage
{
    QString program;
    QString text;
    QString pid;
    QString host;
    QString time; ///< ISO 8601
    /** Whether the kernel or an account of the system sent it; what users send may pretend anything. */
    bool isOfSystem = false;

    /** @param line of "journalctl --output=json"; nothing for a line of another form or without a text. */
    [[nodiscard]] static std::optional<SystemMessage> parse(const QByteArray &line);

    /**
     * What the message says of something, by the usual words of the programs in question.
     * @param name of a parameter in the event catalog, such as "user" or "address"; empty when nothing is
     * found.
     */
    [[nodiscard]] QString find(const QString &name) const;
};

} // namespace NivraRecorder
