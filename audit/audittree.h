// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "auditsettings.h"

class EventTreeItem;

/**
 * The audit settings as the event tree holds them.
 *
 * An event names the operations that it needs recorded by the members of its "message-audit-events": each
 * member bears an audit identifier and holds "users", "groups" and "other" with their "succ" and "fail"
 * switches. In the system an operation is recorded once, whatever event needs it; so all events that are on
 * and name an operation show the same settings of it after a load. The settings of an event that is off are
 * what it will ask for when it is switched on.
 *
 * In the older layout "message-audit-events" lists identifiers only (an array, or a text with commas), or a
 * member is a plain value: such an event has the operation recorded of everybody while it is on.
 */
namespace AuditTree {

/// True when an event of the tree names an operation.
[[nodiscard]] bool namesOperations(const EventTreeItem &root);

/**
 * Copies what the system records into the tree.
 *
 * Operations that @p system says nothing of are left alone, and so are the events that are off, unless the
 * system records an operation that no event which is on names: then the events that are off show it. An
 * account's missing "succ" or "fail" is added, switched off; so the first call for a tree comes before a
 * model shows it. Later ones change values only, and whoever shows them repaints them.
 */
void synchronize(EventTreeItem &root, const AuditSettings &system);

/**
 * Replaces the settings of a "users" or "groups" object by those of @p json, an object with one member
 * { "succ": "0" or "1", "fail": ... } an account. Accounts that it does not name stay; names that the tree
 * does not have are passed over.
 *
 * @return false for a text that is not of that form; nothing has changed then
 */
[[nodiscard]] bool setSubjects(EventTreeItem &subjects, const QString &json);

} // namespace AuditTree
