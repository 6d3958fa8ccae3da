// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#include "localekeeper.h"

#include <QLocale>

LocaleKeeper *LocaleKeeper::Instance()
{
    static LocaleKeeper instance;
    return &instance;
}

LocaleKeeper::LocaleKeeper()
    : m_language(QLocale::languageToString(QLocale::system().language()))
{
}

QString LocaleKeeper::language() const
{
    return m_language;
}
