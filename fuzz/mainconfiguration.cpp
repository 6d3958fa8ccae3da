// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include <losscheck.h>
#include <maintree.h>
#include <treeitem.h>

#include <cstdlib>

/// Any file is read, written and checked without harm; one that the check has nothing to say of is read back
/// as it was.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QByteArray content(reinterpret_cast<const char *>(data), static_cast<int>(size));
    const auto root = MainTree::read(content);
    const bool silent = LossCheck::findings(content, content, *root).isEmpty();
    const auto again = MainTree::read(MainTree::written(*root));
    if (silent && !MainTree::equal(*again, *root)) {
        std::abort();
    }
    return 0;
}
