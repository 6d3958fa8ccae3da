// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#include "auditkeeper.h"
#include "auditservice.h"
#include "audittree.h"
#include "catalogsandbox.h"
#include "privatebus.h"

#include <eventtreeitem.h>

#include <KLocalizedString>

#include <QFile>
#include <QTest>

namespace {
const QStringList userNames{QStringLiteral("a/b"), QStringLiteral("alice"), QStringLiteral("bob")};
const QStringList groupNames{QStringLiteral("staff")};
const QString opening = QStringLiteral("open");

bool write(const QString &path, const QByteArray &content)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(content) == content.size();
}
} // namespace

/// What is read, kept and written, with the real helper at the other end.
class AuditKeeperTest : public QObject
{
    Q_OBJECT

private:
    using Root = std::unique_ptr<EventTreeItem>;

    [[nodiscard]] QString rulesPath() const
    {
        return m_bus.root() + QStringLiteral("/etc/audit/rules.d/nivra-syslog-subjects.rules");
    }
    [[nodiscard]] QByteArray rules() const
    {
        QFile file(rulesPath());
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("not there");
    }
    [[nodiscard]] Root load(const AuditKeeper &keeper) const
    {
        Root root = m_sandbox->parse(userNames, groupNames);
        keeper.copyInto(*root);
        return root;
    }
    static void set(const Root &root, const char *path, const char *value)
    {
        const QByteArray whole = QByteArray("g/e/message-audit-events/open/") + path;
        Tree::at(root, whole.constData())->setData(1, QString::fromLatin1(value));
    }
    [[nodiscard]] static QString value(const Root &root, const char *path)
    {
        const QByteArray whole = QByteArray("g/e/message-audit-events/open/") + path;
        return Tree::valueAt(root, whole.constData());
    }
    /// Whether anything is to be written.
    [[nodiscard]] static bool collect(AuditKeeper &keeper, const Root &working, const Root &reference)
    {
        return keeper.collect(*working, *reference, userNames, groupNames);
    }
    /// As above, when one setting of alice is all that was turned on.
    [[nodiscard]] bool collectOneChange(AuditKeeper &keeper) const
    {
        const Root reference = load(keeper);
        const Root working = load(keeper);
        set(working, "users/alice/succ", "1");
        return collect(keeper, working, reference);
    }

    PrivateBus m_bus;
    std::unique_ptr<CatalogSandbox> m_sandbox;
    AuditService m_service{nullptr};

private Q_SLOTS:
    void initTestCase()
    {
        KLocalizedString::setLanguages({QStringLiteral("en")});
        QVERIFY2(m_bus.start(), qPrintable(m_bus.errorString()));
        QVERIFY(write(m_bus.root() + QStringLiteral("/etc/passwd"),
                      "alice:x:1000:1000::/:/bin/sh\nbob:x:1001:1001::/:/bin/sh\n"));
        QVERIFY(write(m_bus.root() + QStringLiteral("/etc/group"), "staff:x:50:\n"));
    }

    void init()
    {
        m_sandbox = std::make_unique<CatalogSandbox>();
        m_sandbox->addGroup("g", "g", "g");
        m_sandbox->addEvent(
            "g", "e",
            QByteArray("{ 'event-group': 'g', 'enabled': '1', 'message-params': { 'message_id': 'm' },"
                       "  'message-audit-events': { 'open': { 'users': {}, 'groups': {},"
                       "     'other': { 'succ': '0', 'fail': '0' } } } }")
                .replace('\'', '"'));
        QVERIFY(m_bus.setAllowed(true));
        QVERIFY(m_bus.setAllowedActions({}));
        QFile::remove(rulesPath());
    }
    void cleanup() { m_sandbox.reset(); }

    void whatWasWrittenIsCopiedIntoTheNextTrees()
    {
        AuditKeeper keeper(m_service);
        QVERIFY2(keeper.read(userNames, groupNames), qPrintable(keeper.readError()));
        const Root reference = load(keeper);
        const Root working = load(keeper);
        QVERIFY(!collect(keeper, working, reference));
        set(working, "users/alice/succ", "1");
        set(working, "other/fail", "1");
        QVERIFY(collect(keeper, working, reference));
        QCOMPARE(keeper.refusal(), QString());
        QVERIFY2(keeper.write(), qPrintable(keeper.writeError()));
        const QByteArray written = rules();
        const Root next = load(keeper);
        QCOMPARE(value(next, "users/alice/succ"), QStringLiteral("1"));
        QCOMPARE(value(next, "users/alice/fail"), QStringLiteral("0"));
        QCOMPARE(value(next, "other/fail"), QStringLiteral("1"));
        QVERIFY(!collect(keeper, next, next));
        QVERIFY(keeper.write()); // nothing differs
        QCOMPARE(rules(), written);
    }

