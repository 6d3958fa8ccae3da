// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QAbstractButton>
#include <QApplication>
#include <QDialog>
#include <QDialogButtonBox>
#include <QLabel>
#include <QListWidget>
#include <QMessageBox>
#include <QStringList>
#include <QTimer>

/// Answers every dialog that appears while a test runs, and remembers what it said.
class DialogAnswerer : public QObject
{
public:
    /// @param accept whether to press the button that goes on, where there is another one
    explicit DialogAnswerer(bool accept = true)
        : m_accept(accept)
    {
        connect(&m_timer, &QTimer::timeout, this, &DialogAnswerer::answer);
        m_timer.start(10);
    }

    [[nodiscard]] const QStringList &texts() const { return m_texts; }
    [[nodiscard]] const QStringList &lists() const { return m_lists; }

private:
    void answer()
    {
        auto *dialog = qobject_cast<QDialog *>(QApplication::activeModalWidget());
        auto *buttons = dialog ? dialog->findChild<QDialogButtonBox *>() : nullptr;
        if (!buttons) {
            return;
        }
        QStringList text;
        const auto labels = dialog->findChildren<QLabel *>();
        for (const QLabel *label : labels) {
            text.append(label->text());
        }
        m_texts.append(text.join(QLatin1Char(' ')).simplified());
        if (const auto *list = dialog->findChild<QListWidget *>()) {
            for (int row = 0; row < list->count(); ++row) {
                m_lists.append(list->item(row)->text());
            }
        }
        const auto all = buttons->buttons();
        for (QAbstractButton *button : all) {
            const QDialogButtonBox::ButtonRole role = buttons->buttonRole(button);
            const bool refuses = role == QDialogButtonBox::RejectRole || role == QDialogButtonBox::NoRole;
            if (all.size() == 1 || refuses != m_accept) {
                button->click();
                return;
            }
        }
    }

    bool m_accept;
    QTimer m_timer;
    QStringList m_texts;
    QStringList m_lists;
};
