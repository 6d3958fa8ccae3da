// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#include <QFile>
#include <QMap>
#include <QTest>
#include <QXmlStreamReader>

/** Looks at the policy file that is generated for the authority and installed. */
class HelperPolicyTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void declaresTheVerbsOfTheHelper();
    void everyVerbThatChangesIsForAdministratorsAndAllAreExplained_data();
    void everyVerbThatChangesIsForAdministratorsAndAllAreExplained();

private:
    // For each action its texts, by element name, with the language appended when there is one.
    QMap<QString, QMap<QString, QString>> m_actions;
};

void HelperPolicyTest::initTestCase()
{
    QFile file(QStringLiteral(ADMINEVENTS_POLICY_PATH));
    QVERIFY2(file.open(QIODevice::ReadOnly), qPrintable(file.fileName()));
    QXmlStreamReader xml(&file);
    QString action;
    while (!xml.atEnd()) {
        if (xml.readNext() != QXmlStreamReader::StartElement) {
            continue;
        }
        if (xml.name() == QLatin1String("action")) {
            action = xml.attributes().value(QLatin1String("id")).toString();
            m_actions.insert(action, {});
        } else if (!action.isEmpty() && xml.name() != QLatin1String("defaults")) {
            const QString key = xml.name() + xml.attributes().value(QLatin1String("xml:lang"));
            m_actions[action].insert(key, xml.readElementText().trimmed());
        }
    }
    QVERIFY2(!xml.hasError(), qPrintable(xml.errorString()));
}

void HelperPolicyTest::declaresTheVerbsOfTheHelper()
{
    QCOMPARE(m_actions.keys(),
             (QStringList{QStringLiteral("org.nivra.kcm.adminevents.exportconfig"),
                          QStringLiteral("org.nivra.kcm.adminevents.getauditsettings"),
                          QStringLiteral("org.nivra.kcm.adminevents.importconfig"),
                          QStringLiteral("org.nivra.kcm.adminevents.loggingservicectl"),
                          QStringLiteral("org.nivra.kcm.adminevents.removenotificationconfigs"),
                          QStringLiteral("org.nivra.kcm.adminevents.setauditsettings"),
                          QStringLiteral("org.nivra.kcm.adminevents.writeconfig"),
                          QStringLiteral("org.nivra.kcm.adminevents.writenotificationconfigs")}));
}

void HelperPolicyTest::everyVerbThatChangesIsForAdministratorsAndAllAreExplained_data()
{
    QTest::addColumn<QString>("action");
    for (const QString &action : m_actions.keys()) {
        QTest::newRow(qPrintable(action)) << action;
    }
}

void HelperPolicyTest::everyVerbThatChangesIsForAdministratorsAndAllAreExplained()
{
    QFETCH(QString, action);
    const QMap<QString, QString> texts = m_actions.value(action);
    for (const char *key : {"description", "descriptionru", "message", "messageru"}) {
        QVERIFY2(!texts.value(QLatin1String(key)).isEmpty(), key);
    }
    QVERIFY(texts.value(QStringLiteral("message")) != texts.value(QStringLiteral("messageru")));
    // Whole configurations leave and enter the system only when asked for each time.
    const bool isAskedEachTime
        = action.endsWith(QLatin1String(".exportconfig")) || action.endsWith(QLatin1String(".importconfig"));
    const bool reads = action.endsWith(QLatin1String(".getauditsettings")); // whenever the page opens
    QCOMPARE(texts.value(QStringLiteral("allow_active")),
             reads                 ? QStringLiteral("yes")
                 : isAskedEachTime ? QStringLiteral("auth_admin")
                                   : QStringLiteral("auth_admin_keep"));
    QCOMPARE(texts.value(QStringLiteral("allow_inactive")), QStringLiteral("no"));
    QVERIFY(!texts.contains(QStringLiteral("allow_any")));
}

QTEST_GUILESS_MAIN(HelperPolicyTest)

#include "helperpolicytest.moc"
