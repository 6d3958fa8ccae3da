// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <QMessageBox>
#include <QString>

class QWidget;

/** Message boxes that go with saving; each blocks in a nested event loop until it is closed. */
namespace Gui::Utils {

/**
 * Shows @p text as it stands, whatever in it looks like markup. @p parent may be destroyed meanwhile.
 * @return the button that closed the box; NoButton when the box went with its parent.
 */
QMessageBox::StandardButton showText(QWidget *parent, QMessageBox::Icon icon, const QString &title,
                                     const QString &text,
                                     QMessageBox::StandardButtons buttons = QMessageBox::Ok,
                                     QMessageBox::StandardButton defaultButton = QMessageBox::NoButton);

/**
 * Shows @p text and asks whether to reboot now.
 * @return true only for Yes; closing the box means No.
 */
[[nodiscard]] bool confirmAboutReboot(const QString &text);

/** Warns that the notification configuration file for @p name is broken. */
void confirmAboutBrokenNotifyConfig(QWidget *parent, const QString &name);

} // namespace Gui::Utils
