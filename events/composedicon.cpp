// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "composedicon.h"

#include <QPainter>
#include <QPixmap>

QIcon createComposedIcon(const QString &left, const QString &right)
{
    const QIcon first = QIcon::fromTheme(left);
    const QIcon second = QIcon::fromTheme(right);
    QIcon composed;
    const QList<QSize> sizes = first.availableSizes(QIcon::Normal, QIcon::Off);
    for (const QSize &size : sizes) {
        QPixmap pixmap(size.width() * 2, size.height());
        pixmap.fill(Qt::transparent);
        QPainter painter(&pixmap);
        painter.setRenderHint(QPainter::SmoothPixmapTransform);
        painter.drawPixmap(0, 0, first.pixmap(size));
        painter.drawPixmap(size.width(), 0, second.pixmap(size));
        painter.end();
        composed.addPixmap(pixmap);
    }
    return composed;
}
