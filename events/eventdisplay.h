// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QVariant>

class EventTreeItem;

/// What a node shows in a column, without any view or model.
namespace EventDisplay {
/// How a switch reads; NotASwitch for nodes that show their value as it is.
enum class SwitchText { NotASwitch, On, Off, None };

/// The switch shown in column 1 of @p item.
[[nodiscard]] SwitchText switchText(const EventTreeItem &item);
/// The value for the display role.
[[nodiscard]] QVariant displayValue(const EventTreeItem &item, int column);
/// The value for the check-state role; invalid where no box is shown.
[[nodiscard]] QVariant checkStateValue(const EventTreeItem &item, int column);
/// True when display value and check state of the two nodes are equal, decided without making texts.
[[nodiscard]] bool sameDisplay(const EventTreeItem &reference, const EventTreeItem &working, int column);
/// True when a value may be typed into column 1.
[[nodiscard]] bool isTextEditable(const EventTreeItem &item);
/// True when column 1 shows a switch that a click turns.
[[nodiscard]] bool isSwitch(const EventTreeItem &item);
/// What the icon of an event that generates load means, translated.
[[nodiscard]] QString loadText();
/// What the icon of an event with notifications means, translated.
[[nodiscard]] QString notificationText();
} // namespace EventDisplay
