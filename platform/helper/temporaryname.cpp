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

QString TemporaryName::fileNameOf(const QString &entry)
{
    // What prefixFor() and make() put around the name.
    const int nameSize = entry.size() - prefixFor(QString()).size() - digitCount - 1;
    if (nameSize <= 0 || !entry.endsWith(QLatin1Char('~'))
        || !std::all_of(entry.cend() - 1 - digitCount, entry.cend() - 1, isHexDigit)) {
        return {};
    }
    const QString name = entry.mid(1, nameSize);
    return entry.startsWith(prefixFor(name)) ? name : QString();
}

bool TemporaryName::matches(const QString &entry, const QString &fileName)
{
    return !fileName.isEmpty() && fileNameOf(entry) == fileName;
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
