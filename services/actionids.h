// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <QLatin1String>
#include <QString>

/**
 * Identifiers of the privileged actions and of the helper that carries them out. The helper, the policy file
 * and the bus service file bear the same names.
 */
namespace ActionIds {

inline constexpr QLatin1String prefix("org.nivra.");

inline constexpr QLatin1String writeConfig("writeconfig");
inline constexpr QLatin1String exportConfig("exportconfig");
inline constexpr QLatin1String importConfig("importconfig");
inline constexpr QLatin1String loggingServiceControl("loggingservicectl");
inline constexpr QLatin1String getAuditSettings("getauditsettings");
inline constexpr QLatin1String setAuditSettings("setauditsettings");
inline constexpr QLatin1String writeNotificationConfigs("writenotificationconfigs");
inline constexpr QLatin1String removeNotificationConfigs("removenotificationconfigs");

/** The bus name of the helper. */
[[nodiscard]] inline QString helper()
{
    return prefix + QLatin1String("kcm.adminevents");
}

/** @param verb one of the constants above. @return the full identifier of the action. */
[[nodiscard]] inline QString action(QLatin1String verb)
{
    return helper() + QLatin1Char('.') + verb;
}

} // namespace ActionIds
