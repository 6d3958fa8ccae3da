// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "plainmessage.h"

QString PlainMessage::formatted(const QStringList &lines)
{
    QStringList escaped;
    for (const QString &line : lines) {
        escaped.append(line.toHtmlEscaped());
    }
    return QStringLiteral("<qt>%1</qt>").arg(escaped.join(QLatin1String("<br/>")));
}

void PlainMessage::show(KMessageWidget *widget, KMessageWidget::MessageType type, const QStringList &lines)
{
    widget->setMessageType(type);
    widget->setText(formatted(lines));
    // The widget keeps the height of its former text until it is resized.
    widget->setMinimumHeight(0);
    widget->setMaximumHeight(QWIDGETSIZE_MAX);
    widget->show();
}
