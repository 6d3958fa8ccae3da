// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <QString>

#include <optional>
#include <utility>

namespace AdminEventsHelper {

/** A success, or a failure with a translated text that names the object and the reason. */
class [[nodiscard]] Outcome
{
public:
    static Outcome success() { return Outcome(); }
    /** @param error must not be empty. */
    static Outcome failure(const QString &error)
    {
        Outcome outcome;
        outcome.m_error = error;
        return outcome;
    }

    bool ok() const { return m_error.isEmpty(); }
    explicit operator bool() const { return ok(); }
    /** Empty for a success. */
    QString error() const { return m_error; }

private:
    Outcome() = default;

    QString m_error;
};

/** A value, or the failure that left none. */
template <typename Value> class [[nodiscard]] Result
{
public:
    // Not explicit: a function returns either of them as it stands.
    Result(Value value)
        : m_value(std::move(value))
        , m_outcome(Outcome::success())
    {
    }
    Result(const Outcome &failure)
        : m_outcome(failure)
    {
        Q_ASSERT(!failure.ok());
    }

    bool ok() const { return m_outcome.ok(); }
    explicit operator bool() const { return ok(); }
    const Outcome &outcome() const { return m_outcome; }
    QString error() const { return m_outcome.error(); }

    /** Only for a success. */
    const Value &value() const { return *m_value; }
    Value takeValue() { return std::move(*m_value); }

private:
    std::optional<Value> m_value;
    Outcome m_outcome;
};

} // namespace AdminEventsHelper
