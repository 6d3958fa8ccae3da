// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "admineventsmodule.h"

#include "ui_admineventsmodule.h"

#include <auditkeeper.h>
#include <auditservice.h>
#include <checkabletreemodel.h>
#include <configaccessservice.h>
#include <eventconfigstorage.h>
#include <eventsproxymodel.h>
#include <guiutils.h>
#include <loggingservice.h>
#include <servicestatusreader.h>
#include <statewidget.h>
#include <systempaths.h>

#include <KAuth/Action>
#include <KLocalizedString>

#include <QPointer>

namespace {
const QString ownComponent = QStringLiteral("nivra_kcm_admin_events");
}

AdminEventsModule::AdminEventsModule(QWidget *parent, const QList<QVariant> &args)
    : KCMGS::GuardKCModule(ownComponent, parent, args)
    , m_ui(std::make_unique<Ui_AdminEventsModule>())
    , m_configAccessService(new ConfigAccessService(this))
    , m_loggingService(new LoggingService(this))
    , m_auditService(new AuditService(this))
    , m_statusReader(new ServiceStatusReader(this))
    , m_auditKeeper(std::make_shared<AuditKeeper>(*m_auditService))
    , m_storage(
          std::make_unique<EventConfigStorage>(SystemPaths::resolve(SystemPaths::eventSettingsDirectory())))
{
    m_ui->setupUi(this);
    createMessageBar();
    createToolButtons();
    createView();
    createSearch();

    setButtons(Help | Apply);
    stateWidget()->setResetButtonVisible(true);

    connect(m_loggingService, &LoggingService::stateChanged, this, &AdminEventsModule::switchSngStatus);
    connect(m_loggingService, &AccessService::error, this,
            [this](const KAuth::Action *action, const QString &text) {
                // What failed may have changed the state all the same: a restart that only stopped.
                switchSngStatus();
                const QPointer<QPushButton> button(m_ui->sngStartStopButton); // may end in the message box
                Gui::Utils::showText(this, QMessageBox::Critical, action->name(), text);
                if (button) {
                    button->setEnabled(true);
                }
            });

    constexpr int ownArguments = 2;
    if (args.size() > ownArguments) {
        m_firstViewerArgument = args.at(0).toString();
        m_secondViewerArgument = args.at(1).toString();
    }
}

AdminEventsModule::~AdminEventsModule()
{
    // The models refer to the storage, which goes before the child objects do.
    delete m_proxy;
    delete m_workingModel;
    delete m_referenceModel;
}
