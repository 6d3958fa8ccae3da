// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <unordered_map>

namespace Nivra {

/// Lets maps keyed by strings be asked with views.
struct StringHash
{
    using is_transparent = void;
    [[nodiscard]] std::size_t operator()(std::string_view text) const
    {
        return std::hash<std::string_view>{}(text);
    }
};

/**
 * The administrator's settings: one JSON object an event. A text that is no
 * JSON object holds no settings.
 */
class Overrides
{
public:
    Overrides() = default;
    Overrides(const Overrides &) = delete;
    Overrides &operator=(const Overrides &) = delete;

    /// Takes the text of a settings file, once.
    void load(std::string text);
    /**
     * The compact text of an event's object, nullptr when there is none. It is
     * made when it is first asked for and stays where it is.
     */
    [[nodiscard]] const char *json(std::string_view eventId);

private:
    struct Override
    {
        std::string_view source;
        std::string compact;
    };

    void parse();

    std::string m_text;
    std::unordered_map<std::string, Override, StringHash, std::equal_to<>> m_overrides;
};

} // namespace Nivra
