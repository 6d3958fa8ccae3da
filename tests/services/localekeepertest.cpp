// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#include "localekeeper.h"

#include <QCoreApplication>
#include <QLocale>
#include <QProcess>
#include <QProcessEnvironment>
#include <QTest>

#include <cstdio>

class LocaleKeeperTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void thereIsOneKeeper()
    {
        QVERIFY(LocaleKeeper::Instance());
        QCOMPARE(LocaleKeeper::Instance(), LocaleKeeper::Instance());
    }

    void theLanguageIsTheSystemsAndNotTheDefaultOne()
    {
        const QString language = LocaleKeeper::Instance()->language();
        QCOMPARE(language, QLocale::languageToString(QLocale::system().language()));
        QLocale::setDefault(QLocale(language == QLatin1String("French") ? QLocale::German : QLocale::French));
        QCOMPARE(LocaleKeeper::Instance()->language(), language);
        QLocale::setDefault(QLocale::system());
    }

    void theLocaleOfTheProcessDecides_data()
    {
        QTest::addColumn<QString>("locale");
        QTest::addColumn<QByteArray>("language");
        QTest::newRow("Russian") << QStringLiteral("ru_RU.UTF-8") << QByteArray("Russian");
        QTest::newRow("English") << QStringLiteral("en_GB.UTF-8") << QByteArray("English");
        QTest::newRow("German") << QStringLiteral("de_AT.UTF-8") << QByteArray("German");
        QTest::newRow("none") << QStringLiteral("C") << QByteArray("C");
    }
    void theLocaleOfTheProcessDecides()
    {
        QFETCH(QString, locale);
        QFETCH(QByteArray, language);
        // A process has one keeper for life, so each locale takes a process of its own.
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.remove(QStringLiteral("LANGUAGE"));
        environment.insert(QStringLiteral("LC_ALL"), locale);
        environment.insert(QStringLiteral("LANG"), locale);
        QProcess child;
        child.setProcessEnvironment(environment);
        child.start(QCoreApplication::applicationFilePath(), {QStringLiteral("--language")});
        QVERIFY(child.waitForFinished());
        QCOMPARE(child.exitCode(), 0);
        QCOMPARE(child.readAllStandardOutput(), language);
    }
};

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    if (application.arguments().value(1) == QLatin1String("--language"))
        return std::fputs(qPrintable(LocaleKeeper::Instance()->language()), stdout) < 0;
    LocaleKeeperTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "localekeepertest.moc"
