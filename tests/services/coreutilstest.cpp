// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#include "coreutils.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QJsonArray>
#include <QJsonObject>
#include <QJsonParseError>
#include <QPoint>
#include <QSize>
#include <QTemporaryDir>
#include <QTest>

namespace {

/** A table of any size that shows one text and tells one number, both by the cell. */
class Table : public QAbstractTableModel
{
    Q_OBJECT

public:
    Table(int rows, int columns)
        : m_rows(rows)
        , m_columns(columns)
    {
    }
    int rowCount(const QModelIndex &parent = QModelIndex()) const override
    {
        return parent.isValid() ? 0 : m_rows;
    }
    int columnCount(const QModelIndex &parent = QModelIndex()) const override
    {
        return parent.isValid() ? 0 : m_columns;
    }
    QVariant data(const QModelIndex &index, int role) const override
    {
        if (role != Qt::DisplayRole && role != Qt::EditRole)
            return {};
        return m_odd == QPoint(index.column(), index.row()) && role == m_oddRole ? m_oddValue
                                                                                 : QVariant(index.row());
    }
    void setOdd(int row, int column, int role, const QVariant &value)
    {
        m_odd = QPoint(column, row);
        m_oddRole = role;
        m_oddValue = value;
    }

private:
    int m_rows;
    int m_columns;
    QPoint m_odd = QPoint(-1, -1);
    int m_oddRole = -1;
    QVariant m_oddValue;
};

} // namespace

class CoreUtilsTest : public QObject
{
    Q_OBJECT

private:
    [[nodiscard]] bool put(const QString &path, const QByteArray &content) const
    {
        QFile file(path);
        return file.open(QIODevice::WriteOnly) && file.write(content) == content.size();
    }

private Q_SLOTS:
    void readingGivesTheBytesAsTheyAre()
    {
        QTemporaryDir directory;
        const QString path = directory.filePath(QStringLiteral("file"));
        const QByteArray content("a\0b\r\n\xff", 6);
        QVERIFY(put(path, content));
        const auto result = Core::Utils::readFile(path);
        QVERIFY(result.success);
        QCOMPARE(result.payload(), content);
        QVERIFY(result.error().isEmpty());
    }