    void theSettingsAreReadOnce()
    {
        QVERIFY(m_service.setOtherAuditSettings({{opening, 1}}));
        AuditKeeper keeper(m_service);
        QVERIFY(keeper.read(userNames, groupNames));
        QVERIFY(m_service.setOtherAuditSettings({{opening, 2}}));
        QVERIFY(m_bus.setAllowed(false));
        QVERIFY(keeper.read(userNames, groupNames));
        QCOMPARE(value(load(keeper), "other/succ"), QStringLiteral("1"));
        QCOMPARE(value(load(keeper), "other/fail"), QStringLiteral("0"));
    }

    void whatCouldNotBeReadIsRefusedEverAfter()
    {
        QVERIFY(m_bus.setAllowed(false));
        AuditKeeper keeper(m_service);
        QVERIFY(!keeper.read(userNames, groupNames));
        QVERIFY(!keeper.readError().isEmpty());
        QVERIFY(m_bus.setAllowed(true));
        QVERIFY(!keeper.read(userNames, groupNames));
        QVERIFY(collectOneChange(keeper));
        QVERIFY2(keeper.refusal().contains(keeper.readError()), qPrintable(keeper.refusal()));
    }

    void aFailureLeavesWhatItDidNotReachForTheNextTime()
    {
        AuditKeeper keeper(m_service);
        QVERIFY(keeper.read(userNames, groupNames));
        QVERIFY(collectOneChange(keeper));
        QVERIFY(m_bus.setAllowed(false));
        QVERIFY(!keeper.write());
        QVERIFY(!keeper.writeError().isEmpty());
        QCOMPARE(keeper.readError(), QString());
        QCOMPARE(value(load(keeper), "users/alice/succ"), QStringLiteral("0"));
        QVERIFY(m_bus.setAllowed(true));
        QVERIFY2(keeper.write(), qPrintable(keeper.writeError()));
        QCOMPARE(keeper.writeError(), QString());
        QVERIFY(rules().contains("-F uid=1000 "));
        QCOMPARE(value(load(keeper), "users/alice/succ"), QStringLiteral("1"));
    }

    void onlyWhatDiffersIsSent()
    {
        AuditKeeper keeper(m_service);
        QVERIFY(keeper.read(userNames, groupNames));
        QVERIFY(collectOneChange(keeper));
        // Somebody else's setting in between is not overwritten by a value that nobody turned.
        QVERIFY(m_service.setAuditSettings({{{QStringLiteral("bob"), opening}, 2}}, AuditSettings::Users));
        QVERIFY(keeper.write());
        QVERIFY(rules().contains("-F uid=1000 -F success=1 "));
        QVERIFY(rules().contains("-F uid=1001 -F success=0 "));
    }

    void aNameThatCannotBeSentIsRefusedOnlyWhereItIsSet()
    {
        AuditKeeper keeper(m_service);
        QVERIFY(keeper.read(userNames, groupNames));
        const Root reference = load(keeper);
        const Root working = load(keeper);
        set(working, "users/alice/succ", "1");
        QVERIFY(collect(keeper, working, reference));
        QCOMPARE(keeper.refusal(), QString());
        EventTreeItem *odd = Tree::at(working, "g/e/message-audit-events/open/users")
                                 ->findChildTopLevelByNativeName(userNames.first());
        odd->member(QLatin1String("fail"))->setData(1, QStringLiteral("1"));
        QVERIFY(collect(keeper, working, reference));
        QVERIFY2(keeper.refusal().contains(QLatin1String("\"a/b\"")), qPrintable(keeper.refusal()));
    }

    void whatSomebodyElseReplacedIsWrittenWhole()
    {
        QVERIFY(m_service.setAuditSettings({{{QStringLiteral("alice"), opening}, 3}}, AuditSettings::Users));
        AuditKeeper keeper(m_service);
        QVERIFY(keeper.read(userNames, groupNames));
        QCOMPARE(value(load(keeper), "users/alice/succ"), QStringLiteral("1"));
        QVERIFY(m_service.setAuditSettings({{{QStringLiteral("bob"), opening}, 3}}, AuditSettings::Users));
        keeper.forget();
        const Root reference = load(keeper);
        const Root working = load(keeper);
        QCOMPARE(value(working, "users/alice/succ"), QStringLiteral("0")); // as saved with the event
        QVERIFY(!collect(keeper, working, reference));
        set(working, "other/succ", "1");
        QVERIFY(collect(keeper, working, reference));
        QCOMPARE(keeper.refusal(), QString()); // for all the odd name in the list
        QVERIFY2(keeper.write(), qPrintable(keeper.writeError()));
        // What the page does not show is not recorded any more.
        QVERIFY(!rules().contains("-F uid"));
        QCOMPARE(m_service.getOtherAuditSettings({opening}), (AuditSettings::OtherValues{{opening, 1}}));
    }
};

QTEST_GUILESS_MAIN(AuditKeeperTest)

#include "auditkeepertest.moc"
