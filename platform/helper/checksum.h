// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <QByteArray>
#include <QString>

namespace AdminEventsHelper {

/** The SHA-256 of a content, hexadecimal. */
QString checksum(const QByteArray &content);

} // namespace AdminEventsHelper
