// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "eventswriter.h"

#include "eventtreeitem.h"
#include "jsonindenter.h"
#include "jsontext.h"

#include <configaccessservice.h>

#include <QJsonDocument>

#include <utility>

namespace {
const QLatin1String separator(", ");
constexpr int usualText = 1024; // of one event

void appendName(QString &text, const EventTreeItem &item)
{
    JsonText::appendQuoted(text, item.nativeName);
    text += QLatin1String(" : ");
}

void appendJson(QString &text, const QJsonValue &value)
{
    if (value.isString()) {
        JsonText::appendQuoted(text, value.toString());
    } else {
        text += JsonText::compact(value);
    }
}

/// Takes back the separator behind the last of the members that begin at @p opening, if there are any.
void closeMembers(QString &text, int opening)
{
    if (text.size() > opening) {
        text.chop(separator.size());
    }
    text += QLatin1String(" }");
}

/// The elements of a list: the array itself, unless its shown text has been edited.
void appendList(QString &text, const EventTreeItem &item)
{
    const QString shown = item.value(1).toString();
    bool isArray = false;
    QJsonArray elements = JsonText::parseArray(item.value(2).toString(), isArray);
    if (!isArray || JsonText::arrayText(elements) != shown) {
        elements = QJsonArray();
        const QStringList parts = shown.isEmpty() ? QStringList() : shown.split(separator);
        for (const QString &part : parts) {
            elements.append(part);
        }
    }
    text += QLatin1String("[ ");
    for (const QJsonValue &element : qAsConst(elements)) {
        appendJson(text, element);
        text += separator;
    }
    if (!elements.isEmpty()) {
        text.chop(separator.size());
    }
    text += QLatin1String(" ], ");
}

void appendObject(QString &text, const EventTreeItem &item)
{
    text += JsonText::compact(QJsonDocument::fromJson(item.value(2).toString().toUtf8()).object());
    text += separator;
}

void appendLeaf(QString &text, const EventTreeItem &item)
{
    if (item.kind == EventTreeItem::List) {
        appendList(text, item);
    } else if (item.isObject()) {
        appendObject(text, item); // an empty object stays one
    } else {
        JsonText::appendQuoted(text, item.value(1).toString());
        text += separator;
    }
}

/// True when something in the tree of @p item belongs into the settings file.
bool holdsOverlay(const EventTreeItem &item)
{
    if (item.overlay) {
        return true;
    }
    for (const TreeItem *node : item.nodes()) {
        if (holdsOverlay(*static_cast<const EventTreeItem *>(node))) {
            return true;
        }
    }
    return false;
}
} // namespace

EventsWriter::EventsWriter(ConfigAccessService &configAccessService, const QString &settingsPath,
                           const QString &auditRulesPath)
    : AbstractWriter(configAccessService, settingsPath)
    , m_auditRulesPath(auditRulesPath)
{
}

bool EventsWriter::writeConfig(TreeItem *root)
{
    const bool settingsWritten = writeEventsConfig(root);
    const bool rulesWritten = writeAuditRules();
    return settingsWritten && rulesWritten;
}

QStringList EventsWriter::createConfig(TreeItem *root)
{
    m_hasAuditRules = false;
    m_auditRules.clear();
    QStringList fragments;
    for (int row = 0; row < root->childCount(); ++row) {
        printMessages(*static_cast<EventTreeItem *>(root->child(row)), fragments);
    }
    for (int i = 0; i + 1 < fragments.size(); ++i) {
        fragments[i] += QLatin1Char(',');
    }
    fragments.prepend(QStringLiteral("{"));
    fragments.append(QStringLiteral("}"));
    return fragments;
}

void EventsWriter::printMessages(const EventTreeItem &item, QStringList &fragments)
{
    if (item.kind != EventTreeItem::Event) {
        for (int row = 0; row < item.childCount(); ++row) {
            printMessages(*item.eventChild(row), fragments);
        }
        return;
    }
    const QString text = eventText(item);
    if (!text.isEmpty()) {
        fragments.append(text);
    }
    if (m_pause) {
        m_pause();
    }
}

QString EventsWriter::eventText(const EventTreeItem &event)
{
    // Most events are as the catalog has them, and no text need be made of those.
    if (!holdsOverlay(event)) {
        return {};
    }
    QString text;
    text.reserve(usualText);
    text += QLatin1Char('\t');
    appendName(text, event);
    text += QLatin1String("{ ");
    const int opening = text.size();
    const int rulesBefore = m_auditRules.size();
    const bool hadRules = m_hasAuditRules;
    bool hasContent = event.overlay;
    for (int row = 0; row < event.childCount(); ++row) {
        const EventTreeItem &member = *event.eventChild(row);
        collectAuditRules(member);
        hasContent = printMember(member, text) || hasContent;
    }
    if (!hasContent) {
        // Rules of an event that is as the catalog has it are not this file's business.
        m_auditRules.erase(m_auditRules.begin() + rulesBefore, m_auditRules.end());
        m_hasAuditRules = hadRules;
        return {};
    }
    if (text.size() == opening) {
        // An event that is marked but contributes nothing is one that is switched off.
        text += QLatin1String("\"enabled\": \"0\"") + separator;
    }
    closeMembers(text, opening);
    return text;
}

