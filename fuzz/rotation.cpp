// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include <abstractconfigparser.h>
#include <logrotateparser.h>
#include <rotationterms.h>
#include <rotationwriter.h>
#include <treeitem.h>

#include <cstdlib>

/// Any file is read without harm; one that is taken over is written so that it reads back as it was, with
/// nothing left to lose, also with other terms.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QByteArray content(reinterpret_cast<const char *>(data), static_cast<int>(size));
    const RotationScan scan = scanRotation(AbstractConfigParser::decode(content));
    const std::unique_ptr<TreeItem> root = LogRotateParser::tree(scan);
    if (!root || !RotationTerms::problem(scan).isEmpty()) {
        return 0;
    }
    for (const auto place : {RotationTerms::Behind, RotationTerms::Before}) {
        const QString text = RotationWriter::lines(*root).join(QLatin1Char('\n'));
        const RotationScan again = scanRotation(text);
        const std::unique_ptr<TreeItem> read = LogRotateParser::tree(again);
        if (!read || !again.losses.isEmpty()
            || RotationWriter::lines(*read) != RotationWriter::lines(*root)) {
            std::abort();
        }
        RotationTerms terms = RotationTerms::of(*root->child(0));
        terms.number = QStringLiteral("7");
        terms.replaceIn(*root->child(0), place);
        if (RotationTerms::of(*root->child(0)) != terms) {
            std::abort();
        }
    }
    return 0;
}
