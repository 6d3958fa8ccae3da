// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QStringList>
#include <QTimer>
#include <QVector>

/// Answers the question whether text of a file may be lost, and remembers what was asked.
class LossAnswerer : public QObject
{
    Q_OBJECT

public:
    /// @param agree whether to save all the same
    explicit LossAnswerer(bool agree);

    /// The losses of each question.
    [[nodiscard]] const QVector<QStringList> &lists() const { return m_lists; }
    /// What the labels around the lists said.
    [[nodiscard]] const QStringList &texts() const { return m_texts; }

private:
    void answer();

    bool m_agree;
    QTimer m_timer;
    QVector<QStringList> m_lists;
    QStringList m_texts;
};
