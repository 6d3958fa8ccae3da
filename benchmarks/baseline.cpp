// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "baseline.h"

#include <eventdisplay.h>
#include <eventtreeitem.h>
#include <fuzzymatch.h>

#include <QFile>
#include <QJsonDocument>
#include <QSet>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {
using Baseline::PlainNode;

void collect(const EventTreeItem &item, QVector<PlainNode> &nodes)
{
    for (int row = 0; row < item.childCount(); ++row) {
        const EventTreeItem &child = *item.eventChild(row);
        nodes.append({child.value(0).toString(), child.value(1), child.value(2).toString(),
                      child.childCount(), EventDisplay::checkStateValue(child, 0),
                      EventDisplay::checkStateValue(child, 1)});
        collect(child, nodes);
    }
}

QStandardItem *createItem(const QVariant &value)
{
    if (value.userType() == QMetaType::QString) {
        return new QStandardItem(value.toString());
    }
    auto *item = new QStandardItem;
    if (value.isValid()) {
        item->setData(value, Qt::DisplayRole);
    }
    return item;
}

QStandardItem *withCheckBox(QStandardItem *item, const QVariant &state)
{
    if (state.isValid()) {
        item->setData(state, Qt::CheckStateRole);
    }
    return item;
}

QList<QStandardItem *> createRow(const PlainNode *&next)
{
    const PlainNode &node = *next++;
    QStandardItem *name = withCheckBox(new QStandardItem(node.name), node.nameState);
    // Filled before it is added: a model that listens would only make this slower.
    for (int row = 0; row < node.childCount; ++row) {
        name->appendRow(createRow(next));
    }
    return {name, withCheckBox(createItem(node.value), node.valueState),
            node.json.isNull() ? new QStandardItem : new QStandardItem(node.json)};
}
} // namespace

QVector<PlainNode> Baseline::plainNodes(const EventTreeItem &root)
{
    QVector<PlainNode> nodes;
    collect(root, nodes);
    return nodes;
}

QVector<PlainNode> Baseline::detached(const QVector<PlainNode> &nodes)
{
    QSet<QString> texts;
    const auto copy = [&texts](const QString &text) {
        if (text.isNull()) {
            return text;
        }
        auto found = texts.constFind(text);
        if (found == texts.constEnd()) {
            found = texts.insert(QString(text.constData(), text.size()));
        }
        return *found;
    };
    QVector<PlainNode> copies;
    copies.reserve(nodes.size());
    for (const PlainNode &node : nodes) {
        const bool isText = node.value.userType() == QMetaType::QString;
        copies.append({copy(node.name), isText ? QVariant(copy(node.value.toString())) : node.value,
                       copy(node.json), node.childCount, QVariant(), QVariant()});
    }
    return copies;
}

int Baseline::parseDocuments(const QVector<QByteArray> &documents)
{
    int objects = 0;
    for (const QByteArray &document : documents) {
        objects += QJsonDocument::fromJson(document).isObject() ? 1 : 0;
    }
    return objects;
}

QVector<QByteArray> Baseline::readFiles(const QStringList &files)
{
    QVector<QByteArray> contents;
    contents.reserve(files.size());
    for (const QString &path : files) {
        const int file = open(QFile::encodeName(path).constData(), O_RDONLY | O_CLOEXEC);
        struct stat status
        {
        };
        if (file < 0 || fstat(file, &status) != 0) {
            return {};
        }
        QByteArray content(static_cast<int>(status.st_size), Qt::Uninitialized);
        const bool whole
            = read(file, content.data(), static_cast<std::size_t>(content.size())) == content.size();
        close(file);
        if (!whole) {
            return {};
        }
        contents.append(content);
    }
    return contents;
}

void Baseline::fillModel(QStandardItemModel &model, const QVector<PlainNode> &nodes)
{
    model.setColumnCount(3);
    const PlainNode *next = nodes.constData();
    const PlainNode *end = next + nodes.size();
    while (next != end) {
        model.appendRow(createRow(next));
    }
}

int Baseline::visit(const EventTreeItem &item)
{
    int sum = item.checkState;
    for (int row = 0; row < item.childCount(); ++row) {
        sum += visit(*item.eventChild(row));
    }
    return sum;
}

int Baseline::matchAll(const EventTreeItem &root, const QString &query)
{
    const auto matches = [&query](const EventTreeItem &item) {
        const bool id = FuzzyMatch::contains(item.nativeName, query);
        const bool name = FuzzyMatch::contains(item.localizedName, query);
        return id || name ? 1 : 0;
    };
    int count = 0;
    for (int row = 0; row < root.childCount(); ++row) {
        const EventTreeItem &group = *root.eventChild(row);
        count += matches(group);
        for (int event = 0; event < group.childCount(); ++event) {
            count += matches(*group.eventChild(event));
        }
    }
    return count;
}
