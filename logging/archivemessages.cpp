// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "archivemessages.h"

#include <guiutils.h>

#include <KLocalizedString>
#include <KShell>

#include <QDir>
#include <QFileInfo>

namespace ArchiveMessages {
QString absolutePath(const QString &path)
{
    const QString absolute = QDir::home().absoluteFilePath(KShell::tildeExpand(path));
    const QFileInfo file(absolute);
    const QString directory = QFileInfo(file.path()).canonicalFilePath();
    return directory.isEmpty() ? absolute : QDir(directory).filePath(file.fileName());
}

QString pathProblem(const QString &path)
{
    const QFileInfo present(path);
    return present.exists() && !present.isFile() && !present.isDir()
        ? i18n("“%1” is not a regular file.", path)
        : QString();
}

void showError(QWidget *parent, const QString &text)
{
    Gui::Utils::showText(parent, QMessageBox::Critical, i18n("Error"), text);
}

void showFailure(QWidget *parent, const QString &what, const QString &reason)
{
    showError(parent, what + QLatin1Char('\n') + reason);
}
} // namespace ArchiveMessages
