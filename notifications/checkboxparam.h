// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <QCheckBox>
#include <QVariant>

/** A check box that stands for one parameter of an event. */
class CheckBoxParam : public QCheckBox
{
    Q_OBJECT

public:
    /// @param text the parameter's shown name; @param value what it stands for
    CheckBoxParam(const QString &text, const QVariant &value, QWidget *parent);

    [[nodiscard]] const QVariant &value() const { return m_value; }

private:
    QVariant m_value;
};
