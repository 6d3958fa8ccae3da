// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#include "textcheck.h"

#include <QTest>

class TextCheckTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void controlsAreFoundWhereverTheyStand_data()
    {
        QTest::addColumn<QChar>("character");
        QTest::addColumn<bool>("isControl");
        const auto add = [](ushort code, bool isControl) {
            QTest::newRow(qPrintable(QString::number(code, 16))) << QChar(code) << isControl;
        };
        for (const ushort code : {0x0, 0x9, 0xa, 0xd, 0x1f, 0x7f, 0x85, 0x9f, 0x2028, 0x2029}) {
            add(code, true);
        }
        for (const ushort code : {0x20, 0x7e, 0xa0, 0xad, 0x200e, 0x3000, 0xfffd}) {
            add(code, false);
        }
    }

    void controlsAreFoundWhereverTheyStand()
    {
        QFETCH(QChar, character);
        QFETCH(bool, isControl);
        const QString word = QStringLiteral("слово");
        QCOMPARE(TextCheck::isControl(character), isControl);
        QCOMPARE(TextCheck::holdsControl(character + word), isControl);
        QCOMPARE(TextCheck::holdsControl(word + character), isControl);
        QVERIFY(!TextCheck::holdsControl(word));
    }

    void onlyHalvesOfPairsDoNotComeBackFromUtf8()
    {
        const QString pair = QString::fromUtf8("\xf0\x9f\x94\x94");
        QCOMPARE(pair.size(), 2);
        QVERIFY(TextCheck::survivesUtf8(pair));
        QVERIFY(TextCheck::survivesUtf8(QStringLiteral("звук.ogg")));
        QVERIFY(TextCheck::survivesUtf8(QString()));
        QVERIFY(!TextCheck::survivesUtf8(pair.left(1)));
        QVERIFY(!TextCheck::survivesUtf8(QStringLiteral("x") + pair.at(1)));
    }
};

QTEST_APPLESS_MAIN(TextCheckTest)

#include "textchecktest.moc"
