// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include "catalogfiles.h"

/**
 * What a catalog must hold to for the page to show, save and read it back
 * without loss. Every rule returns one line for each breach, beginning with the
 * identifier of the event or group; an empty list when the catalog keeps it.
 */
namespace CatalogRules {
// values and members
QStringList onlyStrings(const CatalogFiles &catalog);
QStringList onlyKnownMembers(const CatalogFiles &catalog);
QStringList noOverlayMembers(const CatalogFiles &catalog);
QStringList switchesAreZeroOrOne(const CatalogFiles &catalog);
QStringList parametersAreSwitchesEverywhereOrNowhere(const CatalogFiles &catalog);
QStringList filtersSelectSomething(const CatalogFiles &catalog);
QStringList intervalsInRange(const CatalogFiles &catalog);
QStringList directoriesHaveLimits(const CatalogFiles &catalog);

// identifiers and names
QStringList uniqueIdentifiers(const CatalogFiles &catalog);
QStringList plainIdentifiers(const CatalogFiles &catalog);
QStringList identifiersAreNoParameterNames(const CatalogFiles &catalog);
QStringList eventsLieInTheirGroups(const CatalogFiles &catalog);
QStringList namesInBothLanguages(const CatalogFiles &catalog);
QStringList uniqueNames(const CatalogFiles &catalog);
QStringList uniqueMessageIdentifiers(const CatalogFiles &catalog);
QStringList plainMessageTypes(const CatalogFiles &catalog);

// links between events
QStringList linksNameEvents(const CatalogFiles &catalog);
QStringList noDependencyCycles(const CatalogFiles &catalog);
QStringList dependenciesAreOnByDefault(const CatalogFiles &catalog);
QStringList conflictsAreMutual(const CatalogFiles &catalog);
QStringList conflictsAreOffByDefault(const CatalogFiles &catalog);

// audit
QStringList auditIsOffByDefault(const CatalogFiles &catalog);
QStringList auditRulesAreWellFormed(const CatalogFiles &catalog);
QStringList openedFilesHaveThreeRules(const CatalogFiles &catalog);
QStringList pathsAreWatchedOnce(const CatalogFiles &catalog);
QStringList auditKeysFollowRules(const CatalogFiles &catalog);
QStringList subjectAuditIsComplete(const CatalogFiles &catalog);

/// One line about what is wrong with @p id.
inline QString breach(const QString &id, const QString &text)
{
    return id + QLatin1String(": ") + text;
}

/// The operations whose audit can be set for users, groups and all others.
QStringList auditIdentifiers();
/// The key under which the notification of @p messageId is filed.
QString notificationKey(const QString &messageId);
/// The rule lines of an event, in their order.
QStringList auditRules(const CatalogFiles::Event &event);
} // namespace CatalogRules
