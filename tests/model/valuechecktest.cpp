// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "treemaker.h"

#include <nodedictionary.h>
#include <valuecheck.h>

#include <QTest>

class ValueCheckTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();

    void textsThatCanBeSavedAreTaken_data();
    void textsThatCanBeSavedAreTaken();
    void textsThatCannotBeSavedAreRefused_data();
    void textsThatCannotBeSavedAreRefused();
    void numbersStayInTheirRange_data();
    void numbersStayInTheirRange();
    void declaredNumberWithoutARangeIsANumber();
    void valueThatIsANumberStaysOne();
    void listsAreNoNumbers();
    void switchTakesOnlyItsTwoPositions();
    void accountsAreNotCheckedAsTheMemberOfTheirName();
    void reasonNamesTheParameterAsItIsShown();

private:
    [[nodiscard]] QString problem(const EventTreeItem *item, const QString &text) const
    {
        return ValueCheck::problem(*item, text, m_dictionary);
    }

    NodeDictionary m_dictionary;
    std::unique_ptr<EventTreeItem> m_root = TreeMaker::root();
    EventTreeItem *m_event = nullptr;
};

void ValueCheckTest::initTestCase()
{
    m_dictionary = NodeDictionary::fromJson(R"({
        "interval": { "type": "number", "min": "5", "max": "3600" },
        "count": { "type": "number" },
        "label": { "ru": "Метка" } })");
    m_event = TreeMaker::event(TreeMaker::group(m_root.get(), "g"), "e", "1");
}

void ValueCheckTest::textsThatCanBeSavedAreTaken_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("nothing") << QString();
    QTest::newRow("plain") << QStringLiteral("a b");
    QTest::newRow("quotes and backslashes") << QStringLiteral("\"\\},  }");
    QTest::newRow("letters of all kinds") << QStringLiteral("Ёж é \U0001F512");
    QTest::newRow("a number") << QStringLiteral("12");
}

void ValueCheckTest::textsThatCanBeSavedAreTaken()
{
    QFETCH(QString, text);
    QCOMPARE(problem(TreeMaker::parameter(m_event, "label", "v"), text), QString());
    QCOMPARE(problem(TreeMaker::list(m_event, "names", "[]"), text), QString());
}

void ValueCheckTest::textsThatCannotBeSavedAreRefused_data()
{
    QTest::addColumn<QString>("text");
    for (const int code : {0x00, 0x01, 0x09, 0x0a, 0x0d, 0x1f, 0x7f, 0x85, 0x2028, 0x2029}) {
        QTest::addRow("U+%04x", code) << QString(QStringLiteral("a") + QChar(code) + QLatin1Char('b'));
    }
    QTest::newRow("first half of a pair") << QString(QStringLiteral("a") + QChar(0xd83d));
    QTest::newRow("second half of a pair") << QString(QChar(0xdd12) + QStringLiteral("a"));
}

void ValueCheckTest::textsThatCannotBeSavedAreRefused()
{
    QFETCH(QString, text);
    QVERIFY(!problem(TreeMaker::parameter(m_event, "label", "v"), text).isEmpty());
    QVERIFY(!problem(TreeMaker::list(m_event, "names", "[]"), text).isEmpty());
}

void ValueCheckTest::numbersStayInTheirRange_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("taken");
    QTest::newRow("minimum") << QStringLiteral("5") << true;
    QTest::newRow("maximum") << QStringLiteral("3600") << true;
    QTest::newRow("below") << QStringLiteral("4") << false;
    QTest::newRow("above") << QStringLiteral("3601") << false;
    QTest::newRow("negative") << QStringLiteral("-5") << false;
    QTest::newRow("signed") << QStringLiteral("+5") << false;
    QTest::newRow("fraction") << QStringLiteral("5.5") << false;
    QTest::newRow("blank in front") << QStringLiteral(" 5") << false;
    QTest::newRow("unit behind") << QStringLiteral("5s") << false;
    QTest::newRow("hexadecimal") << QStringLiteral("0x10") << false;
    QTest::newRow("other digits") << QStringLiteral("\u0667\u0667") << false;
    QTest::newRow("nothing") << QString() << false;
    QTest::newRow("too long for any number") << QString(30, QLatin1Char('9')) << false;
}

void ValueCheckTest::numbersStayInTheirRange()
{
    QFETCH(QString, text);
    QFETCH(bool, taken);
    const QString reason = problem(TreeMaker::parameter(m_event, "interval", "30"), text);
    QCOMPARE(reason.isEmpty(), taken);
    if (!taken) {
        QVERIFY2(reason.contains(QLatin1String("5")) && reason.contains(QLatin1String("3600")),
                 qPrintable(reason));
    }
}

void ValueCheckTest::declaredNumberWithoutARangeIsANumber()
{
    const EventTreeItem *count = TreeMaker::parameter(m_event, "count", "none yet");
    QCOMPARE(problem(count, QStringLiteral("70000")), QString());
    QVERIFY(!problem(count, QStringLiteral("many")).isEmpty());
    QVERIFY(!problem(count, QString()).isEmpty());
}

void ValueCheckTest::valueThatIsANumberStaysOne()
{
    const EventTreeItem *size = TreeMaker::parameter(m_event, "size", "10");
    QCOMPARE(problem(size, QStringLiteral("20")), QString());
    QVERIFY(!problem(size, QStringLiteral("large")).isEmpty());
    QVERIFY(!problem(size, QString()).isEmpty());
    EventTreeItem *typed = TreeMaker::parameter(m_event, "typed", "");
    typed->setData(1, 10.0);
    QVERIFY(!problem(typed, QStringLiteral("large")).isEmpty());
    const EventTreeItem *text = TreeMaker::parameter(m_event, "text", "10 kB");
    QCOMPARE(problem(text, QStringLiteral("large")), QString());
}

void ValueCheckTest::listsAreNoNumbers()
{
    QCOMPARE(problem(TreeMaker::list(m_event, "names", R"(["10"])"), QStringLiteral("a, b")), QString());
}

void ValueCheckTest::switchTakesOnlyItsTwoPositions()
{
    const EventTreeItem *enabled = m_event->switchChild();
    QCOMPARE(problem(enabled, QStringLiteral("0")), QString());
    QCOMPARE(problem(enabled, QStringLiteral("1")), QString());
    for (const char *text : {"", "2", "on", "01", " 1"}) {
        QVERIFY2(!problem(enabled, QString::fromLatin1(text)).isEmpty(), text);
    }
}

void ValueCheckTest::accountsAreNotCheckedAsTheMemberOfTheirName()
{
    EventTreeItem *open = TreeMaker::object(TreeMaker::object(m_event, "message-audit-events"), "open");
    EventTreeItem *users = TreeMaker::subjects(open, "users");
    QCOMPARE(problem(TreeMaker::parameter(users, "enabled", "v"), QStringLiteral("text")), QString());
    QCOMPARE(problem(TreeMaker::parameter(users, "interval", "v"), QStringLiteral("text")), QString());
}

void ValueCheckTest::reasonNamesTheParameterAsItIsShown()
{
    EventTreeItem *interval = TreeMaker::parameter(m_event, "interval", "30");
    interval->setData(0, QStringLiteral("Интервал"));
    QVERIFY(problem(interval, QStringLiteral("x")).contains(QStringLiteral("Интервал")));
    QVERIFY(problem(interval, QStringLiteral("a\nb")).contains(QStringLiteral("Интервал")));
}

QTEST_MAIN(ValueCheckTest)

#include "valuechecktest.moc"
