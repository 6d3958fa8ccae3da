// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QByteArray>
#include <QVariant>
#include <QVector>
#include <QWidget>

#include <memory>

class ConfigAccessService;
class DestinationsModel;
class QAction;
class TreeItem;

namespace Ui {
class DestinationsSettings;
}

/// The page of the common settings on which destinations of the event log are added and removed.
class DestinationsSettings : public QWidget
{
    Q_OBJECT

public:
    /// @param service writes the main logging configuration; kept by reference
    explicit DestinationsSettings(ConfigAccessService &service, QWidget *parent = nullptr);
    ~DestinationsSettings() override;

    /// Reads the main logging configuration and drops all edits. A file that cannot be read is told on the
    /// page, which then offers no edits.
    void loadConfig();
    /// Whether the file, as it is now, differs from what the page holds.
    [[nodiscard]] bool isDestinationsModified() const;
    /**
     * Writes the main logging configuration if the page has edits. Before text of the file is lost, the user
     * is asked. Failures are shown.
     * @return false when edits were not written: refused, failed, or given up by the user. They stay.
     */
    [[nodiscard]] bool saveConfig();

    /// @param values kind, name, address, port and protocol (see AddDestinationDialog::values())
    void insertNewDest(const QVector<QVariant> &values);
    /// Removes the selected destination with its log paths; says why when it cannot.
    void removeSelectedDestination();
    /// Offers what can be done with the present selection.
    void selectionChanged();

    [[nodiscard]] DestinationsModel *model() const { return m_model; }

Q_SIGNALS:
    /// A destination was added or removed on the page.
    void edited();

private:
    void createActions();
    void addDestination();
    void openInEditor();
    void showError(const QString &text);
    /// Asks about losses; false, and nothing is to be written, when the user declines or the file is gone.
    [[nodiscard]] bool mayReplaceFile();
    [[nodiscard]] TreeItem *selectedDestination() const;

    std::unique_ptr<Ui::DestinationsSettings> m_ui;
    ConfigAccessService &m_service;
    DestinationsModel *m_model;
    QAction *m_openAction = nullptr;
    QAction *m_removeAction = nullptr;
    QByteArray m_loadedFile; ///< empty while there is no readable file
};
