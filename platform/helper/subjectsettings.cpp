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

void writeValues(QByteArray &text, const QByteArray &prefix, const OperationSettings::Values &values)
{
    for (int value = 1; value <= largestAuditValue; ++value) {
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

/** @param room how many subjects may still be listed. */
bool readRange(const QByteArray &word, int value, OperationSettings::Values &values, quint32 &room)
{
    const QList<QByteArray> ends = word.split('-');
    bool firstIsNumber = false;
    bool lastIsNumber = false;
    const quint32 first = ends.first().toUInt(&firstIsNumber);
    const quint32 last = ends.last().toUInt(&lastIsNumber);
    // Wrong ranges, one or many, must not fill the memory.
    if (ends.size() > 2 || !firstIsNumber || !lastIsNumber || last < first || last - first >= room) {
        return false;
    }
    room -= last - first + 1;
    for (quint32 id = first;; ++id) {
        values.insert(id, value);
        if (id == last) {
            return true;
        }
    }
}

bool readLine(const QByteArray &line, SubjectSettings &settings, quint32 &room)
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
        || value > largestAuditValue) {
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
        if (!readRange(word, value, values, room)) {
            return false;
        }
    }
    return true;
}

} // namespace

quint32 SubjectText::subjectsIn(const SubjectSettings &settings)
{
    quint32 count = 0;
    for (const OperationSettings &operation : settings) {
        count += quint32(operation.users.size()) + quint32(operation.groups.size());
    }
    return count;
}

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
    quint32 room = subjectLimit;
    const QList<QByteArray> lines = text.split('\n');
    for (int i = 0; i < lines.size(); ++i) {
        if (lines.at(i).startsWith(mark) && !readLine(lines.at(i), settings, room)) {
            return Outcome::failure(
                i18n("Line %1 of \"%2\" holds no audit setting.", QString::number(i + 1), path));
        }
    }
    return settings;
}

} // namespace AdminEventsHelper
