// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QMessageBox>
#include <QObject>
#include <QString>
#include <QTimer>
#include <QVector>

/// Answers every message box that appears, and remembers what they said; a box for marked-up text is a
/// failure.
class BoxAnswerer : public QObject
{
    Q_OBJECT

public:
    struct Box
    {
        QString title;
        QString text;
        QMessageBox::Icon icon;
        QWidget *parent;
    };

    /// @param answer the button to click where a box has it; OK otherwise
    explicit BoxAnswerer(QMessageBox::StandardButton answer = QMessageBox::Ok);

    [[nodiscard]] const QVector<Box> &boxes() const { return m_boxes; }

private:
    void answer();

    QMessageBox::StandardButton m_answer;
    QTimer m_timer;
    QVector<Box> m_boxes;
};
