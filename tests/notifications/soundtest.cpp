// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#include "notificationfixture.h"

#include <configaccessservice.h>
#include <dbusdialog.h>
#include <eventtreeitem.h>
#include <leashedprocess.h>
#include <loggingservice.h>
#include <notificationsdictionary.h>
#include <tone.h>

#include <KMessageWidget>

#include <QCheckBox>
#include <QFileInfo>
#include <QLineEdit>
#include <QProcess>
#include <QPushButton>
#include <QStandardPaths>
#include <QTest>

#include <algorithm>

/** The sound of a notification, played to a sound device without a loudspeaker and recorded from it. */
class SoundTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanupTestCase();
    void aSoundIsPlayedToTheDevice();

private:
    NotificationFixture m_machine;
    LeashedProcess m_server;
    LeashedProcess m_recorder;
};

void SoundTest::initTestCase()
{
    for (const char *program : {"pulseaudio", "parec"}) {
        if (QStandardPaths::findExecutable(QLatin1String(program)).isEmpty()) {
            QSKIP("there is no sound server to play to: pulseaudio and parec are missing");
        }
    }
    const QString socket = m_machine.path("/sound");
    qputenv("PULSE_SERVER", QFile::encodeName(QStringLiteral("unix:") + socket));
    qputenv("XDG_RUNTIME_DIR", QFile::encodeName(m_machine.root()));
    m_server.start(QStringLiteral("pulseaudio"),
                   {QStringLiteral("-n"), QStringLiteral("--daemonize=no"),
                    QStringLiteral("--use-pid-file=no"), QStringLiteral("--exit-idle-time=-1"),
                    QStringLiteral("--disable-shm=yes"),
                    QStringLiteral("--load=module-native-protocol-unix auth-anonymous=1 socket=") + socket,
                    QStringLiteral("--load=module-null-sink sink_name=loudspeaker")});
    QVERIFY(m_server.waitForStarted());
    QTRY_VERIFY_WITH_TIMEOUT(QFileInfo::exists(socket), 10000);
    NotificationsDictionary::Instance()->init();
}

void SoundTest::cleanupTestCase()
{
    m_recorder.stop();
    m_server.stop();
}

void SoundTest::aSoundIsPlayedToTheDevice()
{
    m_recorder.start(QStringLiteral("parec"),
                     {QStringLiteral("--device=loudspeaker.monitor"), QStringLiteral("--format=s16le"),
                      QStringLiteral("--channels=1"), QStringLiteral("--latency-msec=50")});
    QVERIFY(m_recorder.waitForStarted());
    const QString tone = m_machine.path("/home/tone.wav");
    m_machine.write(tone, Tone::wav());
    ConfigAccessService access(nullptr);
    LoggingService logging(nullptr);
    DBusDialog dialog(access, logging, nullptr);
    const auto event = m_machine.makeEvent(QStringLiteral("plain"));
    QVERIFY(dialog.setEvent(event.get()));
    dialog.findChild<QCheckBox *>(QStringLiteral("soundCheckBox"))->click();
    dialog.findChild<QLineEdit *>(QStringLiteral("soundEdit"))->setText(tone);
    QByteArray heard;
    const auto isHeard = [this, &heard] {
        heard += m_recorder.readAllStandardOutput();
        return std::any_of(heard.begin(), heard.end(), [](char byte) { return byte != 0; });
    };
    QTRY_VERIFY_WITH_TIMEOUT(!isHeard() && heard.size() > 1000, 10000); // silence so far
    dialog.findChild<QPushButton *>(QStringLiteral("playButton"))->click();
    const auto *message = dialog.findChild<KMessageWidget *>(QStringLiteral("messageWidget"));
    QVERIFY2(message->isHidden(), qPrintable(message->text()));
    QTRY_VERIFY_WITH_TIMEOUT(isHeard(), 15000);
}

QTEST_MAIN(SoundTest)

#include "soundtest.moc"
