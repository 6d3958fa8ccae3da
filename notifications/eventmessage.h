// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <QString>

class EventTreeItem;

/// What the catalog says about the message that an event is recorded with; edits of the page are taken in.
namespace EventMessage {

/// The message identifier; empty for an event without one, which cannot have notifications.
[[nodiscard]] QString id(const EventTreeItem &event);

/// The message type, of the event itself or else of its parameters; empty when none is given.
[[nodiscard]] QString type(const EventTreeItem &event);

} // namespace EventMessage
