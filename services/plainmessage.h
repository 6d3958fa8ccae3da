// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <KMessageWidget>

#include <QStringList>

/// Messages that may hold anything, in widgets that take some texts for formatted ones.
namespace PlainMessage {
/// The lines as formatted text that shows them as they stand.
[[nodiscard]] QString formatted(const QStringList &lines);
/// Shows the lines in a message widget, whatever it showed before, and gives it room for all of them.
void show(KMessageWidget *widget, KMessageWidget::MessageType type, const QStringList &lines);
} // namespace PlainMessage
