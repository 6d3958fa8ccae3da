// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "outcome.h"

#include <QMap>
#include <QStringList>
#include <QVariantMap>

namespace AdminEventsHelper {

/**
 * Reads the arguments of a request strictly: nothing is converted, nothing may be missing or left over.
 *
 * Read every argument first and then ask outcome() once: it tells the first thing that was wrong, and also
 * refuses arguments that nobody read.
 */
class ArgumentReader
{
public:
    explicit ArgumentReader(const QVariantMap &arguments);

    /** A string of at most maximumLength UTF-16 units without NUL; empty when it is not that. */
    QString string(const QString &key, int maximumLength);
    /** A byte array of at most maximumSize bytes; empty when it is not that. */
    QByteArray bytes(const QString &key, int maximumSize);

    /** An integer of 32 bits; 0 when it is not that. */
    int integer(const QString &key);

    /** A list of strings, at most maximumCount of them, each as string() takes it; empty when it is not that.
     */
    QStringList strings(const QString &key, int maximumCount, int maximumLength);
    /** A map of strings, at most maximumCount of them, each as string() takes it; empty when it is not that.
     */
    QMap<QString, QString> texts(const QString &key, int maximumCount, int maximumLength);

    Outcome outcome() const;

private:
    QVariant take(const QString &key, QMetaType::Type type);
    QString checked(const QString &key, const QString &text, int maximumLength);
    bool isTooMany(const QString &key, int count, int maximumCount);
    void refuse(const QString &error);

    QVariantMap m_arguments;
    QStringList m_read;
    QString m_error;
};

} // namespace AdminEventsHelper
