// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#include "coreutils.h"

#include "systempaths.h"

#include <QFile>
#include <QJsonParseError>
#include <QProcess>
#include <QProcessEnvironment>

namespace Core::Utils {

namespace {
constexpr int rebootWaitLimit = 30000; // ms
}

Result<QByteArray> readFile(const QString &path)
{
    QFile file(path);
    if (!file.exists())
        return {QStringLiteral("error: file doesn't exist: %1").arg(path), false};
    if (!file.open(QIODevice::ReadOnly))
        return {QStringLiteral("error: file can't be open: %1").arg(path), false};
    const QByteArray bytes = file.readAll();
    file.close();
    if (bytes.isEmpty())
        return {QStringLiteral("error: file is empty: %1").arg(path), false};
    return {bytes, true};
}

Result<QJsonDocument> convertFromJson(const QByteArray &json)
{
    if (json.isEmpty())
        return {QStringLiteral("error: json byte array is empty"), false};
    QJsonParseError parseError;
    const QJsonDocument document = QJsonDocument::fromJson(json, &parseError);
    if (parseError.error != QJsonParseError::NoError)
        return {QStringLiteral("error: json parse error: %1").arg(parseError.errorString()), false};
    return {document, true};
}

bool isModelsEqual(const QAbstractTableModel *a, const QAbstractTableModel *b, Qt::ItemDataRole role)
{
    const int rows = a->rowCount();
    const int columns = a->columnCount();
    if (rows != b->rowCount() || columns != b->columnCount())
        return false;
    for (int row = 0; row < rows; ++row) {
        for (int column = 0; column < columns; ++column) {
            if (a->index(row, column).data(role) != b->index(row, column).data(role))
                return false;
        }
    }
    return true;
}

void rebootSystem()
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("XDG_RUNTIME_DIR"),
                       QStringLiteral("/run/user/%1").arg(qEnvironmentVariable("SUDO_UID")));
    QProcess helper;
    helper.setProcessEnvironment(environment);
    helper.start(SystemPaths::resolve(SystemPaths::rebootHelper()), {QStringLiteral("ZEPWM_REBOOT")},
                 QIODevice::ReadWrite);
    helper.waitForFinished(rebootWaitLimit);
}

} // namespace Core::Utils
