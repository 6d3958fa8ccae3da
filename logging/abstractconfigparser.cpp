// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "abstractconfigparser.h"

#include <regularfile.h>

#include <KLocalizedString>

#include <cerrno>

AbstractConfigParser::AbstractConfigParser(const QString &configFile, QObject *parent)
    : QObject(parent)
    , m_configFile(configFile)
{
}

QByteArray AbstractConfigParser::readBytes() const
{
    setErrorString(QString());
    const RegularFile file = readRegularFile(m_configFile);
    QString reason;
    switch (file.state) {
    case RegularFile::Absent:
        reason = qt_error_string(ENOENT);
        break;
    case RegularFile::Failed:
        reason = file.reason;
        break;
    case RegularFile::Read:
        if (!decode(file.bytes).isEmpty()) {
            return file.bytes;
        }
        reason = i18n("Bad config file");
        break;
    }
    setErrorString(m_configFile + QLatin1String(": ") + reason);
    return {};
}

QString AbstractConfigParser::readConfig() const
{
    return decode(readBytes());
}

QString AbstractConfigParser::decode(const QByteArray &bytes)
{
    const int end = bytes.indexOf('\0');
    return QString::fromUtf8(bytes.constData(), end < 0 ? bytes.size() : end);
}
