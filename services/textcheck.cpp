// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#include "textcheck.h"

#include <algorithm>

bool TextCheck::isControl(QChar character)
{
    return character.category() == QChar::Other_Control || character == QChar::LineSeparator
        || character == QChar::ParagraphSeparator;
}

bool TextCheck::holdsControl(const QString &text)
{
    return std::any_of(text.begin(), text.end(), isControl);
}

bool TextCheck::survivesUtf8(const QString &text)
{
    return QString::fromUtf8(text.toUtf8()) == text;
}
