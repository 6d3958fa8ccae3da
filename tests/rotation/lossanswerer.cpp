// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "lossanswerer.h"

#include <QApplication>
#include <QDialogButtonBox>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>

LossAnswerer::LossAnswerer(bool agree)
    : m_agree(agree)
{
    connect(&m_timer, &QTimer::timeout, this, &LossAnswerer::answer);
    m_timer.start(10);
}

void LossAnswerer::answer()
{
    QWidget *dialog = QApplication::activeModalWidget();
    auto *list = dialog ? dialog->findChild<QListWidget *>() : nullptr;
    auto *buttons = dialog ? dialog->findChild<QDialogButtonBox *>() : nullptr;
    if (!list || !buttons) {
        return;
    }
    QStringList entries;
    for (int row = 0; row < list->count(); ++row) {
        entries.append(list->item(row)->text());
    }
    m_lists.append(entries);
    const QList<QLabel *> labels = dialog->findChildren<QLabel *>();
    for (const QLabel *label : labels) {
        m_texts.append(label->text());
    }
    const QDialogButtonBox::ButtonRole role = m_agree ? QDialogButtonBox::YesRole : QDialogButtonBox::NoRole;
    const QList<QAbstractButton *> all = buttons->buttons();
    for (QAbstractButton *button : all) {
        if (buttons->buttonRole(button) == role) {
            button->click();
            return;
        }
    }
    qFatal("the question cannot be answered");
}
