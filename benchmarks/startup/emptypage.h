// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <KCModule>

/// A settings page of nothing but a label: what a shell needs to start and show any page at all.
class EmptyPage : public KCModule
{
    Q_OBJECT

public:
    explicit EmptyPage(QWidget *parent, const QVariantList &args);
};