    void whyAFileCannotBeReadIsSaid_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("text");
        QTest::newRow("missing") << QStringLiteral("missing %1 file")
                                 << QStringLiteral("error: file doesn't exist: ");
        QTest::newRow("not a file") << QStringLiteral("directory")
                                    << QStringLiteral("error: file can't be open: ");
        QTest::newRow("empty") << QStringLiteral("empty") << QStringLiteral("error: file is empty: ");
    }
    void whyAFileCannotBeReadIsSaid()
    {
        QFETCH(QString, name);
        QFETCH(QString, text);
        QTemporaryDir directory;
        QVERIFY(QDir(directory.path()).mkdir(QStringLiteral("directory")));
        QVERIFY(put(directory.filePath(QStringLiteral("empty")), QByteArray()));
        const QString path = directory.filePath(name);
        const auto result = Core::Utils::readFile(path);
        QVERIFY(!result.success);
        QCOMPARE(result.error(), QString(text + path));
        QVERIFY(result.payload().isEmpty());
    }

    void anObjectAndAnArrayAreDocuments()
    {
        const auto object = Core::Utils::convertFromJson("{}");
        QVERIFY(object.success);
        QVERIFY(object.payload().isObject());
        QVERIFY(object.payload().object().isEmpty());
        QVERIFY(object.error().isEmpty());
        const auto array = Core::Utils::convertFromJson("[1, 2]");
        QVERIFY(array.success);
        QCOMPARE(array.payload().array().size(), 2);
    }

    void anEmptyTextIsNotTheSameAsABlankOne()
    {
        const auto empty = Core::Utils::convertFromJson(QByteArray());
        QVERIFY(!empty.success);
        QCOMPARE(empty.error(), QStringLiteral("error: json byte array is empty"));

        const auto blank = Core::Utils::convertFromJson(" ");
        QVERIFY(!blank.success);
        QJsonParseError reason;
        QJsonDocument::fromJson(" ", &reason);
        QVERIFY(reason.error != QJsonParseError::NoError);
        QCOMPARE(blank.error(), QString(QLatin1String("error: json parse error: ") + reason.errorString()));
    }

    void brokenTextGivesTheParsersReason()
    {
        const auto result = Core::Utils::convertFromJson("{\"a\": }");
        QVERIFY(!result.success);
        QJsonParseError reason;
        QJsonDocument::fromJson("{\"a\": }", &reason);
        QCOMPARE(result.error(), QString(QLatin1String("error: json parse error: ") + reason.errorString()));
    }

    void tablesAreEqualWhenSizesAndCellsAre_data()
    {
        QTest::addColumn<QSize>("first");
        QTest::addColumn<QSize>("second");
        QTest::addColumn<bool>("equal");
        QTest::newRow("same") << QSize(2, 3) << QSize(2, 3) << true;
        QTest::newRow("more rows") << QSize(2, 3) << QSize(2, 4) << false;
        QTest::newRow("more columns") << QSize(2, 3) << QSize(3, 3) << false;
        QTest::newRow("no rows, other columns") << QSize(2, 0) << QSize(3, 0) << false;
        QTest::newRow("no rows, same columns") << QSize(2, 0) << QSize(2, 0) << true;
        QTest::newRow("no columns, other rows") << QSize(0, 2) << QSize(0, 3) << false;
        QTest::newRow("nothing") << QSize(0, 0) << QSize(0, 0) << true;
    }
    void tablesAreEqualWhenSizesAndCellsAre()
    {
        QFETCH(QSize, first);
        QFETCH(QSize, second);
        QFETCH(bool, equal);
        const Table a(first.height(), first.width());
        const Table b(second.height(), second.width());
        QCOMPARE(Core::Utils::isModelsEqual(&a, &b, Qt::DisplayRole), equal);
        QCOMPARE(Core::Utils::isModelsEqual(&b, &a, Qt::DisplayRole), equal);
    }

    void oneOddCellMakesTablesUnequalUnderItsRoleOnly_data()
    {
        QTest::addColumn<int>("row");
        QTest::addColumn<int>("column");
        QTest::newRow("first") << 0 << 0;
        QTest::newRow("middle") << 1 << 1;
        QTest::newRow("last") << 2 << 1;
    }
    void oneOddCellMakesTablesUnequalUnderItsRoleOnly()
    {
        QFETCH(int, row);
        QFETCH(int, column);
        const Table a(3, 2);
        Table b(3, 2);
        b.setOdd(row, column, Qt::EditRole, QStringLiteral("odd"));
        QVERIFY(!Core::Utils::isModelsEqual(&a, &b, Qt::EditRole));
        QVERIFY(Core::Utils::isModelsEqual(&a, &b, Qt::DisplayRole));
    }

    void theRebootIsAskedForInTheRuntimeDirectoryOfTheElevatingUser_data()
    {
        QTest::addColumn<QByteArray>("user");
        QTest::addColumn<QByteArray>("expected");
        QTest::newRow("elevated") << QByteArray("1234") << QByteArray("ZEPWM_REBOOT|1|/run/user/1234|kept\n");
        QTest::newRow("plain") << QByteArray() << QByteArray("ZEPWM_REBOOT|1|/run/user/|kept\n");
    }
    void theRebootIsAskedForInTheRuntimeDirectoryOfTheElevatingUser()
    {
        QFETCH(QByteArray, user);
        QFETCH(QByteArray, expected);
        QTemporaryDir root;
        QVERIFY(QDir(root.path()).mkpath(QStringLiteral("usr/bin")));
        const QString helper = root.filePath(QStringLiteral("usr/bin/zep-wmfunc"));
        QVERIFY(put(helper, "#!/bin/sh\necho \"$1|$#|$XDG_RUNTIME_DIR|$OTHER\" > \"$0.called\"\n"));
        QVERIFY(QFile::setPermissions(helper, QFileDevice::ReadOwner | QFileDevice::ExeOwner));
        qputenv("ADMINEVENTS_ROOT", QFile::encodeName(root.path()));
        qputenv("OTHER", "kept");
        if (user.isEmpty())
            qunsetenv("SUDO_UID");
        else
            qputenv("SUDO_UID", user);
        Core::Utils::rebootSystem();
        qunsetenv("SUDO_UID");
        qunsetenv("ADMINEVENTS_ROOT");

        const auto called = Core::Utils::readFile(helper + QLatin1String(".called"));
        QVERIFY2(called.success, qPrintable(called.error()));
        QCOMPARE(called.payload(), expected);
    }

    void aMissingRebootHelperIsIgnored()
    {
        QTemporaryDir root;
        qputenv("ADMINEVENTS_ROOT", QFile::encodeName(root.path()));
        QElapsedTimer timer;
        timer.start();
        Core::Utils::rebootSystem();
        qunsetenv("ADMINEVENTS_ROOT");
        QVERIFY2(timer.elapsed() < 5000, "waited for a program that never started");
    }
};

QTEST_GUILESS_MAIN(CoreUtilsTest)

#include "coreutilstest.moc"
