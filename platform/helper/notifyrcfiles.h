// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <QByteArray>
#include <QMap>
#include <QString>

#include <optional>

namespace AdminEventsHelper::NotifyrcFiles {

/** The most files of a user that are read or written. */
constexpr int countLimit = 64;

/** By file name. */
using Contents = QMap<QString, QByteArray>;
/** By file name; none for a file that is to go. */
using Changes = QMap<QString, std::optional<QByteArray>>;

} // namespace AdminEventsHelper::NotifyrcFiles
