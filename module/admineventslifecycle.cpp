// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "admineventsmodule.h"

#include "treeviewstate.h"
#include "ui_admineventsmodule.h"

#include <changemarker.h>
#include <checkabletreemodel.h>
#include <configaccessservice.h>
#include <configwatcher.h>
#include <dbusdialog.h>
#include <dbuskeeper.h>
#include <eventlookup.h>
#include <eventsproxymodel.h>
#include <eventswriter.h>
#include <eventtreeitem.h>
#include <guiutils.h>
#include <loggingservice.h>
#include <longwork.h>
#include <notificationsdictionary.h>
#include <singleeventsparser.h>
#include <statewidget.h>
#include <systempaths.h>

#include <KLocalizedString>
#include <KMessageWidget>

#include <QApplication>
#include <QDir>
#include <QHeaderView>
#include <QPointer>
#include <QScopeGuard>
#include <QTimer>
#include <QTreeView>

#include <utility>

namespace {
constexpr int firstLoadPiece = 60; // ms

/// The members that stand for no event of the tree, or hold nothing that an event could take.
QJsonObject membersWithoutEvent(const QJsonObject &settings, const EventTreeItem &root)
{
    const QHash<QString, EventTreeItem *> events = EventLookup::eventsById(root);
    QJsonObject left;
    for (auto it = settings.begin(); it != settings.end(); ++it) {
        if (!it->isObject() || !events.contains(it.key())) {
            left.insert(it.key(), *it);
        }
    }
    return left;
}

void endForIncorrectEvents(QWidget *page)
{
    Gui::Utils::showText(
        page, QMessageBox::Critical, i18n("Event configuration is incorrect."),
        i18n("Check if there are no duplicate event_id in event configuration(even in different groups).\n"
             "The application cannot continue and will be terminated."));
    QCoreApplication::exit(-1);
}
} // namespace

SettingsFile AdminEventsModule::presentSettings()
{
    return readSettingsFile(SystemPaths::resolve(SystemPaths::eventSettingsFile()));
}

SettingsFile AdminEventsModule::presentSettingsInPieces()
{
    LongWork work;
    work.turn();
    SettingsFile settings = presentSettings();
    work.turn();
    return settings;
}

void AdminEventsModule::access()
{
    const QPointer<AdminEventsModule> self(this);
    load_p();
    if (!self) {
        return;
    }
    stateWidget()->resetState();
    startWatchConfigs();
    if (!m_firstViewerArgument.isEmpty() && !m_secondViewerArgument.isEmpty()) {
        notificationSettingsFromViewer(m_secondViewerArgument, m_firstViewerArgument);
    }
    if (self) {
        createNextDialog();
    }
}

void AdminEventsModule::createNextDialog()
{
    // Each in a turn of the event loop of its own: in between, the page is painted and takes input.
    if (!m_filesDialog) {
        (void)filesDialog();
    } else if (!m_diskSpaceDialog) {
        (void)diskSpaceDialog();
    } else if (!m_auditDialog) {
        (void)auditDialog();
    } else if (!m_example) {
        (void)example();
    } else if (!m_commonSettings) {
        (void)commonSettings();
    } else if (!m_dbusDialog) {
        (void)dbusDialog();
    } else {
        return;
    }
    QTimer::singleShot(0, this, &AdminEventsModule::createNextDialog);
}

void AdminEventsModule::change()
{
    const QPointer<AdminEventsModule> self(this);
    const bool saved = save_p();
    if (!self) {
        return;
    }
    if (!saved) {
        // A reload would drop edits that are not in any file yet.
        setApplyFailed(true);
        return;
    }
    load_p();
    if (!self) {
        return;
    }
    stateWidget()->resetState();
    const QString note = std::exchange(m_savedNote, {});
    if (!note.isEmpty() && m_messageBar->isHidden()) {
        showMessage(KMessageWidget::Information, note);
    }
}

