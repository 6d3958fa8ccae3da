// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "admineventsmodule.h"

#include <auditdialog.h>
#include <auditkeeper.h>
#include <audittree.h>
#include <checkabletreemodel.h>
#include <coreutils.h>
#include <eventtreeitem.h>
#include <guiutils.h>
#include <longwork.h>

#include <KLocalizedString>
#include <KMessageWidget>

#include <QPointer>

AuditDialog &AdminEventsModule::auditDialog()
{
    if (!m_auditDialog) {
        m_auditDialog = new AuditDialog(this);
        connect(m_auditDialog, &AuditDialog::auditSettingsEdited, this,
                &AdminEventsModule::auditSettingsAccepted);
    }
    return *m_auditDialog;
}

void AdminEventsModule::editAudited(const QModelIndex &index)
{
    const QModelIndex name = index.siblingAtColumn(0);
    const bool users = name.data(CheckableTreeModel::UsersRole).toBool();
    const EventTreeItem *item = itemAt(index);
    if ((!users && !name.data(CheckableTreeModel::GroupsRole).toBool())
        || item->kind != EventTreeItem::Subjects) {
        return;
    }
    const NodeAddress subjects(*item);
    AuditDialog &dialog = auditDialog();
    if (keepEdits(dialog, dialog.isEdited(), subjects == m_editedSubjects)) {
        return;
    }
    m_editedSubjects = subjects;
    dialog.setWindowTitle(name.data().toString());
    dialog.setTableData(index.siblingAtColumn(EventTreeItem::JsonColumn).data().toString());
    dialog.setDialogType(users ? AuditDialog::Users : AuditDialog::Groups);
    Gui::Utils::bringUp(dialog);
}

void AdminEventsModule::auditSettingsAccepted(const QList<QVariant> &result)
{
    EventTreeItem *subjects = m_editedSubjects.find(*m_workingModel->rootItem());
    if (subjects && AuditTree::setSubjects(*subjects, result.value(0).toString())) {
        m_workingModel->announceChange(subjects);
    } else {
        showGone(m_editedSubjects);
    }
}

bool AdminEventsModule::getAuditSettings(const EventTreeItem &root)
{
    // A catalog without such events gives no reason to ask for a password.
    return !m_auditKeeper->wasAsked() && AuditTree::namesOperations(root)
        && m_auditKeeper->read(m_users, m_groups); // showAuditState() tells a failure
}

void AdminEventsModule::synchronizeAuditSettings(EventTreeItem &root) const
{
    m_auditKeeper->copyInto(root);
}

void AdminEventsModule::showAuditState()
{
    if (m_auditKeeper->readError().isEmpty() || m_messageBar->isVisibleTo(this)) {
        return;
    }
    showMessage(KMessageWidget::Warning,
                i18n("Which users and groups are audited could not be read from the system, so the "
                     "page shows what was saved with the events. %1",
                     m_auditKeeper->readError()));
}

bool AdminEventsModule::checkAuditSettings()
{
    // Collected once, when it is needed, and not at every click: a large site has 100,000 such settings.
    // The page may end in a pause; what is worked on stays until then.
    const QPointer<AdminEventsModule> self(this);
    const std::shared_ptr<AuditKeeper> keeper = m_auditKeeper;
    const std::shared_ptr<EventTreeItem> working = m_workingModel->holdTree();
    const std::shared_ptr<EventTreeItem> reference = m_referenceModel->holdTree();
    LongWork work;
    const bool auditChanged
        = keeper->collect(*working, *reference, m_users, m_groups, [&work] { work.pause(); });
    if (!self) {
        return false;
    }
    m_auditChanged = auditChanged;
    const QString refusal = m_auditChanged ? m_auditKeeper->refusal() : QString();
    work.end();
    if (!refusal.isEmpty()) {
        showError(i18n("%1\nNothing was saved.", refusal));
    }
    return refusal.isEmpty();
}

AdminEventsModule::AuditSave AdminEventsModule::saveAuditSettings()
{
    if (!m_auditChanged) {
        return AuditSave::Unchanged;
    }
    if (m_auditKeeper->write()) {
        return AuditSave::Written;
    }
    // The page stays as it is, and with it what it knows of the file that it has just written.
    m_loadedSettings = presentSettings().contentHash;
    showError(i18n("The events were saved, but the audit settings of users and groups were not: %1",
                   m_auditKeeper->writeError()));
    return AuditSave::Failed;
}

bool AdminEventsModule::rebootsForAudit()
{
    if (!Gui::Utils::confirmAboutReboot(
            i18n("The audit settings will take effect only after the system is rebooted."))) {
        return false;
    }
    Core::Utils::rebootSystem();
    return true;
}
