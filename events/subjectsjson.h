// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

class EventTreeItem;

/**
 * The JSON text (column 2) of a "users" or "groups" object and of the accounts in it. It says what the nodes
 * below say, in the form in which the tree was built, so that a value changed and changed back gives the
 * former text.
 */
namespace SubjectsJson {
/// Brings the text of an account up to date with its members; the text of its list is left to refreshList().
void refreshSubject(EventTreeItem &subject);
/// Brings the text of a "users" or "groups" object up to date with the texts of its accounts.
void refreshList(EventTreeItem &subjects);
/// Does both for the account that @p item is or lies in; nothing for an item that lies in none.
void memberChanged(const EventTreeItem &item);
} // namespace SubjectsJson
