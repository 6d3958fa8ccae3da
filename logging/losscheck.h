// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QByteArray>
#include <QStringList>

class TreeItem;

/**
 * What saving the main logging configuration would lose or alter. CommonSettingsParser keeps only part of the
 * daemon's language and CommonWriter writes the whole file anew, so this is to be asked before saving.
 *
 * Findings are sentences for the user, translated, in the order of the file, with its line numbers; none
 * means that nothing is lost.
 */
namespace LossCheck {
/**
 * @param present the file as it is now
 * @param loaded the file as it was when its tree was made; what another program has changed since is found,
 *        too
 * @param edited what is to be written
 */
[[nodiscard]] QStringList findings(const QByteArray &present, const QByteArray &loaded,
                                   const TreeItem &edited);

/// What reading and writing the file, without any edit, would lose.
[[nodiscard]] QStringList lostByRewriting(const QByteArray &present, const QByteArray &loaded);
/// The statements of @p edited that could not be written, or would not be read as they are.
[[nodiscard]] QStringList notReadBack(const TreeItem &edited);
} // namespace LossCheck
