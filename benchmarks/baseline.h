// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QByteArray>
#include <QStandardItemModel>
#include <QStringList>
#include <QVariant>
#include <QVector>

class EventTreeItem;

/// The work that cannot be avoided: what the measured operations are compared with.
namespace Baseline {
/// One node of a tree, in pre-order: the texts of its three columns, and the states of its check boxes.
struct PlainNode
{
    QString name;
    QVariant value; ///< invalid where the node has none
    QString json; ///< null where the node has none
    int childCount = 0;
    QVariant nameState; ///< invalid where the name has no check box
    QVariant valueState; ///< invalid where the value has no check box
};

/// All nodes below @p root.
[[nodiscard]] QVector<PlainNode> plainNodes(const EventTreeItem &root);
/// The same nodes without check boxes, with texts that share nothing with the tree's; equal texts share one
/// copy.
[[nodiscard]] QVector<PlainNode> detached(const QVector<PlainNode> &nodes);

/// Parses every document; the number of those that are objects.
[[nodiscard]] int parseDocuments(const QVector<QByteArray> &documents);
/// Reads every file whole, by the fewest calls that do it.
[[nodiscard]] QVector<QByteArray> readFiles(const QStringList &files);
/// Fills a model with a row of three items for every node; items have a check box where the page shows one.
/// The texts are ready and shared.
void fillModel(QStandardItemModel &model, const QVector<PlainNode> &nodes);
/// Visits every node below @p item depth-first and reads its state.
[[nodiscard]] int visit(const EventTreeItem &item);
/// Compares the identifiers and names of all groups and events with a query; the number of matches.
[[nodiscard]] int matchAll(const EventTreeItem &root, const QString &query);
} // namespace Baseline
