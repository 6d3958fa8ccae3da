// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "fuzzinput.h"

#include <overrides.h>
#include <settingsscanner.h>

#include <QHash>
#include <QJsonDocument>

/// The settings file as the catalog library takes it apart, against the toolkit's parser: what the scanner
/// takes is JSON, and every object is found as the parser finds it.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const std::string text(reinterpret_cast<const char *>(data), size);
    const QJsonDocument parsed = QJsonDocument::fromJson(QByteArray::fromStdString(text));
    Nivra::SettingsScanner scanner(text);
    require(!scanner.scan() || parsed.isObject(), "what the scanner takes is an object");
    // Which of many members of one name the parser keeps is left to how it sorts them.
    QHash<QString, int> counts;
    for (const auto &member : scanner.members()) {
        ++counts[QString::fromUtf8(member.name.data(), int(member.name.size()))];
    }
    Nivra::Overrides overrides;
    overrides.load(text);
    const QJsonObject expected = parsed.object();
    for (auto it = expected.begin(); it != expected.end(); ++it) {
        if (counts.value(it.key()) > 1) {
            continue;
        }
        const char *json = overrides.json(it.key().toStdString());
        require((json != nullptr) == it->isObject(), "objects are settings, and nothing else is", it.key());
        // As maps: objects whose names hold zeros differ by the order in which the parser came upon them.
        require(json == nullptr
                    || QJsonDocument::fromJson(json).object().toVariantMap() == it->toObject().toVariantMap(),
                "settings are as they stand", it.key());
    }
    for (const auto &member : scanner.members()) {
        require(!parsed.isObject()
                    || expected.contains(QString::fromUtf8(member.name.data(), int(member.name.size()))),
                "the scanner invents nothing");
    }
    return 0;
}
