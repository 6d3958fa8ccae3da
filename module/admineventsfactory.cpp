// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "admineventsfactory.h"

#include "admineventsmodule.h"

AdminEventsFactory::AdminEventsFactory()
{
    // Without a keyword; the creator passes the parent as a widget and the arguments on unchanged.
    registerPlugin<AdminEventsModule>();
}

AdminEventsFactory::~AdminEventsFactory() = default;