void AdminEventsModule::load_p()
{
    const QPointer<AdminEventsModule> self(this); // which may end in a message box or a pause
    const bool goesOn = checkEventSettingsDirectory();
    if (!self) {
        return;
    }
    LongWork work;
    if (m_workingModel->rowCount() == 0) {
        work.setFirstPiece(firstLoadPiece);
    }
    const auto pause = [&work, goesOn] {
        // A program that is about to end must not be told otherwise by what waits in the event loop.
        if (goesOn) {
            work.pause();
        }
    };
    const auto turn = [&work, goesOn] {
        if (goesOn) {
            work.turn();
        }
    };
    const bool watched = m_watcher && m_watcher->isRunning();
    stopWatchConfigs();
    const auto watchAgain = qScopeGuard([this, self, watched] {
        if (self && watched) {
            startWatchConfigs();
        }
    });
    if (watched) {
        turn(); // whoever noticed a change has looked at every file just before
        if (!self) {
            return;
        }
    }
    loadFiles(work, pause, turn);
}

void AdminEventsModule::loadFiles(LongWork &work, const std::function<void()> &pause,
                                  const std::function<void()> &turn)
{
    const QPointer<AdminEventsModule> self(this);
    // Taken before reading: what changes from here on is noticed as a change, when this load is done.
    if (m_watcher) {
        m_watcher->acknowledge();
    }
    pause();
    const SettingsFile settings = presentSettings();
    pause();
    if (!self) {
        return;
    }
    m_dictionary = NodeDictionary::fromFile(SystemPaths::resolve(SystemPaths::nodeDictionary()));
    m_notifications.discard();
    readNotificationsSettings();
    pause();
    if (!self) {
        return;
    }
    SingleEventsParser parser(nullptr);
    parser.setPause(pause);
    parser.setNotificationLookup(
        [](const QString &messageId) { return DBusKeeper::Instance()->findEvent(messageId); });
    if (!parser.isConfigCorrect()) {
        work.end();
        endForIncorrectEvents(this);
        return;
    }
    loadEvents(parser, pause, turn);
    if (!self) {
        return;
    }
    NotificationsDictionary::Instance()->init(); // for the dialogs only, so the events come first
    showLoadedState(settings);
    pause();
    if (!self) {
        return;
    }
    settleNotifications();
    switchSngStatus();
}

void AdminEventsModule::showLoadedState(const SettingsFile &settings)
{
    m_loadedSettings = settings.contentHash;
    showSettingsFileState(settings);
    showAuditState();
}

void AdminEventsModule::showTree(std::unique_ptr<EventTreeItem> tree)
{
    const TreeViewState viewState(m_ui->singleEventsView);
    // The column is measured once, when all is there, and not at every group that opens.
    QHeaderView *header = m_ui->singleEventsView->header();
    header->setSectionResizeMode(0, QHeaderView::Fixed);
    m_workingModel->setRootItem(tree.release());
    header->setSectionResizeMode(0, QHeaderView::ResizeToContents);
    viewState.restore();
}

void AdminEventsModule::loadEvents(const SingleEventsParser &parser, const std::function<void()> &pause,
                                   const std::function<void()> &turn)
{
    const QPointer<AdminEventsModule> self(this);
    const auto endsInPause = [&pause, &self] {
        pause();
        return self.isNull();
    };
    if (endsInPause()) {
        return;
    }
    detachNotificationDialog(); // its node goes with the tree
    m_users = parser.users();
    m_groups = parser.groups();
    std::unique_ptr<EventTreeItem> working(parser.parse());
    std::unique_ptr<EventTreeItem> reference(parser.parse());
    if (!self) {
        return;
    }
    // Before a model shows them: what the system records is no change.
    synchronizeAuditSettings(*working);
    if (endsInPause()) {
        return;
    }
    synchronizeAuditSettings(*reference);
    if (endsInPause()) {
        return;
    }
    // Their ends take their time, too.
    std::shared_ptr<EventTreeItem> oldWorking = m_workingModel->holdTree();
    std::shared_ptr<EventTreeItem> oldReference = m_referenceModel->holdTree();
    showTree(std::move(working));
    if (endsInPause()) {
        return;
    }
    m_referenceModel->setRootItem(reference.release());
    oldWorking.reset();
    pause();
    oldReference.reset();
    if (endsInPause()) {
        return;
    }
    // For the first load it remains to ask the system. That takes its time, so the page is shown before.
    // Three turns: the view puts its rows in order, they are painted, and what is painted goes to the
    // display.
    for (int round = 0; round < 3; ++round) {
        turn();
        if (!self) {
            return;
        }
    }
    if (getAuditSettings(*m_workingModel->rootItem())) {
        synchronizeAuditSettings(*m_workingModel->rootItem());
        if (endsInPause()) {
            return;
        }
        synchronizeAuditSettings(*m_referenceModel->rootItem());
        m_ui->singleEventsView->viewport()->update();
        pause();
    }
}

