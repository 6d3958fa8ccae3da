// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#include "auditdialog.h"
#include "auditfiltermodel.h"
#include "audittablemodel.h"

#include <cpuclock.h>
#include <jsontext.h>

#include <QAbstractItemModelTester>
#include <QCheckBox>
#include <QDialogButtonBox>
#include <QHeaderView>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSignalSpy>
#include <QTableView>
#include <QTest>

namespace {
const QString awkward = QStringLiteral("Иван \"Ё\" \\ %1 %2 a/b");

QString textOf(const QMap<QString, int> &subjects)
{
    QJsonObject object;
    for (auto it = subjects.cbegin(); it != subjects.cend(); ++it) {
        object.insert(it.key(),
                      QJsonObject{{QStringLiteral("succ"), QString::number(*it & 1)},
                                  {QStringLiteral("fail"), QString::number(*it >> 1)}});
    }
    return QString::fromUtf8(QJsonDocument(object).toJson(QJsonDocument::Compact));
}

QMap<QString, int> subjectsOf(const QString &text)
{
    QJsonParseError error{};
    const QJsonDocument document = QJsonDocument::fromJson(text.toUtf8(), &error);
    if (error.error != QJsonParseError::NoError) {
        return {{error.errorString() + text, -1}};
    }
    QMap<QString, int> subjects;
    const QJsonObject object = document.object();
    for (auto it = object.begin(); it != object.end(); ++it) {
        const QJsonObject own = it->toObject();
        subjects.insert(it.key(),
                        (own.value(QLatin1String("succ")).toString() == QLatin1String("1") ? 1 : 0)
                            | (own.value(QLatin1String("fail")).toString() == QLatin1String("1") ? 2 : 0));
    }
    return subjects;
}

QMap<QString, int> largeSite()
{
    QMap<QString, int> subjects;
    for (int i = 0; i < 5000; ++i) {
        subjects.insert(QStringLiteral("user%1").arg(i), i % 4);
    }
    return subjects;
}
} // namespace

/// The dialog, its table and its filter.
class AuditDialogTest : public QObject
{
    Q_OBJECT

private:
    void fill(const QMap<QString, int> &subjects)
    {
        m_dialog = std::make_unique<AuditDialog>(nullptr);
        m_dialog->setTableData(textOf(subjects));
        m_dialog->setDialogType(AuditDialog::Users);
        m_dialog->show();
        QVERIFY(QTest::qWaitForWindowExposed(m_dialog.get()));
    }
    template <typename Widget> [[nodiscard]] Widget *find(const char *name) const
    {
        return m_dialog->findChild<Widget *>(QString::fromLatin1(name));
    }
    [[nodiscard]] QTableView *view() const { return find<QTableView>("auditTableView"); }
    [[nodiscard]] QStringList shown() const
    {
        QStringList names;
        for (int row = 0; row < view()->model()->rowCount(); ++row) {
            names << view()->model()->index(row, 0).data().toString();
        }
        return names;
    }
    [[nodiscard]] QModelIndex cell(const QString &name, int column) const
    {
        return view()->model()->index(shown().indexOf(name), column);
    }
    /// Accepts the dialog as its user does.
    [[nodiscard]] QMap<QString, int> accepted()
    {
        QSignalSpy edited(m_dialog.get(), &AuditDialog::auditSettingsEdited);
        find<QDialogButtonBox>("buttonBox")->button(QDialogButtonBox::Ok)->click();
        if (edited.size() != 1 || edited.at(0).at(0).toList().size() != 1) {
            return {{QStringLiteral("no result"), -1}};
        }
        return subjectsOf(edited.at(0).at(0).toList().at(0).toString());
    }
    static void click(QCheckBox *box)
    {
        QTest::mouseClick(box, Qt::LeftButton, Qt::NoModifier, QPoint(8, box->height() / 2));
    }

    std::unique_ptr<AuditDialog> m_dialog;

private Q_SLOTS:
    void initTestCase()
    {
        // The order of names is a language's; the one that tests run in has none.
        QLocale::setDefault(QLocale(QLocale::English, QLocale::UnitedStates));
    }
    void cleanup() { m_dialog.reset(); }

