// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#include "guiutils.h"

#include <KLocalizedString>

#include <QMessageBox>

namespace Gui::Utils {

bool confirmAboutReboot(const QString &text)
{
    return QMessageBox::question(nullptr, i18n("Reboot"),
                                 QStringLiteral("%1\n%2").arg(text, i18n("Reboot now?")),
                                 QMessageBox::Yes | QMessageBox::No)
        == QMessageBox::Yes;
}

void confirmAboutBrokenNotifyConfig(QWidget *parent, const QString &name)
{
    QMessageBox box(QMessageBox::Warning, i18n("Error"), i18n("Config file for \"%1\" is broken.", name),
                    QMessageBox::Ok, parent);
    // The name comes from a file: never to be taken for markup.
    box.setTextFormat(Qt::PlainText);
    box.exec();
}

} // namespace Gui::Utils
