// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include <catalognotifyrc.h>
#include <notificationkey.h>

#include <KConfig>
#include <KConfigGroup>

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>
#include <QTest>

namespace {

QByteArray contents(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

struct Message
{
    QString group;
    QString id;
    QString english;
    QString russian;
};

QList<Message> shippedMessages()
{
    QList<Message> messages;
    QDirIterator it(QStringLiteral(SHIPPED_DATA "/event-settings"), {QStringLiteral("*.json")}, QDir::Files,
                    QDirIterator::Subdirectories);
    while (it.hasNext()) {
        const QJsonObject event = QJsonDocument::fromJson(contents(it.next())).object();
        const QJsonObject names = event.value(QLatin1String("message-params")).toObject();
        const QString id = names.value(QLatin1String("message_id")).toString();
        if (!id.isEmpty()) {
            messages.append({event.value(QLatin1String("event-group")).toString(), id,
                             names.value(QLatin1String("name_en")).toString(),
                             names.value(QLatin1String("name_ru")).toString()});
        }
    }
    return messages;
}

} // namespace

class CatalogNotifyrcTest : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir m_directory;

    void put(const QString &path, const QByteArray &text) const
    {
        QFile file(m_directory.filePath(path));
        QVERIFY(QDir().mkpath(QFileInfo(file).path()));
        QVERIFY(file.open(QIODevice::WriteOnly));
        QCOMPARE(file.write(text), text.size());
    }

private Q_SLOTS:
    void everyShippedEventHasItsGroup();
    void noGroupIsLeftOver();
    void noTwoEventsShareAKeyOrAFragment();
    void aValueIsReadBackAsItWas();
    void aClashIsAnErrorThatNamesBothFiles();
    void aBrokenCatalogIsAnError_data();
    void aBrokenCatalogIsAnError();
};

void CatalogNotifyrcTest::everyShippedEventHasItsGroup()
{
    const QList<Message> messages = shippedMessages();
    QVERIFY(messages.size() > 100);
    for (const Message &message : messages) {
        const QString path = QStringLiteral(NOTIFYRC_DIR "/nivra-event-watcher_") + message.group
            + QLatin1String(".notifyrc");
        const QByteArray header = "\n[Event/" + notificationKey(message.id).toUtf8() + "]\n";
        QCOMPARE(contents(path).count(header), 1);
        KConfig english(path, KConfig::SimpleConfig);
        english.setLocale(QStringLiteral("en_US"));
        KConfig russian(path, KConfig::SimpleConfig);
        russian.setLocale(QStringLiteral("ru"));
        const QString group = QLatin1String("Event/") + notificationKey(message.id);
        QCOMPARE(english.group(group).readEntry("Name"), message.english);
        QCOMPARE(russian.group(group).readEntry("Name"), message.russian);
        QCOMPARE(english.group(group).readEntry("Action"), QStringLiteral("Popup"));
    }
}

void CatalogNotifyrcTest::noGroupIsLeftOver()
{
    int groups = 0;
    const QDir directory(QStringLiteral(NOTIFYRC_DIR));
    const QStringList files = directory.entryList(QDir::Files);
    for (const QString &file : files) {
        QVERIFY2(QFile::exists(QStringLiteral(SHIPPED_DATA "/event-settings/")
                               + QString(file)
                                     .remove(QLatin1String("nivra-event-watcher_"))
                                     .replace(QLatin1String(".notifyrc"), QLatin1String(".json"))),
                 qPrintable(file));
        groups += contents(directory.filePath(file)).count("\n[Event/");
    }
    QCOMPARE(groups, shippedMessages().size());
}

void CatalogNotifyrcTest::noTwoEventsShareAKeyOrAFragment()
{
    QStringList keys;
    QStringList fragments;
    const QList<Message> messages = shippedMessages();
    for (const Message &message : messages) {
        keys << notificationKey(message.id);
        fragments << QString(message.id).replace(QLatin1Char('-'), QLatin1Char('_'));
    }
    QCOMPARE(keys.removeDuplicates(), 0);
    QCOMPARE(fragments.removeDuplicates(), 0);
}

void CatalogNotifyrcTest::aValueIsReadBackAsItWas()
{
    put(QStringLiteral("good/g.json"), "{\"group-params\": {\"name_en\": \"G\", \"name_ru\": \"Г\"}}");
    put(QStringLiteral("good/g/e.json"),
        "{\"event-group\": \"g\", \"message-params\": {\"message_id\": \"a_b-c\", "
        "\"name_en\": \"C:\\\\new [x] = \\\"y\\\"\\nz\", \"name_ru\": \"Имя\"}}");
    put(QStringLiteral("good/g/silent.json"), "{\"event-group\": \"g\", \"message-params\": {}}");
    const CatalogNotifyrc catalog(m_directory.filePath(QStringLiteral("good")));
    QCOMPARE(catalog.errors(), QStringList());
    const QString name = QStringLiteral("nivra-event-watcher_g.notifyrc");
    QCOMPARE(catalog.files().keys(), QStringList{name});
    put(name, catalog.files().value(name));
    KConfig file(m_directory.filePath(name), KConfig::SimpleConfig);
    QCOMPARE(file.groupList().filter(QLatin1String("Event/")), QStringList{QStringLiteral("Event/aBC")});
    QCOMPARE(file.group("Event/aBC").readEntry("Name"), QStringLiteral("C:\\new [x] = \"y\"\nz"));
}

void CatalogNotifyrcTest::aClashIsAnErrorThatNamesBothFiles()
{
    put(QStringLiteral("clash/g.json"), "{\"group-params\": {}}");
    put(QStringLiteral("clash/g/one.json"),
        "{\"event-group\": \"g\", \"message-params\": {\"message_id\": \"a_b\"}}");
    put(QStringLiteral("clash/g/two.json"),
        "{\"event-group\": \"g\", \"message-params\": {\"message_id\": \"a-b\"}}");
    const CatalogNotifyrc catalog(m_directory.filePath(QStringLiteral("clash")));
    QCOMPARE(catalog.errors().size(), 1);
    QVERIFY(catalog.errors().constFirst().contains(QLatin1String("one.json")));
    QVERIFY(catalog.errors().constFirst().contains(QLatin1String("two.json")));
}

void CatalogNotifyrcTest::aBrokenCatalogIsAnError_data()
{
    QTest::addColumn<QByteArray>("group");
    QTest::addColumn<QByteArray>("event");
    QTest::newRow("group is no JSON") << QByteArray("{") << QByteArray("{}");
    QTest::newRow("event is no JSON") << QByteArray("{}") << QByteArray("nothing");
    QTest::newRow("unknown group") << QByteArray("{}")
                                   << QByteArray(
                                          "{\"event-group\": \"h\", \"message-params\": {\"message_id\": "
                                          "\"a\"}}");
}

void CatalogNotifyrcTest::aBrokenCatalogIsAnError()
{
    QFETCH(QByteArray, group);
    QFETCH(QByteArray, event);
    put(QStringLiteral("bad/g.json"), group);
    put(QStringLiteral("bad/g/e.json"), event);
    QCOMPARE(CatalogNotifyrc(m_directory.filePath(QStringLiteral("bad"))).errors().size(), 1);
    QVERIFY(!CatalogNotifyrc(m_directory.filePath(QStringLiteral("absent"))).errors().isEmpty());
}

QTEST_GUILESS_MAIN(CatalogNotifyrcTest)
#include "catalognotifyrctest.moc"
