// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include <notificationsettings.h>
#include <repetitionsettings.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QTest>

#include <memory>

using namespace NivraWatcher;

class WatcherSettingsTest : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<QTemporaryDir> m_root;

    void put(const char *path, const QByteArray &text) const
    {
        QFile file(m_root->filePath(QLatin1String(path)));
        QVERIFY(QDir().mkpath(QFileInfo(file).path()));
        QVERIFY(file.open(QIODevice::WriteOnly));
        QCOMPARE(file.write(text), text.size());
    }
    void putEvent(const char *id, const QByteArray &repetition) const
    {
        const QByteArray name(id);
        put("usr/share/syslog-ng-mod-nivra/event-settings/samples.json",
            "{\"group-params\": {\"name_en\": \"S\", \"name_ru\": \"S\", \"order\": \"1\"}}");
        const QByteArray path = "usr/share/syslog-ng-mod-nivra/event-settings/samples/" + name + ".json";
        put(path.constData(),
            "{\"event-group\": \"samples\", \"message-params\": {\"message_id\": \"id_of-" + name + "\"}"
                + repetition + "}");
    }
    QString settingsFile() const { return m_root->filePath(QStringLiteral("etc/nivra-syslog.conf")); }

private Q_SLOTS:
    void init();

    void anUnknownEventHasNoSettings();
    void theShippedSettingsHoldWhereTheUserHasNone();
    void theUsersEntriesComeFirst();
    void noMethodIsAChoiceToo();
    void theFileForAllEventsStandsBetween();
    void filesAreReadOnceUntilTheyAreReadAgain();
    void theIntervalComesFromTheCatalogAndItsOverrides();
    void anIntervalOutOfRangeIsBroughtBack();
    void aChangedSettingsFileIsReadAgain();
    void aNotificationThatIsSwitchedOffIsNotRepeated();
};

void WatcherSettingsTest::init()
{
    m_root = std::make_unique<QTemporaryDir>();
    qputenv("ADMINEVENTS_ROOT", m_root->path().toUtf8());
    qputenv("HOME", m_root->path().toUtf8());
    qputenv("XDG_CONFIG_HOME", m_root->filePath(QStringLiteral("config")).toUtf8());
    qputenv("XDG_DATA_HOME", m_root->filePath(QStringLiteral("data")).toUtf8());
    qputenv("XDG_DATA_DIRS", m_root->filePath(QStringLiteral("usr/share")).toUtf8());
    put("usr/share/knotifications5/nivra-event-watcher_logins.notifyrc",
        "[Event/userLogin]\nName=Login\nAction=Popup\n\n[Event/userLogout]\nName=Logout\nAction=Popup|Sound\n"
        "Sound=bell.ogg\n");
    put("usr/share/knotifications5/other.notifyrc", "[Event/foreign]\nAction=Popup\n");
}

void WatcherSettingsTest::anUnknownEventHasNoSettings()
{
    const NotificationSettings settings;
    QVERIFY(!settings.find(QStringLiteral("unknown")));
    QVERIFY(!settings.find(QStringLiteral("foreign")));
    QVERIFY(!settings.find(QString()));
}

void WatcherSettingsTest::theShippedSettingsHoldWhereTheUserHasNone()
{
    const auto login = NotificationSettings().find(QStringLiteral("userLogout"));
    QVERIFY(login);
    QCOMPARE(login->name, QStringLiteral("Logout"));
    QVERIFY(login->popup && login->sound && !login->log && !login->execute);
    QCOMPARE(login->soundFile, QStringLiteral("bell.ogg"));
}

void WatcherSettingsTest::theUsersEntriesComeFirst()
{
    put("config/nivra-event-watcher_logins.notifyrc",
        "[Event/userLogin]\nAction=Logfile|Execute\nExecute=mail -s \"A=B\" me\n"
        "Logfile=file:///home/a b%20=.log\nSound=\nTTS=\n");
    const auto login = NotificationSettings().find(QStringLiteral("userLogin"));
    QVERIFY(login);
    QCOMPARE(login->name, QStringLiteral("Login"));
    QVERIFY(!login->popup && !login->sound && login->log && login->execute);
    QCOMPARE(login->command, QStringLiteral("mail -s \"A=B\" me"));
    QCOMPARE(login->logFile, QStringLiteral("/home/a b%20=.log"));
    QVERIFY(NotificationSettings().find(QStringLiteral("userLogout"))->popup);
}

void WatcherSettingsTest::noMethodIsAChoiceToo()
{
    put("config/nivra-event-watcher_logins.notifyrc", "[Event/userLogin]\nAction=\n");
    QVERIFY(!NotificationSettings().find(QStringLiteral("userLogin"))->popup);
}

