// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include <notifyrctext.h>

#include <cstdlib>

/// Whatever a settings file holds, its group is replaced once, read back, and nothing is added by doing it
/// again.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QByteArray text(reinterpret_cast<const char *>(data), static_cast<int>(qMin<size_t>(size, 4096)));
    const QString key = QStringLiteral("k");
    const QStringList content{QStringLiteral("[Event/k]\n"),   QStringLiteral("Action=Popup|Sound\n"),
                              QStringLiteral("Execute=run\n"), QStringLiteral("Logfile=file:///l\n"),
                              QStringLiteral("Sound=/s\n"),    QStringLiteral("TTS=\n")};
    const QByteArray once = NotifyrcText::withGroup(text, key, content);
    const NotifyrcGroup group = NotifyrcText::readGroup(once, key);
    if (NotifyrcText::withGroup(once, key, content) != once || !group.isDefined
        || group.actions != QLatin1String("Popup|Sound") || group.soundFile != QLatin1String("/s")
        || !group.cutKeys.isEmpty()) {
        std::abort();
    }
    return 0;
}
