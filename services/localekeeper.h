// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include <QString>

/** Knows the language of the system locale, taken once. */
class LocaleKeeper
{
public:
    /** The one instance of the process, made at the first call. */
    [[nodiscard]] static LocaleKeeper *Instance();

    LocaleKeeper(const LocaleKeeper &) = delete;
    LocaleKeeper &operator=(const LocaleKeeper &) = delete;

    /** The English name of the language, e.g. "Russian"; "Russian" selects the Russian texts of the catalog.
     */
    [[nodiscard]] QString language() const;

private:
    LocaleKeeper();

    const QString m_language;
};