/// Appends one member of an event; true when it is, or holds, something to write.
bool EventsWriter::printMember(const EventTreeItem &item, QString &text)
{
    if (item.kind == EventTreeItem::List) {
        if (item.overlay) {
            appendName(text, item);
            appendList(text, item);
        }
        return item.overlay;
    }
    if (item.kind == EventTreeItem::Subjects) {
        // Accounts lie deeper in every tree the page builds; the leading comma is this form's own.
        if (item.overlay) {
            text += QLatin1Char(',');
            appendName(text, item);
            appendObject(text, item);
        }
        return item.overlay;
    }
    if (item.childCount() == 0) {
        if (item.overlay) {
            appendName(text, item);
            appendLeaf(text, item);
        }
        return item.overlay;
    }
    const int start = text.size();
    appendName(text, item);
    text += QLatin1String("{ ");
    const int opening = text.size();
    bool hasContent = item.overlay;
    for (const TreeItem *node : item.nodes()) {
        hasContent = printNested(*static_cast<const EventTreeItem *>(node), text) || hasContent;
    }
    if (text.size() > opening) {
        closeMembers(text, opening);
        text += separator;
    } else {
        text.truncate(start);
    }
    return hasContent;
}

/// Appends a node below a member; true when it is, or holds, something to write.
bool EventsWriter::printNested(const EventTreeItem &item, QString &text)
{
    const int start = text.size();
    if (item.childCount() == 0) {
        if (item.overlay) {
            collectAuditRules(item);
            appendName(text, item);
            appendLeaf(text, item);
        }
        return item.overlay;
    }
    appendName(text, item);
    text += QLatin1String("{ ");
    const int opening = text.size();
    bool hasContent = item.overlay;
    for (const TreeItem *node : item.nodes()) {
        hasContent = printNested(*static_cast<const EventTreeItem *>(node), text) || hasContent;
    }
    if (hasContent) {
        closeMembers(text, opening);
        text += separator;
    } else {
        text.truncate(start);
    }
    return hasContent;
}

void EventsWriter::collectAuditRules(const EventTreeItem &item)
{
    if (item.nativeName != QLatin1String("message-audit-rules") || item.isSubject()) {
        return;
    }
    const EventTreeItem *enabled = item.parentItem()->member(QLatin1String("enabled"));
    if (!enabled || enabled->value(1).toString() == QLatin1String("1")) {
        m_hasAuditRules = true;
        m_auditRules += item.value(1).toString().split(separator);
    }
}

QByteArray EventsWriter::settingsContent(TreeItem *root)
{
    const QStringList fragments = createConfig(root);
    int size = 0;
    for (const QString &fragment : fragments) {
        size += fragment.size() + 1;
    }
    QString text;
    text.reserve(size);
    for (const QString &fragment : fragments) {
        text += fragment + QLatin1Char('\n');
    }
    if (m_preserved.isEmpty()) {
        return JsonIndenter::indented(text);
    }
    const QJsonDocument document = QJsonDocument::fromJson(text.toUtf8());
    if (document.isNull()) {
        return {};
    }
    QJsonObject settings = document.object();
    for (auto it = m_preserved.begin(); it != m_preserved.end(); ++it) {
        if (!settings.contains(it.key())) {
            settings.insert(it.key(), *it);
        }
    }
    return QJsonDocument(settings).toJson(QJsonDocument::Indented);
}

bool EventsWriter::prepare(TreeItem *root)
{
    m_prepared = settingsContent(root);
    return !m_prepared.isEmpty();
}

bool EventsWriter::writeEventsConfig(TreeItem *root)
{
    if (m_prepared.isEmpty()) {
        m_prepared = settingsContent(root);
    }
    const bool written = configAccessService().writeConfig(configFile(), std::exchange(m_prepared, {}));
    if (!written) {
        m_failures.append(configAccessService().errorString());
    }
    return written;
}

QByteArray EventsWriter::auditRulesContent() const
{
    QByteArray content;
    if (m_hasAuditRules) {
        QStringList rules = m_auditRules;
        rules.removeDuplicates();
        for (const QString &rule : qAsConst(rules)) {
            content += rule.toUtf8() + '\n';
        }
    }
    return content;
}

bool EventsWriter::writeAuditRules()
{
    // An empty content takes away the rules of events that are switched off now.
    const bool written = configAccessService().writeConfig(m_auditRulesPath, auditRulesContent());
    if (!written) {
        m_failures.append(configAccessService().errorString());
    }
    return written;
}
