/* SPDX-FileCopyrightText: 2026 The admin-events authors */
/* SPDX-License-Identifier: GPL-2.0-or-later */

#include "nivraevents.h"

/* A second time, to see the guard at work. */
#include "nivraevents.h"

int (*const headerInC89)(void) = nvev_init;
