// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "fakelibrary.h"

#include <nivraevents.h>

namespace {
char **arrayOf(const QVector<const char *> &entries)
{
    auto **array = new char *[static_cast<std::size_t>(entries.size()) + 1]();
    for (int i = 0; i < entries.size(); ++i) {
        array[i] = entries.at(i) ? qstrdup(entries.at(i)) : nullptr;
    }
    return array;
}

char **groupArray = nullptr;
char **eventArray = nullptr;

void note(const char *call)
{
    FakeLibrary::instance().calls.append(QString::fromUtf8(call));
}

const char *answer(const char *call, const char *identifier)
{
    note(call);
    FakeLibrary &library = FakeLibrary::instance();
    library.identifiers.append(identifier);
    return library.json.isNull() ? nullptr : library.json.constData();
}

void release(char **&array, int count)
{
    for (int i = 0; i < count; ++i) {
        delete[] array[i];
    }
    delete[] array;
    array = nullptr;
}
} // namespace

FakeLibrary &FakeLibrary::instance()
{
    static FakeLibrary library;
    return library;
}

extern "C" {
int nvev_init(void)
{
    note("init");
    return FakeLibrary::instance().initResult;
}

void nvev_free(void)
{
    note("free");
}

uint64_t nvev_groups_count(void)
{
    ++FakeLibrary::instance().groupsCounted;
    return static_cast<uint64_t>(FakeLibrary::instance().groups.size());
}

uint64_t nvev_events_count(void)
{
    ++FakeLibrary::instance().eventsCounted;
    return static_cast<uint64_t>(FakeLibrary::instance().events.size());
}

char **nvev_get_group_ids(void)
{
    note("get groups");
    return groupArray = arrayOf(FakeLibrary::instance().groups);
}

char **nvev_get_event_ids(void)
{
    note("get events");
    return eventArray = arrayOf(FakeLibrary::instance().events);
}

void nvev_free_string_array(char **array)
{
    if (array == groupArray && array) {
        note("free groups");
        release(groupArray, FakeLibrary::instance().groups.size());
    } else if (array == eventArray && array) {
        note("free events");
        release(eventArray, FakeLibrary::instance().events.size());
    } else {
        note("free of an unknown array");
    }
}

const char *nvev_get_group_json(const char *identifier)
{
    return answer("group json", identifier);
}

const char *nvev_get_event_json(const char *identifier)
{
    return answer("event json", identifier);
}

const char *nvev_get_override_event_json(const char *identifier)
{
    return answer("override json", identifier);
}
}
