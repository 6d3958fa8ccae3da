// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include <filetree.h>
#include <privatebus.h>

#include <KCModule>
#include <KPluginFactory>

#include <QApplication>
#include <QContextMenuEvent>
#include <QDialog>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QIcon>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPluginLoader>
#include <QProcess>
#include <QPushButton>
#include <QSignalSpy>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>
#include <QTreeView>

#include <memory>

/**
 * One sitting of an administrator with the page as the shell loads it: the
 * plug-in from its library, the shipped catalog, the real helper, the real
 * syslog-ng, and nothing but mouse and keyboard.
 */
class JourneyTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanupTestCase();
    void anEventIsSearchedCheckedShownResetAndApplied();
    void theServiceIsStoppedAndStarted();

private:
    void makeMachine();
    QModelIndex search(const QString &text);
    void clickBox(const QModelIndex &index);
    void chooseFromMenu(const QModelIndex &index, const QString &text);
    QJsonObject settings() const;
    template <class Widget> Widget *widget(const char *name) const
    {
        return m_page->findChild<Widget *>(QLatin1String(name));
    }
    QTreeView *view() const { return widget<QTreeView>("singleEventsView"); }

    std::unique_ptr<PrivateBus> m_bus; // goes last
    QTemporaryDir m_root;
    KCModule *m_page = nullptr;
    std::unique_ptr<QWidget> m_window; // stands for the shell's
};

