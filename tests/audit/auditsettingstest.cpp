// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#include "auditsettings.h"
#include "auditservice.h"

#include <QTest>

namespace {
const QString alice = QStringLiteral("alice");
const QString opening = QStringLiteral("open");
const QString modes = QStringLiteral("chmod");
} // namespace

/// Collecting and comparing settings, and their names on the way to the helper.
class AuditSettingsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theIdentifiersAreInTheirOrder()
    {
        QCOMPARE(AuditSettings::auditIDs().join(QLatin1Char(' ')),
                 QStringLiteral("open create exec delete chmod chown mount module uid gid audit acl mac cap "
                                "chroot rename net"));
    }

    void collectsByTypeAndForgets()
    {
        AuditSettings settings;
        settings.prepareAuditSettings(alice, 1, opening, 3);
        settings.prepareAuditSettings(alice, 2, opening, 1);
        settings.prepareAuditSettings(alice, 0, opening, 2);
        settings.prepareOtherAuditSettings(modes, 2);
        QCOMPARE(settings.users(), (AuditSettings::SubjectValues{{{alice, opening}, 3}}));
        QCOMPARE(settings.groups(), (AuditSettings::SubjectValues{{{alice, opening}, 1}}));
        QCOMPARE(settings.other(), (AuditSettings::OtherValues{{modes, 2}}));
        QVERIFY(!settings.isEmpty());
        settings.clearAuditSettings();
        QVERIFY(settings.isEmpty());
    }

    void differencesAreWhatSaysSomethingElse()
    {
        AuditSettings present;
        present.prepareAuditSettings(alice, 1, opening, 3);
        present.prepareOtherAuditSettings(modes, 1);
        AuditSettings wanted = present;
        QVERIFY(wanted.differencesFrom(present).isEmpty());
        wanted.prepareAuditSettings(alice, 1, modes, 0); // what was never set is not recorded
        QVERIFY(wanted.differencesFrom(present).isEmpty());
        wanted.prepareAuditSettings(alice, 1, opening, 0);
        wanted.prepareAuditSettings(alice, 2, opening, 2);
        wanted.prepareOtherAuditSettings(modes, 3);
        const AuditSettings changes = wanted.differencesFrom(present);
        QCOMPARE(changes.users(), (AuditSettings::SubjectValues{{{alice, opening}, 0}}));
        QCOMPARE(changes.groups(), (AuditSettings::SubjectValues{{{alice, opening}, 2}}));
        QCOMPARE(changes.other(), (AuditSettings::OtherValues{{modes, 3}}));
        present.merge(changes);
        QVERIFY(wanted.differencesFrom(present).isEmpty());
    }

    void namesAndIdentifiersAreJoinedAndSplit()
    {
        const AuditSettings::SubjectValues settings{{{alice, opening}, 3},
                                                    {{QStringLiteral("Иван \"Ё\" \\"), modes}, 2},
                                                    {{QStringLiteral("overlay0"), modes}, 0}};
        const QVariantMap map = AuditService::convertAuditSettingsToMap(settings);
        QCOMPARE(map.value(QStringLiteral("alice/open")), QVariant(3));
        QCOMPARE(map.value(QStringLiteral("Иван \"Ё\" \\/chmod")), QVariant(2));
        QCOMPARE(AuditService::convertAuditSettingsToHash(map), settings);
        const AuditSettings::OtherValues other{{opening, 1}, {modes, 0}};
        QCOMPARE(AuditService::convertOtherAuditSettingsToHash(
                     AuditService::convertOtherAuditSettingsToMap(other)),
                 other);
    }

    void aReplyWithoutSeparatorIsPassedOver()
    {
        QCOMPARE(AuditService::convertAuditSettingsToHash({{opening, 3}}), AuditSettings::SubjectValues());
    }

    void aNameWithASeparatorIsRefused()
    {
        QCOMPARE(AuditService::refusalOf({{{alice, opening}, 3}}), QString());
        const QString refusal = AuditService::refusalOf({{{QStringLiteral("a/b"), opening}, 3}});
        QVERIFY2(refusal.contains(QLatin1String("\"a/b\"")), qPrintable(refusal));
    }
};

QTEST_GUILESS_MAIN(AuditSettingsTest)

#include "auditsettingstest.moc"
