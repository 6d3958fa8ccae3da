// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include <commandlauncher.h>
#include <logfile.h>
#include <soundplayer.h>
#include <tone.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <memory>
#include <sys/stat.h>

using namespace NivraWatcher;

class WatcherActionsTest : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<QTemporaryDir> m_root;

    QString below(const char *path) const { return m_root->filePath(QLatin1String(path)); }
    static QByteArray contents(const QString &path)
    {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }
    static void put(const QString &path, const QByteArray &text)
    {
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write(text) == text.size());
    }
    static Event event(const QString &text)
    {
        return {QStringLiteral("userLogin"),
                QStringLiteral("Вход\n\"x\""),
                QString(),
                text,
                {{QStringLiteral("user"), text}, {QStringLiteral("a-b=c"), QStringLiteral("2")}},
                QDateTime(QDate(2026, 3, 14), QTime(9, 26, 53))};
    }
    QString quoted(const char *path) const { return QLatin1Char('\'') + below(path) + QLatin1Char('\''); }

private Q_SLOTS:
    void init();

    void aLineIsAppended();
    void onlyARegularFileIsWritten_data();
    void onlyARegularFileIsWritten();
    void aCommandGetsTheValuesInItsEnvironment();
    void noShellReadsTheCommand();
    void aHostileValueRunsNothing_data();
    void aHostileValueRunsNothing();
    void aCommandThatCannotRunIsReported_data();
    void aCommandThatCannotRunIsReported();
    void aMissingSoundIsReported();
    void aSoundIsPlayedToTheDevice();
    void withoutASoundDeviceItSaysSo();
};

void WatcherActionsTest::init()
{
    m_root = std::make_unique<QTemporaryDir>();
    // Where commands run.
    qputenv("HOME", m_root->path().toUtf8());
}

void WatcherActionsTest::aLineIsAppended()
{
    const QString path = below("log %20");
    QCOMPARE(LogFile::append(path, event(QStringLiteral("one"))), QString());
    QCOMPARE(LogFile::append(path, event(QStringLiteral("two\n2026-01-01 forged"))), QString());
    QCOMPARE(QString::fromUtf8(contents(path)),
             QStringLiteral("2026-03-14T09:26:53 Вход\\n\"x\": one\n"
                            "2026-03-14T09:26:53 Вход\\n\"x\": two\\n2026-01-01 forged\n"));
    struct stat status = {};
    QCOMPARE(::stat(QFile::encodeName(path).constData(), &status), 0);
    QCOMPARE(status.st_mode & 0777U, 0600U);
}

void WatcherActionsTest::onlyARegularFileIsWritten_data()
{
    QTest::addColumn<QString>("name");
    for (const char *name : {"link", "fifo", "directory", "missing/log"}) {
        QTest::newRow(name) << QString::fromLatin1(name);
    }
    QTest::newRow("relative") << QStringLiteral("./relative-log");
    QTest::newRow("nothing") << QString();
}

void WatcherActionsTest::onlyARegularFileIsWritten()
{
    QFETCH(QString, name);
    QVERIFY(QDir().mkdir(below("directory")));
    QCOMPARE(::mkfifo(QFile::encodeName(below("fifo")).constData(), 0600), 0);
    QFile target(below("target"));
    QVERIFY(target.open(QIODevice::WriteOnly));
    QVERIFY(QFile::link(below("target"), below("link")));
    const bool isAbsolute = !name.isEmpty() && !name.startsWith(QLatin1Char('.'));
    const QString path = isAbsolute ? m_root->filePath(name) : name;
    const QString error = LogFile::append(path, event(QStringLiteral("text")));
    QVERIFY2(error.contains(QLatin1Char('"') + path + QLatin1Char('"')), qPrintable(error));
    QCOMPARE(contents(below("target")), QByteArray());
    QVERIFY(!QFile::exists(QStringLiteral("relative-log")));
}

void WatcherActionsTest::aCommandGetsTheValuesInItsEnvironment()
{
    const QString script = QStringLiteral(
        "printf '%s|%s|%s|%s|%s|%s|%s' \"$NIVRA_EVENT\" \"$NIVRA_EVENT_TITLE\" \"$NIVRA_EVENT_TEXT\" "
        "\"$NIVRA_EVENT_TIME\" \"$NIVRA_EVENT_VALUE_user\" \"$NIVRA_EVENT_VALUE_a_b_c\" \"$#\" >\"$0\"");
    QCOMPARE(CommandLauncher::start(QLatin1String("sh -c '")
                                        + QString(script).replace(QLatin1Char('\''), QLatin1String("'\\''"))
                                        + QLatin1String("' ") + quoted("out put"),
                                    event(QStringLiteral("text"))),
             QString());
    QTRY_COMPARE(QString::fromUtf8(contents(below("out put"))),
                 QStringLiteral("userLogin|Вход\n\"x\"|text|2026-03-14T09:26:53|text|2|0"));
}

