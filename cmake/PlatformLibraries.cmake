# SPDX-FileCopyrightText: 2026 The admin-events authors
# SPDX-License-Identifier: GPL-2.0-or-later

# The operating system's own pieces, for a build without the stand-ins: the event catalog library and the
# base classes of settings pages. They are given the target names that the stand-ins have.

find_package(PkgConfig REQUIRED)
pkg_check_modules(nivraevents REQUIRED IMPORTED_TARGET GLOBAL nivraevents)
add_library(Nivra::Events ALIAS PkgConfig::nivraevents)

find_path(KCM_GUARD_SETTINGS_INCLUDE_DIR guardkcmodule.h
    PATH_SUFFIXES kcm-guard-settings KF5/kcm-guard-settings
    DOC "directory of guardkcmodule.h and statewidget.h" REQUIRED)
find_library(KCM_GUARD_SETTINGS_LIBRARY kcm-guard-settings DOC "library with KCMGS::GuardKCModule" REQUIRED)
find_library(KCM_NIVRA_SETTINGS_LIBRARY kcm-nivra-settings DOC "library with KCMNV::NivraKCModule" REQUIRED)
add_library(adminevents_platform_kcm INTERFACE)
target_include_directories(adminevents_platform_kcm INTERFACE ${KCM_GUARD_SETTINGS_INCLUDE_DIR})
target_link_libraries(adminevents_platform_kcm
    INTERFACE ${KCM_GUARD_SETTINGS_LIBRARY} ${KCM_NIVRA_SETTINGS_LIBRARY} KF5::ConfigWidgets)
