// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#include "longwork.h"

#include <QApplication>

namespace {
constexpr int longestTurn = 30; // ms
}

LongWork::LongWork()
{
    QApplication::setOverrideCursor(Qt::BusyCursor);
    m_sinceTurn.start();
}

LongWork::~LongWork()
{
    end();
}

void LongWork::pause()
{
    if (m_sinceTurn.elapsed() >= m_longestPiece) {
        turn();
    }
}

void LongWork::turn()
{
    // Several rounds: what one of them paints goes to the display in the next.
    QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents, longestTurn);
    m_sinceTurn.start();
    m_longestPiece = s_longestPiece;
}

void LongWork::end()
{
    if (!m_ended) {
        m_ended = true;
        QApplication::restoreOverrideCursor();
    }
}
