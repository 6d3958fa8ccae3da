// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "configtarget.h"
#include "safedirectory.h"

#include <QByteArray>
#include <QList>

#include <optional>

namespace AdminEventsHelper {

/** The note of changes under way that FileChanges leaves in the backup directory; its format is told there.
 */
namespace ChangeJournal {

struct Row
{
    QString path;
    QString kept;
    QString sha256;
};

Row rowFor(const ConfigTarget &target, const QString &kept, const std::optional<QByteArray> &content);

/** Puts the note on the disk. */
Outcome write(const SafeDirectory &directory, const QList<Row> &rows);

/** Removes the note: the changes stand. */
Outcome remove(const SafeDirectory &directory);

/**
 * Takes the changes back that a note in the directory tells of, and removes half-written files. A file that
 * somebody has changed since stays as it is. Without a note only the half-written files go.
 * @param root stands for "/".
 */
Outcome recover(const SafeDirectory &root, const SafeDirectory &directory);

} // namespace ChangeJournal

} // namespace AdminEventsHelper
