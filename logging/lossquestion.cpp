// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "lossquestion.h"

#include <KGuiItem>
#include <KLocalizedString>
#include <KMessageBox>
#include <KStandardGuiItem>

bool LossQuestion::isAgreed(QWidget *parent, const QString &path, const QStringList &losses)
{
    if (losses.isEmpty()) {
        return true;
    }
    constexpr int most = 500;
    QStringList shown = losses.mid(0, most);
    if (losses.size() > most) {
        shown.append(i18np("and one more", "and %1 more", losses.size() - most));
    }
    return KMessageBox::warningContinueCancelList(
               parent, i18n("Saving rewrites the whole file %1, and not all of its text can be kept:", path),
               shown, i18n("Text would be lost"), KGuiItem(i18n("Save All the Same")),
               KStandardGuiItem::cancel(), QString(), KMessageBox::Notify | KMessageBox::Dangerous)
        == KMessageBox::Continue;
}
