// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include "treeitem.h"

#include <QMetaType>
#include <QStringList>

#include <memory>

/**
 * A node of the event tree: a group, an event, or something that an event's
 * JSON description holds. Columns: 0 the shown name, 1 the value (switches
 * are "0" and "1"), 2 the compact JSON text of an object or array.
 *
 * The state fields are plain members: the builder, the model, the writer and
 * the change detection read and write them directly. They are narrow because a
 * large site has hundreds of thousands of nodes, and a load spends a fifth of
 * its time on getting memory for them.
 */
class EventTreeItem : public TreeItem
{
public:
    enum Column : int { NameColumn = 0, ValueColumn = 1, JsonColumn = 2 };

    /// Whether desktop notifications are delivered for an event; stored as int.
    enum NotificationState : int {
        NotificationOff = 0,
        NotificationOn = 1, ///< on, as found in the notification settings
        NotificationSwitchedOn = 2 ///< on as well
    };

    enum Kind : int {
        Group = 0,
        Event = 1,
        Parameter = 2, ///< a value, or an object below an event
        List = 3, ///< an array, or a filter list made from audit rules
        Subjects = 4 ///< a "users" or "groups" object of an audit identifier
    };

    explicit EventTreeItem(const QVector<QVariant> &itemData, EventTreeItem *parent = nullptr);
    /// Columns and state of @p source, without its children and its links to other events.
    EventTreeItem(const EventTreeItem &source, EventTreeItem *parent);

    [[nodiscard]] EventTreeItem *parentItem() const
    {
        return static_cast<EventTreeItem *>(TreeItem::parentItem());
    }
    [[nodiscard]] EventTreeItem *eventChild(int row) const
    {
        return static_cast<EventTreeItem *>(child(row));
    }
    /// All children, for walks over whole trees; each is an EventTreeItem.
    [[nodiscard]] const QVector<TreeItem *> &nodes() const { return children(); }
    void reserve(int childCount) { reserveChildren(childCount); }

    /// The first descendant in pre-order with that native name.
    [[nodiscard]] EventTreeItem *findChildByNativeName(const QString &name) const;
    /// The parent when it bears the name, else the first match below the parent; null without parent.
    [[nodiscard]] EventTreeItem *findParentByNativeName(const QString &name) const;
    /// The first direct child with that native name.
    [[nodiscard]] EventTreeItem *findChildTopLevelByNativeName(const QString &name) const;

    [[nodiscard]] bool hasAuditRules() const { return m_hasAuditRules; }
    void setHasAuditRules(bool hasAuditRules) { m_hasAuditRules = hasAuditRules; }
    [[nodiscard]] bool isNotificationOn() const;
    /// The name in the user's language, or else the one in column 0.
    [[nodiscard]] QString shownName() const;

    /**
     * True for a user or group below a "users" or "groups" object. Its native
     * name is chosen by whoever created the account ("users", "enabled",
     * "succ"), so code that looks for a member of that name passes it over.
     */
    [[nodiscard]] bool isSubject() const;
    /// True for a node that stands for a JSON object, empty or not.
    [[nodiscard]] bool isObject() const;
    /// True for a "succ" or "fail" value (not a subject or object of that name).
    [[nodiscard]] bool isAuditSwitch() const;
    /// True for an "enabled" value (not an object of that name), which switches its parent.
    [[nodiscard]] bool isSwitchValue() const;
    /// The direct child value "enabled" that switches this node, null when there is none.
    [[nodiscard]] EventTreeItem *switchChild() const;
    /// The direct child that is the member @p name of this node's object; subjects do not count.
    [[nodiscard]] EventTreeItem *member(QLatin1String name) const;

    /// The events of the same tree that this one depends on, not owned.
    [[nodiscard]] const QVector<EventTreeItem *> &dependencies() const;
    /// The events of the same tree that depend on this one, not owned.
    [[nodiscard]] const QVector<EventTreeItem *> &dependents() const;
    /// Makes this event depend on @p needed; both know it.
    void addDependency(EventTreeItem *needed);

    bool checkable : 1 = false;
    bool editable : 1 = false;
    bool childrenEditable : 1 = false;
    bool visible : 1 = true;
    bool overlay : 1 = false; ///< belongs into the settings file
    bool notRedirected : 1 = false;
    bool generatesLoad : 1 = false;

private:
    bool m_hasAuditRules : 1 = false;

public:
    int checkState : 8 = Qt::Unchecked;
    NotificationState notificationState : 8 = NotificationOff;
    int kind : 8 = Event;
    QStringList conflictsWith; ///< native names of events not to be enabled together with this one
    QString nativeName; ///< the key in the JSON description; for an event its identifier
    QString localizedName; ///< the name in the user's language

private:
    struct Links
    {
        QVector<EventTreeItem *> dependencies;
        QVector<EventTreeItem *> dependents;
    };

    [[nodiscard]] Links &links();

    std::unique_ptr<Links> m_links; // few events have any
};

Q_DECLARE_METATYPE(EventTreeItem::NotificationState)
