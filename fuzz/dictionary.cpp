// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "eventsmachine.h"

#include <nodedictionary.h>
#include <treemeaning.h>
#include <valuecheck.h>

#include <QCoreApplication>
#include <QJsonDocument>

namespace {

const QStringList &names()
{
    static const QStringList list{
        QStringLiteral("interval"), QStringLiteral("enabled"), QStringLiteral("path"),
        QStringLiteral("type"),     QStringLiteral("number"),  QStringLiteral("min"),
        QStringLiteral("max"),      QStringLiteral("visible"), QStringLiteral("editable"),
        QStringLiteral("true"),     QStringLiteral("false"),   QStringLiteral("children_editable"),
        QStringLiteral("ru"),       QStringLiteral("-5"),      QStringLiteral("3600")};
    return list;
}

/// A machine whose event has values of every kind.
struct Machine : EventsMachine
{
    Machine()
    {
        putEvent("{\"event-group\": \"g\", \"enabled\": \"0\", \"path\": \"/x\", \"list\": [\"a\", \"b\"], "
                 "\"extend-message-params\": {\"path\": {\"enabled\": \"1\", \"field\": \"${P}\"}}, "
                 "\"notification_repetition\": {\"enabled\": \"1\", \"interval\": \"60\"}, "
                 "\"message-audit-rules\": \"-w /x -p wa -k /x\"}");
        putSettings("{\"e\": {\"enabled\": \"1\", \"notification_repetition\": {\"interval\": \"70\"}}}");
        putDictionary("{}");
        require(load(), "the machine is sound");
        plainMeaning = TreeMeaning::of(tree());
        plainSettings = settings();
    }

    QStringList plainMeaning;
    QByteArray plainSettings;
};

void checkValues(const EventTreeItem &item, const QString &text, const NodeDictionary &dictionary)
{
    const NodeDictionary::Entry *entry = dictionary.find(item.nativeName);
    const bool isTaken = ValueCheck::problem(item, text, dictionary).isEmpty();
    bool isNumber = false;
    const qint64 number = text.toLongLong(&isNumber);
    if (isTaken && item.childCount() == 0 && entry && entry->isNumber && entry->hasRange) {
        require(isNumber && number >= entry->minimum && number <= entry->maximum, "a number is in its range",
                text);
    }
    for (int row = 0; row < item.childCount(); ++row) {
        checkValues(*item.eventChild(row), text, dictionary);
    }
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int *count, char ***words)
{
    static const QCoreApplication application(*count, *words);
    return 0;
}

/// Any dictionary changes how the events look, never what they mean or what is saved of them.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    static Machine machine;
    FuzzInput input(data, size);
    const bool isText = input.mode(2) == 0;
    const QString typed = isText ? QStringLiteral("12") : input.text(20);
    const QByteArray json = isText ? input.rest() : QJsonDocument(input.object(names(), 3)).toJson();
    machine.putDictionary(json);
    require(machine.load(), "the page opens with any dictionary");
    require(TreeMeaning::of(machine.tree()) == machine.plainMeaning, "the events mean what they meant",
            TreeMeaning::firstDifference(machine.plainMeaning, TreeMeaning::of(machine.tree())));
    require(machine.settings() == machine.plainSettings, "the same is saved");
    checkValues(machine.tree(), typed, NodeDictionary::fromJson(json));
    return 0;
}
