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

/** The text of a literal as a constant: not every compiler measures a plain pointer at compile time. */
template <int size> [[nodiscard]] constexpr QLatin1String literal(const char (&text)[size])
{
    return QLatin1String(text, size - 1);
}

inline constexpr QLatin1String prefix = literal("org.nivra.");

inline constexpr QLatin1String writeConfig = literal("writeconfig");
inline constexpr QLatin1String exportConfig = literal("exportconfig");
inline constexpr QLatin1String importConfig = literal("importconfig");
inline constexpr QLatin1String loggingServiceControl = literal("loggingservicectl");
inline constexpr QLatin1String getAuditSettings = literal("getauditsettings");
inline constexpr QLatin1String setAuditSettings = literal("setauditsettings");
inline constexpr QLatin1String writeNotificationConfigs = literal("writenotificationconfigs");
inline constexpr QLatin1String removeNotificationConfigs = literal("removenotificationconfigs");

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
