// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "pagefixture.h"

#include <checkabletreemodel.h>
#include <longwork.h>
#include <statewidget.h>

#include <QApplication>
#include <QFile>
#include <QLineEdit>
#include <QMessageBox>
#include <QPointer>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>
#include <QTreeView>

#include <functional>

namespace {
/// Destroys a page as soon as a message box is open.
class EndUnderBox : public QObject
{
public:
    explicit EndUnderBox(QPointer<AdminEventsModule> &page)
    {
        connect(&m_timer, &QTimer::timeout, this, [&page] {
            if (qobject_cast<QMessageBox *>(QApplication::activeModalWidget())) {
                delete page;
            }
        });
        m_timer.start(10);
    }

private:
    QTimer m_timer;
};

/// Calls a function in every pause of long work, with the number of the pause.
class InPauses : public QObject
{
public:
    explicit InPauses(std::function<void(int)> function)
        : m_function(std::move(function))
    {
        connect(&m_timer, &QTimer::timeout, this, [this] {
            if (QApplication::overrideCursor()) {
                m_function(++m_pauses);
            }
        });
        m_timer.start(0);
    }

    [[nodiscard]] int count() const { return m_pauses; }

private:
    std::function<void(int)> m_function;
    QTimer m_timer;
    int m_pauses = 0;
};
} // namespace

/// What may happen while an apply lets the event loop turn.
class ApplyPauseTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanupTestCase();
    void anApplyPausesWithASignOfIt();
    void applyAndResetInAPauseAreDropped();
    void theWindowDoesNotCloseInAPause();
    void filesThatChangeInAPauseCauseNoReloadOfTheirOwn();
    void aPageThatEndsInAnyPauseLeavesWholeFiles();
    void aPageThatEndsInAnyPauseOfAReloadLeavesNothingBehind();
    void aPageThatEndsUnderAMessageBoxSavesNothing_data();
    void aPageThatEndsUnderAMessageBoxSavesNothing();
    void aPageThatEndsUnderTheMessageBoxOfItsViewerLeavesNothingBehind();
    void whatIsBeingTypedIsApplied();

private:
    [[nodiscard]] std::unique_ptr<AdminEventsModule> openEditedPage();

    PageFixture m_machine;
};

void ApplyPauseTest::initTestCase()
{
    LongWork::setLongestPiece(0);
    const QString problem = m_machine.start();
    QVERIFY2(problem.isEmpty(), qPrintable(problem));
}

void ApplyPauseTest::init()
{
    m_machine.reset();
    QVERIFY(m_machine.bus->setAllowed(true));
}

void ApplyPauseTest::cleanupTestCase()
{
    QVERIFY(!QApplication::overrideCursor());
}

std::unique_ptr<AdminEventsModule> ApplyPauseTest::openEditedPage()
{
    auto page = m_machine.openPage();
    if (page) {
        m_machine.toggle(*page, QStringLiteral("login"));
        m_machine.toggle(*page, QStringLiteral("watch"));
    }
    return page;
}

void ApplyPauseTest::anApplyPausesWithASignOfIt()
{
    const auto page = openEditedPage();
    QVERIFY(page);
    bool loaded = false;
    int beforeTheLoad = 0;
    connect(page->workingModel(), &QAbstractItemModel::modelReset, this, [&loaded] { loaded = true; });
    const InPauses pauses([&](int) {
        QVERIFY(page->isBusy());
        beforeTheLoad += m_machine.settings().isEmpty() && !loaded ? 1 : 0;
    });
    page->save();
    // Three events: collected from both trees, compared and settled, and made into text.
    QVERIFY2(beforeTheLoad >= 15, qPrintable(QString::number(beforeTheLoad)));
    QVERIFY(loaded);
    QVERIFY(!QApplication::overrideCursor());
    QVERIFY(!m_machine.settings().isEmpty());
}

void ApplyPauseTest::applyAndResetInAPauseAreDropped()
{
    const auto page = openEditedPage();
    QVERIFY(page);
    QSignalSpy loads(page->workingModel(), &QAbstractItemModel::modelReset);
    const InPauses pauses([&page](int) {
        page->save();
        page->load();
    });
    page->save();
    QVERIFY(pauses.count() > 0);
    QCOMPARE(loads.size(), 1);
    QCOMPARE(m_machine.settings().keys(), (QStringList{QStringLiteral("login"), QStringLiteral("watch")}));
    QCOMPARE(page->stateWidget()->state(), KCMNV::StateWidget::State::Saved);
    QVERIFY(page->compareModels());
}

void ApplyPauseTest::theWindowDoesNotCloseInAPause()
{
    const auto page = openEditedPage();
    QVERIFY(page);
    bool closed = false;
    const InPauses pauses([&](int) { closed = page->window()->close() || closed; });
    page->save();
    QVERIFY(pauses.count() > 0);
    QVERIFY(!closed);
    QVERIFY(page->isVisible());
    QVERIFY(page->window()->close());
}

