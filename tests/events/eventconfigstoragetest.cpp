// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "catalogsandbox.h"

#include <eventconfigstorage.h>

#include <QDir>
#include <QFile>
#include <QTest>

#include <unistd.h>

namespace {
/// Gives up the administrator's right to read everything, for as long as it lives.
class PlainUser
{
public:
    PlainUser()
        : m_changed(geteuid() == 0 && seteuid(65534) == 0)
    {
    }
    ~PlainUser()
    {
        if (m_changed && seteuid(0) != 0) {
            qFatal("cannot become the administrator again");
        }
    }
    PlainUser(const PlainUser &) = delete;
    PlainUser &operator=(const PlainUser &) = delete;
    [[nodiscard]] bool isPlain() const { return geteuid() != 0; }

private:
    const bool m_changed;
};
} // namespace

class EventConfigStorageTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyFileOfEverySubdirectoryIsKeptUnderItsBaseName()
    {
        const CatalogSandbox files;
        files.write(QStringLiteral("s/logins/login.json"), R"({"enabled": "1", "x": {"y": ["z"]}})");
        files.write(QStringLiteral("s/logins/logout.json.bak"), R"({"enabled": "0"})");
        files.write(QStringLiteral("s/mounts/mount"), R"({"a": "b"})");
        const EventConfigStorage storage(files.path(QStringLiteral("s")));

        QCOMPARE(storage.getOne(QStringLiteral("login")).value(),
                 Tree::object(R"({"enabled": "1", "x": {"y": ["z"]}})"));
        QCOMPARE(storage.getOne(QStringLiteral("logout")).value(), Tree::object(R"({"enabled": "0"})"));
        QCOMPARE(storage.getOne(QStringLiteral("mount")).value(), Tree::object(R"({"a": "b"})"));
        QVERIFY(!storage.getOne(QStringLiteral("logout.json")).has_value());
        QVERIFY(!storage.getOne(QStringLiteral("Login")).has_value());
        QVERIFY(!storage.getOne(QString()).has_value());
    }

    void onlyTheFirstLevelOfDirectoriesIsRead()
    {
        const CatalogSandbox files;
        files.write(QStringLiteral("s/top.json"), R"({"a": "1"})");
        files.write(QStringLiteral("s/group/deep/event.json"), R"({"a": "1"})");
        files.write(QStringLiteral("s/group/direct.json"), R"({"a": "1"})");
        const EventConfigStorage storage(files.path(QStringLiteral("s")));

        QVERIFY(!storage.getOne(QStringLiteral("top")).has_value());
        QVERIFY(!storage.getOne(QStringLiteral("event")).has_value());
        QVERIFY(!storage.getOne(QStringLiteral("deep")).has_value());
        QVERIFY(storage.getOne(QStringLiteral("direct")).has_value());
    }

    void missingDirectoryHoldsNothing()
    {
        const EventConfigStorage storage(QStringLiteral("/nonexistent/event-settings"));
        QVERIFY(!storage.getOne(QStringLiteral("login")).has_value());
        QVERIFY(!storage.getMessageParams(QStringLiteral("login")).has_value());
    }

    void malformedFileIsAnEmptyObject_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::newRow("empty") << QByteArray();
        QTest::newRow("cut off") << QByteArray(R"({"enabled": "1")");
        QTest::newRow("array") << QByteArray(R"([{"enabled": "1"}])");
        QTest::newRow("text") << QByteArray("enabled = 1\n");
        QTest::newRow("bytes") << QByteArray("\xff\xfe\x00{", 4);
    }
    void malformedFileIsAnEmptyObject()
    {
        QFETCH(QByteArray, content);
        const CatalogSandbox files;
        files.write(QStringLiteral("s/group/event.json"), content);
        const EventConfigStorage storage(files.path(QStringLiteral("s")));

        QVERIFY(storage.getOne(QStringLiteral("event")).has_value());
        QVERIFY(storage.getOne(QStringLiteral("event"))->isEmpty());
        const auto params = storage.getMessageParams(QStringLiteral("event"));
        QVERIFY(params.has_value());
        QVERIFY(params->first.isEmpty());
        QVERIFY(params->second.isEmpty());
    }

    void unreadableFileIsSkipped()
    {
        const CatalogSandbox files;
        files.write(QStringLiteral("s/group/secret.json"), R"({"a": "1"})");
        files.write(QStringLiteral("s/group/open.json"), R"({"a": "1"})");
        QVERIFY(QFile::setPermissions(files.path(QString()), QFile::Permissions(0x7755)));
        QVERIFY(QFile::setPermissions(files.path(QStringLiteral("s/group/secret.json")), {}));
        const PlainUser user;
        if (!user.isPlain()) {
            QSKIP("needs to run as a user who cannot read everything");
        }
        const EventConfigStorage storage(files.path(QStringLiteral("s")));

        QVERIFY(!storage.getOne(QStringLiteral("secret")).has_value());
        QVERIFY(storage.getOne(QStringLiteral("open")).has_value());
    }

    void twoFilesOfOneNameLeaveTheOneReadLast()
    {
        const CatalogSandbox files;
        files.write(QStringLiteral("s/one/event.json"), R"({"from": "one"})");
        files.write(QStringLiteral("s/two/event.json"), R"({"from": "two"})");
        const QString directory = files.path(QStringLiteral("s"));
        const EventConfigStorage storage(directory);

        const QStringList order
            = QDir(directory).entryList(QDir::Dirs | QDir::NoDotAndDotDot, QDir::Unsorted);
        QCOMPARE(order.size(), 2);
        QCOMPARE(storage.getOne(QStringLiteral("event"))->value(QStringLiteral("from")).toString(),
                 order.constLast());
    }

    void contentIsReadOnce()
    {
        const CatalogSandbox files;
        files.write(QStringLiteral("s/group/event.json"), R"({"a": "1"})");
        const EventConfigStorage storage(files.path(QStringLiteral("s")));
        QVERIFY(storage.getOne(QStringLiteral("event")).has_value()); // so that the reading is done
        files.write(QStringLiteral("s/group/event.json"), R"({"a": "2"})");
        files.write(QStringLiteral("s/group/late.json"), R"({})");

        QCOMPARE(storage.getOne(QStringLiteral("event")).value(), Tree::object(R"({"a": "1"})"));
        QVERIFY(!storage.getOne(QStringLiteral("late")).has_value());
    }

    void messageParametersComeInTheLanguageOfTheUser()
    {
        const CatalogSandbox files;
        files.write(QStringLiteral("s/group/event.json"),
                    R"({"name_en": "outside", "message-params":
                        {"message_id": "login_ok", "name_en": "Logged in", "name_ru": "Вход"}})");
        const EventConfigStorage storage(files.path(QStringLiteral("s")));
        const auto params = storage.getMessageParams(QStringLiteral("event"));

        QVERIFY(params.has_value());
        QCOMPARE(params->first, QStringLiteral("login_ok"));
        QCOMPARE(params->second, Tree::inLanguage("Logged in", "Вход"));
    }

    void missingMessageParametersAreEmptyTexts_data()
    {
        QTest::addColumn<QByteArray>("json");
        QTest::newRow("no object") << QByteArray(R"({"message_id": "outside"})");
        QTest::newRow("empty object") << QByteArray(R"({"message-params": {}})");
        QTest::newRow("not an object") << QByteArray(R"({"message-params": "text"})");
        QTest::newRow("other types") << QByteArray(
            R"({"message-params": {"message_id": 5, "name_en": [], "name_ru": null}})");
    }
    void missingMessageParametersAreEmptyTexts()
    {
        QFETCH(QByteArray, json);
        const CatalogSandbox files;
        files.write(QStringLiteral("s/group/event.json"), json);
        const EventConfigStorage storage(files.path(QStringLiteral("s")));
        const auto params = storage.getMessageParams(QStringLiteral("event"));

        QVERIFY(params.has_value());
        QVERIFY(params->first.isEmpty());
        QVERIFY(params->second.isEmpty());
        QVERIFY(!storage.getMessageParams(QStringLiteral("other")).has_value());
    }
};

QTEST_GUILESS_MAIN(EventConfigStorageTest)
#include "eventconfigstoragetest.moc"
