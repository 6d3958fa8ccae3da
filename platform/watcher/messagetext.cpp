// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#include "messagetext.h"

namespace NivraWatcher {

QString MessageText::compose(const QString &format, const QStringList &values)
{
    QString text;
    int position = 0;
    while (position < format.size()) {
        const int open = format.indexOf(QLatin1Char('{'), position);
        const int close = open < 0 ? -1 : format.indexOf(QLatin1Char('}'), open);
        if (close < 0) {
            break;
        }
        bool isNumber = false;
        const int index = format.mid(open + 1, close - open - 1).toInt(&isNumber);
        text += format.mid(position, open - position);
        if (isNumber && index >= 0 && index < values.size()) {
            text += values.at(index);
            position = close + 1;
        } else {
            text += QLatin1Char('{');
            position = open + 1;
        }
    }
    return text + format.mid(position);
}

QString MessageText::cut(const QString &text, int limit)
{
    if (text.size() <= limit) {
        return text;
    }
    QString shorter = text.left(limit - 1);
    if (!shorter.isEmpty() && shorter.at(shorter.size() - 1).isHighSurrogate()) {
        shorter.chop(1);
    }
    return shorter + QChar(0x2026);
}

QString MessageText::oneLine(const QString &text)
{
    QString line;
    line.reserve(text.size());
    for (const QChar c : text) {
        if (c == QLatin1Char('\n')) {
            line += QLatin1String("\\n");
        } else if (c == QLatin1Char('\t')) {
            line += QLatin1String("\\t");
        } else if (c == QLatin1Char('\\')) {
            line += QLatin1String("\\\\");
        } else if (c.category() == QChar::Other_Control || c == QChar::LineSeparator
                   || c == QChar::ParagraphSeparator) {
            line += QStringLiteral("\\u%1").arg(c.unicode(), 4, 16, QLatin1Char('0'));
        } else {
            line += c;
        }
    }
    return line;
}

} // namespace NivraWatcher
