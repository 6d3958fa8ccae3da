// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#include "settingsfile.h"

#include "regularfile.h"

#include <KLocalizedString>

#include <QCryptographicHash>
#include <QJsonDocument>
#include <QJsonParseError>

namespace {

/** Fills @p object, or says what is wrong with @p bytes. */
QString parseProblem(const QByteArray &bytes, QJsonObject &object)
{
    if (bytes.trimmed().isEmpty())
        return i18n("it is empty");
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(bytes, &error);
    if (error.error != QJsonParseError::NoError) {
        const auto line = bytes.left(error.offset).count('\n') + 1;
        return i18nc("1: text of the JSON parser, 2: line number", "%1 (line %2)", error.errorString(),
                     QString::number(line));
    }
    if (!document.isObject())
        return i18n("it does not hold a JSON object");
    object = document.object();
    return {};
}

} // namespace

SettingsFile readSettingsFile(const QString &resolvedPath)
{
    SettingsFile result;
    const RegularFile file = readRegularFile(resolvedPath);
    if (file.state == RegularFile::Failed) {
        result.state = SettingsFile::Unreadable;
        result.reason = i18nc("1: path, 2: reason", "The event settings file %1 cannot be read: %2.",
                              resolvedPath, file.reason);
    } else if (file.state == RegularFile::Read) {
        result.contentHash = QCryptographicHash::hash(file.bytes, QCryptographicHash::Sha256);
        const QString problem = parseProblem(file.bytes, result.object);
        result.state = problem.isEmpty() ? SettingsFile::Good : SettingsFile::Malformed;
        if (!problem.isEmpty())
            result.reason
                = i18nc("1: path, 2: reason", "The event settings file %1 cannot be understood: %2.",
                        resolvedPath, problem);
    }
    return result;
}
