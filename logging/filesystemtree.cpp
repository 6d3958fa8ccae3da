// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "filesystemtree.h"

#include <QDir>
#include <QFileInfo>

FileSystemTree::FileSystemTree(const QString &rootPath)
{
    if (!QFileInfo(rootPath).isDir()) {
        return;
    }
    m_root = std::make_unique<FileSystemNode>();
    m_root->path = rootPath;
    fill(*m_root, {QFileInfo(rootPath).canonicalFilePath()});
}

void FileSystemTree::fill(FileSystemNode &node, const QStringList &above)
{
    const QDir directory(node.path);
    node.files = directory.entryList(QDir::Files);
    const QStringList names = directory.entryList(QDir::Dirs | QDir::NoDotAndDotDot);
    for (const QString &name : names) {
        auto child = std::make_unique<FileSystemNode>();
        child->path = node.path + QLatin1Char('/') + name;
        child->parent = &node;
        const QString real = QFileInfo(child->path).canonicalFilePath();
        if (!above.contains(real)) {
            fill(*child, above + QStringList{real});
        }
        node.children.push_back(std::move(child));
    }
}
