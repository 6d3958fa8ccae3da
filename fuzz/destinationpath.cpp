// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include <destinationtext.h>
#include <losscheck.h>
#include <maintree.h>
#include <treeitem.h>

#include <cstdlib>

/// A path that is taken stays what it is, and does nothing to the rest of the file.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QString path
        = QString::fromUtf8(reinterpret_cast<const char *>(data), static_cast<int>(qMin<size_t>(size, 300)));
    const QVector<QVariant> values{QStringLiteral("file"), QStringLiteral("d"), path, 514,
                                   QStringLiteral("tcp")};
    if (!DestinationText::keepingError(values).isEmpty()) {
        return 0;
    }
    const auto root = MainTree::read("source s {\n    a(b);\n};\n\ndestination c {\n    file(\"/c\");\n};\n\n"
                                     "log {\n    source(s);\n    destination(c);\n};\n");
    root->appendChildDestination(DestinationText::makeBlock(values, root.get()));
    const QByteArray written = MainTree::written(*root);
    const auto again = MainTree::read(written);
    const TreeItem *block = again->child(2);
    if (!MainTree::equal(*again, *root) || !LossCheck::findings(written, written, *again).isEmpty()
        || DestinationText::firstQuoted(block->child(0)->value(2).toString()) != path) {
        std::abort();
    }
    return 0;
}
