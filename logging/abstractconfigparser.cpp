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

QStringList AbstractConfigParser::lostByDecoding(const QByteArray &bytes)
{
    QStringList losses;
    const int zero = bytes.indexOf('\0');
    QList<QByteArray> lines = bytes.left(zero < 0 ? bytes.size() : zero).split('\n');
    if (const QByteArray mark = QByteArrayLiteral("\xef\xbb\xbf"); lines.first().startsWith(mark)) {
        lines.first().remove(0, mark.size());
    }
    for (int i = 0; i < lines.size(); ++i) {
        if (QString::fromUtf8(lines.at(i)).toUtf8() != lines.at(i)) {
            losses.append(
                i18n("Line %1: the bytes that are not UTF-8 would be lost.", QString::number(i + 1)));
        }
    }
    if (zero >= 0) {
        losses.append(i18n("Line %1: everything from the zero byte to the end of the file would be lost.",
                           QString::number(lines.size())));
    }
    return losses;
}
