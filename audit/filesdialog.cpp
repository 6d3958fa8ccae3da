// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "filesdialog.h"

#include "ui_filesdialog.h"

#include <plainmessage.h>
#include <watchedpaths.h>

#include <KLocalizedString>

#include <QFileDialog>
#include <QShortcut>

namespace {
QIcon themeIcon(const char *name)
{
    return QIcon::fromTheme(QString::fromLatin1(name));
}
} // namespace

FilesDialog::FilesDialog(QWidget *parent)
    : QDialog(parent)
    , m_ui(std::make_unique<Ui_FilesDialog>())
{
    m_ui->setupUi(this);
    m_ui->addButton->setIcon(themeIcon("list-add"));
    m_ui->removeButton->setIcon(themeIcon("list-remove"));
    // Return is for the dialog, not for the button that happens to come first.
    m_ui->addButton->setAutoDefault(false);
    m_ui->removeButton->setAutoDefault(false);
    m_ui->messageWidget->hide();
    auto *remove = new QShortcut(QKeySequence::Delete, m_ui->filesList);
    remove->setContext(Qt::WidgetShortcut);
    connect(remove, &QShortcut::activated, this, &FilesDialog::removeSelectedFile);
    connect(m_ui->addButton, &QPushButton::clicked, this, &FilesDialog::addNewFile);
    connect(m_ui->removeButton, &QPushButton::clicked, this, &FilesDialog::removeSelectedFile);
    connect(m_ui->filesList, &QListWidget::itemSelectionChanged, this, &FilesDialog::selectionChanged);
    connect(m_ui->buttonBox, &QDialogButtonBox::accepted, this, &FilesDialog::on_buttonBox_accepted);
    connect(m_ui->buttonBox, &QDialogButtonBox::rejected, this, &FilesDialog::reject);
    setDialogType(Files);
    selectionChanged();
}

FilesDialog::~FilesDialog() = default;

void FilesDialog::setDialogType(DialogType type)
{
    m_type = type == Files ? Files : Directories;
    const bool files = m_type == Files;
    m_ui->listLabel->setText(files ? i18n("Watched &files:") : i18n("Watched di&rectories:"));
    m_ui->filesList->setAccessibleName(files ? i18n("Watched files") : i18n("Watched directories"));
    m_ui->addButton->setText(files ? i18n("Add new file") : i18n("Add new directory"));
    m_ui->removeButton->setText(files ? i18n("Remove selected file") : i18n("Remove selected directory"));
}

WatchPathCheck::Target FilesDialog::target() const
{
    return m_type == Files ? WatchPathCheck::Target::File : WatchPathCheck::Target::Directory;
}

void FilesDialog::setData(const QVariant &value)
{
    m_ui->filesList->clear();
    m_given = WatchedPaths::fromText(value.toString());
    for (const QString &path : qAsConst(m_given)) {
        appendRow(path);
    }
    showNotes();
    selectionChanged();
}

QStringList FilesDialog::paths() const
{
    QStringList paths;
    for (int row = 0; row < m_ui->filesList->count(); ++row) {
        paths.append(m_ui->filesList->item(row)->text());
    }
    return paths;
}

void FilesDialog::addNewFile()
{
    QFileDialog chooser(this);
    chooser.setObjectName(QStringLiteral("pathChooser"));
    chooser.setDirectory(QStringLiteral("/"));
    // A link is watched itself, not what it leads to.
    chooser.setOption(QFileDialog::DontResolveSymlinks);
    if (m_type == Files) {
        chooser.setWindowTitle(i18n("Choose a file to watch"));
        chooser.setFileMode(QFileDialog::AnyFile); // it may be created later
        chooser.setLabelText(QFileDialog::Accept, i18n("Add"));
        chooser.setFilter(QDir::AllEntries | QDir::Hidden | QDir::System);
    } else {
        chooser.setWindowTitle(i18n("Choose a directory to watch"));
        chooser.setFileMode(QFileDialog::Directory);
        chooser.setOption(QFileDialog::ShowDirsOnly);
        chooser.setFilter(QDir::Dirs | QDir::Hidden | QDir::NoDotAndDotDot);
    }
    if (chooser.exec() == QDialog::Accepted && !chooser.selectedFiles().isEmpty()) {
        addPath(chooser.selectedFiles().constFirst());
    }
}

bool FilesDialog::addPath(const QString &path)
{
    if (const QString problem = WatchPathCheck::problem(path, target()); !problem.isEmpty()) {
        showProblem(problem);
        return false;
    }
    if (const int row = paths().indexOf(path); row >= 0) {
        m_ui->filesList->setCurrentRow(row);
        showProblem(i18n("“%1” is in the list already.", path));
        return false;
    }
    m_ui->filesList->setCurrentItem(appendRow(path));
    showNotes();
    return true;
}

QListWidgetItem *FilesDialog::appendRow(const QString &path)
{
    auto *item = new QListWidgetItem(path, m_ui->filesList);
    showState(item);
    return item;
}

void FilesDialog::showState(QListWidgetItem *item) const
{
    const QString problem = WatchPathCheck::problem(item->text(), target());
    const QString note = problem.isEmpty() ? WatchPathCheck::note(item->text(), target()) : problem;
    if (!problem.isEmpty()) {
        item->setIcon(themeIcon("dialog-error"));
    } else if (!note.isEmpty()) {
        item->setIcon(themeIcon("dialog-warning"));
    }
    item->setToolTip(note.isEmpty() ? QString() : PlainMessage::formatted({note}));
    item->setData(Qt::AccessibleDescriptionRole, note);
}

void FilesDialog::removeSelectedFile() const
{
    QListWidget *list = m_ui->filesList;
    delete list->takeItem(list->currentRow());
    list->setCurrentRow(list->count() - 1);
    showNotes();
    selectionChanged();
}

void FilesDialog::selectionChanged() const
{
    m_ui->removeButton->setEnabled(!m_ui->filesList->selectedItems().isEmpty());
}

void FilesDialog::showNotes() const
{
    QStringList notes;
    for (int row = 0; row < m_ui->filesList->count(); ++row) {
        const QString note = m_ui->filesList->item(row)->data(Qt::AccessibleDescriptionRole).toString();
        if (!note.isEmpty()) {
            notes.append(note);
        }
    }
    constexpr int mostNotes = 3; // the rows bear icons and tool tips as well
    const int left = notes.size() - mostNotes;
    if (left > 0) {
        notes = notes.mid(0, mostNotes);
        notes.append(i18np("One more path is marked.", "%1 more paths are marked.", left));
    }
    if (notes.isEmpty()) {
        m_ui->messageWidget->hide();
    } else {
        PlainMessage::show(m_ui->messageWidget, KMessageWidget::Warning, notes);
    }
}

void FilesDialog::showProblem(const QString &text) const
{
    PlainMessage::show(m_ui->messageWidget, KMessageWidget::Error, {text});
}

void FilesDialog::on_buttonBox_accepted()
{
    const QStringList listed = paths();
    for (int row = 0; isEdited() && row < listed.size(); ++row) {
        const QString problem = WatchPathCheck::problem(listed.at(row), target());
        if (!problem.isEmpty()) {
            m_ui->filesList->setCurrentRow(row);
            showProblem(problem);
            return;
        }
    }
    Q_EMIT fileListEdited(WatchedPaths::toText(listed));
    accept();
}
