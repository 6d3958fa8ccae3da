// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#include "subjectrules.h"

#include "auditoperations.h"
#include "jointconditions.h"
#include "numberranges.h"

#include <KLocalizedString>

#include <QHash>
#include <QSet>

#include <limits>

namespace AdminEventsHelper {

namespace {

constexpr int successBit = 1;
constexpr int failureBit = 2;
// auditctl takes 63 fields a rule; architecture, outcome, key, two for arguments and two for a range of users
// are kept free.
constexpr int exclusionLimit = 56;

// Of more conditions than this it is no use to know how many they are.
constexpr int countLimit = 10 * SubjectRules::ruleLimit;

QByteArray userField(const NumberRange &range)
{
    if (range.first == range.last) {
        return " -F uid=" + QByteArray::number(range.first);
    }
    QByteArray field;
    if (range.first > 0) {
        field += " -F uid>=" + QByteArray::number(range.first);
    }
    if (range.last < std::numeric_limits<quint32>::max()) {
        field += " -F uid<=" + QByteArray::number(range.last);
    }
    return field;
}

QList<NumberRange> complementOf(const QList<NumberRange> &ranges)
{
    QList<NumberRange> gaps;
    quint32 next = 0;
    for (const NumberRange &range : ranges) {
        if (range.first > next) {
            gaps.append({next, range.first - 1});
        }
        if (range.last == std::numeric_limits<quint32>::max()) {
            return gaps;
        }
        next = range.last + 1;
    }
    gaps.append({next, std::numeric_limits<quint32>::max()});
    return gaps;
}

int numbersIn(const QList<NumberRange> &ranges)
{
    quint64 count = 0;
    for (const NumberRange &range : ranges) {
        count += quint64(range.last) - range.first + 1;
    }
    return int(qMin<quint64>(count, std::numeric_limits<int>::max()));
}

/** The subjects' fields of the rules that record one outcome of one operation. */
class Conditions
{
public:
    Conditions(const OperationSettings &settings, int bit)
        : m_settings(settings)
        , m_bit(bit)
    {
    }

    Result<QList<QByteArray>> make(const QString &identifier)
    {
        if ((m_settings.other & m_bit) == 0) {
            addUsers();
            addGroups();
            return m_fields;
        }
        const auto lacks = [this](int value) { return value != 0 && (value & m_bit) == 0; };
        const QList<NumberRange> users = NumberRanges::of(m_settings.users, lacks);
        const QList<NumberRange> groups = NumberRanges::of(m_settings.groups, lacks);
        const int groupCount = numbersIn(groups);
        if (groupCount > exclusionLimit) {
            return Outcome::failure(i18n(
                "The operation \"%1\" is recorded of everybody but %2 groups; the kernel takes at most %3.",
                identifier, QString::number(groupCount), QString::number(exclusionLimit)));
        }
        addOthers(users, groups);
        // Who is excepted by one name, their own or a group's, may be recorded by another.
        if (!groups.isEmpty()) {
            addUsers();
        }
        if (!users.isEmpty() || !groups.isEmpty()) {
            addGroups();
        }
        return m_fields;
    }

private:
    void addUsers()
    {
        const QList<NumberRange> ranges
            = NumberRanges::of(m_settings.users, [this](int value) { return (value & m_bit) != 0; });
        for (const NumberRange &range : ranges) {
            if (m_fields.size() < countLimit) {
                m_fields.append(userField(range));
            }
        }
    }

    void addGroups()
    {
        for (auto it = m_settings.groups.cbegin();
             it != m_settings.groups.cend() && m_fields.size() < countLimit; ++it) {
            if ((it.value() & m_bit) != 0) {
                m_fields.append(" -F gid=" + QByteArray::number(it.key()));
            }
        }
    }

    void addOthers(const QList<NumberRange> &users, const QList<NumberRange> &groups)
    {
        const QByteArray withoutGroups = exclusions(" -F gid!=", groups);
        if (numbersIn(users) + numbersIn(groups) <= exclusionLimit) {
            m_fields.append(exclusions(" -F uid!=", users) + withoutGroups);
            return;
        }
        for (const NumberRange &gap : complementOf(users)) {
            m_fields.append(userField(gap) + withoutGroups);
        }
    }

    static QByteArray exclusions(const char *field, const QList<NumberRange> &ranges)
    {
        QByteArray text;
        for (const NumberRange &range : ranges) {
            for (quint64 id = range.first; id <= range.last; ++id) {
                text += field + QByteArray::number(id);
            }
        }
        return text;
    }

