// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <KPluginFactory>

/**
 * The plug-in's entry: makes the settings page. It carries no metadata of its
 * own; the shells find the page by its desktop file.
 */
class AdminEventsFactory : public KPluginFactory
{
    Q_OBJECT
    Q_INTERFACES(KPluginFactory)
    Q_PLUGIN_METADATA(IID KPluginFactory_iid)

public:
    explicit AdminEventsFactory();
    ~AdminEventsFactory() override;
};
