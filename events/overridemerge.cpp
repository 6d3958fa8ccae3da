// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "overridemerge.h"

#include <utility>

namespace {
/// Where an object stands in the description of its event.
struct Place
{
    QString name;
    const Place *above = nullptr; // null for the description itself

    /// The "users" or "groups" of an audit identifier, with one member an account.
    [[nodiscard]] bool isSubjects() const
    {
        return (name == QLatin1String("users") || name == QLatin1String("groups")) && above && above->above
            && above->above->name == QLatin1String("message-audit-events") && !above->isBelowSubjects();
    }
    [[nodiscard]] bool isBelowSubjects() const
    {
        return above && (above->isSubjects() || above->isBelowSubjects());
    }
};

/// Adds the records of one merge, numbered from 0 in the order of the members.
class RecordWriter
{
public:
    RecordWriter(QJsonObject &target, const QJsonObject &override, OverlayMarks &marks, bool recordsAreKept)
        : m_target(target)
        , m_override(override)
        , m_marks(marks)
        , m_recordsAreKept(recordsAreKept)
    {
    }

    void record(const QString &key)
    {
        m_marks.named.insert(key);
        if (!m_recordsAreKept) {
            return;
        }
        // A real member of that name, in either object, is never replaced by a record.
        QString name;
        do {
            name = QLatin1String("overlay") + QString::number(m_counter++);
        } while (m_target.contains(name) || m_override.contains(name));
        m_target.insert(name, key);
        m_marks.records.insert(name);
    }

private:
    QJsonObject &m_target;
    const QJsonObject &m_override;
    OverlayMarks &m_marks;
    bool m_recordsAreKept;
    int m_counter = 0;
};

QJsonObject mergeAt(const Place &place, QJsonObject base, const QJsonObject &override, OverlayMarks &marks)
{
    const QString enabled = QStringLiteral("enabled");
    // Between accounts nobody reads the records, and there may be thousands of either.
    RecordWriter records(base, override, marks, !place.isSubjects());
    // Saved settings of an event that do not say otherwise switch it on.
    if (!override.contains(enabled) && base.contains(enabled)
        && base.contains(QLatin1String("message-params"))) {
        base.insert(enabled, QStringLiteral("1"));
        records.record(enabled);
    }
    for (auto it = override.begin(); it != override.end(); ++it) {
        const QString key = it.key();
        const auto present = base.find(key);
        if (present == base.end()) {
            base.insert(key, *it);
            records.record(key);
        } else if (present->isObject() && it->isObject()) {
            QJsonObject object = present->toObject();
            *present = QJsonValue(); // an object that two hold would be copied before it is changed
            OverlayMarks inner;
            *present = mergeAt({key, &place}, std::move(object), it->toObject(), inner);
            if (!inner.isEmpty()) {
                marks.merged.insert(key, inner);
            }
        } else {
            *present = *it;
            records.record(key);
        }
    }
    return base;
}
} // namespace

QJsonObject mergeNodes(QJsonObject base, const QJsonObject &override, OverlayMarks &marks)
{
    return mergeAt({}, std::move(base), override, marks);
}