void WatcherActionsTest::noShellReadsTheCommand()
{
    QCOMPARE(CommandLauncher::start(QLatin1String("touch ") + quoted("made")
                                        + QLatin1String("';$(touch x)' ; touch ") + quoted("second"),
                                    event(QStringLiteral("text"))),
             QString());
    QTRY_VERIFY(QFile::exists(below("made;$(touch x)")));
    // One program, for which ";" and "touch" are names of files.
    QTRY_VERIFY(QFile::exists(below("second")));
    QVERIFY(QFile::exists(below(";")));
    QVERIFY(QFile::exists(below("touch")));
}

void WatcherActionsTest::aHostileValueRunsNothing_data()
{
    QTest::addColumn<QString>("text");
    for (const char *text : {"$(touch %1)", "`touch %1`", "; touch %1", "' ; touch %1 ; '",
                             "\" ; touch %1 ; \"", "x\ntouch %1\n", "() { :;}; touch %1", "%s %e %1"}) {
        QTest::newRow(text) << QString::fromLatin1(text);
    }
}

void WatcherActionsTest::aHostileValueRunsNothing()
{
    QFETCH(QString, text);
    const QString hostile = text.arg(below("made"));
    const QString script = QStringLiteral("bash -c 'printf %s \"$NIVRA_EVENT_TEXT\" >\"$0\"' ");
    QCOMPARE(CommandLauncher::start(script + quoted("output"), event(hostile)), QString());
    QTRY_COMPARE(QString::fromUtf8(contents(below("output"))), hostile);
    QVERIFY(!QFile::exists(below("made")));
}

void WatcherActionsTest::aCommandThatCannotRunIsReported_data()
{
    QTest::addColumn<QString>("command");
    QTest::newRow("nothing") << QString();
    QTest::newRow("blanks") << QStringLiteral("  ");
    QTest::newRow("open quote") << QStringLiteral("echo 'a");
    QTest::newRow("no program") << QStringLiteral("/nonexistent/program a");
    QTest::newRow("empty program") << QStringLiteral("'' a");
}

void WatcherActionsTest::aCommandThatCannotRunIsReported()
{
    QFETCH(QString, command);
    const QString error = CommandLauncher::start(command, event(QStringLiteral("text")));
    QVERIFY2(error.contains(QLatin1Char('"') + command + QLatin1Char('"')), qPrintable(error));
}

void WatcherActionsTest::aMissingSoundIsReported()
{
    SoundPlayer player;
    QVERIFY(player.play(below("missing.ogg")).contains(below("missing.ogg")));
    QVERIFY(!player.play(QStringLiteral("no-such-name.ogg")).isEmpty());
    QVERIFY(!player.play(QString()).isEmpty());
}

void WatcherActionsTest::aSoundIsPlayedToTheDevice()
{
    // A device that writes down what it is to play.
    const QByteArray heard = QFile::encodeName(below("heard"));
    put(below("devices"),
        "pcm.!default { type file slave.pcm { type null } file \"" + heard + "\" format raw }\n");
    put(below("tone.wav"), Tone::wav());
    qputenv("CANBERRA_DRIVER", "alsa");
    qputenv("ALSA_CONFIG_PATH", QFile::encodeName(below("devices")));
    SoundPlayer player;
    const QString error = player.play(QLatin1String("file://") + below("tone.wav"));
    QVERIFY2(error.isEmpty(), qPrintable(error));
    const int headerSize = 44;
    QTRY_COMPARE_WITH_TIMEOUT(contents(below("heard")), Tone::wav().mid(headerSize), 15000);
}

void WatcherActionsTest::withoutASoundDeviceItSaysSo()
{
    put(below("devices"), "# none\n");
    put(below("tone.wav"), Tone::wav());
    qputenv("CANBERRA_DRIVER", "alsa");
    qputenv("ALSA_CONFIG_PATH", QFile::encodeName(below("devices")));
    SoundPlayer player;
    const QString error = player.play(below("tone.wav"));
    QVERIFY2(error.contains(below("tone.wav")) && error.contains(QLatin1String("no sound device")),
             qPrintable(error));
}

QTEST_GUILESS_MAIN(WatcherActionsTest)
#include "watcheractionstest.moc"
