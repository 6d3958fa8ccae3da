// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#pragma once

#include <QString>
#include <QStringList>

#include <memory>
#include <vector>

/// One directory of a FileSystemTree.
struct FileSystemNode
{
    QString path; ///< absolute when the root's is
    FileSystemNode *parent = nullptr;
    std::vector<std::unique_ptr<FileSystemNode>> children; ///< its directories, in listing order
    QStringList files; ///< the names of its plain files, in listing order
};

/// A directory with all that lies below it, as it was at one moment. Links to directories above are not
/// followed around in circles.
class FileSystemTree
{
public:
    explicit FileSystemTree(const QString &rootPath);

    /// Null when the path is no directory.
    [[nodiscard]] const FileSystemNode *root() const { return m_root.get(); }

private:
    static void fill(FileSystemNode &node, const QStringList &above);

    std::unique_ptr<FileSystemNode> m_root;
};
