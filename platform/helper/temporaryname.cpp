// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#include "temporaryname.h"

#include <KLocalizedString>
#include <QRandomGenerator>

#include <algorithm>
#include <cerrno>
#include <string>

namespace AdminEventsHelper {

namespace {

constexpr int digitCount = 16;
constexpr std::string_view mark(".adminevents-");

bool isHexDigit(char c)
{
    return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'f');
}

} // namespace

QString TemporaryName::make(const QString &fileName)
{
    const quint64 number = QRandomGenerator::system()->generate64();
    return QLatin1Char('.') + fileName + QLatin1String(mark.data(), int(mark.size()))
        + QStringLiteral("%1~").arg(number, digitCount, 16, QLatin1Char('0'));
}

std::string_view TemporaryName::fileNameOf(std::string_view entry)
{
    // What make() puts around the name.
    constexpr size_t behind = mark.size() + digitCount + 1;
    if (entry.size() <= 1 + behind || entry.front() != '.' || entry.back() != '~') {
        return {};
    }
    const std::string_view tail = entry.substr(entry.size() - behind);
    const std::string_view digits = tail.substr(mark.size(), digitCount);
    return tail.starts_with(mark) && std::all_of(digits.cbegin(), digits.cend(), isHexDigit)
        ? entry.substr(1, entry.size() - 1 - behind)
        : std::string_view();
}

QString TemporaryName::fileNameOf(const QString &entry)
{
    const std::string bytes = entry.toStdString();
    const std::string_view name = fileNameOf(std::string_view(bytes));
    return QString::fromUtf8(name.data(), int(name.size()));
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
