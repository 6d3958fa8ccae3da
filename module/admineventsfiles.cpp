// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "admineventsmodule.h"

#include <checkabletreemodel.h>
#include <diskspacemondialog.h>
#include <eventtreeitem.h>
#include <filesdialog.h>
#include <guiutils.h>
#include <watchedlists.h>

#include <KLocalizedString>
#include <KMessageWidget>

FilesDialog &AdminEventsModule::filesDialog()
{
    if (!m_filesDialog) {
        m_filesDialog = new FilesDialog(this);
        connect(m_filesDialog, &FilesDialog::fileListEdited, this, &AdminEventsModule::fileArrayAccepted);
    }
    return *m_filesDialog;
}

DiskSpaceMonDialog &AdminEventsModule::diskSpaceDialog()
{
    if (!m_diskSpaceDialog) {
        m_diskSpaceDialog = new DiskSpaceMonDialog(this);
        connect(m_diskSpaceDialog, &DiskSpaceMonDialog::directoriesEdited, this,
                &AdminEventsModule::directoriesAccepted);
    }
    return *m_diskSpaceDialog;
}

void AdminEventsModule::editWatched(const QModelIndex &index)
{
    const QModelIndex name = index.siblingAtColumn(0);
    const bool files = name.data(CheckableTreeModel::FileArrayRole).toBool();
    if (files || name.data(CheckableTreeModel::DirectoryArrayRole).toBool()) {
        const NodeAddress list(*itemAt(index));
        FilesDialog &dialog = filesDialog();
        if (keepEdits(dialog, dialog.isEdited(), list == m_editedList)) {
            return;
        }
        m_editedList = list;
        dialog.setWindowTitle(name.data().toString());
        dialog.setDialogType(files ? FilesDialog::Files : FilesDialog::Directories);
        dialog.setData(index.data());
        Gui::Utils::bringUp(dialog);
    }
    if (name.data(CheckableTreeModel::DirectoriesRole).toBool()) {
        const NodeAddress directories(*itemAt(index));
        DiskSpaceMonDialog &dialog = diskSpaceDialog();
        if (keepEdits(dialog, dialog.isEdited(), directories == m_editedDirectories)) {
            return;
        }
        m_editedDirectories = directories;
        dialog.setWindowTitle(name.data().toString());
        dialog.setData(index.siblingAtColumn(EventTreeItem::JsonColumn).data().toString());
        Gui::Utils::bringUp(dialog);
    }
}

void AdminEventsModule::fileArrayAccepted(const QVariant &value)
{
    if (EventTreeItem *list = m_editedList.find(*m_workingModel->rootItem())) {
        WatchedLists::storePaths(*m_workingModel, list, value.toString());
    } else {
        showGone(m_editedList);
    }
}

void AdminEventsModule::directoriesAccepted(const QList<QVariant> &data)
{
    if (EventTreeItem *directories = m_editedDirectories.find(*m_workingModel->rootItem())) {
        WatchedLists::storeDirectories(*m_workingModel, directories, data.value(0).toString());
    } else {
        showGone(m_editedDirectories);
    }
}

void AdminEventsModule::showGone(const NodeAddress &address)
{
    showMessage(KMessageWidget::Warning,
                i18n("The event “%1” does not have this parameter any more. Nothing was changed.",
                     address.eventId()));
}
