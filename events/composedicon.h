// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QIcon>

/**
 * An icon that shows two theme icons side by side, @p left first, in every
 * size that the left one is available in; each pixmap is twice as wide as high.
 */
[[nodiscard]] QIcon createComposedIcon(const QString &left, const QString &right);
