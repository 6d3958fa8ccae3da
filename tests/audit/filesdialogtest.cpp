// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include <filesdialog.h>

#include <KMessageWidget>

#include <QAbstractItemModelTester>
#include <QDialogButtonBox>
#include <QFileDialog>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

namespace {
/// The dialog, shown, with its widgets.
struct Shown
{
    explicit Shown(const QString &text, FilesDialog::DialogType type = FilesDialog::Files)
    {
        dialog.setDialogType(type);
        dialog.setData(text);
        dialog.show();
    }

    void press(const char *button) { QTest::mouseClick(child<QPushButton>(button), Qt::LeftButton); }
    void pressOk()
    {
        QTest::mouseClick(child<QDialogButtonBox>("buttonBox")->button(QDialogButtonBox::Ok), Qt::LeftButton);
    }
    template <typename Widget> Widget *child(const char *name)
    {
        return dialog.findChild<Widget *>(QLatin1String(name));
    }
    [[nodiscard]] QString message() const { return bar->isVisible() ? bar->text() : QString(); }

    FilesDialog dialog;
    QListWidget *list = child<QListWidget>("filesList");
    KMessageWidget *bar = child<KMessageWidget>("messageWidget");
    QSignalSpy edited{&dialog, &FilesDialog::fileListEdited};
    QAbstractItemModelTester tester{list->model(), QAbstractItemModelTester::FailureReportingMode::QtTest};
};

/// Answers the chooser as soon as it is open: types a name and presses Return, or cancels when there is none.
void answerChooser(const QString &name, QStringList *seen = nullptr)
{
    auto *timer = new QTimer(qApp);
    QObject::connect(timer, &QTimer::timeout, timer, [timer, name, seen] {
        auto *chooser = qobject_cast<QFileDialog *>(QApplication::activeModalWidget());
        if (!chooser) {
            return;
        }
        timer->deleteLater();
        if (seen) {
            *seen = QStringList{chooser->windowTitle(), QString::number(chooser->fileMode()),
                                QString::number(chooser->testOption(QFileDialog::ShowDirsOnly))};
        }
        if (name.isEmpty()) {
            chooser->reject();
            return;
        }
        auto *edit = chooser->findChild<QLineEdit *>(QStringLiteral("fileNameEdit"));
        edit->setText(name);
        QMetaObject::invokeMethod(chooser, "accept");
    });
    timer->start(20);
}
} // namespace

/// The dialog for lists of watched files and directories.
class FilesDialogTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void showsTheListInOrder();
    void openingAndAcceptingChangesNothing_data();
    void openingAndAcceptingChangesNothing();
    void aChosenFileIsAppendedAndCurrent();
    void cancellingTheChooserChangesNothing();
    void directoriesAreChosenAsDirectories();
    void theTextsFitTheKind();
    void refusesAPathThatRulesCannotCarry();
    void aPathIsNotAddedTwice();
    void aFileToComeIsTakenAndMarked();
    void manyMarkedPathsAreCounted();
    void removingTakesTheCurrentRowAndTheLastBecomesCurrent();
    void removingFromAnEmptyListIsHarmless();
    void anEmptyListIsAResult();
    void cancellingHandsNothingOn();
    void aBadPathOfAnOlderListHoldsTheDialogOnlyWhenEdited();
    void returnAcceptsAndDeleteRemoves();
    void aPathIsNeverTakenForFormatting();

private:
    QTemporaryDir m_directory;
    QString m_file; // exists
};

void FilesDialogTest::initTestCase()
{
    // The toolkit's own chooser can be driven from here.
    QCoreApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
    m_file = m_directory.filePath(QStringLiteral("present"));
    QVERIFY(QFile(m_file).open(QIODevice::WriteOnly));
}

void FilesDialogTest::showsTheListInOrder()
{
    Shown shown(QStringLiteral("/b,  /a ,\n, /c"));
    QCOMPARE(shown.dialog.paths(),
             (QStringList{QStringLiteral("/b"), QStringLiteral("/a"), QStringLiteral("/c")}));
    shown.dialog.setData(QStringLiteral("/d"));
    QCOMPARE(shown.dialog.paths(), QStringList{QStringLiteral("/d")});
}

void FilesDialogTest::openingAndAcceptingChangesNothing_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("empty") << QString();
    QTest::newRow("one") << QStringLiteral("/etc/passwd");
    QTest::newRow("three") << QStringLiteral("/etc/passwd, /Папка/файл, /a\"b#\\");
    QTest::newRow("not watchable") << QStringLiteral("relative, /a!=b");
}