void ApplyPauseTest::filesThatChangeInAPauseCauseNoReloadOfTheirOwn()
{
    const auto page = openEditedPage();
    QVERIFY(page);
    const QString file = m_machine.catalogPath() + QStringLiteral("/middle/plain.json");
    const QByteArray content = m_machine.read(file);
    QSignalSpy loads(page->workingModel(), &QAbstractItemModel::modelReset);
    const InPauses pauses([&](int number) {
        if (number <= 3) {
            PageFixture::replace(file, content + '\n');
            QTest::qSleep(200); // longer than notifications are collected
        }
    });
    page->save();
    QVERIFY(pauses.count() > 3);
    QCOMPARE(loads.size(), 1);
    QCOMPARE(m_machine.settings().keys(), (QStringList{QStringLiteral("login"), QStringLiteral("watch")}));
}

void ApplyPauseTest::aPageThatEndsInAnyPauseLeavesWholeFiles()
{
    bool ended = true;
    int last = 0;
    int written = 0;
    const QStringList both{QStringLiteral("login"), QStringLiteral("watch")};
    while (ended) {
        ++last;
        m_machine.reset();
        QPointer<AdminEventsModule> page(openEditedPage().release());
        QVERIFY(page);
        const InPauses pauses([&](int number) {
            if (number == last) {
                delete page;
            }
        });
        page->save();
        ended = page.isNull();
        delete page;
        QVERIFY(!QApplication::overrideCursor());
        if (QFile::exists(m_machine.settingsPath())) {
            QCOMPARE(m_machine.settings().keys(), both);
            ++written;
        }
    }
    QVERIFY(written > 1); // the page may end when the file is written, and not loaded again yet
    QVERIFY2(last > 15, qPrintable(QString::number(last)));
}

void ApplyPauseTest::aPageThatEndsInAnyPauseOfAReloadLeavesNothingBehind()
{
    bool ended = true;
    int last = 0;
    while (ended) {
        ++last;
        QPointer<AdminEventsModule> page(m_machine.openPage().release());
        QVERIFY(page);
        const InPauses pauses([&](int number) {
            if (number == last) {
                delete page;
            }
        });
        page->configsChanged(m_machine.settingsPath());
        ended = page.isNull();
        delete page;
        QVERIFY(!QApplication::overrideCursor());
    }
    QVERIFY2(last > 5, qPrintable(QString::number(last)));
}

void ApplyPauseTest::aPageThatEndsUnderAMessageBoxSavesNothing_data()
{
    QTest::addColumn<QString>("reason");
    QTest::newRow("refused authorisation") << QStringLiteral("refused");
    QTest::newRow("question whether to replace") << QStringLiteral("damaged");
    QTest::newRow("open notification dialog") << QStringLiteral("dialog");
}

void ApplyPauseTest::aPageThatEndsUnderAMessageBoxSavesNothing()
{
    QFETCH(QString, reason);
    QPointer<AdminEventsModule> page(openEditedPage().release());
    QVERIFY(page);
    if (reason == QLatin1String("refused")) {
        QVERIFY(m_machine.bus->setAllowed(false));
    } else if (reason == QLatin1String("damaged")) {
        page->stopWatchConfigs();
        m_machine.write(m_machine.settingsPath(), "{ damaged");
    } else {
        page->switchDbus(PageFixture::node(page->workingModel(), QStringLiteral("login")), true);
    }
    const QByteArray before = m_machine.read(m_machine.settingsPath());
    const EndUnderBox end(page);
    page->save();
    QVERIFY(page.isNull());
    QVERIFY(!QApplication::overrideCursor());
    QCOMPARE(m_machine.read(m_machine.settingsPath()), before);
}

void ApplyPauseTest::aPageThatEndsUnderTheMessageBoxOfItsViewerLeavesNothingBehind()
{
    // A notification that is on and cannot be shown.
    m_machine.write(m_machine.root() + QStringLiteral("/etc/syslog-ng/conf.d/mod-nivra-login_msg.conf"), {});
    QPointer<AdminEventsModule> page(new AdminEventsModule(
        nullptr, {QStringLiteral("login"), QStringLiteral("auth"), QStringLiteral("more")}));
    const EndUnderBox end(page);
    page->show();
    QTRY_VERIFY(page.isNull());
    QVERIFY(!QApplication::overrideCursor());
}

void ApplyPauseTest::whatIsBeingTypedIsApplied()
{
    const auto page = m_machine.openPage();
    QVERIFY(page);
    QVERIFY(QTest::qWaitForWindowActive(page.get()));
    QTreeView *view = m_machine.view(*page);
    const QModelIndex cell
        = PageFixture::shown(*page, QStringLiteral("watch"), {QStringLiteral("interval")}, 1);
    view->scrollTo(cell);
    view->setCurrentIndex(cell);
    view->edit(cell);
    auto *editor = view->viewport()->findChild<QLineEdit *>();
    QVERIFY(editor);
    editor->selectAll();
    QTest::keyClicks(editor, QStringLiteral("77"));
    page->save();
    QCOMPARE(m_machine.settings()
                 .value(QStringLiteral("watch"))
                 .toObject()
                 .value(QStringLiteral("interval"))
                 .toString(),
             QStringLiteral("77"));
}

QTEST_MAIN(ApplyPauseTest)
#include "applypausetest.moc"
