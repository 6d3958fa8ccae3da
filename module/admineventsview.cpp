// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "admineventsmodule.h"

#include "ui_admineventsmodule.h"

#include <checkabletreemodel.h>
#include <commonsettingswindow.h>
#include <eventconfigstorage.h>
#include <eventfinder.h>
#include <eventitemdelegate.h>
#include <eventsproxymodel.h>
#include <loggingservice.h>
#include <plainmessage.h>
#include <servicestatusreader.h>
#include <snghandler.h>
#include <tooltipper.h>

#include <KLocalizedString>
#include <KMessageWidget>

#include <QHeaderView>
#include <QShortcut>

void AdminEventsModule::createMessageBar()
{
    m_messageBar = new KMessageWidget(this);
    m_messageBar->setObjectName(QStringLiteral("messageBar"));
    m_messageBar->setWordWrap(true);
    m_messageBar->setCloseButtonVisible(true);
    m_messageBar->hide();
    m_ui->verticalLayout_2->insertWidget(0, m_messageBar);
}

void AdminEventsModule::showMessage(KMessageWidget::MessageType type, const QString &text)
{
    m_message = text;
    PlainMessage::show(m_messageBar, type, text.split(QLatin1Char('\n')));
}

void AdminEventsModule::addMessage(KMessageWidget::MessageType type, const QString &text)
{
    if (m_messageBar->isHidden()) {
        showMessage(type, text);
        return;
    }
    // The worse of the two decides how it looks.
    showMessage(qMax(type, m_messageBar->messageType()), text + QLatin1Char('\n') + m_message);
}

void AdminEventsModule::createView()
{
    QTreeView *view = m_ui->singleEventsView;
    m_referenceModel = new CheckableTreeModel(*m_storage, this);
    m_workingModel = new CheckableTreeModel(*m_storage, this);
    m_proxy = new EventsProxyModel(this);
    m_proxy->setFilterRole(CheckableTreeModel::VisibleRole);
    m_proxy->setSourceModel(m_workingModel);
    view->setModel(m_proxy);

    view->header()->setSectionResizeMode(0, QHeaderView::ResizeToContents);
    view->setAlternatingRowColors(true);
    view->setAccessibleName(i18n("Security events"));

    // Nodes below the groups have a third column that the header lacks; the view takes it for the right
    // edge of a selected row and would repaint the first column only.
    connect(view->selectionModel(), &QItemSelectionModel::selectionChanged, view->viewport(),
            qOverload<>(&QWidget::update));

    view->viewport()->installEventFilter(new ToolTipper(view));

    auto *delegate = new EventItemDelegate(m_dictionary, view);
    view->setItemDelegate(delegate);
    connect(delegate, &EventItemDelegate::valueRejected, this, [this](const QString &reason) {
        showMessage(KMessageWidget::Warning, reason);
        m_valueRejected = true;
    });

    connect(view, &QTreeView::clicked, this, &AdminEventsModule::editSelection);
    connect(view, &QTreeView::doubleClicked, this, &AdminEventsModule::editEvent);
    view->setContextMenuPolicy(Qt::CustomContextMenu);
    connect(view, &QTreeView::customContextMenuRequested, this, &AdminEventsModule::contextMenuRequested);

    connect(m_workingModel, &CheckableTreeModel::modelReset, this, &AdminEventsModule::expandSeView);
    connect(m_workingModel, &CheckableTreeModel::dataChanged, this, &AdminEventsModule::dataChanged);
    connect(m_workingModel, &CheckableTreeModel::notificationChanged, this, &AdminEventsModule::dataChanged);
}

void AdminEventsModule::createSearch()
{
    m_finder = new EventFinder(m_ui->singleEventsView, m_workingModel, m_proxy);
    m_ui->searchLayout->addWidget(m_finder);
    m_ui->searchLayout->addStretch();

    // Of the whole window: right after the page was opened the focus is still the shell's.
    auto *find = new QShortcut(QKeySequence(QKeySequence::Find), this, nullptr, nullptr, Qt::WindowShortcut);
    connect(find, &QShortcut::activated, m_finder, &EventFinder::focusSearch);
    // A shell may have the key for itself as well.
    connect(find, &QShortcut::activatedAmbiguously, m_finder, &EventFinder::focusSearch);

    // The search bar was made last, but comes first on the page.
    setTabOrder(m_finder->findChild<QWidget *>(QStringLiteral("searchNext")), m_ui->singleEventsView);
    setTabOrder(m_ui->singleEventsView, m_ui->commonSettingsButton);
    setTabOrder(m_ui->commonSettingsButton, m_ui->sngStartStopButton);
}

void AdminEventsModule::expandSeView() const
{
    m_ui->singleEventsView->expandToDepth(0);
}

void AdminEventsModule::createToolButtons()
{
    const QString style = QStringLiteral("QPushButton { text-align: left; padding: 6px; }");
    QPushButton *settings = m_ui->commonSettingsButton;
    settings->setIcon(QIcon::fromTheme(QStringLiteral("gear")));
    settings->setText(i18n("Settings"));
    settings->setStyleSheet(style);
    connect(settings, &QPushButton::clicked, this, [this] { commonSettings().openDestinationSettings(); });
    m_ui->sngStartStopButton->setStyleSheet(style);
    connect(m_statusReader, &ServiceStatusReader::finished, this, &AdminEventsModule::showSngStatus);
    // Whether it runs is not known before the end of the first load asks: processes that are started here
    // would delay the appearance of the page.
    m_ui->sngStatusLabel->clear();
    m_ui->sngStartStopButton->setText(i18n("Start logging service"));
    m_ui->sngStartStopButton->setEnabled(false);
}

void AdminEventsModule::switchSngStatus()
{
    m_statusReader->read();
}

void AdminEventsModule::showSngStatus(bool auditdRuns, bool syslogNgRuns)
{
    SngHandler *handler = SngHandler::Instance();
    handler->setToolTip(auditdRuns, syslogNgRuns);
    m_ui->sngStatusLabel->setToolTip(handler->toolTip()); // one service may change without the other
    const bool running = auditdRuns && syslogNgRuns;
    if (running == m_sngRunning) {
        // Also after a start that came to nothing, the button can be tried again.
        m_ui->sngStartStopButton->setEnabled(true);
        return;
    }
    m_sngRunning = running;
    setSngAction(running);
}

void AdminEventsModule::setSngAction(bool running) const
{
    QPushButton *button = m_ui->sngStartStopButton;
    m_ui->sngStatusLabel->setText(running ? i18n("Logging service is running.")
                                          : i18n("Logging service stopped."));
    button->setIcon(QIcon::fromTheme(running ? QStringLiteral("media-playback-stop")
                                             : QStringLiteral("media-playback-start")));
    button->setText(running ? i18n("Stop logging service") : i18n("Start logging service"));
    disconnect(button, &QPushButton::clicked, this, nullptr);
    connect(button, &QPushButton::clicked, this,
            running ? &AdminEventsModule::stopSyslogNg : &AdminEventsModule::startSyslogNg);
    button->setEnabled(true);
}

void AdminEventsModule::startSyslogNg()
{
    m_ui->sngStartStopButton->setEnabled(false);
    m_loggingService->start();
}

void AdminEventsModule::stopSyslogNg()
{
    m_ui->sngStartStopButton->setEnabled(false);
    m_loggingService->stop();
}
