// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#include "auditassembler.h"

#include <QDir>

#include <algorithm>

namespace NivraRecorder {

namespace {

// More than the daemon ever mixes; a flood without ends must not grow in memory.
constexpr int pendingLimit = 500;
constexpr int recordLimit = 200;

/** The record of the object that the call was about: not the directory in which it lies. */
const AuditRecord *objectOf(const QList<AuditRecord> &records)
{
    const AuditRecord *object = nullptr;
    for (const AuditRecord &record : records) {
        const bool isPath = record.type == QLatin1String("PATH");
        if (isPath
            && (object == nullptr
                || record.fields.value(QStringLiteral("nametype")) != QLatin1String("PARENT"))) {
            object = &record;
        }
    }
    return object;
}

} // namespace

AuditAssembler::AuditAssembler()
{
    m_clock.start();
}

AuditEvent AuditAssembler::assembled(const QList<AuditRecord> &records)
{
    AuditEvent event;
    const AuditRecord *object = objectOf(records);
    for (const AuditRecord &record : records) {
        event.types.insert(record.type);
        if (record.type == QLatin1String("PATH") && &record != object) {
            continue;
        }
        for (auto it = record.fields.cbegin(); it != record.fields.cend(); ++it) {
            if (!event.fields.contains(it.key())) {
                event.fields.insert(it.key(), *it);
            }
        }
    }
    const QString directory = event.fields.value(QStringLiteral("cwd"));
    if (object != nullptr && !directory.isEmpty()) {
        QString &name = event.fields[QStringLiteral("name")];
        if (!name.isEmpty() && !QDir::isAbsolutePath(name)) {
            name = QDir::cleanPath(directory + QLatin1Char('/') + name);
        }
    }
    return event;
}

QList<AuditEvent> AuditAssembler::add(const QByteArray &line)
{
    const std::optional<AuditRecord> record = AuditRecord::parse(line);
    if (!record) {
        return {};
    }
    auto pending = std::find_if(m_pending.begin(), m_pending.end(),
                                [&](const Pending &one) { return one.id == record->event; });
    QList<AuditEvent> complete;
    if (record->type == QLatin1String("EOE")) {
        if (pending != m_pending.end()) {
            complete << assembled(pending->records);
            m_pending.erase(pending);
        }
        return complete;
    }
    if (pending == m_pending.end()) {
        m_pending.append({record->event, m_clock.elapsed(), {}});
        pending = std::prev(m_pending.end());
    }
    if (pending->records.size() < recordLimit) {
        pending->records << *record;
    }
    if (m_pending.size() > pendingLimit) {
        complete << assembled(m_pending.takeFirst().records);
    }
    return complete;
}

QList<AuditEvent> AuditAssembler::takeOverdue()
{
    QList<AuditEvent> events;
    while (!m_pending.isEmpty() && m_clock.elapsed() - m_pending.constFirst().since >= patience) {
        events << assembled(m_pending.takeFirst().records);
    }
    return events;
}

QList<AuditEvent> AuditAssembler::takeAll()
{
    QList<AuditEvent> events;
    for (const Pending &pending : qAsConst(m_pending)) {
        events << assembled(pending.records);
    }
    m_pending.clear();
    return events;
}

} // namespace NivraRecorder
