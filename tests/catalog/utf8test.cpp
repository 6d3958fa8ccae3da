// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "utf8.h"

#include <QTest>

#include <string>

class Utf8Test : public QObject
{
    Q_OBJECT

private:
    static std::string encode(unsigned code)
    {
        const auto tail
            = [code](unsigned shift) { return static_cast<char>(0x80U | (code >> shift & 0x3FU)); };
        if (code < 0x80) {
            return {static_cast<char>(code)};
        }
        if (code < 0x800) {
            return {static_cast<char>(0xC0U | code >> 6U), tail(0)};
        }
        if (code < 0x10000) {
            return {static_cast<char>(0xE0U | code >> 12U), tail(6), tail(0)};
        }
        return {static_cast<char>(0xF0U | code >> 18U), tail(12), tail(6), tail(0)};
    }

private Q_SLOTS:
    void takesEveryCharacterAndNoSurrogate()
    {
        for (unsigned code = 0; code < 0x120000; ++code) {
            const bool character = code <= 0x10FFFF && (code < 0xD800 || code > 0xDFFF);
            if (Nivra::isUtf8(encode(code)) != character) {
                QFAIL(qPrintable(QStringLiteral("wrong for %1").arg(code, 0, 16)));
            }
        }
    }

    void takesTextOfSeveralCharacters()
    {
        QVERIFY(Nivra::isUtf8(""));
        QVERIFY(Nivra::isUtf8("plain"));
        QVERIFY(Nivra::isUtf8("ёж \xF0\x9F\xA6\x94 €"));
    }

    void declinesBrokenSequences_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::newRow("lone continuation") << QByteArray("a\x80");
        QTest::newRow("overlong of two") << QByteArray("\xC0\xAF");
        QTest::newRow("overlong of three") << QByteArray("\xE0\x80\xAF");
        QTest::newRow("overlong of four") << QByteArray("\xF0\x80\x80\xAF");
        QTest::newRow("cut off, two") << QByteArray("a\xC3");
        QTest::newRow("cut off, three") << QByteArray("a\xE2\x82");
        QTest::newRow("cut off, four") << QByteArray("a\xF0\x9F\xA6");
        QTest::newRow("letter inside") << QByteArray("\xE2\x82z");
        QTest::newRow("never used") << QByteArray("\xFF");
        QTest::newRow("five bytes") << QByteArray("\xF8\x88\x80\x80\x80");
    }

    void declinesBrokenSequences()
    {
        QFETCH(QByteArray, bytes);
        QVERIFY(!Nivra::isUtf8({bytes.constData(), static_cast<std::size_t>(bytes.size())}));
    }
};

QTEST_GUILESS_MAIN(Utf8Test)

#include "utf8test.moc"
