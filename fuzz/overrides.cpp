// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "fuzzinput.h"

#include <overrides.h>
#include <settingsscanner.h>

#include <QHash>
#include <QJsonDocument>

namespace {
/// Whether what the library hands out is what the parser found. As maps: objects whose names hold zeros
/// differ by the order in which the parser came upon them. What the scanner declines, the library has from
/// the parser.
bool isSame(const char *json, const QJsonObject &settings, bool taken)
{
    return taken ? QJsonDocument::fromJson(json).object().toVariantMap() == settings.toVariantMap()
                 : json == QJsonDocument(settings).toJson(QJsonDocument::Compact);
}
} // namespace

/// The settings file as the catalog library takes it apart, against the toolkit's parser: what the scanner
/// takes is JSON, and every object is found as the parser finds it.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const std::string text(reinterpret_cast<const char *>(data), size);
    const QJsonDocument parsed = QJsonDocument::fromJson(QByteArray::fromStdString(text));
    Nivra::SettingsScanner scanner(text);
    const bool taken = scanner.scan();
    require(!taken || parsed.isObject(), "what the scanner takes is an object");
    const QJsonObject expected = parsed.object();
    // Which of many members of one name the parser keeps is left to how it sorts them. With zeros in names it
    // may keep them all, and then reads back another one than it wrote.
    QHash<QString, int> counts;
    if (taken) {
        for (const auto &member : scanner.members()) {
            ++counts[QString::fromUtf8(member.name.data(), int(member.name.size()))];
        }
    } else {
        for (const QString &name : expected.keys()) {
            ++counts[name];
        }
    }
    Nivra::Overrides overrides;
    overrides.load(text);
    for (auto it = expected.begin(); it != expected.end(); ++it) {
        if (counts.value(it.key()) > 1) {
            continue;
        }
        const char *json = overrides.json(it.key().toStdString());
        require((json != nullptr) == it->isObject(), "objects are settings, and nothing else is", it.key());
        require(json == nullptr || isSame(json, it->toObject(), taken), "settings are as they stand",
                it.key());
    }
    for (const auto &member : scanner.members()) {
        require(!parsed.isObject()
                    || expected.contains(QString::fromUtf8(member.name.data(), int(member.name.size()))),
                "the scanner invents nothing");
    }
    return 0;
}