bool AdminEventsModule::checkEventSettingsDirectory()
{
    const QString path = SystemPaths::resolve(SystemPaths::eventSettingsDirectory());
    const QDir directory(path);
    constexpr QDir::Filters everything
        = QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot;
    if (directory.exists() && !directory.isEmpty(everything)) {
        return true;
    }
    Gui::Utils::showText(this, QMessageBox::Critical, i18n("No event configuration detected"),
                         i18n("The directory \"%1\" does not exist or is empty.\n"
                              "The application cannot continue and will be terminated.",
                              path));
    QCoreApplication::exit(-1);
    return false;
}

void AdminEventsModule::showSettingsFileState(const SettingsFile &settings)
{
    const bool damaged
        = settings.state == SettingsFile::Malformed || settings.state == SettingsFile::Unreadable;
    if (damaged) {
        showMessage(KMessageWidget::Warning,
                    i18n("The saved event settings could not be read, so the page shows the defaults. %1",
                         settings.reason));
    } else {
        m_messageBar->hide();
    }
}

bool AdminEventsModule::save_p()
{
    if (!isNotificationDialogFree()) {
        return false;
    }
    finishTyping();
    stopWatchConfigs();
    const QPointer<AdminEventsModule> self(this);
    bool saved = checkAuditSettings();
    if (!self) {
        return false;
    }
    if (saved) {
        const SettingsFile present = presentSettingsInPieces();
        if (!self) {
            return false;
        }
        saved = mayReplace(present) && saveNotifications() && writeEventSettings(present);
    }
    if (!self) {
        return false;
    }
    if (saved) {
        if (m_watcher) {
            LongWork work; // it looks at every file of the catalog
            m_watcher->acknowledge(); // these changes are the page's own
            work.pause();
        }
        if (!self) {
            return false;
        }
        const AuditSave audit = saveAuditSettings();
        saved = audit != AuditSave::Failed;
        const bool reboots = audit == AuditSave::Written && rebootsForAudit();
        if (!self) {
            return false;
        }
        if (saved && !reboots) {
            m_loggingService->restart();
        }
    }
    startWatchConfigs();
    if (saved && std::exchange(m_notificationsWritten, false)) {
        const QString note = presentToUsers();
        if (self) {
            m_savedNote = note;
        }
    }
    return saved;
}

void AdminEventsModule::finishTyping()
{
    // Else an editor would hand over its value whenever the window loses the focus, between two steps.
    QWidget *view = m_ui->singleEventsView;
    if (view->isAncestorOf(QApplication::focusWidget())) {
        view->setFocus();
    }
}

bool AdminEventsModule::writeEventSettings(const SettingsFile &present)
{
    // The page may end in a pause; what is worked on stays until then.
    const QPointer<AdminEventsModule> self(this);
    const std::shared_ptr<EventTreeItem> working = m_workingModel->holdTree();
    const std::shared_ptr<EventTreeItem> reference = m_referenceModel->holdTree();
    EventTreeItem *root = working.get();
    EventsWriter writer(*m_configAccessService, SystemPaths::eventSettingsFile(),
                        SystemPaths::auditRulesFile());
    LongWork work;
    const auto pause = [&work] { work.pause(); };
    ChangeMarker::markAll(*reference, *root, pause);
    pause();
    writer.setPause(pause);
    writer.setPreserved(membersWithoutEvent(present.object, *root));
    const bool prepared = writer.prepare(root);
    pause();
    work.end();
    if (!self) {
        return false;
    }
    if (!prepared) {
        showError(i18n("The event settings are nested too deeply to be saved in %1. Nothing was saved.",
                       SystemPaths::eventSettingsFile()));
        return false;
    }
    const bool written = writer.writeConfig(root);
    if (!written && self) {
        // A write that went through before the other failed is the page's own all the same.
        m_loadedSettings = presentSettings().contentHash;
    }
    if (!writer.errors().isEmpty() && self) {
        Gui::Utils::showText(this, QMessageBox::Warning, i18n("Error"),
                             writer.errors().join(QLatin1Char('\n')));
    }
    if (!written && self) {
        showError(writer.failures().join(QLatin1Char('\n')));
    }
    return written;
}

