// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#include "subjectsettings.h"

#include "auditoperations.h"
#include "numberranges.h"

#include <KLocalizedString>

namespace AdminEventsHelper {

namespace {

const QByteArray mark("#@ ");
constexpr int lineLimit = 300;
constexpr int largestValue = 3;

void writeValues(QByteArray &text, const QByteArray &prefix, const OperationSettings::Values &values)
{
    for (int value = 1; value <= largestValue; ++value) {
        const QByteArray start = prefix + QByteArray::number(value);
        QByteArray line = start;
        const QList<NumberRange> ranges
            = NumberRanges::of(values, [value](int present) { return present == value; });
        for (const NumberRange &range : ranges) {
            QByteArray word = ' ' + QByteArray::number(range.first);
            if (range.last != range.first) {
                word += '-' + QByteArray::number(range.last);
            }
            if (line.size() + word.size() > lineLimit) {
                text += line + '\n';
                line = start;
            }
            line += word;
        }
        if (line != start) {
            text += line + '\n';
        }
    }
}

bool readRange(const QByteArray &word, int value, OperationSettings::Values &values)
{
    const QList<QByteArray> ends = word.split('-');
    bool firstIsNumber = false;
    bool lastIsNumber = false;
    const quint32 first = ends.first().toUInt(&firstIsNumber);
    const quint32 last = ends.last().toUInt(&lastIsNumber);
    // A wrong range must not fill the memory.
    constexpr quint32 longest = 1000000;
    if (ends.size() > 2 || !firstIsNumber || !lastIsNumber || last < first || last - first > longest) {
        return false;
    }
    for (quint32 id = first;; ++id) {
        values.insert(id, value);
        if (id == last) {
            return true;
        }
    }
}

bool readLine(const QByteArray &line, SubjectSettings &settings)
{
    QList<QByteArray> words = line.mid(mark.size()).split(' ');
    if (words.size() < 3) {
        return false;
    }
    const QString identifier = QString::fromLatin1(words.takeFirst());
    const QByteArray type = words.takeFirst();
    bool isNumber = false;
    const int value = words.takeFirst().toInt(&isNumber);
    if (!AuditOperations::identifiers().contains(identifier) || !isNumber || value < 0
        || value > largestValue) {
        return false;
    }
    OperationSettings &operation = settings[identifier];
    if (type == "other") {
        operation.other = value;
        return words.isEmpty();
    }
    if (type != "users" && type != "groups") {
        return false;
    }
    OperationSettings::Values &values = type == "users" ? operation.users : operation.groups;
    for (const QByteArray &word : qAsConst(words)) {
        if (!readRange(word, value, values)) {
            return false;
        }
    }
    return true;
}

} // namespace

QByteArray SubjectText::write(const SubjectSettings &settings)
{
    QByteArray text;
    for (const QString &identifier : AuditOperations::identifiers()) {
        const auto operation = settings.constFind(identifier);
        if (operation == settings.cend()) {
            continue;
        }
        const QByteArray start = mark + identifier.toLatin1();
        text += start + " other " + QByteArray::number(operation->other) + '\n';
        writeValues(text, start + " users ", operation->users);
        writeValues(text, start + " groups ", operation->groups);
    }
    return text;
}

Result<SubjectSettings> SubjectText::read(const QByteArray &text, const QString &path)
{
    SubjectSettings settings;
    const QList<QByteArray> lines = text.split('\n');
    for (int i = 0; i < lines.size(); ++i) {
        if (lines.at(i).startsWith(mark) && !readLine(lines.at(i), settings)) {
            return Outcome::failure(
                i18n("Line %1 of \"%2\" holds no audit setting.", QString::number(i + 1), path));
        }
    }
    return settings;
}

} // namespace AdminEventsHelper
