// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "guardkcmodule.h"

#include "inputguard.h"

#include <QPointer>

namespace KCMGS {

GuardKCModule::GuardKCModule(const QString &componentName, QWidget *parent, const QVariantList &args)
    : KCMNV::NivraKCModule(componentName, parent, args)
{
}

bool GuardKCModule::isBusy() const
{
    return m_busy;
}

void GuardKCModule::load()
{
    if (m_busy) {
        return;
    }
    const QPointer<GuardKCModule> self(this);
    m_busy = true;
    {
        const InputGuard guard(this);
        NivraKCModule::load();
    }
    if (self) {
        m_busy = false;
    }
}

void GuardKCModule::save()
{
    if (m_busy) {
        return;
    }
    const QPointer<GuardKCModule> self(this);
    m_busy = true;
    {
        const InputGuard guard(this);
        NivraKCModule::save();
    }
    if (self) {
        m_busy = false;
    }
}

} // namespace KCMGS
