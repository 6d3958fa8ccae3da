// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#include "eventreader.h"

#include <nivraevents.h>

#include <QFileInfo>
#include <QJsonDocument>

namespace {

/** One use of the library, which a failed initialisation counts as well. */
class Library
{
public:
    Library()
        : m_isReady(nvev_init() >= 0)
    {
    }
    ~Library() { nvev_free(); }
    Library(const Library &) = delete;
    Library &operator=(const Library &) = delete;

    [[nodiscard]] bool isReady() const { return m_isReady; }

private:
    bool m_isReady;
};

QJsonObject object(const char *json)
{
    // A stray byte costs a letter, not the whole text: decoding replaces it.
    return QJsonDocument::fromJson(QString::fromUtf8(json).toUtf8()).object();
}

/** The settings over the description, object by object. Those that do not say otherwise switch an event on.
 */
QJsonObject merged(QJsonObject description, const QJsonObject &settings)
{
    const QString enabled = QStringLiteral("enabled");
    if (!settings.contains(enabled) && description.contains(enabled)
        && description.contains(QStringLiteral("message-params"))) {
        description.insert(enabled, QStringLiteral("1"));
    }
    for (auto it = settings.begin(); it != settings.end(); ++it) {
        const QJsonValue former = description.value(it.key());
        description.insert(it.key(),
                           former.isObject() && it->isObject()
                               ? QJsonValue(merged(former.toObject(), it->toObject()))
                               : QJsonValue(*it));
    }
    return description;
}

QJsonObject event(const char *utf8Id)
{
    const QByteArray id = QString::fromUtf8(utf8Id).toLocal8Bit();
    const QJsonObject description = object(nvev_get_event_json(id.constData()));
    const char *const settings = nvev_get_override_event_json(id.constData());
    return settings == nullptr ? description : merged(description, object(settings));
}

} // namespace

EventReader::EventReader(const QString &settingsFile)
    : m_settingsFile(settingsFile)
{
}

bool EventReader::hasChanged()
{
    const QFileInfo file(m_settingsFile);
    if (m_wasAsked && file.lastModified() == m_modified && file.size() == m_size) {
        return false;
    }
    m_modified = file.lastModified();
    m_size = file.size();
    m_wasAsked = true;
    return true;
}

bool EventReader::read(const Visitor &visit)
{
    const Library library;
    if (!library.isReady()) {
        return false;
    }
    char **const ids = nvev_get_event_ids();
    const uint64_t count = ids == nullptr ? 0 : nvev_events_count();
    for (uint64_t i = 0; i < count; ++i) {
        if (ids[i] != nullptr) { // as that of an identifier listed before
            visit(event(ids[i]));
        }
    }
    nvev_free_string_array(ids);
    return true;
}

QJsonObject EventReader::group(const QString &id)
{
    return object(nvev_get_group_json(id.toLocal8Bit().constData()));
}
