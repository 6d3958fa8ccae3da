// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#include "temporaryname.h"

#include <KLocalizedString>
#include <QRandomGenerator>

#include <algorithm>
#include <cerrno>

namespace AdminEventsHelper {

namespace {

constexpr int digitCount = 16;

QString prefixFor(const QString &fileName)
{
    return QLatin1Char('.') + fileName + QLatin1String(".adminevents-");
}

bool isHexDigit(QChar c)
{
    return (c >= QLatin1Char('0') && c <= QLatin1Char('9'))
        || (c >= QLatin1Char('a') && c <= QLatin1Char('f'));
}

} // namespace

QString TemporaryName::make(const QString &fileName)
{
    const quint64 number = QRandomGenerator::system()->generate64();
    return prefixFor(fileName) + QStringLiteral("%1~").arg(number, digitCount, 16, QLatin1Char('0'));
}

bool TemporaryName::matches(const QString &entry, const QString &fileName)
{
    const QString prefix = prefixFor(fileName);
    if (!entry.startsWith(prefix) || !entry.endsWith(QLatin1Char('~'))
        || entry.size() != prefix.size() + digitCount + 1) {
        return false;
    }
    return std::all_of(entry.cbegin() + prefix.size(), entry.cend() - 1, isHexDigit);
}

Outcome TemporaryName::removeLeftovers(const SafeDirectory &directory, const QString &fileName)
{
    const Result<QStringList> entries = directory.entries();
    if (!entries) {
        return entries.outcome();
    }
    for (const QString &entry : entries.value()) {
        if (!matches(entry, fileName)) {
            continue;
        }
        if (Outcome removed = directory.remove(entry); !removed) {
            return removed;
        }
    }
    return Outcome::success();
}

Outcome writeAndFlush(int descriptor, const QByteArray &bytes, const QString &path)
{
    qsizetype done = 0;
    while (done < bytes.size()) {
        const ssize_t count
            = ::write(descriptor, bytes.constData() + done, static_cast<size_t>(bytes.size() - done));
        if (count < 0 && errno == EINTR) {
            continue;
        }
        if (count < 0) {
            return Outcome::failure(i18n("\"%1\" cannot be written: %2", path, systemError(errno)));
        }
        done += count;
    }
    if (::fsync(descriptor) != 0) {
        return Outcome::failure(i18n("\"%1\" cannot be flushed to the disk: %2", path, systemError(errno)));
    }
    return Outcome::success();
}

} // namespace AdminEventsHelper
