// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <QByteArray>
#include <QString>

namespace AdminEventsHelper {

/**
 * The beginning of a text that anybody may have made, as it can stand in a message and a log: what cannot be
 * printed is replaced.
 * @param length in UTF-16 units, or bytes of UTF-8.
 */
QString shown(const QString &text, int length = 100);
QString shown(const QByteArray &text, int length = 100);

} // namespace AdminEventsHelper
