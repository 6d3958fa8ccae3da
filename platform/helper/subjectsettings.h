// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "outcome.h"

#include <QByteArray>
#include <QMap>
#include <QString>

namespace AdminEventsHelper {

/** Whose settings a request is about, by the numbers that requests use. */
enum class SubjectType : int { Other = 0, Users = 1, Groups = 2 };

/** What is recorded of one operation: 0 nothing, 1 successes, 2 failures, 3 both. */
constexpr int largestAuditValue = 3;

/**
 * What is recorded of one operation, as such values.
 *
 * Subjects are kept by number, as the kernel knows them; one that is not listed has the value 0.
 */
struct OperationSettings
{
    using Values = QMap<quint32, int>;

    Values users;
    Values groups;
    int other = 0;

    Values &of(SubjectType type) { return type == SubjectType::Users ? users : groups; }
    const Values &of(SubjectType type) const { return type == SubjectType::Users ? users : groups; }
};

/** The settings by audit identifier; those of an identifier that is not listed were never set. */
using SubjectSettings = QMap<QString, OperationSettings>;

/**
 * The text in which settings stand in the rules file, as comment lines before the rules that carry them out:
 *
 * "#@ IDENTIFIER other VALUE", one for every identifier that was ever set, and
 * "#@ IDENTIFIER users|groups VALUE IDS", IDS being numbers and ranges FIRST-LAST separated by blanks.
 */
namespace SubjectText {

/** The most subjects of all operations together that a text may list: as many as a request. */
constexpr quint32 subjectLimit = 2000000;

/** The subjects of all operations together. */
quint32 subjectsIn(const SubjectSettings &settings);

/** The same settings always give the same text; no line is longer than 300 bytes. */
QByteArray write(const SubjectSettings &settings);

/**
 * Reads the lines that begin with "#@" and passes over all others.
 * @param path named in the error.
 */
Result<SubjectSettings> read(const QByteArray &text, const QString &path);

} // namespace SubjectText

} // namespace AdminEventsHelper