void FilesDialogTest::openingAndAcceptingChangesNothing()
{
    QFETCH(QString, text);
    QString value = text;
    for (int round = 0; round < 3; ++round) {
        Shown shown(value);
        shown.pressOk();
        QCOMPARE(shown.edited.size(), 1);
        value = shown.edited.at(0).at(0).value<QVariant>().toString();
        QCOMPARE(value, text);
        QVERIFY(!shown.dialog.isVisible());
    }
}

void FilesDialogTest::aChosenFileIsAppendedAndCurrent()
{
    Shown shown(QStringLiteral("/etc/passwd"));
    answerChooser(m_file);
    shown.press("addButton");
    QCOMPARE(shown.dialog.paths(), (QStringList{QStringLiteral("/etc/passwd"), m_file}));
    QCOMPARE(shown.list->currentRow(), 1);
    QCOMPARE(shown.message(), QString());
    shown.pressOk();
    QCOMPARE(shown.edited.at(0).at(0).value<QVariant>().toString(), QStringLiteral("/etc/passwd, ") + m_file);
}

void FilesDialogTest::cancellingTheChooserChangesNothing()
{
    Shown shown(QStringLiteral("/etc/passwd"));
    answerChooser(QString());
    shown.press("addButton");
    QCOMPARE(shown.dialog.paths(), QStringList{QStringLiteral("/etc/passwd")});
}

void FilesDialogTest::directoriesAreChosenAsDirectories()
{
    Shown shown(QString(), FilesDialog::Directories);
    QStringList seen;
    answerChooser(m_directory.path(), &seen);
    shown.press("addButton");
    QCOMPARE(seen,
             (QStringList{QStringLiteral("Choose a directory to watch"),
                          QString::number(QFileDialog::Directory), QStringLiteral("1")}));
    QCOMPARE(shown.dialog.paths(), QStringList{m_directory.path()});
}

void FilesDialogTest::theTextsFitTheKind()
{
    Shown files{QString()};
    QCOMPARE(files.child<QPushButton>("addButton")->text(), QStringLiteral("Add new file"));
    QCOMPARE(files.child<QPushButton>("removeButton")->text(), QStringLiteral("Remove selected file"));
    files.dialog.setDialogType(static_cast<FilesDialog::DialogType>(7));
    QCOMPARE(files.child<QPushButton>("addButton")->text(), QStringLiteral("Add new directory"));
    QCOMPARE(files.child<QPushButton>("removeButton")->text(), QStringLiteral("Remove selected directory"));
    QVERIFY(files.list->accessibleName().contains(QLatin1String("directories")));
}

void FilesDialogTest::refusesAPathThatRulesCannotCarry()
{
    Shown shown{QString()};
    for (const QString &path : {QStringLiteral("/a b"), QStringLiteral("/a,b"), QStringLiteral("relative"),
                                QStringLiteral("/a!=b"), QStringLiteral("/a\nb")}) {
        QVERIFY(!shown.dialog.addPath(path));
        QVERIFY2(shown.message().contains(QLatin1String("cannot be watched")), qPrintable(path));
        QCOMPARE(shown.bar->messageType(), KMessageWidget::Error);
        QCOMPARE(shown.list->count(), 0);
    }
    QVERIFY(shown.dialog.addPath(m_file));
    QCOMPARE(shown.message(), QString());
}

void FilesDialogTest::aPathIsNotAddedTwice()
{
    Shown shown(QStringLiteral("%1, /etc/passwd").arg(m_file));
    QVERIFY(!shown.dialog.addPath(m_file));
    QCOMPARE(shown.list->count(), 2);
    QCOMPARE(shown.list->currentRow(), 0);
    QVERIFY(shown.message().contains(QLatin1String("in the list already")));
}

void FilesDialogTest::aFileToComeIsTakenAndMarked()
{
    Shown shown{QString()};
    const QString later = m_directory.filePath(QStringLiteral("later"));
    answerChooser(later);
    shown.press("addButton");
    QCOMPARE(shown.dialog.paths(), QStringList{later});
    QCOMPARE(shown.bar->messageType(), KMessageWidget::Warning);
    QVERIFY2(shown.message().contains(QLatin1String("does not exist yet")), qPrintable(shown.message()));
    QVERIFY(shown.list->item(0)->toolTip().contains(QLatin1String("does not exist yet")));
    const QString orphan = m_directory.filePath(QStringLiteral("no/file"));
    QVERIFY(shown.dialog.addPath(orphan));
    QVERIFY2(shown.message().contains(QLatin1String("is not watched until")), qPrintable(shown.message()));
    QTRY_VERIFY(shown.bar->height() >= shown.bar->heightForWidth(shown.bar->width())); // all of it is seen
    shown.press("removeButton");
    QVERIFY(!shown.message().contains(QLatin1String("is not watched until")));
    shown.press("removeButton");
    QCOMPARE(shown.message(), QString());
}

