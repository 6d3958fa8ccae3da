// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <QAbstractTableModel>
#include <QByteArray>
#include <QJsonDocument>
#include <QString>

#include <variant>

/** Functions without a user interface that several folders share. */
namespace Core::Utils {

/**
 * What a function made, or why it could not. Look at success first, then take payload() or error(); the wrong
 * one of the two is an empty value.
 */
template <typename Payload> struct Result
{
    std::variant<Payload, QString> payloadOrError;
    bool success = false;

    [[nodiscard]] Payload payload() const
    {
        const auto *value = std::get_if<Payload>(&payloadOrError);
        return value ? *value : Payload();
    }

    [[nodiscard]] QString error() const
    {
        const auto *text = std::get_if<QString>(&payloadOrError);
        return text ? *text : QString();
    }
};

/**
 * Reads the whole file at @p path.
 * @return its bytes, never none: an empty file is a failure. Errors begin with "error: ", name the path and
 * are not translated.
 */
[[nodiscard]] Result<QByteArray> readFile(const QString &path);

/**
 * Parses @p json, UTF-8 text of one JSON document.
 * @return the document. Errors begin with "error: " and are not translated.
 */
[[nodiscard]] Result<QJsonDocument> convertFromJson(const QByteArray &json);

/** @return true when both tables have the same size and every cell the same value under @p role. */
[[nodiscard]] bool isModelsEqual(const QAbstractTableModel *a, const QAbstractTableModel *b,
                                 Qt::ItemDataRole role);

/**
 * Asks the session for a reboot through the desktop's helper program, with XDG_RUNTIME_DIR pointing at the
 * runtime directory of the user who elevated this process (SUDO_UID). Waits up to 30 s; a helper that is
 * missing, fails or takes longer is ignored.
 */
void rebootSystem();

} // namespace Core::Utils
