// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include "directory.h"
#include "overrides.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace Nivra {

/**
 * One reading of the event catalog and of the settings. Texts stay where they
 * are for the life of the object. Identifiers are UTF-8.
 */
class Catalog
{
public:
    /// The identifiers of a list; an entry without value stands for an identifier that was listed before.
    using Ids = std::vector<std::optional<std::string_view>>;

    Catalog() = default;
    Catalog(const Catalog &) = delete;
    Catalog &operator=(const Catalog &) = delete;

    /**
     * Reads everything, once.
     * @param root directory that stands for "/"
     * @return 0 or the error number of what could not be read
     */
    [[nodiscard]] int load(const std::string &root);

    [[nodiscard]] Ids groupIds() const;
    [[nodiscard]] Ids eventIds() const;
    [[nodiscard]] std::size_t groupCount() const { return m_groups.size(); }
    [[nodiscard]] std::size_t eventCount() const { return m_events.size(); }

    /// The texts of group files, event files and overrides; nullptr when there is none.
    [[nodiscard]] const char *groupJson(std::string_view id) const;
    [[nodiscard]] const char *eventJson(std::string_view id) const;
    [[nodiscard]] const char *overrideJson(std::string_view id);

private:
    struct Group
    {
        std::string id;
        std::optional<std::string> text;
        std::optional<std::int64_t> order;
        bool hasDirectory = false;
    };
    struct Event
    {
        std::string id;
        std::string text;
        bool duplicate = false;
    };

    int loadGroups(const Directory &directory);
    int loadEvents(const Directory &parent, const std::string &name);

    std::vector<Group> m_groups;
    std::vector<Event> m_events;
    std::unordered_map<std::string, std::size_t, StringHash, std::equal_to<>> m_eventIndex;
    Overrides m_overrides;
};

} // namespace Nivra
