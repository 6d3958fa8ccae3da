// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#include "eventmessage.h"

#include <eventlookup.h>
#include <eventtreeitem.h>

namespace {
QString valueOf(const EventTreeItem *parameter)
{
    return parameter ? parameter->data(1).toString() : QString();
}
} // namespace

QString EventMessage::id(const EventTreeItem &event)
{
    return valueOf(EventLookup::findMessageParameter(event, QStringLiteral("message_id")));
}

QString EventMessage::type(const EventTreeItem &event)
{
    const QString name = QStringLiteral("message-type");
    const EventTreeItem *own = event.findChildTopLevelByNativeName(name);
    return valueOf(own ? own : EventLookup::findParameter(event, name));
}
