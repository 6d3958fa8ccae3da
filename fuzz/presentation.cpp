// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "fuzzinput.h"

#include <messagetext.h>
#include <notificationcheck.h>
#include <notificationsettings.h>
#include <notifyrctext.h>

#include <QTemporaryDir>

#include <algorithm>

using namespace NivraWatcher;

namespace {

/// The user's directories, empty at first.
struct Home
{
    Home()
    {
        qputenv("XDG_CONFIG_HOME", directory.path().toUtf8());
        qputenv("XDG_DATA_DIRS", directory.path().toUtf8());
        qputenv("XDG_DATA_HOME", directory.path().toUtf8());
    }
    QString file() const { return directory.filePath(QStringLiteral("nivra-event-watcher_g.notifyrc")); }

    QTemporaryDir directory;
};

/// What the page writes for an event is what its notification does.
void checkAgreement(FuzzInput &input, const Home &home, NotificationSettings &settings)
{
    QStringList values{input.text(60), input.text(60), input.text(60)};
    for (QString &value : values) {
        if (!NotificationCheck::settingProblem(QStringLiteral("x"), value).isEmpty()) {
            value.clear();
        }
    }
    const QStringList content{QStringLiteral("[Event/k]\n"),
                              QStringLiteral("Action=Popup|Logfile\n"),
                              QLatin1String("Execute=") + values.at(0) + QLatin1Char('\n'),
                              QLatin1String("Logfile=file://") + values.at(1) + QLatin1Char('\n'),
                              QLatin1String("Sound=") + values.at(2) + QLatin1Char('\n'),
                              QStringLiteral("TTS=\n")};
    putFile(home.file(), NotifyrcText::withGroup("[Event/j]\nName=J\n", QStringLiteral("k"), content));
    settings.reparse();
    const std::optional<Presentation> found = settings.find(QStringLiteral("k"));
    require(found.has_value() && found->popup && found->log && !found->sound && !found->execute,
            "the methods are those that were chosen");
    require(found->command == values.at(0), "the command survives", values.at(0));
    require(found->logFile == values.at(1), "the log file survives", values.at(1));
    require(found->soundFile == values.at(2), "the sound survives", values.at(2));
}

void checkText(FuzzInput &input)
{
    const QString format = input.text(200);
    const QString text = MessageText::compose(format, {input.text(40), input.text(40)});
    require(format.contains(QLatin1Char('{')) || text == format, "a text without places stays");
    const QString line = MessageText::oneLine(text);
    require(std::none_of(line.cbegin(), line.cend(),
                         [](QChar c) { return c.category() == QChar::Other_Control; }),
            "a line is one line", line);
    const int limit = 1 + input.below(300);
    const QString shorter = MessageText::cut(text, limit);
    require(shorter.size() <= limit && (text.size() > limit || shorter == text), "a text is cut", shorter);
}

} // namespace

/// Any settings file of the notifications is read without harm; what the page writes is read as it was meant.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    static const Home home;
    static NotificationSettings settings;
    FuzzInput input(data, size);
    switch (input.mode(3)) {
    case 0:
        checkText(input);
        break;
    case 1:
        putFile(home.file(), input.rest());
        settings.reparse();
        (void)settings.find(QStringLiteral("k"));
        break;
    default:
        checkAgreement(input, home, settings);
    }
    return 0;
}
