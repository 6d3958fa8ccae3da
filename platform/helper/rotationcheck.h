// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "outcome.h"

#include <QByteArray>
#include <QList>

namespace AdminEventsHelper {

/**
 * Whether a text may become the rotation file (logrotate(8)).
 *
 * The rotation runs as root and can run programs, so scripts and the directives that name programs, other
 * settings, other directories or another user are taken only when one of the former texts, which an
 * administrator put there, holds the same (the script that is shipped is free); files to rotate only when one
 * of those names them, or below "/var/log" and "/vortan/log". The rest must be sections of known directives.
 * A text that is one of the former texts is taken as it stands.
 */
namespace RotationCheck {

/** @param path names the file in errors, which tell the line. @param former the texts of the file so far. */
Outcome check(const QString &path, const QByteArray &content, const QList<QByteArray> &former);

} // namespace RotationCheck

} // namespace AdminEventsHelper
