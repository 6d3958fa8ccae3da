# SPDX-FileCopyrightText: 2026 The admin-events authors
# SPDX-License-Identifier: GPL-2.0-or-later

# Read by ctest: tests need no display unless whoever runs them wants to watch.
if(NOT DEFINED ENV{QT_QPA_PLATFORM})
    set(ENV{QT_QPA_PLATFORM} offscreen)
endif()
