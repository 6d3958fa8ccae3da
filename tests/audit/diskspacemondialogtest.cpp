// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include <disklimitsmodel.h>
#include <diskspacemondialog.h>

#include <KMessageWidget>

#include <QAbstractItemModelTester>
#include <QApplication>
#include <QDialogButtonBox>
#include <QLineEdit>
#include <QPushButton>
#include <QSignalSpy>
#include <QTableView>
#include <QTest>
#include <QToolTip>

namespace {
const QString oneRow = QStringLiteral(R"([{"limit_bytes":"1073741824","limit_percent":"5.0","path":"/"}])");

/// The dialog, shown, with its widgets.
struct Shown
{
    explicit Shown(const QString &text)
    {
        dialog.setData(text);
        dialog.show();
        QApplication::setActiveWindow(&dialog);
    }

    void press(QDialogButtonBox::StandardButton button)
    {
        QTest::mouseClick(child<QDialogButtonBox>("buttonBox")->button(button), Qt::LeftButton);
    }
    template <typename Widget> Widget *child(const char *name)
    {
        return dialog.findChild<Widget *>(QLatin1String(name));
    }
    [[nodiscard]] QString message() const { return bar->isVisible() ? bar->text() : QString(); }
    /// A Return in an editor is heeded from the event loop, and closed editors go there.
    static void settle()
    {
        QCoreApplication::processEvents();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
    /// Types into a cell; the editor stays open.
    QLineEdit *type(int row, int column, const QString &text)
    {
        settle();
        const QModelIndex cell = dialog.model()->index(row, column);
        table->setCurrentIndex(cell);
        table->edit(cell);
        auto *edit = table->findChild<QLineEdit *>();
        if (edit) {
            edit->selectAll();
            QTest::keyClicks(edit, text);
        }
        return edit;
    }
    [[nodiscard]] QList<QVariant> result() const { return edited.at(0).at(0).toList(); }

    DiskSpaceMonDialog dialog;
    QTableView *table = child<QTableView>("directoriesTable");
    KMessageWidget *bar = child<KMessageWidget>("messageWidget");
    QSignalSpy edited{&dialog, &DiskSpaceMonDialog::directoriesEdited};
    QAbstractItemModelTester tester{dialog.model(), QAbstractItemModelTester::FailureReportingMode::QtTest};
};
} // namespace

/// The dialog for directories with disk-space limits.
class DiskSpaceMonDialogTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cleanup();
    void showsOneRowAnObject();
    void openingAndAcceptingChangesNothing_data();
    void openingAndAcceptingChangesNothing();
    void aNewDirectoryHasDefaultLimits();
    void aDirectoryIsNotAddedTwice();
    void aNameThatCannotBeSavedIsRefused();
    void aNameWithAQuoteSurvives();
    void typedLimitsAreInTheResult();
    void aBadLimitIsRefusedInTheCell();
    void aBadLimitIsNotAcceptedByTheWay();
    void removingTakesTheCurrentRow();
    void anOlderBadLimitHoldsTheDialogOnlyWhenEdited();
    void cancellingHandsNothingOn();
};

void DiskSpaceMonDialogTest::cleanup()
{
    QToolTip::hideText();
}

void DiskSpaceMonDialogTest::showsOneRowAnObject()
{
    Shown shown(QStringLiteral(R"([{"path":"/","limit_bytes":"1","limit_percent":"2"},{"path":"/var"}])"));
    QCOMPARE(shown.dialog.model()->rowCount(), 2);
    QCOMPARE(shown.dialog.model()->index(1, 0).data().toString(), QStringLiteral("/var"));
    shown.dialog.setData(QStringLiteral("{\"path\": \"/\"}"));
    QCOMPARE(shown.dialog.model()->rowCount(), 0);
}

