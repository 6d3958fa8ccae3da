// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#include "notifyrccheck.h"

#include "shown.h"

#include <KLocalizedString>
#include <QTextCodec>

#include <algorithm>

namespace AdminEventsHelper {

namespace {

constexpr size_t nameLimit = 100;

bool isLetterOrDigit(char c)
{
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9');
}

bool isUtf8(const QByteArray &text)
{
    QTextCodec::ConverterState state;
    QTextCodec::codecForName("UTF-8")->toUnicode(text.constData(), text.size(), &state);
    return state.invalidChars == 0 && state.remainingChars == 0;
}

bool isPrintable(const QByteArray &line)
{
    return std::all_of(line.cbegin(), line.cend(), [](char c) {
        const auto byte = static_cast<unsigned char>(c);
        return (byte >= 0x20 || c == '\t') && byte != 0x7f;
    });
}

bool isGroup(const QByteArray &line)
{
    if (!line.endsWith(']')) {
        return false;
    }
    const QByteArray name = line.mid(1, line.size() - 2);
    const bool isKnown
        = name == "Global" || name == "$Version" || name.startsWith("Event/") || name.startsWith("Context/");
    return isKnown && !name.contains('[') && !name.contains(']');
}

bool isEntry(const QByteArray &line)
{
    const int end = line.indexOf('=');
    return end > 0 && line.at(0) != '[' && std::all_of(line.cbegin(), line.cbegin() + end, [](char c) {
               return isLetterOrDigit(c) || QByteArray(" ._-$[]@").contains(c);
           });
}

bool isLine(const QByteArray &line)
{
    if (!isPrintable(line)) {
        return false;
    }
    const QByteArray trimmed = line.trimmed();
    return trimmed.isEmpty() || trimmed.startsWith('#')
        || (trimmed.startsWith('[') ? isGroup(trimmed) : isEntry(trimmed));
}

} // namespace

bool NotifyrcCheck::isFileName(std::string_view name)
{
    constexpr std::string_view watcher("nivra-event-watcher");
    constexpr std::string_view suffix(".notifyrc");
    return name.size() <= nameLimit && name.find(watcher) != std::string_view::npos && name.front() != '.'
        && name.size() > suffix.size() && name.substr(name.size() - suffix.size()) == suffix
        && std::all_of(name.cbegin(), name.cend(),
                       [](char c) { return isLetterOrDigit(c) || c == '.' || c == '_' || c == '-'; });
}

Outcome NotifyrcCheck::check(const QString &path, const QByteArray &content)
{
    if (content.size() > sizeLimit) {
        return Outcome::failure(i18n("\"%1\" is larger than %2 bytes.", path, QString::number(sizeLimit)));
    }
    if (!isUtf8(content)) {
        return Outcome::failure(i18n("\"%1\" is not text in UTF-8.", path));
    }
    const QList<QByteArray> lines = content.split('\n');
    for (int i = 0; i < lines.size(); ++i) {
        QByteArray line = lines.at(i);
        if (line.endsWith('\r')) {
            line.chop(1);
        }
        if (!isLine(line)) {
            return Outcome::failure(i18n("Line %1 of \"%2\" does not belong in notification settings: %3",
                                         QString::number(i + 1), path, shown(line)));
        }
    }
    return Outcome::success();
}

} // namespace AdminEventsHelper