    void theTableModelTellsNameAndOutcomes()
    {
        AuditTableModel model;
        const QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest);
        model.updateData({{QStringLiteral("alice"), true, false}, {QStringLiteral("bob"), false, true}});
        QCOMPARE(model.rowCount(), 2);
        QCOMPARE(model.columnCount(), 3);
        QCOMPARE(model.headerData(0, Qt::Horizontal).toString(), QStringLiteral("Name"));
        QCOMPARE(model.headerData(1, Qt::Horizontal).toString(), QStringLiteral("Success"));
        QCOMPARE(model.headerData(2, Qt::Horizontal).toString(), QStringLiteral("Failure"));
        QCOMPARE(model.index(0, 0).data().toString(), QStringLiteral("alice"));
        QCOMPARE(model.index(0, 1).data(Qt::CheckStateRole).toInt(), int(Qt::Checked));
        QCOMPARE(model.index(0, 2).data(Qt::CheckStateRole).toInt(), int(Qt::Unchecked));
        QCOMPARE(model.index(0, 0).flags(), Qt::ItemIsSelectable | Qt::ItemIsEnabled);
        QCOMPARE(model.index(0, 1).flags(),
                 Qt::ItemIsSelectable | Qt::ItemIsEnabled | Qt::ItemIsUserCheckable);
        QCOMPARE(model.index(0, 2).flags(),
                 Qt::ItemIsSelectable | Qt::ItemIsEnabled | Qt::ItemIsUserCheckable);
        QCOMPARE(AuditDialog::keyColumns().join(QLatin1Char(' ')), QStringLiteral("name succ fail"));
        QVERIFY(!model.setData(model.index(0, 0), QStringLiteral("eve")));
        QVERIFY(!model.setData(model.index(0, 0), Qt::Checked, Qt::CheckStateRole));
        QVERIFY(model.setData(model.index(0, 2), Qt::Checked, Qt::CheckStateRole));
        QCOMPARE(model.getRecord(0).name, QStringLiteral("alice"));
        QVERIFY(model.getRecord(0).failure);
        QVERIFY(model.getRecord(7).name.isEmpty());
    }

    void switchingManyRowsIsToldOnce()
    {
        AuditTableModel model;
        const QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest);
        model.updateData({{QStringLiteral("a")}, {QStringLiteral("b"), true}, {QStringLiteral("c")}});
        QSignalSpy changes(&model, &QAbstractItemModel::dataChanged);
        model.setColumn({0, 1, 2}, AuditTableModel::Success, true);
        QCOMPARE(changes.size(), 1);
        QCOMPARE(changes.at(0).at(0).toModelIndex(), model.index(0, 1));
        QCOMPARE(changes.at(0).at(1).toModelIndex(), model.index(2, 1));
        model.setColumn({0, 1, 2}, AuditTableModel::Success, true);
        QCOMPARE(changes.size(), 1);
    }

    void acceptingWithoutAnEditGivesBackWhatCameIn()
    {
        const QMap<QString, int> subjects{{QStringLiteral("alice"), 1},
                                          {QStringLiteral("bob"), 0},
                                          {QStringLiteral("overlay0"), 2},
                                          {QStringLiteral("two words"), 3},
                                          {awkward, 3}};
        fill(subjects);
        QCOMPARE(accepted(), subjects);
        QVERIFY(!m_dialog->isVisible());
    }

    void anEmptyListGivesBackAnEmptyObject()
    {
        fill({});
        QCOMPARE(accepted(), (QMap<QString, int>()));
    }

    void clicksAndTheSpaceBarSwitchOutcomes()
    {
        fill({{QStringLiteral("alice"), 0}, {QStringLiteral("bob"), 0}});
        const QAbstractItemModelTester tester(view()->model(),
                                              QAbstractItemModelTester::FailureReportingMode::QtTest);
        const QRect box = view()->visualRect(cell(QStringLiteral("alice"), 1));
        QTest::mouseClick(view()->viewport(), Qt::LeftButton, Qt::NoModifier,
                          QPoint(box.left() + 10, box.center().y()));
        view()->setCurrentIndex(cell(QStringLiteral("bob"), 2));
        view()->setFocus();
        QTest::keyClick(view(), Qt::Key_Space);
        QCOMPARE(accepted(), (QMap<QString, int>{{QStringLiteral("alice"), 1}, {QStringLiteral("bob"), 2}}));
    }

    void cancellingTellsNobody()
    {
        fill({{QStringLiteral("alice"), 0}});
        QSignalSpy edited(m_dialog.get(), &AuditDialog::auditSettingsEdited);
        QVERIFY(view()->model()->setData(cell(QStringLiteral("alice"), 1), Qt::Checked, Qt::CheckStateRole));
        QTest::keyClick(m_dialog.get(), Qt::Key_Escape);
        QVERIFY(!m_dialog->isVisible());
        QVERIFY(edited.isEmpty());
    }

    void theFilterShowsNamesThatContainItsText()
    {
        fill({{QStringLiteral("alice"), 0}, {QStringLiteral("Malika"), 0}, {QStringLiteral("bob"), 3}});
        QTest::keyClicks(find<QLineEdit>("filterEdit"), QStringLiteral("ALI"));
        QCOMPARE(shown(), (QStringList{QStringLiteral("alice"), QStringLiteral("Malika")}));
        QTest::keyClick(find<QLineEdit>("filterEdit"), Qt::Key_Return);
        QVERIFY(m_dialog->isVisible());
        QVERIFY(view()->hasFocus());
        // What is not shown is kept all the same.
        QCOMPARE(accepted().value(QStringLiteral("bob")), 3);
    }

    void oneClickSetsAllShownRows()
    {
        fill({{QStringLiteral("alice"), 0}, {QStringLiteral("alan"), 1}, {QStringLiteral("bob"), 0}});
        auto *success = find<QCheckBox>("allSuccessCheckBox");
        auto *failure = find<QCheckBox>("allFailureCheckBox");
        QCOMPARE(success->checkState(), Qt::PartiallyChecked);
        QCOMPARE(failure->checkState(), Qt::Unchecked);
        QTest::keyClicks(find<QLineEdit>("filterEdit"), QStringLiteral("al"));
        click(success);
        QCOMPARE(success->checkState(), Qt::Checked);
        click(failure);
        click(success); // and takes them back
        find<QLineEdit>("filterEdit")->clear();
        QCOMPARE(failure->checkState(), Qt::PartiallyChecked);
        QCOMPARE(accepted(),
                 (QMap<QString, int>{
                     {QStringLiteral("alice"), 2}, {QStringLiteral("alan"), 2}, {QStringLiteral("bob"), 0}}));
    }

    void theBoxesForAllFollowTheRows()
    {
        fill({{QStringLiteral("alice"), 1}});
        auto *success = find<QCheckBox>("allSuccessCheckBox");
        QCOMPARE(success->checkState(), Qt::Checked);
        QVERIFY(
            view()->model()->setData(cell(QStringLiteral("alice"), 1), Qt::Unchecked, Qt::CheckStateRole));
        QCOMPARE(success->checkState(), Qt::Unchecked);
        find<QLineEdit>("filterEdit")->setText(QStringLiteral("nobody"));
        QVERIFY(!success->isEnabled());
    }

    void eachColumnSorts()
    {
        fill({{QStringLiteral("user10"), 1}, {QStringLiteral("user9"), 2}, {QStringLiteral("Anna"), 3}});
        QCOMPARE(shown(),
                 (QStringList{QStringLiteral("Anna"), QStringLiteral("user9"), QStringLiteral("user10")}));
        view()->sortByColumn(0, Qt::DescendingOrder);
        QCOMPARE(shown(),
                 (QStringList{QStringLiteral("user10"), QStringLiteral("user9"), QStringLiteral("Anna")}));
        view()->sortByColumn(1, Qt::AscendingOrder);
        QCOMPARE(shown(),
                 (QStringList{QStringLiteral("user9"), QStringLiteral("Anna"), QStringLiteral("user10")}));
        view()->sortByColumn(2, Qt::DescendingOrder);
        QCOMPARE(shown().last(), QStringLiteral("user10"));
        // Filled anew it starts as the first time.
        m_dialog->setTableData(textOf({{QStringLiteral("b"), 0}, {QStringLiteral("a"), 3}}));
        QCOMPARE(shown(), (QStringList{QStringLiteral("a"), QStringLiteral("b")}));
        QVERIFY(find<QLineEdit>("filterEdit")->text().isEmpty());
    }

    void aTextOfAnotherFormLeavesTheTableEmpty_data()
    {
        QTest::addColumn<QString>("text");
        QTest::newRow("empty") << QString();
        QTest::newRow("no JSON") << QStringLiteral("{ \"a\" : { } , , }");
        QTest::newRow("array") << QStringLiteral("[ 1 ]");
    }
    void aTextOfAnotherFormLeavesTheTableEmpty()
    {
        QFETCH(QString, text);
        fill({{QStringLiteral("alice"), 0}});
        m_dialog->setTableData(text);
        QCOMPARE(shown(), QStringList());
    }

    void everyFieldIsNamedAndReachable()
    {
        fill({{QStringLiteral("alice"), 0}});
        QCOMPARE(find<QLabel>("filterLabel")->buddy(), find<QLineEdit>("filterEdit"));
        QCOMPARE(find<QLabel>("tableLabel")->buddy(), view());
        const QString users = find<QLabel>("tableLabel")->text();
        QCOMPARE(view()->accessibleName(), QStringLiteral("Audited users"));
        m_dialog->setDialogType(AuditDialog::Groups);
        QCOMPARE(view()->accessibleName(), QStringLiteral("Audited groups"));
        QVERIFY(find<QLabel>("tableLabel")->text() != users);
        QCOMPARE(cell(QStringLiteral("alice"), 1).data(Qt::AccessibleTextRole).toString(),
                 QStringLiteral("Record successes of alice"));
        QWidget *const start = find<QLineEdit>("filterEdit");
        QList<QWidget *> chain;
        for (QWidget *next = start->nextInFocusChain(); next != start; next = next->nextInFocusChain()) {
            chain << next;
        }
        QVERIFY(chain.indexOf(view()) < chain.indexOf(find<QCheckBox>("allSuccessCheckBox")));
        QVERIFY(chain.indexOf(find<QCheckBox>("allSuccessCheckBox"))
                < chain.indexOf(find<QCheckBox>("allFailureCheckBox")));
    }

    void aLargeSiteIsShownAtOnce()
    {
        const QMap<QString, int> site = largeSite();
        const QString text = textOf(site);
        AuditDialog dialog(nullptr);
        dialog.setTableData(textOf({{QStringLiteral("alice"), 0}}));
        dialog.show();
        QVERIFY(QTest::qWaitForWindowExposed(&dialog));
        dialog.hide();
        CpuClock timer;
        dialog.setTableData(text);
        dialog.show();
        QCoreApplication::processEvents();
        const qint64 opening = timer.restart();
        auto *table = dialog.findChild<QTableView *>(QStringLiteral("auditTableView"));
        QCOMPARE(table->model()->rowCount(), 5000);
        table->sortByColumn(1, Qt::DescendingOrder);
        QCoreApplication::processEvents();
        const qint64 sorting = timer.restart();
        dialog.findChild<QLineEdit *>(QStringLiteral("filterEdit"))->setText(QStringLiteral("9"));
        QCoreApplication::processEvents();
        const qint64 filtering = timer.restart();
        click(dialog.findChild<QCheckBox *>(QStringLiteral("allFailureCheckBox")));
        QCoreApplication::processEvents();
        const qint64 setting = timer.restart();
        qInfo("opening %lld ms, sorting %lld ms, filtering %lld ms, setting all %lld ms", opening, sorting,
              filtering, setting);
        // Four times what an optimised build may take: this one may not be optimised.
        constexpr qint64 limit = 400;
        QVERIFY(opening < limit);
        QVERIFY(sorting < limit);
        QVERIFY(filtering < limit);
        QVERIFY(setting < limit);
    }
};

QTEST_MAIN(AuditDialogTest)

#include "auditdialogtest.moc"
