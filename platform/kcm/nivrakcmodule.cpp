// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "nivrakcmodule.h"

#include "statewidget.h"

#include <QBoxLayout>
#include <QHideEvent>
#include <QPointer>
#include <QShowEvent>

namespace KCMNV {

NivraKCModule::NivraKCModule(const QString &componentName, QWidget *parent, const QVariantList &args)
    : KCModule(parent, args)
    , m_componentName(componentName)
    , m_stateWidget(new StateWidget(this))
{
    // Without a place in the layout it would lie on top of the page.
    m_stateWidget->hide();
    connect(this, qOverload<bool>(&KCModule::changed), m_stateWidget, &StateWidget::setChanged);
    connect(m_stateWidget, &StateWidget::resetRequested, this, &NivraKCModule::load);
}

void NivraKCModule::access()
{
}

void NivraKCModule::change()
{
}

bool NivraKCModule::isValid() const
{
    return true;
}

void NivraKCModule::chooseModule()
{
}

void NivraKCModule::unchooseModule()
{
}

QString NivraKCModule::componentName() const
{
    return m_componentName;
}

StateWidget *NivraKCModule::stateWidget() const
{
    return m_stateWidget;
}

void NivraKCModule::load()
{
    // A hook may run a nested event loop in which the shell goes away.
    const QPointer<NivraKCModule> self(this);
    access();
    if (!self) {
        return;
    }
    m_stateWidget->resetState();
    KCModule::load();
}

void NivraKCModule::save()
{
    m_applyFailed = false;
    if (!isValid()) {
        m_applyFailed = true;
        keepChanged();
        return;
    }
    const QPointer<NivraKCModule> self(this);
    change();
    if (!self) {
        return;
    }
    if (m_applyFailed) {
        keepChanged();
        return;
    }
    KCModule::save();
    m_stateWidget->setSaved();
}

void NivraKCModule::setApplyFailed(bool failed)
{
    m_applyFailed = failed;
}

void NivraKCModule::placeStateWidget()
{
    if (m_stateWidgetPlaced) {
        return;
    }
    auto *box = qobject_cast<QBoxLayout *>(layout());
    Q_ASSERT_X(box, "placeStateWidget", "a page needs a box layout");
    if (!box) {
        return;
    }
    box->addWidget(m_stateWidget);
    m_stateWidget->show();
    m_stateWidgetPlaced = true;
}

void NivraKCModule::showEvent(QShowEvent *event)
{
    placeStateWidget();
    KCModule::showEvent(event);
    // A spontaneous event means that only the window was minimised or restored.
    if (!event->spontaneous()) {
        chooseModule();
    }
}

void NivraKCModule::hideEvent(QHideEvent *event)
{
    if (!event->spontaneous()) {
        unchooseModule();
    }
    KCModule::hideEvent(event);
}

void NivraKCModule::keepChanged()
{
    m_stateWidget->setChanged(true);
    // The shell takes every page that was asked to save for unchanged as soon as save() returns.
    QMetaObject::invokeMethod(
        this, [this] { Q_EMIT changed(true); }, Qt::QueuedConnection);
}

} // namespace KCMNV
