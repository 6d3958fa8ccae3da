// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#include "shown.h"

#include <algorithm>

namespace AdminEventsHelper {

QString shown(const QString &text, int length)
{
    QString beginning = text.left(length);
    std::replace_if(
        beginning.begin(), beginning.end(), [](QChar c) { return !c.isPrint() && !c.isSurrogate(); },
        QChar(QChar::ReplacementCharacter));
    return beginning;
}

QString shown(const QByteArray &text, int length)
{
    return shown(QString::fromUtf8(text.left(length)), length);
}

} // namespace AdminEventsHelper
