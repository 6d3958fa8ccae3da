// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "sandbox.h"

#include <QTest>

#include <cerrno>
#include <optional>
#include <thread>
#include <vector>

using namespace Library;

class LifecycleTest : public QObject
{
    Q_OBJECT

private:
    static void expectNoState()
    {
        QCOMPARE(nvev_groups_count(), 0U);
        QCOMPARE(nvev_events_count(), 0U);
        QVERIFY(!nvev_get_group_ids());
        QVERIFY(!nvev_get_event_ids());
        QVERIFY(!nvev_get_group_json("group"));
        QVERIFY(!nvev_get_event_json("event"));
        QVERIFY(!nvev_get_override_event_json("event"));
    }

    static void fill(const Sandbox &sandbox)
    {
        sandbox.add("group.json", "{\"group-params\": {}}");
        sandbox.add("group/event.json", "{\"v\": \"1\"}");
        sandbox.setSettings(json("{'event': {'enabled': '1'}}"));
    }

private Q_SLOTS:
    void withoutInitThereIsNothing()
    {
        const Sandbox sandbox;
        fill(sandbox);
        expectNoState();
    }

    void freeWithoutInitIsHarmless()
    {
        nvev_free();
        nvev_free();
        const Sandbox sandbox;
        fill(sandbox);
        {
            const Session session;
            QCOMPARE(nvev_events_count(), 1U);
        }
        expectNoState();
    }

    void afterFreeThereIsNothing()
    {
        const Sandbox sandbox;
        fill(sandbox);
        QCOMPARE(nvev_init(), 0);
        QVERIFY(nvev_get_event_json("event"));
        nvev_free();
        expectNoState();
    }

    void nullArgumentsAreHarmless()
    {
        const Sandbox sandbox;
        fill(sandbox);
        const auto check = [] {
            QVERIFY(!nvev_get_group_json(nullptr));
            QVERIFY(!nvev_get_event_json(nullptr));
            QVERIFY(!nvev_get_override_event_json(nullptr));
            nvev_free_string_array(nullptr);
        };
        check();
        const Session session;
        check();
    }

    void arraysOutliveTheState()
    {
        const Sandbox sandbox;
        fill(sandbox);
        QCOMPARE(nvev_init(), 0);
        char **const groupIds = nvev_get_group_ids();
        char **const eventIds = nvev_get_event_ids();
        nvev_free();
        QCOMPARE(groupIds[0], "group");
        QCOMPARE(eventIds[0], "event");
        nvev_free_string_array(groupIds);
        nvev_free_string_array(eventIds);
    }

    void aSecondInitReadsThePresentFiles()
    {
        const Sandbox sandbox;
        fill(sandbox);
        const Session first;
        sandbox.add("group/event.json", "{\"v\": \"2\"}");
        sandbox.add("group/later.json", "{}");
        sandbox.setSettings(json("{'event': {'enabled': '0'}}"));
        QCOMPARE(nvev_events_count(), 1U);
        QCOMPARE(overrideText("event"), json("{'enabled':'1'}"));
        const Session second;
        QCOMPARE(second.result(), 0);
        QCOMPARE(events(), QStringList({QStringLiteral("event"), QStringLiteral("later")}));
        QCOMPARE(eventText("event"), QByteArray("{\"v\": \"2\"}"));
        QCOMPARE(overrideText("event"), json("{'enabled':'0'}"));
    }

    void textsOfEarlierStatesStayUntilTheLastFree()
    {
        const Sandbox sandbox;
        fill(sandbox);
        std::optional<Session> first(std::in_place);
        const char *const group = nvev_get_group_json("group");
        const char *const event = nvev_get_event_json("event");
        const char *const settings = nvev_get_override_event_json("event");
        sandbox.add("group.json", "[]");
        sandbox.add("group/event.json", "[]");
        sandbox.setSettings("{}");
        const Session second;
        first.reset();
        QCOMPARE(eventText("event"), QByteArray("[]"));
        QVERIFY(!nvev_get_override_event_json("event"));
        QCOMPARE(group, "{\"group-params\": {}}");
        QCOMPARE(event, "{\"v\": \"1\"}");
        QCOMPARE(QByteArray(settings), json("{'enabled':'1'}"));
    }

    void initAndFreeAreCounted()
    {
        const Sandbox sandbox;
        fill(sandbox);
        for (int i = 0; i < 3; ++i) {
            QCOMPARE(nvev_init(), 0);
        }
        for (int i = 0; i < 2; ++i) {
            nvev_free();
            QVERIFY(nvev_get_event_json("event"));
        }
        nvev_free();
        expectNoState();
    }

    void aFailedInitIsCountedToo()
    {
        const Sandbox sandbox;
        fill(sandbox);
        {
            const Session living;
            QVERIFY(QDir(sandbox.catalog()).removeRecursively());
            {
                const Session failed;
                QCOMPARE(failed.result(), -ENOENT);
            }
            // The failed one was given back, the living one goes on.
            QCOMPARE(nvev_events_count(), 1U);
            QCOMPARE(eventText("event"), QByteArray("{\"v\": \"1\"}"));
        }
        expectNoState();
    }

    void aFailedInitLeavesNoState()
    {
        const Sandbox sandbox;
        QVERIFY(QDir(sandbox.catalog()).removeRecursively());
        const Session failed;
        QCOMPARE(failed.result(), -ENOENT);
        expectNoState();
        fill(sandbox);
        const Session repaired;
        QCOMPARE(repaired.result(), 0);
        QCOMPARE(nvev_events_count(), 1U);
    }

    void theRootIsReadAtInit()
    {
        const Sandbox one;
        one.add("a/one.json");
        {
            const Sandbox two;
            two.add("a/two.json");
            const Session session;
            QCOMPARE(events(), QStringList({QStringLiteral("two")}));
            qputenv("ADMINEVENTS_ROOT", QFile::encodeName(one.root()));
            QCOMPARE(events(), QStringList({QStringLiteral("two")}));
            const Session again;
            QCOMPARE(events(), QStringList({QStringLiteral("one")}));
        }
        // A trailing slash makes no difference.
        qputenv("ADMINEVENTS_ROOT", QFile::encodeName(one.root() + QLatin1Char('/')));
        const Session session;
        QCOMPARE(events(), QStringList({QStringLiteral("one")}));
    }

    void anUnsetOrEmptyRootIsTheSystemsOwn()
    {
        const bool present
            = QFileInfo(QStringLiteral("/usr/share/syslog-ng-mod-nivra/event-settings")).isReadable();
        for (const bool set : {false, true}) {
            if (set) {
                qputenv("ADMINEVENTS_ROOT", "");
            } else {
                qunsetenv("ADMINEVENTS_ROOT");
            }
            const Session session;
            QCOMPARE(session.result() == 0, present);
        }
        qunsetenv("ADMINEVENTS_ROOT");
    }

    void severalThreadsMayCall()
    {
        const Sandbox sandbox;
        fill(sandbox);
        std::vector<int> found(4, 0);
        std::vector<std::thread> threads;
        for (int &count : found) {
            threads.emplace_back([&count] {
                for (int i = 0; i < 50; ++i) {
                    const Session session;
                    count += overrideText("event") == json("{'enabled':'1'}") ? 1 : 0;
                }
            });
        }
        for (std::thread &thread : threads) {
            thread.join();
        }
        QCOMPARE(found, std::vector<int>(4, 50));
        expectNoState();
    }
};

QTEST_GUILESS_MAIN(LifecycleTest)

#include "lifecycletest.moc"