void DiskSpaceMonDialogTest::openingAndAcceptingChangesNothing_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("one row") << oneRow;
    QTest::newRow("no row") << QStringLiteral("[]");
    QTest::newRow("odd limits") << QStringLiteral(R"([{"path":"/","limit_bytes":"many"}])");
    QTest::newRow("no array") << QStringLiteral("/var");
}

void DiskSpaceMonDialogTest::openingAndAcceptingChangesNothing()
{
    QFETCH(QString, text);
    QString value = text;
    for (int round = 0; round < 3; ++round) {
        Shown shown(value);
        shown.press(QDialogButtonBox::Ok);
        QCOMPARE(shown.edited.size(), 1);
        value = shown.result().at(0).toString();
        QCOMPARE(value, text);
    }
}

void DiskSpaceMonDialogTest::aNewDirectoryHasDefaultLimits()
{
    Shown shown(QString{});
    QVERIFY(shown.dialog.addDirectory(QStringLiteral("/var")));
    QVERIFY(shown.dialog.addDirectory(QStringLiteral("/home")));
    QCOMPARE(shown.table->currentIndex().row(), 1);
    shown.press(QDialogButtonBox::Ok);
    QCOMPARE(
        shown.result().at(0).toString(),
        QStringLiteral(R"([ { "path": "/var", "limit_bytes": "104857600", "limit_percent": "100.0" },)"
                       R"({ "path": "/home", "limit_bytes": "104857600", "limit_percent": "100.0" } ])"));
    QCOMPARE(shown.result().at(1).toString(), QStringLiteral("/var, /home"));
}

void DiskSpaceMonDialogTest::aDirectoryIsNotAddedTwice()
{
    Shown shown(oneRow);
    QVERIFY(shown.dialog.addDirectory(QStringLiteral("/var")));
    QVERIFY(!shown.dialog.addDirectory(QStringLiteral("/")));
    QCOMPARE(shown.dialog.model()->rowCount(), 2);
    QCOMPARE(shown.table->currentIndex().row(), 0);
    QVERIFY(shown.message().contains(QLatin1String("in the list already")));
}

void DiskSpaceMonDialogTest::aNameThatCannotBeSavedIsRefused()
{
    Shown shown(oneRow);
    QVERIFY(!shown.dialog.addDirectory(QStringLiteral("/a\nb")));
    QVERIFY(shown.message().contains(QLatin1String("line break")));
    QVERIFY(!shown.dialog.addDirectory(QStringLiteral("var")));
    QCOMPARE(shown.dialog.model()->rowCount(), 1);
}

void DiskSpaceMonDialogTest::aNameWithAQuoteSurvives()
{
    const QString name = QStringLiteral("/mnt/\"disk\" \\ Диск");
    Shown shown(oneRow);
    QVERIFY(shown.dialog.addDirectory(name));
    shown.press(QDialogButtonBox::Ok);
    Shown again(shown.result().at(0).toString());
    QCOMPARE(again.dialog.model()->rowCount(), 2);
    QCOMPARE(again.dialog.model()->index(1, 0).data().toString(), name);
}

void DiskSpaceMonDialogTest::typedLimitsAreInTheResult()
{
    Shown shown(oneRow);
    QLineEdit *edit = shown.type(0, DiskLimitsModel::BytesColumn, QStringLiteral("2048"));
    QVERIFY(edit);
    QTest::keyClick(edit, Qt::Key_Return);
    edit = shown.type(0, DiskLimitsModel::PercentColumn, QStringLiteral("7,5"));
    QVERIFY(edit);
    QTest::keyClick(edit, Qt::Key_Return);
    shown.settle();
    QVERIFY(shown.dialog.isVisible());
    shown.press(QDialogButtonBox::Ok);
    QCOMPARE(shown.result().at(0).toString(),
             QStringLiteral(R"([ { "path": "/", "limit_bytes": "2048", "limit_percent": "7.5" } ])"));
}

