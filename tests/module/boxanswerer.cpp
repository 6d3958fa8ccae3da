// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "boxanswerer.h"

#include <QAbstractButton>
#include <QApplication>
#include <QTest>

BoxAnswerer::BoxAnswerer(QMessageBox::StandardButton answer)
    : m_answer(answer)
{
    connect(&m_timer, &QTimer::timeout, this, &BoxAnswerer::answer);
    m_timer.start(10);
}

void BoxAnswerer::answer()
{
    auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget());
    if (!box) {
        return;
    }
    // What files and other programs say may look like markup, and be none.
    if (box->textFormat() != Qt::PlainText) {
        QTest::qFail(qPrintable(QLatin1String("taken for markup: ") + box->text()), __FILE__, __LINE__);
    }
    m_boxes.append({box->windowTitle(), box->text(), box->icon(), box->parentWidget()});
    QAbstractButton *button = box->button(m_answer);
    (button ? button : box->button(QMessageBox::Ok))->click();
}
