// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "destinationopener.h"

#include "destinationreferences.h"
#include "destinationsdictionary.h"
#include "destinationtext.h"

#include <systempaths.h>
#include <treeitem.h>

#include <KLocalizedString>

#include <QDesktopServices>
#include <QFileInfo>
#include <QUrl>

namespace {
/// The path of the first file driver; a null string when there is none.
QString filePath(const TreeItem &destination)
{
    const auto parameters = DestinationReferences::parameters(destination);
    for (const DestinationReferences::Parameter &parameter : parameters) {
        if (parameter.name == DestinationsDictionary::fileParameter()) {
            return DestinationText::shown(parameter.name, parameter.value);
        }
    }
    return {};
}
} // namespace

QString DestinationOpener::open(const TreeItem &destination)
{
    const QString name = destination.value(1).toString();
    const QString path = filePath(destination);
    if (path.isNull()) {
        return i18n("The destination “%1” does not lead to a file, so there is nothing to open.", name);
    }
    if (path.contains(QLatin1Char('$'))) {
        return i18n("The path “%1” of the destination “%2” depends on the event, so it names no single file.",
                    path, name);
    }
    if (!path.startsWith(QLatin1Char('/'))) {
        return i18n(
            "The path “%1” of the destination “%2” is not absolute, so only the logging service knows "
            "the file.",
            path, name);
    }
    const QFileInfo file(SystemPaths::resolve(path));
    // A directory that may not be entered hides whether the file is there.
    if (!file.exists()) {
        return QFileInfo(file.path()).isExecutable() || !QFileInfo::exists(file.path())
            ? i18n("The file “%1” does not exist. The logging service creates it with the first event.", path)
            : i18n("You may not look into the directory of the file “%1”.", path);
    }
    if (!file.isFile()) {
        return i18n("“%1” is not a regular file.", path);
    }
    if (!file.isReadable()) {
        return i18n("You may not read the file “%1”.", path);
    }
    if (!QDesktopServices::openUrl(QUrl::fromLocalFile(file.filePath()))) {
        return i18n("No program could be started to open the file “%1”.", path);
    }
    return {};
}
