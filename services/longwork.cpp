// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#include "longwork.h"

#include <QApplication>

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
    QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
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
