// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#include "jointconditions.h"

#include <limits>

namespace AdminEventsHelper {

namespace {

constexpr int fieldLimit = 58; // auditctl's, less what the calls and the rule itself need

QList<QByteArray> fieldsOf(const QByteArray &condition)
{
    QList<QByteArray> fields;
    for (const QByteArray &word : condition.split(' ')) {
        if (!word.isEmpty() && word != "-F") {
            fields << word;
        }
    }
    return fields;
}

QByteArray textOf(const QList<QByteArray> &fields)
{
    QByteArray text;
    for (const QByteArray &field : fields) {
        text += " -F " + field;
    }
    return text;
}

/** True when no process can fulfil all fields. */
bool contradict(const QList<QByteArray> &fields)
{
    if (fields.contains("success=0") && fields.contains("success=1")) {
        return true;
    }
    quint32 lowest = 0;
    quint32 highest = std::numeric_limits<quint32>::max();
    for (const QByteArray &field : fields) {
        const quint32 value = field.mid(field.lastIndexOf('=') + 1).toUInt();
        const bool isExact = field.startsWith("uid=");
        if (isExact || field.startsWith("uid>=")) {
            lowest = qMax(lowest, value);
        }
        if (isExact || field.startsWith("uid<=")) {
            highest = qMin(highest, value);
        }
        if (fields.contains(QByteArray(field).replace("id=", "id!="))
            && (isExact || field.startsWith("gid="))) {
            return true;
        }
    }
    return lowest > highest;
}

} // namespace

JointConditions::JointConditions(const QList<QByteArray> &first, const QList<QByteArray> &second)
{
    for (const QByteArray &condition : first) {
        (second.contains(condition) ? m_both : m_first).append(condition);
    }
    for (const QByteArray &condition : second) {
        if (!m_both.contains(condition)) {
            m_second.append(condition);
        }
    }
    combine();
}

void JointConditions::combine()
{
    if (qint64(m_first.size()) * m_second.size() > limit) {
        return;
    }
    QList<QByteArray> combined;
    for (const QByteArray &first : qAsConst(m_first)) {
        for (const QByteArray &second : qAsConst(m_second)) {
            QList<QByteArray> fields = fieldsOf(first);
            for (const QByteArray &field : fieldsOf(second)) {
                if (!fields.contains(field)) {
                    fields << field;
                }
            }
            const QByteArray condition = textOf(fields);
            if (!contradict(fields) && fields.size() <= fieldLimit && !combined.contains(condition)) {
                combined << condition;
            }
        }
    }
    for (const QByteArray &condition : qAsConst(combined)) {
        // All that this one asks for, the other does as well.
        m_first.removeAll(condition);
        m_second.removeAll(condition);
    }
    m_both << combined;
}

} // namespace AdminEventsHelper
