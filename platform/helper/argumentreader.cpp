// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#include "argumentreader.h"

#include "shown.h"

#include <KLocalizedString>

namespace AdminEventsHelper {

ArgumentReader::ArgumentReader(const QVariantMap &arguments)
    : m_arguments(arguments)
{
}

void ArgumentReader::refuse(const QString &error)
{
    if (m_error.isEmpty()) {
        m_error = error;
    }
}

QVariant ArgumentReader::take(const QString &key, QMetaType::Type type)
{
    m_read << key;
    const auto found = m_arguments.constFind(key);
    if (found == m_arguments.cend()) {
        refuse(i18n("The request lacks the argument \"%1\".", key));
        return {};
    }
    // Not canConvert(): almost everything converts to a string.
    if (found->userType() != type) {
        refuse(i18n("The argument \"%1\" has the type \"%2\" in place of \"%3\".", key,
                    QString::fromLatin1(found->typeName()), QString::fromLatin1(QMetaType::typeName(type))));
        return {};
    }
    return *found;
}

QString ArgumentReader::checked(const QString &key, const QString &text, int maximumLength)
{
    if (text.size() > maximumLength) {
        refuse(
            i18n("The argument \"%1\" is longer than %2 characters.", key, QString::number(maximumLength)));
        return {};
    }
    if (text.contains(QChar(0))) {
        refuse(i18n("The argument \"%1\" holds a zero character.", key));
        return {};
    }
    return text;
}

bool ArgumentReader::isTooMany(const QString &key, int count, int maximumCount)
{
    if (count > maximumCount) {
        refuse(i18n("The argument \"%1\" holds more than %2 entries.", key, QString::number(maximumCount)));
    }
    return count > maximumCount;
}

QString ArgumentReader::string(const QString &key, int maximumLength)
{
    return checked(key, take(key, QMetaType::QString).toString(), maximumLength);
}

QStringList ArgumentReader::strings(const QString &key, int maximumCount, int maximumLength)
{
    const QStringList values = take(key, QMetaType::QStringList).toStringList();
    if (isTooMany(key, values.size(), maximumCount)) {
        return {};
    }
    for (const QString &value : values) {
        (void)checked(key, value, maximumLength);
    }
    return values;
}

QMap<QString, QString> ArgumentReader::texts(const QString &key, int maximumCount, int maximumLength)
{
    const QVariantMap values = take(key, QMetaType::QVariantMap).toMap();
    if (isTooMany(key, values.size(), maximumCount)) {
        return {};
    }
    QMap<QString, QString> texts;
    for (auto it = values.cbegin(); it != values.cend(); ++it) {
        if (it->userType() != QMetaType::QString) {
            refuse(i18n("The argument \"%1\" holds a value that is not a text, for \"%2\".", key,
                        shown(it.key())));
            return {};
        }
        texts.insert(checked(key, it.key(), maximumLength), checked(key, it->toString(), maximumLength));
    }
    return texts;
}

QByteArray ArgumentReader::bytes(const QString &key, int maximumSize)
{
    const QByteArray value = take(key, QMetaType::QByteArray).toByteArray();
    if (value.size() > maximumSize) {
        refuse(i18n("The argument \"%1\" is larger than %2 bytes.", key, QString::number(maximumSize)));
        return {};
    }
    return value;
}

int ArgumentReader::integer(const QString &key)
{
    return take(key, QMetaType::Int).toInt();
}

Outcome ArgumentReader::outcome() const
{
    if (!m_error.isEmpty()) {
        return Outcome::failure(m_error);
    }
    for (auto it = m_arguments.cbegin(); it != m_arguments.cend(); ++it) {
        if (!m_read.contains(it.key())) {
            return Outcome::failure(i18n("The request has the unknown argument \"%1\".", shown(it.key())));
        }
    }
    return Outcome::success();
}

} // namespace AdminEventsHelper
