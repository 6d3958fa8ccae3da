/* SPDX-FileCopyrightText: 2026 The admin-events authors */
/* SPDX-License-Identifier: GPL-2.0-or-later */

/* For mkdtemp() and setenv(). */
#define _POSIX_C_SOURCE 200809L

#include "nivraevents.h"

#include <locale.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/stat.h>
#include <unistd.h>

#define CATALOG "/usr/share/syslog-ng-mod-nivra/event-settings"

static int failures = 0;

static void check(int holds, const char *what, int line)
{
    if (!holds) {
        fprintf(stderr, "line %d: %s\n", line, what);
        ++failures;
    }
}
#define CHECK(condition) check((condition) ? 1 : 0, #condition, __LINE__)

static int same(const char *actual, const char *expected)
{
    return actual && strcmp(actual, expected) == 0;
}

static char path[4096];

static const char *under(const char *root, const char *name)
{
    snprintf(path, sizeof path, "%s%s", root, name);
    return path;
}

static const char *const directories[]
    = {"/etc",           "/usr", "/usr/share", "/usr/share/syslog-ng-mod-nivra", CATALOG, CATALOG "/logins",
       CATALOG "/mounts"};

static const char *const files[][2] = {
    {CATALOG "/mounts.json", "{\"group-params\": {\"name_en\": \"Mounts\", \"order\": \"1\"}}"},
    {CATALOG "/logins.json", "{\"group-params\": {\"name_en\": \"Logins\", \"order\": \"2\"}}"},
    {CATALOG "/logins/login.json", "{\"event-group\": \"logins\", \"enabled\": \"0\"}"},
    {CATALOG "/mounts/mount.json", "{\"event-group\": \"mounts\"}"},
    {"/etc/nivra-syslog.conf", "{ \"login\": { \"enabled\": \"1\" } }"},
};

#define COUNT(array) (sizeof(array) / sizeof *(array))

static int build(const char *root)
{
    size_t i;
    for (i = 0; i < COUNT(directories); ++i) {
        if (mkdir(under(root, directories[i]), 0700) != 0) {
            return 0;
        }
    }
    for (i = 0; i < COUNT(files); ++i) {
        FILE *file = fopen(under(root, files[i][0]), "w");
        if (!file || fputs(files[i][1], file) < 0 || fclose(file) != 0) {
            return 0;
        }
    }
    return 1;
}

static void tearDown(const char *root)
{
    size_t i;
    for (i = 0; i < COUNT(files); ++i) {
        unlink(under(root, files[i][0]));
    }
    for (i = COUNT(directories); i > 0; --i) {
        rmdir(under(root, directories[i - 1]));
    }
    rmdir(root);
}

static void walk(void)
{
    char **groups;
    char **events;
    const char *text;

    CHECK(nvev_init() == 0);
    CHECK(nvev_groups_count() == 2);
    CHECK(nvev_events_count() == 2);
    groups = nvev_get_group_ids();
    events = nvev_get_event_ids();
    CHECK(groups && same(groups[0], "mounts") && same(groups[1], "logins"));
    CHECK(events && same(events[0], "mount") && same(events[1], "login"));
    nvev_free_string_array(groups);
    nvev_free_string_array(events);

    CHECK(same(nvev_get_group_json("mounts"), files[0][1]));
    CHECK(same(nvev_get_group_json("logins"), files[1][1]));
    CHECK(nvev_get_group_json("login") == NULL);
    text = nvev_get_event_json("login");
    CHECK(same(text, files[2][1]));
    CHECK(same(nvev_get_event_json("mount"), files[3][1]));
    CHECK(nvev_get_event_json("nothing") == NULL);
    CHECK(same(nvev_get_override_event_json("login"), "{\"enabled\":\"1\"}"));
    CHECK(nvev_get_override_event_json("mount") == NULL);
    CHECK(nvev_get_event_json(NULL) == NULL);
    CHECK(same(text, files[2][1]));
    nvev_free();
    CHECK(nvev_groups_count() == 0);
    CHECK(nvev_events_count() == 0);
    CHECK(nvev_get_event_json("login") == NULL);
}

int main(void)
{
    char root[] = "/tmp/nivraevents-XXXXXX";

    setlocale(LC_ALL, "");
    if (!mkdtemp(root)) {
        perror("mkdtemp");
        return 2;
    }
    if (build(root) && setenv("ADMINEVENTS_ROOT", root, 1) == 0) {
        walk();
    } else {
        perror(path);
        ++failures;
    }
    tearDown(root);
    CHECK(access(root, F_OK) != 0);

    CHECK(nvev_init() < 0);
    CHECK(nvev_groups_count() == 0);
    CHECK(nvev_get_group_ids() == NULL);
    nvev_free();
    nvev_free();
    return failures == 0 ? 0 : 1;
}
