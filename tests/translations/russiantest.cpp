// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#include "checkabletreemodel.h"
#include "eventconfigstorage.h"
#include "eventdisplay.h"
#include "eventtreeitem.h"

#include <KLocalizedString>

#include <QAbstractItemModelTester>
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

namespace {

const QString sourceFile = QStringLiteral(SOURCE_DIR "/po/ru/%1.po").arg(QLatin1String(TRANSLATION_DOMAIN));
constexpr auto pluralDomain = "plural_forms_of_the_russian_file";

/** Compiles @p source as the messages of @p domain below @p dataDirectory; returns what went wrong. */
[[nodiscard]] QString compile(const QString &source, const QString &domain, const QString &dataDirectory)
{
    const QString directory = dataDirectory + QLatin1String("/locale/ru/LC_MESSAGES");
    if (!QDir().mkpath(directory)) {
        return directory;
    }
    QProcess msgfmt;
    msgfmt.setProcessChannelMode(QProcess::MergedChannels);
    msgfmt.start(QStringLiteral(MSGFMT),
                 {QStringLiteral("--check"), QStringLiteral("--output-file"),
                  QStringLiteral("%1/%2.mo").arg(directory, domain), source});
    if (!msgfmt.waitForFinished() || msgfmt.exitStatus() != QProcess::NormalExit || msgfmt.exitCode() != 0) {
        return msgfmt.errorString() + QString::fromUtf8(msgfmt.readAll());
    }
    return {};
}

} // namespace

class RussianTest : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void initTestCase()
    {
        QVERIFY(m_data.isValid());
        qputenv("XDG_DATA_DIRS", QFile::encodeName(m_data.path()));
        KLocalizedString::setLanguages({QStringLiteral("ru")});
        QCOMPARE(compile(sourceFile, QLatin1String(TRANSLATION_DOMAIN), m_data.path()), QString());
    }

    void textsOfTheCodeComeOutInRussian()
    {
        QCOMPARE(i18n("Security events"), QStringLiteral("События безопасности"));
        QCOMPARE(i18nc("@action:button", "Reset"), QStringLiteral("Сброс"));
    }

    void placeholdersAreFilled()
    {
        QCOMPARE(i18n("“%1” must be a whole number from %2 to %3.", QStringLiteral("Порт"),
                      QStringLiteral("1"), QStringLiteral("65535")),
                 QStringLiteral("Значение «Порт» должно быть целым числом от 1 до 65535."));
    }

    void theLibrariesAskInTheSameDomain()
    {
        const EventConfigStorage storage(m_data.path());
        CheckableTreeModel model(storage);
        const QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest);
        QCOMPARE(model.headerData(0, Qt::Horizontal).toString(), QStringLiteral("Название"));
        QCOMPARE(model.headerData(1, Qt::Horizontal).toString(), QStringLiteral("Значение"));
    }

    void switchesReadInRussian()
    {
        EventTreeItem item({QStringLiteral("succ"), QStringLiteral("1")});
        item.kind = EventTreeItem::Parameter;
        item.nativeName = QStringLiteral("succ");
        QCOMPARE(EventDisplay::displayValue(item, 1).toString(), QStringLiteral("Включено"));
        item.setData(1, QStringLiteral("0"));
        QCOMPARE(EventDisplay::displayValue(item, 1).toString(), QStringLiteral("Выключено"));
    }

    void anotherLanguageKeepsTheSourceTexts()
    {
        KLocalizedString::setLanguages({QStringLiteral("en_US")});
        const QString text = i18n("Security events");
        KLocalizedString::setLanguages({QStringLiteral("ru")});
        QCOMPARE(text, QStringLiteral("Security events"));
    }

    void numbersChooseTheRussianPluralForm_data()
    {
        QTest::addColumn<int>("number");
        QTest::addColumn<QString>("text");
        QTest::newRow("0") << 0 << QStringLiteral("0 файлов");
        QTest::newRow("1") << 1 << QStringLiteral("один файл");
        QTest::newRow("2") << 2 << QStringLiteral("2 файла");
        QTest::newRow("5") << 5 << QStringLiteral("5 файлов");
        QTest::newRow("11") << 11 << QStringLiteral("11 файлов");
        QTest::newRow("12") << 12 << QStringLiteral("12 файлов");
        QTest::newRow("21") << 21 << QStringLiteral("21 файл");
        QTest::newRow("22") << 22 << QStringLiteral("22 файла");
        QTest::newRow("111") << 111 << QStringLiteral("111 файлов");
    }

    // A file of its own with the header of the shipped one: that one may have no plural now, and have one
    // tomorrow.
    void numbersChooseTheRussianPluralForm()
    {
        QFETCH(const int, number);
        QFile shipped(sourceFile);
        QVERIFY(shipped.open(QIODevice::ReadOnly));
        const QByteArray all = shipped.readAll();
        const int end = all.indexOf("\n\n");
        QVERIFY(end > 0);
        QFile file(m_data.filePath(QStringLiteral("plural.po")));
        QVERIFY(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
        file.write(all.left(end)
                   + "\n\nmsgid \"one file\"\nmsgid_plural \"%1 files\"\nmsgstr[0] \"%1 файл\"\n"
                     "msgstr[1] \"%1 файла\"\nmsgstr[2] \"%1 файлов\"\nmsgstr[3] \"один файл\"\n");
        file.close();
        QCOMPARE(compile(file.fileName(), QLatin1String(pluralDomain), m_data.path()), QString());
        QTEST(i18ndp(pluralDomain, "one file", "%1 files", number), "text");
    }

    // A name or a keyword of a file format may stay as it is; whole sentences may not.
    void noTranslationIsWithoutARussianLetter()
    {
        QFile shipped(sourceFile);
        QVERIFY(shipped.open(QIODevice::ReadOnly));
        const QString all = QString::fromUtf8(shipped.readAll());
        static const QRegularExpression cyrillic(QStringLiteral("[а-яА-ЯёЁ]"));
        static const QRegularExpression translation(
            QStringLiteral("^msgstr(?:\\[\\d\\])? (\".*\"(?:\\n\".*\")*)$"),
            QRegularExpression::MultilineOption);
        int count = 0;
        QRegularExpressionMatchIterator matches
            = translation.globalMatch(all, all.indexOf(QLatin1String("\n\n")));
        while (matches.hasNext()) {
            const QString text = matches.next().captured(1);
            static const QRegularExpression latin(QStringLiteral("[a-zA-Z]"));
            const bool hasWords = text.contains(cyrillic) || text.contains(latin); // "%1 %" has none
            QVERIFY2(!hasWords || text.contains(cyrillic), qPrintable(text));
            ++count;
        }
        QVERIFY(count > 100);
    }

private:
    QTemporaryDir m_data;
};

QTEST_MAIN(RussianTest)
#include "russiantest.moc"
