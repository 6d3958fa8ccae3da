// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include "guardkcmodule.h"

#include <functional>

class QLineEdit;

/**
 * A page of one line of text. What it "stores" is its own property "stored"; the property "refuse" makes the
 * apply hook fail. Properties, so that a test also reaches a page that a plug-in created.
 */
class SamplePage : public KCMGS::GuardKCModule
{
    Q_OBJECT
    Q_PROPERTY(QString stored MEMBER stored)
    Q_PROPERTY(bool refuse MEMBER refuse)
    Q_PROPERTY(int loads MEMBER loads)
    Q_PROPERTY(int applies MEMBER applies)
    Q_PROPERTY(bool busy READ isBusy)

public:
    explicit SamplePage(QWidget *parent, const QVariantList &args = {});

    void access() override;
    void change() override;
    [[nodiscard]] bool isValid() const override;
    void chooseModule() override;
    void unchooseModule() override;

    QLineEdit *edit;
    QString stored = QStringLiteral("first");
    bool refuse = false;
    bool valid = true;
    int loads = 0;
    int applies = 0;
    int chosen = 0;
    int unchosen = 0;
    std::function<void()> duringAccess; ///< runs in the load hook, after the page was filled
    std::function<void()> duringChange; ///< runs in the apply hook, before anything is stored
};