bool AdminEventsModule::mayReplace(const SettingsFile &present)
{
    const QString path = SystemPaths::eventSettingsFile();
    if (present.state == SettingsFile::Unreadable) {
        showError(
            i18n("%1\nNothing was saved, because the settings in this file would be lost.", present.reason));
        return false;
    }
    QString question;
    if (present.state == SettingsFile::Malformed) {
        question
            = i18n("%1\nSaving replaces the file, and what it holds now is lost to this page. Replace it?",
                   present.reason);
    } else if (present.contentHash != m_loadedSettings) {
        question = i18n("The file %1 was changed by another program after this page was loaded. "
                        "Replace it with the settings of this page?",
                        path);
    } else {
        return true;
    }
    return Gui::Utils::showText(this, QMessageBox::Question, i18n("Replace event settings"), question,
                                QMessageBox::Yes | QMessageBox::No, QMessageBox::No)
        == QMessageBox::Yes;
}

void AdminEventsModule::showError(const QString &text)
{
    Gui::Utils::showText(this, QMessageBox::Critical, i18n("Error"), text);
}

void AdminEventsModule::startWatchConfigs()
{
    if (!m_watcher) {
        m_watcher = new ConfigWatcher(SystemPaths::resolve(SystemPaths::eventSettingsDirectory()),
                                      SystemPaths::resolve(SystemPaths::eventSettingsFile()), this);
        connect(m_watcher, &ConfigWatcher::changed, this, &AdminEventsModule::configsChanged);
    }
    m_watcher->start();
}

void AdminEventsModule::stopWatchConfigs()
{
    if (m_watcher) {
        m_watcher->stop();
    }
}

bool AdminEventsModule::holdsEdits() const
{
    // Unlike the other dialogs, that of notifications does not outlive its tree.
    return !compareModels()
        || (m_dbusDialog && m_dbusDialog->isVisible() && !m_dbusDialog->checkStartParams());
}

void AdminEventsModule::configsChanged(const QString &path)
{
    if (m_reloading) {
        return;
    }
    const bool dropsEdits = holdsEdits();
    const QPointer<AdminEventsModule> self(this);
    m_reloading = true;
    load_p();
    if (!self) {
        return;
    }
    m_reloading = false;
    stateWidget()->resetState();
    Q_EMIT changed(false);
    const QString happened = i18n("%1 was changed by another program or page.", path);
    addMessage(dropsEdits ? KMessageWidget::Warning : KMessageWidget::Information,
               dropsEdits
                   ? i18n("%1 The page was loaded again; changes that were not saved are gone.", happened)
                   : i18n("%1 The page was loaded again.", happened));
}

void AdminEventsModule::dataChanged()
{
    if (std::exchange(m_valueRejected, false)) {
        m_messageBar->hide(); // what was refused has been dealt with
    }
    // A change shows in other rows as well: linked events, groups, switches of hidden values.
    m_ui->singleEventsView->viewport()->update();
    Q_EMIT changed(!compareModels());
}

bool AdminEventsModule::compareModels() const
{
    return ChangeMarker::compareTrees(*m_referenceModel->rootItem(), *m_workingModel->rootItem());
}

bool AdminEventsModule::compareIndexes(const QModelIndex &reference, const QModelIndex &working) const
{
    return ChangeMarker::compareItems(*m_referenceModel->itemAt(reference), *m_workingModel->itemAt(working),
                                      reference.column());
}
