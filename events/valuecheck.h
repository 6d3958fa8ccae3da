// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QString>

class EventTreeItem;
class NodeDictionary;

/// Checks what is typed into the value column.
namespace ValueCheck {
/**
 * @param item the node whose value is to become @p text
 * @return why the text cannot be the value, translated; empty when it can
 */
[[nodiscard]] QString problem(const EventTreeItem &item, const QString &text,
                              const NodeDictionary &dictionary);
} // namespace ValueCheck
