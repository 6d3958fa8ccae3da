// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QStringList>

/// Splits the body of a block of the main logging configuration into its entries, by counting parentheses and
/// braces line by line. Linear in the body.
[[nodiscard]] QStringList splitBlockEntries(const QString &body);
