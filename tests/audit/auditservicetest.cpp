// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#include "auditservice.h"
#include "privatebus.h"

#include <KLocalizedString>

#include <QFile>
#include <QTest>

namespace {
const QString opening = QStringLiteral("open");
const QString modes = QStringLiteral("chmod");

bool write(const QString &path, const QByteArray &content)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(content) == content.size();
}
} // namespace

/// Settings on their way to the real helper and back.
class AuditServiceTest : public QObject
{
    Q_OBJECT

private:
    [[nodiscard]] QString rulesPath() const
    {
        return m_bus.root() + QStringLiteral("/etc/audit/rules.d/nivra-syslog-subjects.rules");
    }
    [[nodiscard]] QByteArray rules() const
    {
        QFile file(rulesPath());
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("not there");
    }

    PrivateBus m_bus;

private Q_SLOTS:
    void initTestCase()
    {
        KLocalizedString::setLanguages({QStringLiteral("en")});
        QVERIFY2(m_bus.start(), qPrintable(m_bus.errorString()));
        QByteArray users = "alice:x:1000:1000::/:/bin/sh\noverlay1:x:1001:1001::/:/bin/sh\n"
                           "Иван \"Ё\" \\:x:1002:1002::/:/bin/sh\na/b:x:1003:1003::/:/bin/sh\n";
        for (int i = 0; i < 5000; ++i) {
            users
                += "user" + QByteArray::number(i) + ":x:" + QByteArray::number(5000 + i) + ":9::/:/bin/sh\n";
        }
        QVERIFY(write(m_bus.root() + QStringLiteral("/etc/passwd"), users));
        QVERIFY(write(m_bus.root() + QStringLiteral("/etc/group"), "staff:x:50:\n"));
    }

    void init()
    {
        QVERIFY(m_bus.setAllowed(true));
        QFile::remove(rulesPath());
    }

    void whatWasSetIsTold()
    {
        AuditService service(nullptr);
        const AuditSettings::SubjectValues users{{{QStringLiteral("alice"), opening}, 3},
                                                 {{QStringLiteral("overlay1"), opening}, 1},
                                                 {{QStringLiteral("Иван \"Ё\" \\"), modes}, 2}};
        QVERIFY2(service.setAuditSettings(users, AuditSettings::Users), qPrintable(service.errorString()));
        QVERIFY(service.setAuditSettings({{{QStringLiteral("staff"), modes}, 1}}, AuditSettings::Groups));
        QVERIFY(service.setOtherAuditSettings({{opening, 2}}));

        const QStringList names{QStringLiteral("alice"), QStringLiteral("overlay1"),
                                QStringLiteral("Иван \"Ё\" \\")};
        AuditSettings::SubjectValues told
            = service.getAuditSettings(AuditSettings::Users, {opening, modes}, names);
        QCOMPARE(told.size(), 6);
        for (auto it = told.cbegin(); it != told.cend(); ++it) {
            QCOMPARE(it.value(), users.value(it.key()));
        }
        QCOMPARE(service.getAuditSettings(AuditSettings::Groups, {modes}, {QStringLiteral("staff")}),
                 (AuditSettings::SubjectValues{{{QStringLiteral("staff"), modes}, 1}}));
        QCOMPARE(service.getOtherAuditSettings({opening, modes}),
                 (AuditSettings::OtherValues{{opening, 2}, {modes, 0}}));
    }

    void nothingIsToldOfWhatWasNeverSet()
    {
        AuditService service(nullptr);
        QVERIFY(
            service
                .getAuditSettings(AuditSettings::Users, AuditSettings::auditIDs(), {QStringLiteral("alice")})
                .isEmpty());
        QCOMPARE(service.errorString(), QString());
        QVERIFY(service.getOtherAuditSettings(AuditSettings::auditIDs()).isEmpty());
        QCOMPARE(service.errorString(), QString());
    }

    void aNameWithASeparatorIsNotSent()
    {
        AuditService service(nullptr);
        QVERIFY(!service.setAuditSettings(
            {{{QStringLiteral("a/b"), opening}, 3}, {{QStringLiteral("alice"), opening}, 3}},
            AuditSettings::Users));
        QVERIFY2(service.errorString().contains(QLatin1String("a/b")), qPrintable(service.errorString()));
        QCOMPARE(rules(), QByteArray("not there"));
        // Neither asked for: the others are told all the same.
        QVERIFY(service.setAuditSettings({{{QStringLiteral("alice"), opening}, 3}}, AuditSettings::Users));
        QCOMPARE(service.getAuditSettings(AuditSettings::Users, {opening},
                                          {QStringLiteral("a/b"), QStringLiteral("alice")}),
                 (AuditSettings::SubjectValues{{{QStringLiteral("alice"), opening}, 3}}));
    }

    void aRefusedAuthorisationReadsAndWritesNothingAndLeavesAText()
    {
        AuditService service(nullptr);
        QVERIFY(service.setOtherAuditSettings({{opening, 1}}));
        const QByteArray before = rules();
        QVERIFY(m_bus.setAllowed(false));
        QVERIFY(service.getOtherAuditSettings({opening}).isEmpty());
        QVERIFY(!service.errorString().isEmpty());
        QVERIFY(!service.setOtherAuditSettings({{opening, 3}}));
        QVERIFY(!service.errorString().isEmpty());
        QCOMPARE(rules(), before);
        QVERIFY(m_bus.setAllowed(true));
        QCOMPARE(service.getOtherAuditSettings({opening}), (AuditSettings::OtherValues{{opening, 1}}));
        QCOMPARE(service.errorString(), QString());
    }

    void anUnknownSubjectIsRefusedByName()
    {
        AuditService service(nullptr);
        QVERIFY(!service.setAuditSettings(
            {{{QStringLiteral("nobody here"), opening}, 3}, {{QStringLiteral("alice"), opening}, 3}},
            AuditSettings::Users));
        QVERIFY2(service.errorString().contains(QLatin1String("nobody here")),
                 qPrintable(service.errorString()));
        QCOMPARE(rules(), QByteArray("not there"));
    }

    void settingsOfALargeSiteTravelAtOnce()
    {
        AuditService service(nullptr);
        AuditSettings::SubjectValues settings;
        QStringList names;
        for (int i = 0; i < 5000; ++i) {
            names.append(QStringLiteral("user%1").arg(i));
            for (const QString &identifier : AuditSettings::auditIDs()) {
                settings.insert({names.last(), identifier}, 1 + i / 2500);
            }
        }
        QVERIFY2(service.setAuditSettings(settings, AuditSettings::Users), qPrintable(service.errorString()));
        QVERIFY(service.getAuditSettings(AuditSettings::Users, AuditSettings::auditIDs(), names) == settings);
    }
};

QTEST_GUILESS_MAIN(AuditServiceTest)

#include "auditservicetest.moc"
