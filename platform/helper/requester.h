// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "outcome.h"

#include <sys/types.h>

namespace AdminEventsHelper {

/**
 * The user who sent the request that is being answered; only within a slot that answers one.
 *
 * The framework has an answer of its own, but takes a requester that has left the bus meanwhile for root.
 */
Result<uid_t> findRequester();

} // namespace AdminEventsHelper
