// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <string_view>

namespace Nivra {

/// Whether all bytes form UTF-8 in the strict sense: shortest forms, no surrogates, at most U+10FFFF.
[[nodiscard]] bool isUtf8(std::string_view bytes);

} // namespace Nivra
