// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "eventsmachine.h"

#include <treemeaning.h>

#include <QCoreApplication>
#include <QJsonDocument>

#include <algorithm>

namespace {

const QStringList &names()
{
    static const QStringList list{QStringLiteral("event-group"),
                                  QStringLiteral("g"),
                                  QStringLiteral("enabled"),
                                  QStringLiteral("message-type"),
                                  QStringLiteral("message-params"),
                                  QStringLiteral("message_id"),
                                  QStringLiteral("name_en"),
                                  QStringLiteral("extend-message-params"),
                                  QStringLiteral("filter-values"),
                                  QStringLiteral("message-audit-rules"),
                                  QStringLiteral("message-audit-events"),
                                  QStringLiteral("-w /a -p wa -k /a"),
                                  QStringLiteral("users"),
                                  QStringLiteral("groups"),
                                  QStringLiteral("other"),
                                  QStringLiteral("succ"),
                                  QStringLiteral("fail"),
                                  QStringLiteral("root"),
                                  QStringLiteral("directories"),
                                  QStringLiteral("path"),
                                  QStringLiteral("depends"),
                                  QStringLiteral("conflicts"),
                                  QStringLiteral("notification_repetition"),
                                  QStringLiteral("interval"),
                                  QStringLiteral("overlay0"),
                                  QStringLiteral("a, b"),
                                  QStringLiteral("}, {\"")};
    return list;
}

/// Whether all switches are values. Something else under that name is switched on by reading it, which no
/// file can prevent.
bool hasSwitches(const QJsonValue &value)
{
    const QJsonArray array = value.toArray();
    const QJsonObject object = value.toObject();
    const QJsonValue enabled = object.value(QLatin1String("enabled"));
    return !enabled.isObject() && !enabled.isArray() && std::all_of(array.begin(), array.end(), hasSwitches)
        && std::all_of(object.begin(), object.end(), hasSwitches);
}

bool isSound(const QByteArray &json)
{
    return hasSwitches(QJsonDocument::fromJson(json).object());
}

/// The event's description and its settings: as the input's two parts say, or made.
/// @return false when there is nothing to be learned from them
bool put(FuzzInput &input, const EventsMachine &machine, QByteArray &settings)
{
    QByteArray description;
    if (input.mode(2) == 0) {
        const QByteArray text = input.rest();
        const int end = text.indexOf("\n%%\n");
        description = end < 0 ? text : text.left(end);
        settings = end < 0 ? QByteArray("{}") : text.mid(end + 4);
    } else {
        constexpr int depth = 5;
        QJsonObject event = input.object(names(), depth);
        event.insert(QStringLiteral("event-group"), QStringLiteral("g"));
        const QJsonObject changes = input.coin() ? input.object(names(), depth) : event;
        description = QJsonDocument(event).toJson();
        settings = QJsonDocument(QJsonObject{{QStringLiteral("e"), changes}}).toJson();
    }
    machine.putEvent(description);
    machine.putSettings(settings);
    return isSound(description) && isSound(settings);
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int *count, char ***words)
{
    static const QCoreApplication application(*count, *words);
    return 0;
}

/// Any description of an event with any settings is loaded without harm; loading, saving and loading again
/// gives the same meaning, and saving again the same file.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    static EventsMachine machine;
    FuzzInput input(data, size);
    QByteArray settings;
    const bool canBeSaved = put(input, machine, settings);
    if (!machine.load() || !canBeSaved || !QJsonDocument::fromJson(settings).isObject()) {
        return 0; // the page does not save
    }
    const QStringList before = TreeMeaning::of(machine.tree());
    const QByteArray first = machine.settings();
    machine.putSettings(first);
    require(machine.load(), "what was saved can be loaded");
    const QStringList after = TreeMeaning::of(machine.tree());
    require(before == after, "the meaning survives",
            TreeMeaning::firstDifference(before, after) + QLatin1Char('\n') + QString::fromUtf8(first));
    const QByteArray second = machine.settings();
    require(second == first, "the second save gives the same file",
            QString::fromUtf8(first + "\n---\n" + second));
    return 0;
}
