// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <QString>

/**
 * The places of the system files that the module knows.
 *
 * Every function but root() and resolve() returns a logical path: an absolute path as it is on an installed
 * system. Privileged actions are given the logical path, since the helper has a root directory of its own;
 * what the module reads itself, it reads from resolve(logical path).
 */
class SystemPaths
{
public:
    SystemPaths() = delete;

    /**
     * The directory that stands for "/": the value of the environment variable ADMINEVENTS_ROOT, absolute and
     * clean, or "/" when it is unset or empty. Read at every call.
     */
    [[nodiscard]] static QString root();

    /**
     * @param logicalPath an absolute path; one without a leading slash is taken for absolute, and ".." never
     *                    leads out of the root.
     * @return the place of that path below root().
     */
    [[nodiscard]] static QString resolve(const QString &logicalPath);

    /** The directory of the event catalog, one JSON file an event in subdirectories. */
    [[nodiscard]] static QString eventSettingsDirectory();
    /** The administrator's overrides of the catalog, JSON. */
    [[nodiscard]] static QString eventSettingsFile();
    /** The rules that the audit daemon loads for the events. */
    [[nodiscard]] static QString auditRulesFile();
    /** Display names of parameters, JSON. */
    [[nodiscard]] static QString nodeDictionary();
    /** Dummy values for the example of a log record, JSON. */
    [[nodiscard]] static QString exampleData();
    /** The directory of all configuration files of the logging service. */
    [[nodiscard]] static QString daemonDirectory();
    /** The main configuration of the logging service's event module. */
    [[nodiscard]] static QString mainConfiguration();
    /** The directory of the per-event notification fragments. */
    [[nodiscard]] static QString fragmentDirectory();
    /** The directory of the notification settings files that come with the system. */
    [[nodiscard]] static QString notificationDirectory();
    /** The directory of the users' home directories. */
    [[nodiscard]] static QString homeRoot();
    /** The superuser's configuration directory, whose notification settings are given to all users. */
    [[nodiscard]] static QString superuserConfiguration();
    /** The rotation rules for the event log. */
    [[nodiscard]] static QString rotationFile();
    /** The directory of the event log. */
    [[nodiscard]] static QString eventLogDirectory();
    /** The main event log, one JSON record a line. */
    [[nodiscard]] static QString eventLogFile();
    /** The program of the desktop that asks the session for a reboot. */
    [[nodiscard]] static QString rebootHelper();
};
