// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "overridemerge.h"

namespace {
/// Adds the records of one merge, numbered from 0 in the order of the members.
class RecordWriter
{
public:
    RecordWriter(QJsonObject &target, const QJsonObject &override, OverlayMarks &marks)
        : m_target(target)
        , m_override(override)
        , m_marks(marks)
    {
    }

    void record(const QString &key)
    {
        // A real member of that name, in either object, is never replaced by a record.
        QString name;
        do {
            name = QStringLiteral("overlay%1").arg(m_counter++);
        } while (m_target.contains(name) || m_override.contains(name));
        m_target.insert(name, key);
        m_marks.records.insert(name);
        m_marks.named.insert(key);
    }

private:
    QJsonObject &m_target;
    const QJsonObject &m_override;
    OverlayMarks &m_marks;
    int m_counter = 0;
};
} // namespace

QJsonObject mergeNodes(QJsonObject base, const QJsonObject &override, OverlayMarks &marks)
{
    const QString enabled = QStringLiteral("enabled");
    RecordWriter records(base, override, marks);
    // Saved settings of an event that do not say otherwise switch it on.
    if (!override.contains(enabled) && base.contains(enabled)
        && base.contains(QLatin1String("message-params"))) {
        base.insert(enabled, QStringLiteral("1"));
        records.record(enabled);
    }
    for (auto it = override.begin(); it != override.end(); ++it) {
        const QString key = it.key();
        const QJsonValue present = base.value(key);
        if (present.isObject() && it->isObject()) {
            OverlayMarks inner;
            base.insert(key, mergeNodes(present.toObject(), it->toObject(), inner));
            if (!inner.isEmpty()) {
                marks.merged.insert(key, inner);
            }
        } else {
            base.insert(key, *it);
            records.record(key);
        }
    }
    return base;
}
