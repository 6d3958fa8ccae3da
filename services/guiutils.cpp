// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#include "guiutils.h"

#include <KLocalizedString>

#include <QPointer>

namespace Gui::Utils {

void bringUp(QWidget &window)
{
    window.show();
    window.raise();
    window.activateWindow();
}

QMessageBox::StandardButton showText(QWidget *parent, QMessageBox::Icon icon, const QString &title,
                                     const QString &text, QMessageBox::StandardButtons buttons,
                                     QMessageBox::StandardButton defaultButton)
{
    // On the heap: its parent destroys it when the window is closed under it.
    const QPointer<QMessageBox> box(new QMessageBox(icon, title, text, buttons, parent));
    box->setTextFormat(Qt::PlainText);
    box->setDefaultButton(defaultButton);
    const int answer = box->exec();
    delete box;
    return static_cast<QMessageBox::StandardButton>(answer);
}

bool confirmAboutReboot(const QString &text)
{
    return showText(nullptr, QMessageBox::Question, i18n("Reboot"),
                    QStringLiteral("%1\n%2").arg(text, i18n("Reboot now?")),
                    QMessageBox::Yes | QMessageBox::No)
        == QMessageBox::Yes;
}

void confirmAboutBrokenNotifyConfig(QWidget *parent, const QString &name)
{
    showText(parent, QMessageBox::Warning, i18n("Error"), i18n("Config file for \"%1\" is broken.", name));
}

} // namespace Gui::Utils
