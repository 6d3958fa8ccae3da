// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include "abstractwriter.h"

#include <QJsonObject>

#include <functional>

class EventTreeItem;

/**
 * Writes the event settings file (a JSON object: what differs from the
 * catalog, one member per event) and the audit rules file (one auditctl(8)
 * rule a line, of the written events that are on) from an event tree. Only
 * nodes with the overlay flag are written. One writer serves one save.
 */
class EventsWriter : public AbstractWriter
{
public:
    EventsWriter(ConfigAccessService &configAccessService, const QString &settingsPath,
                 const QString &auditRulesPath);

    /// Members of the present settings file that no event of the tree stands for; they are written along.
    void setPreserved(const QJsonObject &members) { m_preserved = members; }
    /// Called after every event while content is made; the tree must neither change nor go in it.
    void setPause(std::function<void()> pause) { m_pause = std::move(pause); }
    /**
     * Makes the content that the next writeConfig() writes; the tree must not change in between.
     * @return false when it would not read back as JSON, so that writing would empty the file
     */
    [[nodiscard]] bool prepare(TreeItem *root);

    /// Writes both files, the settings first; both are tried. False when one of them failed.
    bool writeConfig(TreeItem *root) override;
    /// The text of the settings file in fragments: one per event, braces at the two ends.
    [[nodiscard]] QStringList createConfig(TreeItem *root) override;

    [[nodiscard]] const QStringList &errors() const { return m_errors; }
    /// What the privileged writes reported, one text a file that failed.
    [[nodiscard]] const QStringList &failures() const { return m_failures; }
    [[nodiscard]] bool hasAuditRules() const { return m_hasAuditRules; }
    /// The audit rule lines met by createConfig(), duplicates included.
    [[nodiscard]] const QStringList &auditRules() const { return m_auditRules; }
    /// The content of the settings file, indented JSON.
    [[nodiscard]] QByteArray settingsContent(TreeItem *root);
    /// The content of the audit rules file as of the last createConfig().
    [[nodiscard]] QByteArray auditRulesContent() const;

private:
    bool writeEventsConfig(TreeItem *root);
    bool writeAuditRules();
    void printMessages(const EventTreeItem &item, QStringList &fragments);
    [[nodiscard]] QString eventText(const EventTreeItem &event);
    bool printMember(const EventTreeItem &item, QString &text);
    bool printNested(const EventTreeItem &item, QString &text);
    void collectAuditRules(const EventTreeItem &item);

    QString m_auditRulesPath;
    QByteArray m_prepared; // the settings file's content, from prepare() to writeConfig()
    QJsonObject m_preserved;
    std::function<void()> m_pause;
    bool m_hasAuditRules = false;
    QStringList m_auditRules;
    QStringList m_errors;
    QStringList m_failures;
};
