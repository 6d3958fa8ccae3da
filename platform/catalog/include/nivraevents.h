/* SPDX-FileCopyrightText: 2026 The admin-events authors */
/* SPDX-License-Identifier: GPL-2.0-or-later */

#ifndef NIVRAEVENTS_H
#define NIVRAEVENTS_H

/*
 * libnivraevents: the catalog of the system's security events.
 *
 * Files
 * -----
 * All paths are taken below the directory that the environment variable
 * ADMINEVENTS_ROOT names when nvev_init() is called; unset or empty means "/".
 * The variable is not followed in a program with raised privileges.
 *
 * The catalog is /usr/share/syslog-ng-mod-nivra/event-settings:
 *
 *   <group>.json            describes a group of events:
 *                           {"group-params": {"name_en": "...", "name_ru": "...", "order": "10"}}
 *                           The identifier is the file name without ".json".
 *                           "order" is a whole number as text and may be absent.
 *   <directory>/<event>.json
 *                           describes one event. The identifier is the file name up to its first ".".
 *                           The member "event-group" of the text names the event's group.
 *
 * A directory without a group file of its name makes a group without a
 * description. Names that begin with "." and files whose name does not end in
 * ".json" (editors' backups among them) are ignored, and so is anything that is
 * no regular file; symbolic links are followed. Identifiers are UTF-8: a file
 * or a directory of which the identifier would not be valid UTF-8 is ignored.
 *
 * The administrator's settings are /etc/nivra-syslog.conf, a JSON object with
 * one member an event, named by the event's identifier.
 *
 * Order
 * -----
 * Groups are sorted by "order", then by identifier; groups without a usable
 * "order" come last. Events follow the order of the groups of which the name
 * is that of their directory, and within a directory the order of the file
 * names. Names compare byte by byte.
 *
 * Encodings
 * ---------
 * Everything that the library returns is NUL-terminated UTF-8. The identifiers
 * passed to the look-up functions are in the local 8-bit encoding, as
 * QString::toLocal8Bit() produces it in the same process. Identifiers of ASCII
 * characters need no conversion.
 *
 * Life time
 * ---------
 * Every call of nvev_init(), a failed one too, is to be matched by one call of
 * nvev_free(). Calls may nest: each nvev_init() reads the files anew, and from
 * then on all functions answer from the state read last. A failed nvev_init()
 * leaves an earlier state in use. JSON texts stay valid, also those of earlier
 * states, until the nvev_free() that matches the first nvev_init().
 *
 * Without a successful nvev_init() the counts are 0 and all other results NULL.
 * The functions may be called from several threads.
 */

#include <stdint.h>

#if defined(__GNUC__)
#define NVEV_EXPORT __attribute__((visibility("default")))
#else
#define NVEV_EXPORT
#endif

#ifdef __cplusplus
extern "C" {
#endif

/*
 * Reads the catalog and the settings.
 *
 * Returns 0, or a negative error number of <errno.h> when the catalog's
 * directory, one of its sub-directories or one of its files cannot be read
 * (-ENOENT, -EACCES, -EIO ...). A file that is read but holds no JSON is no
 * error: its text is handed out as it is. Settings that are missing or cannot
 * be read or parsed are no error either: no event has an override then.
 */
NVEV_EXPORT int nvev_init(void);

/* Gives back one nvev_init(); the last one releases the state. Harmless without nvev_init(). */
NVEV_EXPORT void nvev_free(void);

/* The number of entries of nvev_get_group_ids(). */
NVEV_EXPORT uint64_t nvev_groups_count(void);

/* The number of entries of nvev_get_event_ids(), NULL entries included. */
NVEV_EXPORT uint64_t nvev_events_count(void);

/*
 * The identifiers of all groups. The array belongs to the caller, who releases
 * it with nvev_free_string_array(); it does not change and stays valid when the
 * library's state is released. A NULL follows the last entry.
 *
 * Returns NULL without a state and when memory runs out.
 */
NVEV_EXPORT char **nvev_get_group_ids(void);

/*
 * The identifiers of all events, as nvev_get_group_ids(). The entry of an event
 * of which the identifier was listed before, in whatever group, is NULL: a
 * catalog with such an entry is in error. The array ends at its count, not at
 * the first NULL.
 */
NVEV_EXPORT char **nvev_get_event_ids(void);

/* Releases an array of identifiers with the strings in it. NULL is allowed. */
NVEV_EXPORT void nvev_free_string_array(char **array);

/*
 * The text of a group's file without a byte order mark, owned by the library.
 * NULL when the group is unknown or has no file, and for NULL.
 */
NVEV_EXPORT const char *nvev_get_group_json(const char *group_id);

/*
 * The text of an event's file without a byte order mark, owned by the library;
 * of several files of one identifier, the first. NULL when the event is unknown
 * and for NULL.
 */
NVEV_EXPORT const char *nvev_get_event_json(const char *event_id);

/*
 * What the settings say about an event: the text of a JSON object without
 * blanks between its parts, owned by the library. NULL when the settings hold
 * no object of that name, and for NULL. The event need not be in the catalog.
 */
NVEV_EXPORT const char *nvev_get_override_event_json(const char *event_id);

#ifdef __cplusplus
}
#endif

#endif
