// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <QMessageBox>
#include <QString>

class QWidget;

/** What windows of several folders do alike. A message box blocks in a nested event loop until it is closed.
 */
namespace Gui::Utils {

/** Shows @p window above the others and gives it the focus, whether it was shown before or not. */
void bringUp(QWidget &window);

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
