// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QStringList>

class QWidget;

/// The question before a file is written anew that holds more than its writer carries.
namespace LossQuestion {
/**
 * @param path the file, as the user knows it
 * @param losses what would be lost or altered, a sentence each; without any, nothing is asked
 * @return whether to write all the same
 */
[[nodiscard]] bool isAgreed(QWidget *parent, const QString &path, const QStringList &losses);
} // namespace LossQuestion
