// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <QString>

/** What the files that the page writes can carry in a value. */
namespace TextCheck {

/** True for control characters and for the separators of lines and paragraphs. */
[[nodiscard]] bool isControl(QChar character);

/** True when isControl() is true for a character of the text. */
[[nodiscard]] bool holdsControl(const QString &text);

/** False for a text with half of a surrogate pair, which would not come back from a file in UTF-8. */
[[nodiscard]] bool survivesUtf8(const QString &text);

} // namespace TextCheck
