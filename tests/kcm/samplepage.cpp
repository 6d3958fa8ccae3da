// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "samplepage.h"

#include <QLineEdit>
#include <QVBoxLayout>

#include "statewidget.h"

SamplePage::SamplePage(QWidget *parent, const QVariantList &args)
    : GuardKCModule(QStringLiteral("sample"), parent, args)
    , edit(new QLineEdit(this))
{
    auto *box = new QVBoxLayout(this);
    box->addWidget(edit);
    box->addStretch();
    edit->setObjectName(QStringLiteral("edit"));
    setButtons(Help | Apply);
    stateWidget()->setResetButtonVisible(true);
    connect(edit, &QLineEdit::textEdited, this,
            [this](const QString &text) { Q_EMIT changed(text != stored); });
}

void SamplePage::access()
{
    ++loads;
    edit->setText(stored);
    if (duringAccess) {
        duringAccess();
    }
}

void SamplePage::change()
{
    ++applies;
    if (duringChange) {
        duringChange();
    }
    if (refuse) {
        setApplyFailed(true);
        return;
    }
    stored = edit->text();
    stateWidget()->resetState();
}

bool SamplePage::isValid() const
{
    return valid;
}

void SamplePage::chooseModule()
{
    ++chosen;
}

void SamplePage::unchooseModule()
{
    ++unchosen;
}
