// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "emptypage.h"

#include <KPluginFactory>

#include <QLabel>
#include <QVBoxLayout>

EmptyPage::EmptyPage(QWidget *parent, const QVariantList &args)
    : KCModule(parent, args)
{
    setButtons(Help | Apply);
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(new QLabel(QStringLiteral("Nothing to set"), this));
}

K_PLUGIN_FACTORY(EmptyPageFactory, registerPlugin<EmptyPage>();)

#include "emptypage.moc"
