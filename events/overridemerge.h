// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QHash>
#include <QJsonObject>
#include <QSet>
#include <QString>

/**
 * What a merge took from an override. The merged object also carries the
 * records "overlay0", "overlay1", ... as members, but an account or a
 * parameter may bear such a name, so nothing is decided by the name.
 */
struct OverlayMarks
{
    QSet<QString> named; ///< members that were replaced or inserted, whole
    QSet<QString> records; ///< names of the record members themselves
    QHash<QString, OverlayMarks> merged; ///< members whose objects were merged

    [[nodiscard]] bool isEmpty() const { return named.isEmpty() && records.isEmpty() && merged.isEmpty(); }
};

/**
 * Folds the administrator's override of an event into its description.
 *
 * @param base the description
 * @param override the saved settings
 * @param marks receives what came from the override
 * @return the merged object, with one record "overlay%1" per member taken
 *         over, whose value is the member's name; the "users" and "groups" of
 *         audit identifiers, of which every member is an account, get none
 */
[[nodiscard]] QJsonObject mergeNodes(QJsonObject base, const QJsonObject &override, OverlayMarks &marks);
