// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "overrides.h"

#include "settingsscanner.h"

#include <QByteArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace Nivra {

void Overrides::load(std::string text)
{
    m_text = std::move(text);
    SettingsScanner scanner(m_text);
    if (!scanner.scan()) {
        parse();
        return;
    }
    for (const SettingsScanner::Member &member : scanner.members()) {
        // Of two members of one name the last one counts, whatever it is.
        if (member.isObject()) {
            m_overrides[std::string(member.name)].source = member.value;
        } else {
            m_overrides.erase(std::string(member.name));
        }
    }
}

// The slow way: the parser has the last word on what is JSON, so that nothing is lost to a scanner's narrow
// mind.
void Overrides::parse()
{
    const QByteArray bytes = QByteArray::fromRawData(m_text.data(), static_cast<int>(m_text.size()));
    const QJsonObject settings = QJsonDocument::fromJson(bytes).object();
    for (auto it = settings.begin(); it != settings.end(); ++it) {
        if (it.value().isObject()) {
            m_overrides[it.key().toStdString()].compact
                = QJsonDocument(it.value().toObject()).toJson(QJsonDocument::Compact).toStdString();
        }
    }
    m_text = {};
}

const char *Overrides::json(std::string_view eventId)
{
    const auto found = m_overrides.find(eventId);
    if (found == m_overrides.end()) {
        return nullptr;
    }
    Override &entry = found->second;
    if (entry.compact.empty()) {
        entry.compact = SettingsScanner::compact(entry.source);
    }
    return entry.compact.c_str();
}

} // namespace Nivra
