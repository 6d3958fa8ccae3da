// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "admineventsmodule.h"

#include <auditkeeper.h>
#include <commonsettingswindow.h>
#include <configwatcher.h>
#include <loggingservice.h>
#include <statewidget.h>

#include <KLocalizedString>
#include <KMessageWidget>

#include <QPointer>

CommonSettingsWindow &AdminEventsModule::commonSettings()
{
    if (m_commonSettings) {
        return *m_commonSettings;
    }
    m_commonSettings = new CommonSettingsWindow(*m_configAccessService, this);
    m_commonSettings->setWindowTitle(i18n("Common parameters"));
    connect(
        m_commonSettings, &CommonSettingsWindow::configurationImported, m_commonSettings,
        [this] { configurationImported(); }, Qt::DirectConnection);
    // What an import brings is the page's own change, and shown when the user has been told of it.
    connect(m_commonSettings, &CommonSettingsWindow::importStarted, this,
            &AdminEventsModule::stopWatchConfigs);
    connect(m_commonSettings, &CommonSettingsWindow::importFinished, this, [this](bool imported) {
        if (imported && m_watcher) {
            m_watcher->acknowledge();
        }
        startWatchConfigs();
    });
    return *m_commonSettings;
}

void AdminEventsModule::configurationImported()
{
    const bool dropsEdits = holdsEdits();
    m_loggingService->restart();
    m_auditKeeper->forget();
    const QPointer<AdminEventsModule> self(this);
    load_p();
    if (!self) {
        return;
    }
    stateWidget()->resetState();
    Q_EMIT changed(false);
    if (dropsEdits) {
        addMessage(KMessageWidget::Information,
                   i18n("The page shows the imported event settings; changes that were not saved are gone."));
    }
}
