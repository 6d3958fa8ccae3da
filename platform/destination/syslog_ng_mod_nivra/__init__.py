# SPDX-FileCopyrightText: 2026 The admin-events authors
# SPDX-License-Identifier: GPL-2.0-or-later
"""The parts of the event module that run inside syslog-ng."""
