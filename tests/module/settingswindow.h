// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <admineventsmodule.h>
#include <commonsettingswindow.h>

#include <QByteArray>
#include <QString>
#include <QStringList>

class PageFixture;

/// Steps in the window of the common settings, as the page opens it.
namespace SettingsWindow {
[[nodiscard]] CommonSettingsWindow &of(const AdminEventsModule &page);
/// Gives a fixture the files that the window edits, as they are shipped. @return whether they are there
[[nodiscard]] bool putShippedFiles(const PageFixture &machine, const QString &data);
/// Clicks the page's button and turns to a tab.
void open(const AdminEventsModule &page, const char *tab);
void clickOk(const AdminEventsModule &page);
/// Names an archive on the tab "exportTab" or "importTab", and confirms.
void transfer(const AdminEventsModule &page, const char *tab, const QString &archive);
void setNumberOfLogs(const AdminEventsModule &page, int number);
/// Adds a destination through the button and the dialog. @return whether the dialog took it
[[nodiscard]] bool addFileDestination(const AdminEventsModule &page, const QString &name,
                                      const QString &path);
/// Removes the destination of that name through the button. @return whether there was one
[[nodiscard]] bool removeDestination(const AdminEventsModule &page, const QString &name);

/// All that the page, the window and the notification dialogs show, one thing a line.
[[nodiscard]] QStringList picture(AdminEventsModule &page, const QStringList &notifyingEvents);
} // namespace SettingsWindow

/// The real syslog-ng on a fixture's root directory.
namespace RealService {
/**
 * Puts the program's configuration below the root, and the stand-in that starts and stops it in the place of
 * the service manager.
 * @return false when there is no syslog-ng
 */
[[nodiscard]] bool prepare(const PageFixture &machine, const QString &systemctl);
void stop(const PageFixture &machine, const QString &systemctl);
/// Hands a record over as an event source does. @return whether the service took it
[[nodiscard]] bool send(const PageFixture &machine, const QByteArray &record);
} // namespace RealService
