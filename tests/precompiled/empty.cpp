// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
// A library has a source, be it only for the sake of the headers that are compiled with it.
