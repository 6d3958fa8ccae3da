// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <QString>

class QWidget;

/** Message boxes that go with saving; each blocks in a nested event loop until it is closed. */
namespace Gui::Utils {

/**
 * Shows @p text and asks whether to reboot now.
 * @return true only for Yes; closing the box means No.
 */
[[nodiscard]] bool confirmAboutReboot(const QString &text);

/** Warns that the notification configuration file for @p name is broken. */
void confirmAboutBrokenNotifyConfig(QWidget *parent, const QString &name);

} // namespace Gui::Utils
