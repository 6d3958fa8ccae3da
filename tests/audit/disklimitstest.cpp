// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include <disklimits.h>
#include <disklimitsmodel.h>

#include <QAbstractItemModelTester>
#include <QJsonDocument>
#include <QSignalSpy>
#include <QTest>

Q_DECLARE_METATYPE(DiskLimit)

namespace {
DiskLimit limit(const char *path, const char *bytes, const char *percent)
{
    DiskLimit row;
    row.path = QString::fromUtf8(path);
    row.bytes = QString::fromLatin1(bytes);
    row.percent = QString::fromLatin1(percent);
    return row;
}
} // namespace

/// The JSON text of a disk-space event, and the table over it.
class DiskLimitsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theTextIsThatOfTheTemplate_data();
    void theTextIsThatOfTheTemplate();
    void whatIsWrittenIsReadBack();
    void anOddTextGivesWhatItHolds();
    void numbersAndOtherMembersSurvive();
    void byteLimits_data();
    void byteLimits();
    void percentLimits_data();
    void percentLimits();
    void directoryNames();
    void theTableShowsUnitsAndEditsNumbers();
    void theTableRefusesWhatIsNoLimit();
    void theTableFindsTheFirstBadCell();
    void onlyLimitsAreEdited();
};

void DiskLimitsTest::theTextIsThatOfTheTemplate_data()
{
    QTest::addColumn<QVector<DiskLimit>>("rows");
    QTest::addColumn<QString>("text");
    DiskLimit fresh;
    fresh.path = QStringLiteral("/var");
    const QString one
        = QStringLiteral(R"({ "path": "/var", "limit_bytes": "104857600", "limit_percent": "100.0" })");
    QTest::newRow("no row") << QVector<DiskLimit>() << QStringLiteral("[  ]");
    QTest::newRow("one row with default limits")
        << QVector<DiskLimit>{fresh} << QStringLiteral("[ ") + one + QStringLiteral(" ]");
    QTest::newRow("two rows") << QVector<DiskLimit>{fresh, fresh}
                              << QStringLiteral("[ ") + one + QLatin1Char(',') + one + QStringLiteral(" ]");
    QTest::newRow("quotes and more in the name")
        << QVector<DiskLimit>{limit("/a\"b\\c", "0", "5.5")}
        << QStringLiteral("[ { \"path\": \"/a\\\"b\\\\c\", \"limit_bytes\": \"0\", "
                          "\"limit_percent\": \"5.5\" } ]");
}

void DiskLimitsTest::theTextIsThatOfTheTemplate()
{
    QFETCH(QVector<DiskLimit>, rows);
    QFETCH(QString, text);
    QCOMPARE(DiskLimits::toJson(rows), text);
    QVERIFY(QJsonDocument::fromJson(text.toUtf8()).isArray());
}

void DiskLimitsTest::whatIsWrittenIsReadBack()
{
    const QVector<DiskLimit> rows{limit("/", "0", "0"), limit("/Документы", "5", "99.99"),
                                  limit("/a\"}, {\"b\\", "1", "1"), limit("/a, b", "2", "2"),
                                  limit("/a%1", "3", "3")};
    QCOMPARE(DiskLimits::fromJson(DiskLimits::toJson(rows)), rows);
}

void DiskLimitsTest::anOddTextGivesWhatItHolds()
{
    for (const char *text : {"", "no JSON", "{}", "\"/var\"", "[ { ]"}) {
        QCOMPARE(DiskLimits::fromJson(QString::fromLatin1(text)).size(), 0);
    }
    QCOMPARE(DiskLimits::fromJson(QStringLiteral(R"(["/var"])")), QVector<DiskLimit>{limit("/var", "", "")});
    QCOMPARE(DiskLimits::fromJson(QStringLiteral(R"([{"path": "/var"}])")),
             QVector<DiskLimit>{limit("/var", "", "")});
}

void DiskLimitsTest::numbersAndOtherMembersSurvive()
{
    const QString text = QStringLiteral(
        R"([{"limit_bytes": 5000000000, "limit_percent": 2.5, "note": ["x"], "path": "/var"}])");
    const QVector<DiskLimit> rows = DiskLimits::fromJson(text);
    QCOMPARE(rows.at(0).bytes, QStringLiteral("5000000000"));
    QCOMPARE(rows.at(0).percent, QStringLiteral("2.5"));
    QCOMPARE(DiskLimits::toJson(rows),
             QStringLiteral("[ { \"path\": \"/var\", \"limit_bytes\": \"5000000000\", "
                            "\"limit_percent\": \"2.5\", \"note\": [\"x\"] } ]"));
}

void DiskLimitsTest::byteLimits_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("taken");
    for (const char *good : {"0", "1", "104857600", "9223372036854775807"}) {
        QTest::newRow(good) << QString::fromLatin1(good) << true;
    }
    for (const char *bad :
         {"", "-1", "+1", "1.5", "1e3", "100 MiB", "0x10", "9223372036854775808", "1\n", "١"}) {
        QTest::newRow(bad) << QString::fromUtf8(bad) << false;
    }
}