void JourneyTest::makeMachine()
{
    const QDir root(m_root.path());
    for (const char *folder : {"etc/audit/rules.d", "etc/syslog-ng/conf.d", "etc/logrotate.d", "run", "bin",
                               "vortan/log/nivra/events"}) {
        QVERIFY(root.mkpath(QLatin1String(folder)));
    }
    const QDir data(QStringLiteral(SHIPPED_DATA));
    QVERIFY(copyTree(data.filePath(QStringLiteral("event-settings")),
                     root.filePath(QStringLiteral("usr/share/syslog-ng-mod-nivra/event-settings"))));
    QVERIFY(copyTree(data.filePath(QStringLiteral("zep-admin-events")),
                     root.filePath(QStringLiteral("etc/zep-admin-events"))));
    QFile config(QFileInfo(QStringLiteral(SYSTEMCTL)).path() + QStringLiteral("/syslog-ng.conf.in"));
    QVERIFY(config.open(QIODevice::ReadOnly));
    QFile target(root.filePath(QStringLiteral("etc/syslog-ng/syslog-ng.conf")));
    QVERIFY(target.open(QIODevice::WriteOnly));
    target.write(config.readAll().replace("@ROOT@", m_root.path().toUtf8()));
    QFile manager(root.filePath(QStringLiteral("bin/systemctl")));
    QVERIFY(manager.open(QIODevice::WriteOnly));
    manager.write("#!/bin/sh\nexec '" SYSTEMCTL "' --sandbox '" + m_root.path().toUtf8() + "' \"$@\"\n");
    QVERIFY(manager.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
}

void JourneyTest::initTestCase()
{
    const QStringList places{QStringLiteral("/usr/sbin"), QStringLiteral("/sbin")};
    if (QStandardPaths::findExecutable(QStringLiteral("syslog-ng"), places).isEmpty()) {
        QSKIP("needs syslog-ng");
    }
    QIcon::setThemeName(QStringLiteral("breeze"));
    makeMachine();
    const QString manager = m_root.filePath(QStringLiteral("bin/systemctl"));
    qputenv("ADMINEVENTS_ROOT", m_root.path().toLocal8Bit());
    qputenv("PATH", (m_root.filePath(QStringLiteral("bin:")) + qEnvironmentVariable("PATH")).toLocal8Bit());
    for (const char *unit : {"auditd", "syslog-ng"}) {
        QCOMPARE(QProcess::execute(manager, {QStringLiteral("start"), QLatin1String(unit)}), 0);
    }
    m_bus = std::make_unique<PrivateBus>(m_root.path(), QStringList{QStringLiteral("--systemctl"), manager});
    QVERIFY2(m_bus->start(), qPrintable(m_bus->errorString()));
    QVERIFY(m_bus->setAllowed(true));

    QPluginLoader loader(QStringLiteral(KCM_ADMINEVENTS_PATH));
    auto *factory = qobject_cast<KPluginFactory *>(loader.instance());
    QVERIFY2(factory, qPrintable(loader.errorString()));
    m_window = std::make_unique<QWidget>();
    m_page = factory->create<KCModule>(m_window.get());
    QVERIFY(m_page);
    m_page->resize(1000, 700);
    m_window->resize(1000, 700);
    m_window->show();
    m_window->activateWindow();
    QTRY_VERIFY_WITH_TIMEOUT(view()->model()->rowCount() > 20, 20000);
}

void JourneyTest::cleanupTestCase()
{
    m_window.reset();
    QProcess::execute(m_root.filePath(QStringLiteral("bin/systemctl")),
                      {QStringLiteral("stop"), QStringLiteral("syslog-ng")});
}

QJsonObject JourneyTest::settings() const
{
    QFile file(m_root.filePath(QStringLiteral("etc/nivra-syslog.conf")));
    return file.open(QIODevice::ReadOnly) ? QJsonDocument::fromJson(file.readAll()).object() : QJsonObject();
}

/// Types the text after Ctrl+F and steps to the first event that is left.
QModelIndex JourneyTest::search(const QString &text)
{
    m_window->activateWindow(); // as a window manager does when a menu or dialog has gone
    if (!QTest::qWaitForWindowActive(m_window.get())) {
        return {};
    }
    QTest::keyClick(view(), Qt::Key_F, Qt::ControlModifier);
    auto *field = qobject_cast<QLineEdit *>(QApplication::focusWidget());
    if (!field) {
        return {};
    }
    QTest::keyClicks(field, text);
    QTest::mouseClick(widget<QWidget>("searchNext"), Qt::LeftButton);
    const QModelIndexList selected = view()->selectionModel()->selectedIndexes();
    return selected.isEmpty() ? QModelIndex() : selected.first().siblingAtColumn(0);
}

void JourneyTest::clickBox(const QModelIndex &index)
{
    view()->scrollTo(index);
    constexpr int toTheBox = 9;
    const QRect row = view()->visualRect(index);
    QTest::mouseClick(view()->viewport(), Qt::LeftButton, {},
                      QPoint(row.left() + toTheBox, row.center().y()));
}

void JourneyTest::chooseFromMenu(const QModelIndex &index, const QString &text)
{
    view()->scrollTo(index);
    const QPoint position = view()->visualRect(index).center();
    QTest::mouseClick(view()->viewport(), Qt::RightButton, {}, position);
    QContextMenuEvent request(QContextMenuEvent::Mouse, position, view()->viewport()->mapToGlobal(position));
    QCoreApplication::sendEvent(view()->viewport(), &request);
    auto *menu = qobject_cast<QMenu *>(QApplication::activePopupWidget());
    QVERIFY(menu);
    for (QAction *action : menu->actions()) {
        if (action->text() == text) {
            QTest::mouseClick(menu, Qt::LeftButton, {}, menu->actionGeometry(action).center());
            return;
        }
    }
    menu->close();
    QFAIL(qPrintable(QStringLiteral("no \"%1\" in the menu").arg(text)));
}

void JourneyTest::anEventIsSearchedCheckedShownResetAndApplied()
{
    QSignalSpy changes(m_page, qOverload<bool>(&KCModule::changed));
    const QPersistentModelIndex event = search(QStringLiteral("SFTP transfer"));
    QCOMPARE(event.data().toString(), QStringLiteral("SFTP transfer started"));
    QCOMPARE(event.data(Qt::CheckStateRole).toInt(), int(Qt::Unchecked));

    clickBox(event);
    QCOMPARE(event.data(Qt::CheckStateRole).toInt(), int(Qt::Checked));
    QVERIFY(!changes.isEmpty());
    QVERIFY(changes.last().at(0).toBool());

    chooseFromMenu(event, QStringLiteral("Show example of an event"));
    auto *example = widget<QDialog>("EventExample");
    QVERIFY(example);
    QTRY_VERIFY(example->isVisible());
    QCOMPARE(example->windowTitle(), QStringLiteral("Example of a log entry"));
    auto *text = example->findChild<QWidget *>(QStringLiteral("exampleText"));
    QVERIFY(text);
    const QByteArray record = text->property("plainText").toByteArray();
    QVERIFY2(!QJsonDocument::fromJson(record).object().isEmpty(), record.constData());
    QTest::keyClick(example, Qt::Key_Escape);
    QTRY_VERIFY(!example->isVisible());

    chooseFromMenu(event, QStringLiteral("Reset to the default state"));
    QCOMPARE(event.data(Qt::CheckStateRole).toInt(), int(Qt::Unchecked));
    QVERIFY(!changes.last().at(0).toBool());

    clickBox(event);
    m_page->save(); // what the shell's Apply calls
    const QString id = settings().keys().value(0);
    QCOMPARE(settings().keys().size(), 1);
    QCOMPARE(settings().value(id).toObject().value(QStringLiteral("enabled")).toString(),
             QStringLiteral("1"));
    // The page was loaded again; what was searched for is still found and checked.
    QTest::keyClick(widget<QLineEdit>("eventSearch"), Qt::Key_Escape);
    const QPersistentModelIndex again = search(QStringLiteral("SFTP transfer"));
    QCOMPARE(again.data().toString(), QStringLiteral("SFTP transfer started"));
    QCOMPARE(again.data(Qt::CheckStateRole).toInt(), int(Qt::Checked));

    chooseFromMenu(again, QStringLiteral("Reset to the default state"));
    m_page->save();
    QCOMPARE(settings().value(id).toObject().value(QStringLiteral("enabled")).toString(QStringLiteral("0")),
             QStringLiteral("0"));
}

void JourneyTest::theServiceIsStoppedAndStarted()
{
    auto *label = widget<QLabel>("sngStatusLabel");
    auto *button = widget<QPushButton>("sngStartStopButton");
    // The restart after the save before may still be under way.
    QTRY_COMPARE_WITH_TIMEOUT(label->text(), QStringLiteral("Logging service is running."), 20000);
    QTest::mouseClick(button, Qt::LeftButton);
    QTRY_COMPARE_WITH_TIMEOUT(label->text(), QStringLiteral("Logging service stopped."), 20000);
    QTest::mouseClick(button, Qt::LeftButton);
    QTRY_COMPARE_WITH_TIMEOUT(label->text(), QStringLiteral("Logging service is running."), 20000);
    QVERIFY(button->isEnabled());
}

QTEST_MAIN(JourneyTest)

#include "journeytest.moc"
