// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "fuzzinput.h"

#include <auditservice.h>
#include <audittree.h>
#include <disklimits.h>
#include <eventtreeitem.h>
#include <jsontext.h>

#include <QJsonDocument>

namespace {

const QStringList &words()
{
    static const QStringList list{QStringLiteral("root/open"),
                                  QStringLiteral("a/b/open"),
                                  QStringLiteral("open"),
                                  QStringLiteral("path"),
                                  QStringLiteral("succ"),
                                  QStringLiteral("limit_bytes"),
                                  QStringLiteral("limit_percent"),
                                  QStringLiteral("/"),
                                  QStringLiteral("fail"),
                                  QStringLiteral("users"),
                                  QStringLiteral("message-audit-events")};
    return list;
}

/// What the helper answers is read without harm, whatever is in it, and sent back as it was read.
void checkReply(const QVariantMap &reply)
{
    const auto subjects = AuditService::convertAuditSettingsToHash(reply);
    require(AuditService::convertAuditSettingsToHash(AuditService::convertAuditSettingsToMap(subjects))
                == subjects,
            "settings of subjects survive");
    const auto others = AuditService::convertOtherAuditSettingsToHash(reply);
    require(
        AuditService::convertOtherAuditSettingsToHash(AuditService::convertOtherAuditSettingsToMap(others))
            == others,
        "settings of all others survive");
}

void checkDiskLimits(const QString &json)
{
    const QVector<DiskLimit> rows = DiskLimits::fromJson(json);
    const QString text = DiskLimits::toJson(rows);
    require(DiskLimits::fromJson(text) == rows, "limits survive", text);
}

std::unique_ptr<EventTreeItem> node(const QString &name, int kind, EventTreeItem *parent)
{
    auto made
        = std::make_unique<EventTreeItem>(QVector<QVariant>{name, QString(), QStringLiteral("{}")}, parent);
    made->nativeName = name;
    made->kind = kind;
    return made;
}

/// Texts of subjects reach the tree or are refused, and change nothing but values.
void checkSubjects(const QString &json)
{
    const std::unique_ptr<EventTreeItem> subjects
        = node(QStringLiteral("users"), EventTreeItem::Subjects, nullptr);
    EventTreeItem *const root
        = node(QStringLiteral("root"), EventTreeItem::Parameter, subjects.get()).release();
    subjects->appendChild(root);
    for (const char *name : {"succ", "fail"}) {
        root->appendChild(node(QLatin1String(name), EventTreeItem::Parameter, root).release());
    }
    const bool isTaken = AuditTree::setSubjects(*subjects, json);
    require(!isTaken || QJsonDocument::fromJson(json.toUtf8()).isObject(), "only objects are taken");
    require(subjects->childCount() == 1 && root->childCount() == 2, "no node is added");
}

} // namespace

/// Replies of the helper, and the JSON texts that the audit dialogs edit.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    FuzzInput input(data, size);
    switch (input.mode(5)) {
    case 0: {
        const QString json = QString::fromUtf8(input.rest());
        checkDiskLimits(json);
        checkSubjects(json);
        return 0;
    }
    case 1:
        checkReply(input.map(words()));
        return 0;
    case 2:
        checkDiskLimits(JsonText::compact(QJsonArray{input.json(words(), 3), input.json(words(), 3)}));
        return 0;
    case 3:
        checkSubjects(JsonText::compact(input.object(words(), 3)));
        return 0;
    default: {
        bool isArray = false;
        const QJsonArray array = JsonText::parseArray(QString::fromUtf8(input.rest()), isArray);
        const QString shown = JsonText::arrayText(array);
        require(!JsonText::isPlainList(array) || array.isEmpty()
                    || QJsonArray::fromStringList(shown.split(QStringLiteral(", "))) == array,
                "a plain list is what is shown", shown);
        return 0;
    }
    }
}
