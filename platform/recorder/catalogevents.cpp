// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#include "catalogevents.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QLocale>

namespace NivraRecorder {

namespace {

constexpr int valueLimit = 4096;

bool isOn(const QJsonValue &value)
{
    return value.isString() ? value.toString() == QLatin1String("1") : value.toInt() == 1;
}

QJsonValue messageParameter(const QJsonObject &event, const QString &name)
{
    return event.value(QStringLiteral("message-params")).toObject().value(name);
}

/** "name_en" and "type_en", or the same in Russian; nothing for other languages. */
QJsonObject namesIn(const CatalogEvent &event)
{
    const QLocale::Language language = QLocale::system().language();
    const bool isRussian = language == QLocale::Russian;
    if (!isRussian && language != QLocale::English && language != QLocale::C) {
        return {};
    }
    const QString suffix = isRussian ? QStringLiteral("_ru") : QStringLiteral("_en");
    const QString name = QLatin1String("name") + suffix;
    return {{name, messageParameter(event.description, name)},
            {QLatin1String("type") + suffix,
             event.group.value(QStringLiteral("group-params")).toObject().value(name)}};
}

} // namespace

QString CatalogEvent::messageType() const
{
    return description.value(QStringLiteral("message-type")).toString();
}

QJsonObject CatalogEvent::filter() const
{
    return description.value(QStringLiteral("filter-values")).toObject();
}

QList<QPair<QString, QString>> CatalogEvent::parameters() const
{
    QList<QPair<QString, QString>> parameters;
    const QJsonObject described = description.value(QStringLiteral("extend-message-params")).toObject();
    for (auto it = described.begin(); it != described.end(); ++it) {
        const QJsonObject detail = it->toObject();
        const QString macro
            = it->isObject() ? detail.value(QStringLiteral("field")).toString() : it->toString();
        const bool isMacro = macro.startsWith(QLatin1String("${")) && macro.endsWith(QLatin1Char('}'));
        if (isMacro && (!it->isObject() || isOn(detail.value(QStringLiteral("enabled"))))) {
            parameters.append({it.key(), macro.mid(2).chopped(1)});
        }
    }
    return parameters;
}

QByteArray CatalogEvent::record(const QList<QPair<QString, QString>> &values) const
{
    QJsonObject content = namesIn(*this);
    for (const auto &[name, value] : values) {
        content.insert(name, value.left(valueLimit));
    }
    const QString id = QStringLiteral("message_id");
    content.insert(id, messageParameter(description, id));
    const QJsonObject member{{QLatin1String("nivra-") + messageType(), content}};
    return QJsonDocument(QJsonObject{{QStringLiteral("MSG"), member}}).toJson(QJsonDocument::Compact);
}

CatalogEvents::CatalogEvents(const QString &settingsFile)
    : m_reader(settingsFile)
{
}

bool CatalogEvents::refresh()
{
    if (!m_reader.hasChanged()) {
        return false;
    }
    m_events.clear();
    const bool isRead = EventReader::read([this](const QJsonObject &description) {
        if (isOn(description.value(QStringLiteral("enabled")))
            && !messageParameter(description, QStringLiteral("message_id")).toString().isEmpty()) {
            m_events.append(
                {description,
                 EventReader::group(description.value(QStringLiteral("event-group")).toString())});
        }
    });
    if (!isRead) {
        qWarning("the event catalog cannot be read: no event is recorded");
    }
    return true;
}

QStringList CatalogEvents::values(const QJsonValue &value)
{
    if (!value.isArray()) {
        return parts(value.toString());
    }
    QStringList values;
    const QJsonArray array = value.toArray();
    for (const QJsonValue &one : array) {
        values << one.toString();
    }
    return values;
}

QStringList CatalogEvents::parts(const QString &text)
{
    QStringList list;
    const QStringList raw = text.split(QLatin1Char(','), Qt::SkipEmptyParts);
    for (const QString &part : raw) {
        list << part.trimmed();
    }
    return list;
}

} // namespace NivraRecorder
