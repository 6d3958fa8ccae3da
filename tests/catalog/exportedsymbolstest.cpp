// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include <QProcess>
#include <QStandardPaths>
#include <QTest>

class ExportedSymbolsTest : public QObject
{
    Q_OBJECT

private:
    static QByteArray output(const QString &program, const QStringList &arguments)
    {
        QProcess process;
        process.start(program, arguments);
        process.waitForFinished();
        return process.exitCode() == 0 ? process.readAllStandardOutput() : QByteArray();
    }

private Q_SLOTS:
    void theLibraryExportsItsTenFunctionsAndNothingElse()
    {
        const QString nm = QStandardPaths::findExecutable(QStringLiteral("nm"));
        if (nm.isEmpty()) {
            QSKIP("there is no nm on this machine");
        }
        const QByteArray text = output(nm,
                                       {QStringLiteral("--dynamic"), QStringLiteral("--defined-only"),
                                        QStringLiteral("--format=posix"), QStringLiteral(LIBRARY_FILE)});
        QStringList symbols;
        for (const QByteArray &line : text.split('\n')) {
            if (!line.isEmpty()) {
                symbols.append(QString::fromLatin1(line.left(line.indexOf(' '))));
            }
        }
        symbols.sort();
        const QStringList expected{
            QStringLiteral("nvev_events_count"),      QStringLiteral("nvev_free"),
            QStringLiteral("nvev_free_string_array"), QStringLiteral("nvev_get_event_ids"),
            QStringLiteral("nvev_get_event_json"),    QStringLiteral("nvev_get_group_ids"),
            QStringLiteral("nvev_get_group_json"),    QStringLiteral("nvev_get_override_event_json"),
            QStringLiteral("nvev_groups_count"),      QStringLiteral("nvev_init")};
        QCOMPARE(symbols, expected);
    }

    void theLibraryBearsItsName()
    {
        const QString readelf = QStandardPaths::findExecutable(QStringLiteral("readelf"));
        if (readelf.isEmpty()) {
            QSKIP("there is no readelf on this machine");
        }
        const QByteArray text = output(readelf, {QStringLiteral("-d"), QStringLiteral(LIBRARY_FILE)});
        QVERIFY(text.contains("[libnivraevents.so.0]"));
    }
};

QTEST_GUILESS_MAIN(ExportedSymbolsTest)

#include "exportedsymbolstest.moc"
