// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "utf8.h"

namespace Nivra {

namespace {

// The length of the sequence that begins here, 0 when it is none.
std::size_t sequenceLength(std::string_view bytes)
{
    const auto at
        = [bytes](std::size_t i) { return static_cast<unsigned char>(i < bytes.size() ? bytes[i] : 0); };
    const unsigned char first = at(0);
    if (first < 0x80) {
        return 1;
    }
    std::size_t length = 0;
    // Only the second byte tells overlong forms, surrogates and too large values.
    unsigned char lowest = 0x80;
    unsigned char highest = 0xBF;
    if (first >= 0xC2 && first <= 0xDF) {
        length = 2;
    } else if (first >= 0xE0 && first <= 0xEF) {
        length = 3;
        lowest = first == 0xE0 ? 0xA0 : lowest;
        highest = first == 0xED ? 0x9F : highest;
    } else if (first >= 0xF0 && first <= 0xF4) {
        length = 4;
        lowest = first == 0xF0 ? 0x90 : lowest;
        highest = first == 0xF4 ? 0x8F : highest;
    } else {
        return 0;
    }
    if (at(1) < lowest || at(1) > highest) {
        return 0;
    }
    for (std::size_t i = 2; i < length; ++i) {
        if ((at(i) & 0xC0) != 0x80) {
            return 0;
        }
    }
    return length;
}

} // namespace

bool isUtf8(std::string_view bytes)
{
    while (!bytes.empty()) {
        const std::size_t length = sequenceLength(bytes);
        if (length == 0) {
            return false;
        }
        bytes.remove_prefix(length);
    }
    return true;
}

} // namespace Nivra
