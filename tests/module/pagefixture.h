// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <admineventsmodule.h>
#include <privatebus.h>

#include <QJsonObject>
#include <QTemporaryDir>

#include <memory>

class CheckableTreeModel;
class EventTreeItem;
class QLabel;
class QPushButton;
class QTreeView;

/**
 * A machine for the page: a root directory with a small catalog, the real
 * helper on a private bus, and a service manager that records what it is told and plays along.
 */
class PageFixture
{
public:
    /// @param helperArguments words for the helper's command line, beside its root and service manager
    explicit PageFixture(const QStringList &helperArguments = {});

    /// Starts the bus; an error text, empty when all went well.
    [[nodiscard]] QString start();
    /// Empties the root and writes the catalog anew.
    void reset();
    /// A page that has been shown and loaded.
    [[nodiscard]] std::unique_ptr<AdminEventsModule> openPage(const QVariantList &args = {});

    [[nodiscard]] QString root() const { return m_root.path(); }
    [[nodiscard]] QString settingsPath() const;
    [[nodiscard]] QString rulesPath() const;
    [[nodiscard]] QString catalogPath() const;
    /// What the stand-in service manager was told, one call a line.
    [[nodiscard]] QString serviceCalls() const;

    static void write(const QString &path, const QByteArray &content);
    /// Writes as careful programs do: beside the file, then by rename.
    static void replace(const QString &path, const QByteArray &content);
    [[nodiscard]] static QByteArray read(const QString &path);
    [[nodiscard]] QJsonObject settings() const;

    [[nodiscard]] static EventTreeItem *node(CheckableTreeModel *model, const QString &event,
                                             const QStringList &path = {});
    static void toggle(AdminEventsModule &page, const QString &event);
    static void type(AdminEventsModule &page, const QString &event, const QStringList &path,
                     const QString &text);
    [[nodiscard]] static QTreeView *view(const AdminEventsModule &page);
    /// The cell that the view shows for a node, invalid when there is none.
    [[nodiscard]] static QModelIndex shown(const AdminEventsModule &page, const QString &event,
                                           const QStringList &path = {}, int column = 0);
    /// The button that starts and stops the logging service, and the label that tells its state.
    [[nodiscard]] static QPushButton *serviceButton(const AdminEventsModule &page);
    [[nodiscard]] static QLabel *serviceLabel(const AdminEventsModule &page);

    QTemporaryDir m_root;
    std::unique_ptr<PrivateBus> bus;

private:
    void writeServiceManager();
};