void WatcherSettingsTest::theFileForAllEventsStandsBetween()
{
    put("config/nivra-event-watcher.notifyrc",
        "[Event/userLogin]\nAction=Sound\n\n[Event/userLogout]\nAction=Logfile\n");
    put("config/nivra-event-watcher_logins.notifyrc", "[Event/userLogout]\nAction=Execute\n");
    const NotificationSettings settings;
    QVERIFY(settings.find(QStringLiteral("userLogin"))->sound);
    QVERIFY(!settings.find(QStringLiteral("userLogin"))->popup);
    QVERIFY(settings.find(QStringLiteral("userLogout"))->execute);
    QVERIFY(!settings.find(QStringLiteral("userLogout"))->log);
}

void WatcherSettingsTest::filesAreReadOnceUntilTheyAreReadAgain()
{
    NotificationSettings settings;
    put("config/nivra-event-watcher_logins.notifyrc", "[Event/userLogin]\nAction=Sound\n");
    QVERIFY(!settings.find(QStringLiteral("userLogin"))->sound);
    settings.reparse();
    QVERIFY(settings.find(QStringLiteral("userLogin"))->sound);
    put("config/nivra-event-watcher_logins.notifyrc", "[Event/userLogin]\nAction=Logfile\n");
    settings.reparse();
    QVERIFY(settings.find(QStringLiteral("userLogin"))->log);
    QVERIFY(!settings.find(QStringLiteral("userLogin"))->sound);
}

void WatcherSettingsTest::theIntervalComesFromTheCatalogAndItsOverrides()
{
    putEvent("on", ", \"notification_repetition\": {\"enabled\": \"1\", \"interval\": \"60\"}");
    putEvent("off", ", \"notification_repetition\": {\"enabled\": \"0\", \"interval\": \"90\"}");
    putEvent("none", "");
    RepetitionSettings plain(settingsFile());
    QCOMPARE(plain.interval(QStringLiteral("idOfOn")), 60);
    QCOMPARE(plain.interval(QStringLiteral("idOfOff")), 0);
    QCOMPARE(plain.interval(QStringLiteral("idOfNone")), 0);
    QCOMPARE(plain.interval(QStringLiteral("unknown")), 0);
    put("etc/nivra-syslog.conf",
        "{\"on\": {\"notification_repetition\": {\"interval\": \"70\"}},"
        " \"off\": {\"notification_repetition\": {\"enabled\": \"1\"}}}");
    RepetitionSettings changed(settingsFile());
    QCOMPARE(changed.interval(QStringLiteral("idOfOn")), 70);
    QCOMPARE(changed.interval(QStringLiteral("idOfOff")), 90);
}

void WatcherSettingsTest::anIntervalOutOfRangeIsBroughtBack()
{
    putEvent("fast", ", \"notification_repetition\": {\"enabled\": \"1\", \"interval\": \"0\"}");
    putEvent("slow", ", \"notification_repetition\": {\"enabled\": \"1\", \"interval\": \"99999999\"}");
    RepetitionSettings settings(settingsFile());
    QCOMPARE(settings.interval(QStringLiteral("idOfFast")), 5);
    QCOMPARE(settings.interval(QStringLiteral("idOfSlow")), 3600);
}

void WatcherSettingsTest::aChangedSettingsFileIsReadAgain()
{
    putEvent("on", ", \"notification_repetition\": {\"enabled\": \"1\", \"interval\": \"60\"}");
    RepetitionSettings settings(settingsFile());
    QCOMPARE(settings.interval(QStringLiteral("idOfOn")), 60);
    put("etc/nivra-syslog.conf", "{\"on\": {\"notification_repetition\": {\"enabled\": \"0\"}}}");
    QCOMPARE(settings.interval(QStringLiteral("idOfOn")), 0);
    QFile::remove(settingsFile());
    QCOMPARE(settings.interval(QStringLiteral("idOfOn")), 60);
}

void WatcherSettingsTest::aNotificationThatIsSwitchedOffIsNotRepeated()
{
    putEvent("on", ", \"notification_repetition\": {\"enabled\": \"1\", \"interval\": \"60\"}");
    put("etc/syslog-ng/conf.d/mod-nivra-id_of_on.conf", "# switched on\n");
    RepetitionSettings settings(settingsFile());
    QCOMPARE(settings.interval(QStringLiteral("idOfOn")), 60);
    QVERIFY(QFile::remove(m_root->filePath(QStringLiteral("etc/syslog-ng/conf.d/mod-nivra-id_of_on.conf"))));
    QCOMPARE(settings.interval(QStringLiteral("idOfOn")), 0);
    put("etc/syslog-ng/conf.d/mod-nivra-id_of_on.conf", "# and on again\n");
    QCOMPARE(settings.interval(QStringLiteral("idOfOn")), 60);
}

QTEST_GUILESS_MAIN(WatcherSettingsTest)
#include "watchersettingstest.moc"
