// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "abstractwriter.h"

#include <configaccessservice.h>

AbstractWriter::AbstractWriter(ConfigAccessService &configAccessService, const QString &configFile)
    : m_configAccessService(configAccessService)
    , m_configFile(configFile)
{
}

bool AbstractWriter::writeConfig(TreeItem *root)
{
    return m_configAccessService.writeConfig(m_configFile, createConfig(root));
}

QStringList AbstractWriter::getConfig(TreeItem *root)
{
    return createConfig(root);
}