void DiskSpaceMonDialogTest::aBadLimitIsRefusedInTheCell()
{
    Shown shown(oneRow);
    QLineEdit *edit = shown.type(0, DiskLimitsModel::PercentColumn, QStringLiteral("150"));
    QVERIFY(edit);
    QVERIFY(QToolTip::text().contains(QLatin1String("from 0 to 100")));
    QCOMPARE(edit->palette().color(QPalette::Text), QColor(Qt::red));
    QTest::keyClick(edit, Qt::Key_Return);
    QCoreApplication::processEvents();
    QVERIFY(edit->isVisible()); // to be mended
    QTest::keyClick(edit, Qt::Key_Backspace);
    QTest::keyClick(edit, Qt::Key_Return);
    shown.settle();
    QCOMPARE(shown.dialog.model()->rows().at(0).percent, QStringLiteral("15"));
}

void DiskSpaceMonDialogTest::aBadLimitIsNotAcceptedByTheWay()
{
    Shown shown(oneRow);
    QLineEdit *edit = shown.type(0, DiskLimitsModel::BytesColumn, QStringLiteral("-1"));
    QVERIFY(edit && edit->hasFocus());
    shown.press(QDialogButtonBox::Ok);
    QVERIFY(shown.dialog.isVisible());
    QCOMPARE(shown.edited.size(), 0);
    QVERIFY2(shown.message().contains(QLatin1String("at least 0")), qPrintable(shown.message()));
    QCOMPARE(shown.dialog.model()->rows().at(0).bytes, QStringLiteral("1073741824"));
    shown.press(QDialogButtonBox::Ok); // told once, the former value is what is meant
    QCOMPARE(shown.edited.size(), 1);
    QCOMPARE(shown.result().at(0).toString(), oneRow);
}

void DiskSpaceMonDialogTest::removingTakesTheCurrentRow()
{
    Shown shown(QStringLiteral(R"([{"path":"/a"},{"path":"/b"},{"path":"/c"}])"));
    auto *remove = shown.child<QPushButton>("removeButton");
    QVERIFY(!remove->isEnabled());
    shown.table->setCurrentIndex(shown.dialog.model()->index(0, 1));
    QTest::mouseClick(remove, Qt::LeftButton);
    QCOMPARE(DiskLimits::paths(shown.dialog.model()->rows()),
             (QStringList{QStringLiteral("/b"), QStringLiteral("/c")}));
    QCOMPARE(shown.table->currentIndex().row(), 1);
    QTest::mouseClick(remove, Qt::LeftButton);
    QTest::mouseClick(remove, Qt::LeftButton);
    QCOMPARE(shown.dialog.model()->rowCount(), 0);
    QVERIFY(!remove->isEnabled());
    shown.dialog.removeSelectedDirectory();
    shown.press(QDialogButtonBox::Ok);
    QCOMPARE(shown.result().at(0).toString(), QStringLiteral("[  ]"));
}

void DiskSpaceMonDialogTest::anOlderBadLimitHoldsTheDialogOnlyWhenEdited()
{
    Shown shown(QStringLiteral(R"([{"path":"/","limit_bytes":"many","limit_percent":"5"}])"));
    QVERIFY(shown.dialog.addDirectory(QStringLiteral("/var")));
    shown.press(QDialogButtonBox::Ok);
    QVERIFY(shown.dialog.isVisible());
    QCOMPARE(shown.table->currentIndex(), shown.dialog.model()->index(0, 1));
    QVERIFY(shown.message().contains(QStringLiteral("“many”")));
}

void DiskSpaceMonDialogTest::cancellingHandsNothingOn()
{
    Shown shown(oneRow);
    QVERIFY(shown.dialog.addDirectory(QStringLiteral("/var")));
    shown.press(QDialogButtonBox::Cancel);
    QVERIFY(!shown.dialog.isVisible());
    QCOMPARE(shown.edited.size(), 0);
}

QTEST_MAIN(DiskSpaceMonDialogTest)

#include "diskspacemondialogtest.moc"