void DiskLimitsTest::byteLimits()
{
    QFETCH(QString, text);
    QFETCH(bool, taken);
    const QString problem = DiskLimits::bytesProblem(text);
    QCOMPARE(problem.isEmpty(), taken);
    QVERIFY2(taken || problem.contains(QLatin1String("at least 0")), qPrintable(problem));
}

void DiskLimitsTest::percentLimits_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("taken");
    for (const char *good : {"0", "0.0", "5", "5.25", "5,25", "99.999", "100", "100.0"}) {
        QTest::newRow(good) << QString::fromLatin1(good) << true;
    }
    for (const char *bad :
         {"", "-1", "100.1", "101", "5.", ".5", "5.5.5", "5%", "1e1", "nan", "inf", "1 0"}) {
        QTest::newRow(bad) << QString::fromLatin1(bad) << false;
    }
}

void DiskLimitsTest::percentLimits()
{
    QFETCH(QString, text);
    QFETCH(bool, taken);
    const QString problem = DiskLimits::percentProblem(text);
    QCOMPARE(problem.isEmpty(), taken);
    QVERIFY2(taken || problem.contains(QLatin1String("from 0 to 100")), qPrintable(problem));
}

void DiskLimitsTest::directoryNames()
{
    for (const char *good : {"/", "/var", "/a b", "/a, b", "/a\"b", "/Папка"}) {
        QCOMPARE(DiskLimits::pathProblem(QString::fromUtf8(good)), QString());
    }
    for (const char *bad : {"", "var", "/a\nb", "/a\tb"}) {
        QVERIFY2(!DiskLimits::pathProblem(QString::fromUtf8(bad)).isEmpty(), bad);
    }
    QVERIFY(!DiskLimits::pathProblem(QStringLiteral("/a") + QChar(0xdc00)).isEmpty());
}

void DiskLimitsTest::theTableShowsUnitsAndEditsNumbers()
{
    DiskLimitsModel model;
    const QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest);
    model.append(limit("/var", "104857600", "5.5"));
    QCOMPARE(model.headerData(1, Qt::Horizontal).toString(), QStringLiteral("Limit (bytes)"));
    QCOMPARE(model.headerData(2, Qt::Horizontal, DiskLimitsModel::KeyRole).toString(),
             QStringLiteral("limit_percent"));
    QCOMPARE(model.index(0, 0).data().toString(), QStringLiteral("/var"));
    QCOMPARE(model.index(0, 1).data().toString(), QStringLiteral("104857600 B (100.00 MiB)"));
    QCOMPARE(model.index(0, 2).data().toString(), QStringLiteral("5.5 %"));
    QCOMPARE(model.index(0, 1).data(Qt::EditRole).toString(), QStringLiteral("104857600"));
    QVERIFY(model.setData(model.index(0, 1), QStringLiteral(" 007 ")));
    QVERIFY(model.setData(model.index(0, 2), QStringLiteral("12,5")));
    QCOMPARE(model.rows(), QVector<DiskLimit>{limit("/var", "7", "12.5")});
    QVERIFY(model.removeRow(0));
    QVERIFY(!model.removeRow(0));
    QCOMPARE(model.rowCount(), 0);
}

void DiskLimitsTest::theTableRefusesWhatIsNoLimit()
{
    DiskLimitsModel model;
    model.append(limit("/var", "1", "2"));
    QSignalSpy rejections(&model, &DiskLimitsModel::valueRejected);
    QSignalSpy changes(&model, &DiskLimitsModel::dataChanged);
    QVERIFY(!model.setData(model.index(0, 1), QStringLiteral("-5")));
    QVERIFY(!model.setData(model.index(0, 2), QStringLiteral("500")));
    QCOMPARE(rejections.size(), 2);
    QVERIFY(rejections.at(0).at(0).toString().contains(QStringLiteral("“-5”")));
    QCOMPARE(changes.size(), 0);
    QCOMPARE(model.rows(), QVector<DiskLimit>{limit("/var", "1", "2")});
}

void DiskLimitsTest::theTableFindsTheFirstBadCell()
{
    DiskLimitsModel model;
    model.append(limit("/var", "1", "2"));
    QVERIFY(!model.firstProblem().isValid());
    model.append(limit("/home", "many", "2"));
    model.append(limit("home", "1", "2"));
    QCOMPARE(model.firstProblem(), model.index(1, 1));
    QCOMPARE(model.index(1, 1).data().toString(), QStringLiteral("many"));
    QVERIFY(model.index(1, 1).data(Qt::ToolTipRole).toString().contains(QLatin1String("at least 0")));
}

void DiskLimitsTest::onlyLimitsAreEdited()
{
    DiskLimitsModel model;
    model.append(limit("/var", "1", "2"));
    QVERIFY(!model.index(0, 0).flags().testFlag(Qt::ItemIsEditable));
    QVERIFY(model.index(0, 1).flags().testFlag(Qt::ItemIsEditable));
    QVERIFY(!model.setData(model.index(0, 0), QStringLiteral("/home")));
    QCOMPARE(model.rows().at(0).path, QStringLiteral("/var"));
}

QTEST_GUILESS_MAIN(DiskLimitsTest)

#include "disklimitstest.moc"
