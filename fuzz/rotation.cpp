// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include <logrotateparser.h>
#include <rotationwriter.h>
#include <treeitem.h>

#include <cstdlib>

/// Any rotation file is read and written without harm; one that is taken over is read back as it was.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QByteArray content(reinterpret_cast<const char *>(data), static_cast<int>(size));
    const RotationScan scan = scanRotation(AbstractConfigParser::decode(content));
    const auto root = LogRotateParser::tree(scan);
    if (!root) {
        return 0;
    }
    if (scan.isGood() && scan.losses.isEmpty() && !RotationWriter::isReadBack(*root)) {
        std::abort();
    }
    return 0;
}
