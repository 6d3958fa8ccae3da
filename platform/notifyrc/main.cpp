// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#include "catalognotifyrc.h"

#include <QCoreApplication>
#include <QDir>
#include <QSaveFile>
#include <QTextStream>

/** Writes the notification settings files of an event catalog: "CATALOG-DIRECTORY OUTPUT-DIRECTORY". */
int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    QTextStream errors(stderr);
    if (arguments.size() != 3) {
        errors << "Usage: " << arguments.value(0) << " CATALOG-DIRECTORY OUTPUT-DIRECTORY\n";
        return 2;
    }
    const CatalogNotifyrc catalog(arguments.at(1));
    for (const QString &error : catalog.errors()) {
        errors << error << '\n';
    }
    if (!catalog.errors().isEmpty()) {
        return 1;
    }
    const QMap<QString, QByteArray> files = catalog.files();
    for (auto file = files.cbegin(); file != files.cend(); ++file) {
        QSaveFile output(QDir(arguments.at(2)).filePath(file.key()));
        if (!output.open(QIODevice::WriteOnly) || output.write(*file) != file->size() || !output.commit()) {
            errors << output.fileName() << ": " << output.errorString() << '\n';
            return 1;
        }
    }
    return 0;
}