void FilesDialogTest::manyMarkedPathsAreCounted()
{
    Shown shown(QStringLiteral("/no/1, /no/2, /no/3, /no/4, /no/5"));
    QVERIFY2(shown.message().contains(QLatin1String("2 more paths are marked.")),
             qPrintable(shown.message()));
    QVERIFY(!shown.message().contains(QLatin1String("/no/4")));
}

void FilesDialogTest::removingTakesTheCurrentRowAndTheLastBecomesCurrent()
{
    Shown shown(QStringLiteral("/a, /b, /c"));
    QVERIFY(!shown.child<QPushButton>("removeButton")->isEnabled());
    shown.list->setCurrentRow(0);
    QVERIFY(shown.child<QPushButton>("removeButton")->isEnabled());
    shown.press("removeButton");
    QCOMPARE(shown.dialog.paths(), (QStringList{QStringLiteral("/b"), QStringLiteral("/c")}));
    QCOMPARE(shown.list->currentRow(), 1);
}

void FilesDialogTest::removingFromAnEmptyListIsHarmless()
{
    Shown shown{QString()};
    shown.dialog.removeSelectedFile();
    QCOMPARE(shown.list->count(), 0);
    QVERIFY(!shown.child<QPushButton>("removeButton")->isEnabled());
}

void FilesDialogTest::anEmptyListIsAResult()
{
    Shown shown(QStringLiteral("/a"));
    shown.list->setCurrentRow(0);
    shown.press("removeButton");
    shown.pressOk();
    QCOMPARE(shown.edited.size(), 1);
    QCOMPARE(shown.edited.at(0).at(0).value<QVariant>().toString(), QString());
}

void FilesDialogTest::cancellingHandsNothingOn()
{
    Shown shown(QStringLiteral("/a"));
    QVERIFY(shown.dialog.addPath(m_file));
    QTest::mouseClick(shown.child<QDialogButtonBox>("buttonBox")->button(QDialogButtonBox::Cancel),
                      Qt::LeftButton);
    QVERIFY(!shown.dialog.isVisible());
    QCOMPARE(shown.edited.size(), 0);
}

void FilesDialogTest::aBadPathOfAnOlderListHoldsTheDialogOnlyWhenEdited()
{
    Shown shown(QStringLiteral("%1, /a!=b").arg(m_file));
    QVERIFY2(shown.message().contains(QStringLiteral("“!=”")), qPrintable(shown.message()));
    QVERIFY(shown.dialog.addPath(QStringLiteral("/etc/passwd")));
    shown.pressOk();
    QVERIFY(shown.dialog.isVisible());
    QCOMPARE(shown.edited.size(), 0);
    QCOMPARE(shown.list->currentRow(), 1);
    QCOMPARE(shown.bar->messageType(), KMessageWidget::Error);
    shown.press("removeButton");
    shown.pressOk();
    QCOMPARE(shown.edited.at(0).at(0).value<QVariant>().toString(), m_file + QStringLiteral(", /etc/passwd"));
}

void FilesDialogTest::returnAcceptsAndDeleteRemoves()
{
    Shown shown(QStringLiteral("/a, /b"));
    QApplication::setActiveWindow(&shown.dialog);
    shown.list->setFocus();
    shown.list->setCurrentRow(0);
    QTest::keyClick(shown.list, Qt::Key_Delete);
    QCOMPARE(shown.dialog.paths(), QStringList{QStringLiteral("/b")});
    QTest::keyClick(&shown.dialog, Qt::Key_Return);
    QCOMPARE(shown.edited.size(), 1);
}

void FilesDialogTest::aPathIsNeverTakenForFormatting()
{
    Shown shown{QString()};
    QVERIFY(!shown.dialog.addPath(QStringLiteral("<b>x</b>")));
    QVERIFY2(shown.message().contains(QLatin1String("&lt;b&gt;x")), qPrintable(shown.message()));
}

QTEST_MAIN(FilesDialogTest)

#include "filesdialogtest.moc"
