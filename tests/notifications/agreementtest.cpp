// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#include <commonwriter.h>
#include <configaccessservice.h>
#include <fragmentcheck.h>
#include <fragmentoptions.h>
#include <notificationcheck.h>
#include <notificationfragment.h>
#include <notificationname.h>
#include <notifyrctext.h>

#include <QFileInfo>
#include <QRandomGenerator>
#include <QTest>

/** What the dialog takes, the helper takes as well, and reading gives it back: for values made at random. */
class AgreementTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theHelperTakesWhatTheDialogTakes();
    void settingsThatAreTakenComeBack();

private:
    /// Mostly of characters that mean something to one of the formats.
    static QString randomText(QRandomGenerator &random);
};

QString AgreementTest::randomText(QRandomGenerator &random)
{
    static const QString alphabet = QStringLiteral("ab-_ ,\"\\`=[]{}%1$#;:'|/\n\t\rЖя—") + QChar(0xa0)
        + QChar(QChar::LineSeparator) + QChar(0x202e) + QChar(0xd83d) + QChar(0xdd12) + QChar(0);
    // Now and then a text of harmless characters only, or hardly any would be taken.
    const int letters = random.bounded(2) == 0 ? 3 : alphabet.size();
    QString text;
    for (int i = random.bounded(12); i > 0; --i) {
        text += alphabet.at(random.bounded(letters));
    }
    return text;
}

void AgreementTest::theHelperTakesWhatTheDialogTakes()
{
    QRandomGenerator random(4711);
    ConfigAccessService service(nullptr);
    int taken = 0;
    for (int round = 0; round < 20000; ++round) {
        NotificationFragment fragment;
        fragment.messageId = randomText(random);
        fragment.messageType = round % 3 == 0 ? randomText(random) : QStringLiteral("auth");
        fragment.title = randomText(random);
        fragment.recipients = NotificationFragment::Recipients(random.bounded(3));
        for (int i = random.bounded(3); i > 0; --i) {
            fragment.parameters << randomText(random);
        }
        bool good = NotificationCheck::eventProblem(fragment.messageId, fragment.messageType).isEmpty()
            && NotificationCheck::titleProblem(fragment.title).isEmpty();
        for (const QString &parameter : qAsConst(fragment.parameters)) {
            good = good && NotificationCheck::parameterProblem(parameter).isEmpty();
        }
        if (!good) {
            continue;
        }
        ++taken;
        const QString path = NotificationName::fragmentPath(fragment.messageId);
        CommonWriter writer(service, path);
        const QStringList lines = fragment.lines(writer);
        const QByteArray text = (lines.join(QLatin1Char('\n')) + QLatin1Char('\n')).toUtf8();
        const auto checked = AdminEventsHelper::FragmentCheck::check(QFileInfo(path).fileName(), text);
        QVERIFY2(checked.ok(), qPrintable(checked.error() + QLatin1Char('\n') + QString::fromUtf8(text)));
        const FragmentOptions options = FragmentOptions::read(lines);
        QCOMPARE(options.title, fragment.title);
        QCOMPARE(options.parameters, fragment.parameters);
        QCOMPARE(options.recipients(), int(fragment.recipients));
        QVERIFY(!options.titleWasCut);
    }
    QVERIFY2(taken > 1000, qPrintable(QString::number(taken)));
}

void AgreementTest::settingsThatAreTakenComeBack()
{
    QRandomGenerator random(4712);
    int taken = 0;
    for (int round = 0; round < 20000; ++round) {
        const QString value = randomText(random);
        const QByteArray other = randomText(random).toUtf8();
        if (!NotificationCheck::settingProblem(QStringLiteral("x"), value).isEmpty()) {
            continue;
        }
        ++taken;
        const QStringList content{QStringLiteral("[Event/k]\n"),
                                  QStringLiteral("Action=Popup\n"),
                                  QStringLiteral("Execute=") + value + QLatin1Char('\n'),
                                  QStringLiteral("Logfile=\n"),
                                  QStringLiteral("Sound=\n"),
                                  QStringLiteral("TTS=\n")};
        const QByteArray before = "[Event/a]\n" + other + "\n[Event/z]\nExecute=z\n";
        const QByteArray once = NotifyrcText::withGroup(before, QStringLiteral("k"), content);
        QCOMPARE(NotifyrcText::withGroup(once, QStringLiteral("k"), content), once);
        QVERIFY(once.startsWith(before));
        const NotifyrcGroup group = NotifyrcText::readGroup(once, QStringLiteral("k"));
        QCOMPARE(group.executeCommand, value);
        QCOMPARE(group.cutKeys, QStringList());
        QCOMPARE(NotifyrcText::readGroup(once, QStringLiteral("z")).executeCommand, QStringLiteral("z"));
    }
    QVERIFY2(taken > 1000, qPrintable(QString::number(taken)));
}

QTEST_GUILESS_MAIN(AgreementTest)

#include "agreementtest.moc"
