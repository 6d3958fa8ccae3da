// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "samplepage.h"

#include <KPluginFactory>

K_PLUGIN_CLASS_WITH_JSON(SamplePage, "samplepage.json")

#include "samplepageplugin.moc"
