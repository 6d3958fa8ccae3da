// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include <notifyrccheck.h>
#include <notifyrctext.h>

#include <cstdlib>

using namespace AdminEventsHelper;

/// Any notification settings file is read and changed without harm: the group that is put in is there, once
/// and again, and another one stays as it was.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QByteArray text(reinterpret_cast<const char *>(data), static_cast<int>(size));
    const QString key = QStringLiteral("key");
    const QString other = QStringLiteral("other");
    const QStringList content{QStringLiteral("[Event/key]\n"), QStringLiteral("Action=Popup|Logfile\n"),
                              QStringLiteral("Execute=\n"),    QStringLiteral("Logfile=file:///a b\n"),
                              QStringLiteral("Sound=\n"),      QStringLiteral("TTS=\n")};
    const QByteArray once = NotifyrcText::withGroup(text, key, content);
    const NotifyrcGroup group = NotifyrcText::readGroup(once, key);
    const NotifyrcGroup before = NotifyrcText::readGroup(text, other);
    const NotifyrcGroup after = NotifyrcText::readGroup(once, other);
    if (!group.isDefined || group.actions != QLatin1String("Popup|Logfile")
        || group.logFile != QLatin1String("file:///a b")
        || NotifyrcText::withGroup(once, key, content) != once || before.isDefined != after.isDefined
        || before.actions != after.actions || before.executeCommand != after.executeCommand
        || before.logFile != after.logFile) {
        std::abort();
    }
    // An archive takes what the page has written into a file that it would have taken before.
    const QString path = QStringLiteral("/own.notifyrc");
    if (NotifyrcCheck::check(path, text) && !NotifyrcCheck::check(path, once)) {
        std::abort();
    }
    return 0;
}
