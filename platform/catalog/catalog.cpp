// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "catalog.h"

#include "utf8.h"

#include <QByteArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLatin1String>
#include <QString>

#include <fcntl.h>

#include <algorithm>
#include <tuple>

namespace Nivra {

namespace {

constexpr const char *CatalogDirectory = "/usr/share/syslog-ng-mod-nivra/event-settings";
constexpr const char *SettingsFile = "/etc/nivra-syslog.conf";
constexpr std::string_view Suffix = ".json";

bool isDescription(const std::string &fileName)
{
    return std::string_view(fileName).ends_with(Suffix);
}

std::optional<std::int64_t> orderOf(const std::string &text)
{
    const QByteArray bytes = QByteArray::fromRawData(text.data(), static_cast<int>(text.size()));
    const QJsonObject group = QJsonDocument::fromJson(bytes).object();
    const QJsonObject params = group.value(QLatin1String("group-params")).toObject();
    bool valid = false;
    const qlonglong order = params.value(QLatin1String("order")).toString().toLongLong(&valid);
    return valid ? std::optional<std::int64_t>(order) : std::nullopt;
}

} // namespace

int Catalog::load(const std::string &root)
{
    Directory directory;
    int error = directory.open(root + CatalogDirectory);
    if (error == 0) {
        error = loadGroups(directory);
    }
    for (const Group &group : m_groups) {
        if (error == 0 && group.hasDirectory) {
            error = loadEvents(directory, group.id);
        }
    }
    std::string settings;
    if (error == 0 && readFile(AT_FDCWD, root + SettingsFile, settings) == 0) {
        m_overrides.load(std::move(settings));
    }
    return error;
}

int Catalog::loadGroups(const Directory &directory)
{
    Directory::Content content;
    if (const int error = directory.list(content); error != 0) {
        return error;
    }
    for (const std::string &name : content.files) {
        if (!isDescription(name) || !isUtf8(name)) {
            continue;
        }
        std::string text;
        if (const int error = directory.read(name, text); error != 0) {
            return error;
        }
        const std::optional<std::int64_t> order = orderOf(text);
        m_groups.push_back({name.substr(0, name.size() - Suffix.size()), std::move(text), order, false});
    }
    const std::size_t described = m_groups.size();
    for (const std::string &name : content.directories) {
        const auto end = m_groups.begin() + static_cast<std::ptrdiff_t>(described);
        const auto group
            = std::find_if(m_groups.begin(), end, [&name](const Group &g) { return g.id == name; });
        if (group != end) {
            group->hasDirectory = true;
        } else if (isUtf8(name)) {
            m_groups.push_back({name, std::nullopt, std::nullopt, true});
        }
    }
    std::sort(m_groups.begin(), m_groups.end(), [](const Group &a, const Group &b) {
        return std::make_tuple(!a.order, a.order.value_or(0), std::string_view(a.id))
            < std::make_tuple(!b.order, b.order.value_or(0), std::string_view(b.id));
    });
    return 0;
}

int Catalog::loadEvents(const Directory &parent, const std::string &name)
{
    Directory directory;
    Directory::Content content;
    int error = directory.openIn(parent, name);
    if (error == 0) {
        error = directory.list(content);
    }
    for (const std::string &fileName : content.files) {
        Event event{fileName.substr(0, fileName.find('.')), {}, false};
        if (error != 0) {
            break;
        }
        if (!isDescription(fileName) || !isUtf8(event.id)) {
            continue;
        }
        error = directory.read(fileName, event.text);
        event.duplicate = !m_eventIndex.try_emplace(event.id, m_events.size()).second;
        m_events.push_back(std::move(event));
    }
    return error;
}

Catalog::Ids Catalog::groupIds() const
{
    Ids ids;
    ids.reserve(m_groups.size());
    for (const Group &group : m_groups) {
        ids.emplace_back(group.id);
    }
    return ids;
}

Catalog::Ids Catalog::eventIds() const
{
    Ids ids;
    ids.reserve(m_events.size());
    for (const Event &event : m_events) {
        ids.push_back(event.duplicate ? std::nullopt : std::optional<std::string_view>(event.id));
    }
    return ids;
}

const char *Catalog::groupJson(std::string_view id) const
{
    const auto group
        = std::find_if(m_groups.begin(), m_groups.end(), [id](const Group &g) { return g.id == id; });
    return group != m_groups.end() && group->text ? group->text->c_str() : nullptr;
}

const char *Catalog::eventJson(std::string_view id) const
{
    const auto found = m_eventIndex.find(id);
    return found != m_eventIndex.end() ? m_events[found->second].text.c_str() : nullptr;
}

const char *Catalog::overrideJson(std::string_view id)
{
    return m_overrides.json(id);
}

} // namespace Nivra