    const OperationSettings &m_settings;
    int m_bit;
    QList<QByteArray> m_fields;
};

/** As Conditions, of both outcomes: what records both takes one rule. */
Result<QList<QByteArray>> fieldsOf(const OperationSettings &settings, const QString &identifier)
{
    const Result<QList<QByteArray>> success = Conditions(settings, successBit).make(identifier);
    const Result<QList<QByteArray>> failure = Conditions(settings, failureBit).make(identifier);
    if (!success || !failure) {
        return success ? failure.outcome() : success.outcome();
    }
    const QSet<QByteArray> succeeding(success.value().cbegin(), success.value().cend());
    const QSet<QByteArray> failing(failure.value().cbegin(), failure.value().cend());
    QList<QByteArray> fields;
    for (const QByteArray &subject : success.value()) {
        fields.append(failing.contains(subject) ? subject : subject + " -F success=1");
    }
    for (const QByteArray &subject : failure.value()) {
        if (!succeeding.contains(subject)) {
            fields.append(subject + " -F success=0");
        }
    }
    return fields;
}

/** Writes the rules as long as they are not too many, and counts them. */
class RuleWriter
{
public:
    explicit RuleWriter(const QString &machine)
        : m_machine(machine)
    {
    }

    void add(const QString &identifier, const QList<QByteArray> &keys, const QList<QByteArray> &conditions)
    {
        const QList<AuditOperations::Calls> calls = AuditOperations::calls(identifier, m_machine);
        m_machineIsKnown = m_machineIsKnown && (!calls.isEmpty() || conditions.isEmpty());
        m_count += calls.size() * conditions.size();
        if (m_count > SubjectRules::ruleLimit) {
            return;
        }
        for (const AuditOperations::Calls &call : calls) {
            for (const QByteArray &condition : conditions) {
                QByteArray rule = "-a always,exit -F arch=" + call.arch + " -S " + call.names;
                if (!call.fields.isEmpty()) {
                    rule += ' ' + call.fields;
                }
                rule += condition;
                for (const QByteArray &key : keys) {
                    rule += " -F key=" + key;
                }
                m_rules.append(rule);
            }
        }
    }

    Result<QList<QByteArray>> rules() const
    {
        if (!m_machineIsKnown) {
            return Outcome::failure(i18n("The system calls of the machine \"%1\" are not known.", m_machine));
        }
        if (m_count > SubjectRules::ruleLimit) {
            return Outcome::failure(i18n("These audit settings need %1 audit rules, and at most %2 may be "
                                         "set. Audit groups in place of "
                                         "single users, or everybody.",
                                         QString::number(m_count), QString::number(SubjectRules::ruleLimit)));
        }
        return m_rules;
    }

private:
    QString m_machine;
    bool m_machineIsKnown = true;
    int m_count = 0;
    QList<QByteArray> m_rules;
};

} // namespace

QByteArray SubjectRules::keyOf(const QString &identifier)
{
    return "nivra-subject-" + identifier.toLatin1();
}

Result<QList<QByteArray>> SubjectRules::make(const SubjectSettings &settings, const QString &machine)
{
    QHash<QString, QList<QByteArray>> conditions;
    for (auto it = settings.cbegin(); it != settings.cend(); ++it) {
        Result<QList<QByteArray>> fields = fieldsOf(*it, it.key());
        if (!fields) {
            return fields.outcome();
        }
        conditions.insert(it.key(), fields.takeValue());
    }
    RuleWriter writer(machine);
    for (const QString &identifier : AuditOperations::identifiers()) {
        const QString twin = AuditOperations::twinOf(identifier);
        // Comparing all with all is for those that may be set.
        const bool isJoint = !twin.isEmpty() && conditions.value(identifier).size() <= ruleLimit
            && conditions.value(twin).size() <= ruleLimit;
        if (isJoint) {
            const JointConditions joint(conditions.value(identifier), conditions.value(twin));
            writer.add(identifier, {keyOf(identifier), keyOf(twin)}, joint.both());
            conditions[identifier] = joint.first();
            conditions[twin] = joint.second();
        }
        writer.add(identifier, {keyOf(identifier)}, conditions.value(identifier));
    }
    return writer.rules();
}

} // namespace AdminEventsHelper
