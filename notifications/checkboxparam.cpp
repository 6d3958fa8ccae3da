// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#include "checkboxparam.h"

CheckBoxParam::CheckBoxParam(const QString &text, const QVariant &value, QWidget *parent)
    : QCheckBox(text, parent)
    , m_value(value)
{
}
