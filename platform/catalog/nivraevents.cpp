// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "nivraevents.h"

#include "catalog.h"

#include <QByteArray>
#include <QString>

#include <cstdlib>
#include <cstring>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

using Nivra::Catalog;

namespace {

struct State
{
    std::mutex mutex;
    unsigned long users = 0;
    // The last one answers. The others keep the texts that were handed out.
    std::vector<std::unique_ptr<Catalog>> catalogs;

    Catalog *current() const { return catalogs.empty() ? nullptr : catalogs.back().get(); }
};

// Never destroyed: a caller's static object may release the library at the very end of the process.
State &state()
{
    static State *const instance = new State;
    return *instance;
}

std::string systemRoot()
{
    const char *const root = secure_getenv("ADMINEVENTS_ROOT");
    return root ? root : "";
}

// One block for pointers and strings: releasing it needs neither the count nor the library's state.
char **copyStrings(const Catalog::Ids &ids)
{
    std::size_t size = (ids.size() + 1) * sizeof(char *);
    for (const auto &id : ids) {
        size += id ? id->size() + 1 : 0;
    }
    char **const array = static_cast<char **>(std::malloc(size));
    if (!array) {
        return nullptr;
    }
    char *text = reinterpret_cast<char *>(array + ids.size() + 1);
    char **entry = array;
    for (const auto &id : ids) {
        if (!id) {
            *entry++ = nullptr;
            continue;
        }
        std::memcpy(text, id->data(), id->size());
        text[id->size()] = '\0';
        *entry++ = text;
        text += id->size() + 1;
    }
    *entry = nullptr;
    return array;
}

// Asks the current catalog for a text, by an identifier in the local encoding.
template <typename LookUp> const char *find(const char *localId, LookUp lookUp)
{
    if (!localId) {
        return nullptr;
    }
    const QByteArray id = QString::fromLocal8Bit(localId).toUtf8();
    const std::lock_guard<std::mutex> guard(state().mutex);
    Catalog *const catalog = state().current();
    return catalog ? lookUp(*catalog, std::string_view(id.constData(), static_cast<std::size_t>(id.size())))
                   : nullptr;
}

} // namespace

int nvev_init()
{
    const std::lock_guard<std::mutex> guard(state().mutex);
    ++state().users;
    auto catalog = std::make_unique<Catalog>();
    const int error = catalog->load(systemRoot());
    if (error == 0) {
        state().catalogs.push_back(std::move(catalog));
    }
    return -error;
}

void nvev_free()
{
    const std::lock_guard<std::mutex> guard(state().mutex);
    if (state().users > 0 && --state().users == 0) {
        state().catalogs.clear();
    }
}

uint64_t nvev_groups_count()
{
    const std::lock_guard<std::mutex> guard(state().mutex);
    return state().current() ? state().current()->groupCount() : 0;
}

uint64_t nvev_events_count()
{
    const std::lock_guard<std::mutex> guard(state().mutex);
    return state().current() ? state().current()->eventCount() : 0;
}

char **nvev_get_group_ids()
{
    const std::lock_guard<std::mutex> guard(state().mutex);
    return state().current() ? copyStrings(state().current()->groupIds()) : nullptr;
}

char **nvev_get_event_ids()
{
    const std::lock_guard<std::mutex> guard(state().mutex);
    return state().current() ? copyStrings(state().current()->eventIds()) : nullptr;
}

void nvev_free_string_array(char **array)
{
    std::free(array);
}

const char *nvev_get_group_json(const char *group_id)
{
    return find(group_id, [](const Catalog &catalog, std::string_view id) { return catalog.groupJson(id); });
}

const char *nvev_get_event_json(const char *event_id)
{
    return find(event_id, [](const Catalog &catalog, std::string_view id) { return catalog.eventJson(id); });
}

const char *nvev_get_override_event_json(const char *event_id)
{
    return find(event_id, [](Catalog &catalog, std::string_view id) { return catalog.overrideJson(id); });
}
