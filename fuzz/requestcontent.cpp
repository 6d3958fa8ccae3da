// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include <configarchive.h>
#include <contentcheck.h>

#include <cstdlib>

using namespace AdminEventsHelper;

/// What a request brings for a file is judged without harm, and what an administrator has already put there
/// is taken in any case where the check asks for that. The first byte chooses the file, or an archive.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    if (size == 0) {
        return 0;
    }
    const QByteArray content(reinterpret_cast<const char *>(data + 1), static_cast<int>(size - 1));
    const QList<ConfigTarget> targets = ConfigTarget::all();
    const int choice = data[0] % (targets.size() + 2);
    if (choice == targets.size()) {
        const auto archive = ConfigArchive::unpack(content);
        if (archive.ok() && !archive.value().pack().ok()) {
            std::abort();
        }
        return 0;
    }
    const ConfigTarget target = choice < targets.size()
        ? targets.at(choice)
        : ConfigArchive::fragmentTarget(QStringLiteral("mod-nivra-a.conf"));
    const bool taken = ContentCheck::check(target, content, {}).ok();
    if (taken && !ContentCheck::check(target, content, {content}).ok()) {
        std::abort();
    }
    return 0;
}
