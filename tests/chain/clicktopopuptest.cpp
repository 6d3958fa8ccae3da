// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "boxanswerer.h"
#include "loggingsandbox.h"
#include "notificationserver.h"
#include "pagefixture.h"

#include <checkabletreemodel.h>
#include <checkboxparam.h>
#include <dbusdialog.h>
#include <eventtreeitem.h>
#include <filetree.h>
#include <leashedprocess.h>

#include <QAbstractProxyModel>
#include <QAction>
#include <QApplication>
#include <QContextMenuEvent>
#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDialogButtonBox>
#include <QDir>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>
#include <QRadioButton>
#include <QSpinBox>
#include <QTest>
#include <QTreeView>

#include <algorithm>
#include <memory>
#include <unistd.h>

namespace {

const QString failedLogin = QStringLiteral("login-failed"); // message identifier "user_login-failed"
const QString login = QStringLiteral("login-succeeded"); // "user_login"
const QString ownTitle = QStringLiteral("Вход не удался");
const QString everybodysTitle = QStringLiteral("Somebody came");
const char otherUser[] = "65534";

QByteArray record(const QByteArray &messageId, const QByteArray &user)
{
    return "{\"PRIORITY\":\"notice\",\"MSG\":{\"nivra-auth\":{\"name_en\":\"A login\",\"user\":\"" + user
        + "\",\"terminal\":\"pts/0\",\"message_id\":\"" + messageId
        + "\"}},\"ISODATE\":\"2026-03-14T09:26:53+03:00\",\"HOST\":\"debian\",\"FACILITY\":\"user\"}";
}

int run(QStringList command)
{
    const QString program = command.takeFirst();
    return QProcess::execute(program, command);
}

} // namespace

/**
 * The whole way of a notification, with nothing staged but the authority, the user database and the desktop's
 * notification service: an event of the shipped catalog is switched on in the page's menu, set up in the
 * dialog and applied by the real helper; the real syslog-ng then hands records to the watchers of two users'
 * sessions.
 */
class ClickToPopupTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanupTestCase();
    // Each goes on where the one before has ended.
    void whatIsSetUpInTheDialogIsApplied();
    void exactlyTheMatchingRecordPopsUp();
    void itIsRepeatedAtTheInterval();
    void noOtherUserIsTold();
    void theExampleOfAnEventIsARecordThatArrives();
    void switchedOffItStaysOff();

private:
    /** What a user's desktop runs. */
    struct Session
    {
        QStringList prefix; ///< what runs a command as that user
        NotificationServer server;
        LeashedProcess watcher;
    };

    QString below(const char *path) const { return m_logging->below(QLatin1String(path)); }
    void makeMachine();
    bool startSession(Session &session, const QString &home, const QString &busAddress,
                      const QString &connection);
    QString startSessionBus();
    void startSessions();
    void chooseFromMenu(const QString &event, const QString &text);
    void setUp(const QString &title, const QStringList &parameters);
    void clickOk();
    void apply();
    /** Sends a record of the event that everybody is told of, and waits until it has come: what was sent
     * before has come as well. */
    bool settle();
    static QList<NotificationServer::Shown> shown(const Session &session, const QString &title);
    QString fragment() const { return below("etc/syslog-ng/conf.d/mod-nivra-user_login_failed.conf"); }
    QByteArray pid() const { return m_logging->contents(QStringLiteral("run/syslog-ng/syslog-ng.pid")); }
    DBusDialog *dialog() const { return m_page->findChild<DBusDialog *>(QStringLiteral("DBusDialog")); }
    template <typename Widget> Widget *field(const char *name) const
    {
        return dialog()->findChild<Widget *>(QLatin1String(name));
    }

    PageFixture m_machine; // its bus goes last
    std::unique_ptr<LoggingSandbox> m_logging;
    Session m_administrator;
    LeashedProcess m_otherBus;
    Session m_other;
    bool m_hasOther = false;
    int m_settled = 0;
    std::unique_ptr<AdminEventsModule> m_page;
};

void ClickToPopupTest::initTestCase()
{
    if (!LoggingSandbox::hasPython()) {
        QSKIP("needs syslog-ng with its python module");
    }
    if (QProcess::execute(QStringLiteral("/usr/bin/python3"),
                          {QStringLiteral("-I"), QStringLiteral("-c"), QStringLiteral("import dbus")})
        != 0) {
        QSKIP("needs python3-dbus");
    }
    const QString problem = m_machine.start();
    QVERIFY2(problem.isEmpty(), qPrintable(problem));
    QVERIFY(m_machine.bus->setAllowed(true));
    makeMachine();
    if (QTest::currentTestFailed()) {
        return;
    }
    if (!m_logging->stageUsers(true)) {
        QSKIP("needs libnss-wrapper");
    }
    const QString manager = below("bin/systemctl");
    PageFixture::replace(manager, m_logging->serviceManager());
    QVERIFY(QFile::setPermissions(manager, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
    QVERIFY2(m_logging->start(), m_logging->output().constData());
    startSessions();
}

void ClickToPopupTest::cleanupTestCase()
{
    m_page.reset();
    m_administrator.watcher.stop();
    m_other.watcher.stop();
    m_logging.reset();
    QDBusConnection::disconnectFromBus(QStringLiteral("administrator"));
    QDBusConnection::disconnectFromBus(QStringLiteral("other"));
    m_otherBus.stop();
}

/** What an installation puts on a machine, in the place of the fixture's small catalog. */
void ClickToPopupTest::makeMachine()
{
    m_logging = std::make_unique<LoggingSandbox>(m_machine.root());
    for (const char *path :
         {"usr/share/syslog-ng-mod-nivra", "usr/share/knotifications5", "etc/zep-admin-events"}) {
        QVERIFY(QDir(below(path)).removeRecursively());
    }
    QVERIFY(copyTree(QStringLiteral(SHIPPED_DATA "/event-settings"), m_machine.catalogPath()));
    QVERIFY(copyTree(QStringLiteral(SHIPPED_DATA "/zep-admin-events"), below("etc/zep-admin-events")));
    QVERIFY(copyTree(QStringLiteral(NOTIFYRC), below("usr/share/knotifications5")));
    QVERIFY(QFile::copy(QStringLiteral(WATCHER_SOURCE "/nivra-event-watcher.notifyrc"),
                        below("usr/share/knotifications5/nivra-event-watcher.notifyrc")));
    QVERIFY(QDir().mkpath(below("usr/lib/python3")));
    QVERIFY(QFile::link(QStringLiteral(DESTINATION), below("usr/lib/python3/dist-packages")));
    QVERIFY(m_logging->write(QStringLiteral("run/dbus-address"), m_machine.bus->address().toLocal8Bit()));
}

/** @param connection a name for this test's connection to the session's bus */
bool ClickToPopupTest::startSession(Session &session, const QString &home, const QString &busAddress,
                                    const QString &connection)
{
    QDBusConnection bus = QDBusConnection::connectToBus(busAddress, connection);
    const QString runtime = home + QLatin1String("/runtime");
    if (!bus.registerService(QStringLiteral("org.freedesktop.Notifications"))
        || !bus.registerObject(QStringLiteral("/org/freedesktop/Notifications"), &session.server,
                               QDBusConnection::ExportAllSlots | QDBusConnection::ExportAllSignals)
        || !QDir().mkpath(runtime)
        || !QFile::setPermissions(runtime, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner)
        || (!session.prefix.isEmpty()
            && run({QStringLiteral("chown"), QStringLiteral("-R"), QLatin1String(otherUser), home}) != 0)) {
        return false;
    }
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"), busAddress);
    environment.insert(QStringLiteral("HOME"), home);
    environment.insert(QStringLiteral("XDG_CONFIG_HOME"), home + QLatin1String("/.config"));
    environment.insert(QStringLiteral("XDG_DATA_HOME"), home + QLatin1String("/.local/share"));
    environment.insert(QStringLiteral("XDG_RUNTIME_DIR"), runtime);
    environment.insert(QStringLiteral("XDG_DATA_DIRS"), below("usr/share"));
    environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
    environment.insert(QStringLiteral("LANG"), QStringLiteral("C.UTF-8"));
    environment.insert(QStringLiteral("CANBERRA_DRIVER"), QStringLiteral("null"));
    session.watcher.setProcessEnvironment(environment);
    session.watcher.setProcessChannelMode(QProcess::ForwardedChannels);
    QStringList command = session.prefix + QStringList{QStringLiteral(WATCHER)};
    session.watcher.start(command.takeFirst(), command);
    // The watcher's name on the system's bus ends in its process number.
    const QString name = QStringLiteral("_p%1").arg(session.watcher.processId());
    const QDBusConnection system = QDBusConnection::systemBus();
    return QTest::qWaitFor(
        [&] { return !system.interface()->registeredServiceNames().value().filter(name).isEmpty(); }, 15000);
}

/** A session bus that somebody else may use as well. */
QString ClickToPopupTest::startSessionBus()
{
    const QString config = below("session.conf");
    const QString address = QLatin1String("unix:path=") + below("session");
    PageFixture::write(config,
                       "<busconfig><type>session</type><listen>" + address.toUtf8()
                           + "</listen><policy context=\"default\"><allow user=\"*\"/><allow own=\"*\"/>"
                             "<allow send_destination=\"*\" eavesdrop=\"true\"/>"
                             "<allow eavesdrop=\"true\"/></policy></busconfig>");
    m_otherBus.start(QStringLiteral("dbus-daemon"),
                     {QLatin1String("--config-file=") + config, QStringLiteral("--nofork"),
                      QStringLiteral("--nopidfile"), QStringLiteral("--print-address=1")});
    return m_otherBus.waitForStarted() && m_otherBus.waitForReadyRead(15000) ? address : QString();
}

/** The administrator's session, and, where the test may act for others, that of somebody else. */
void ClickToPopupTest::startSessions()
{
    const QString address = m_machine.bus->address();
    QVERIFY(startSession(m_administrator, below("root"), address, QStringLiteral("administrator")));
    // The other one passes through directories of this one's.
    const QFile::Permissions passable = QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner
        | QFile::ReadGroup | QFile::ExeGroup | QFile::ReadOther | QFile::ExeOther;
    const QString busFolder = QFileInfo(address.section(QLatin1Char('='), 1)).path();
    m_other.prefix
        = QStringList{QStringLiteral("setpriv"), QLatin1String("--reuid=") + QLatin1String(otherUser),
                      QLatin1String("--regid=") + QLatin1String(otherUser), QStringLiteral("--clear-groups"),
                      QStringLiteral("--pdeathsig=KILL")};
    const QStringList tryOut{QStringLiteral("test"), QStringLiteral("-x"), QStringLiteral(WATCHER)};
    m_hasOther = ::geteuid() == 0 && QFile::setPermissions(m_machine.root(), passable)
        && QFile::setPermissions(busFolder, passable) && run(m_other.prefix + tryOut) == 0;
    if (m_hasOther) {
        QVERIFY(startSession(m_other, below("home/somebody"), startSessionBus(), QStringLiteral("other")));
    }
}

/** Right click on the event's row, left click on the entry. */
void ClickToPopupTest::chooseFromMenu(const QString &event, const QString &text)
{
    QTreeView *view = PageFixture::view(*m_page);
    const auto *proxy = qobject_cast<const QAbstractProxyModel *>(view->model());
    CheckableTreeModel *model = m_page->workingModel();
    const QModelIndex index = proxy->mapFromSource(model->indexOf(PageFixture::node(model, event)));
    QVERIFY(index.isValid());
    view->scrollTo(index);
    const QPoint position = view->visualRect(index).center();
    QTest::mouseClick(view->viewport(), Qt::RightButton, {}, position);
    QContextMenuEvent request(QContextMenuEvent::Mouse, position, view->viewport()->mapToGlobal(position));
    QCoreApplication::sendEvent(view->viewport(), &request);
    auto *menu = qobject_cast<QMenu *>(QApplication::activePopupWidget());
    QVERIFY(menu);
    const QList<QAction *> actions = menu->actions();
    for (QAction *action : actions) {
        if (action->text() == text) {
            QTest::mouseClick(menu, Qt::LeftButton, {}, menu->actionGeometry(action).center());
            return;
        }
    }
    menu->close();
    QFAIL(qPrintable(QStringLiteral("no \"%1\" in the menu").arg(text)));
}

/** Fills the fields of the open dialog that every notification has. */
void ClickToPopupTest::setUp(const QString &title, const QStringList &parameters)
{
    auto *edit = field<QLineEdit>("titleLineEdit");
    edit->selectAll();
    edit->insert(title); // no key of the test framework is Cyrillic
    const QList<CheckBoxParam *> boxes = dialog()->findChildren<CheckBoxParam *>();
    for (CheckBoxParam *box : boxes) {
        if (parameters.contains(box->value().toString())) {
            box->click();
        }
    }
}

void ClickToPopupTest::clickOk()
{
    QTest::mouseClick(field<QDialogButtonBox>("buttonBox")->button(QDialogButtonBox::Ok), Qt::LeftButton);
    QTRY_VERIFY(!dialog()->isVisible());
}

/** What the shell's Apply does; the page restarts the service. */
void ClickToPopupTest::apply()
{
    const QByteArray before = pid();
    const BoxAnswerer boxes;
    m_page->save();
    QTRY_VERIFY_WITH_TIMEOUT(!pid().isEmpty() && pid() != before, 20000);
    QTRY_VERIFY_WITH_TIMEOUT(
        m_page->findChild<QPushButton *>(QStringLiteral("sngStartStopButton"))->isEnabled(), 10000);
    QVERIFY(m_logging->isRunning());
    QVERIFY2(boxes.boxes().isEmpty(), qPrintable(boxes.boxes().value(0).text));
    QVERIFY(m_page->compareModels());
}

QList<NotificationServer::Shown> ClickToPopupTest::shown(const Session &session, const QString &title)
{
    QList<NotificationServer::Shown> found;
    for (const NotificationServer::Shown &popup : session.server.shown) {
        if (popup.title == title) {
            found << popup;
        }
    }
    return found;
}

bool ClickToPopupTest::settle()
{
    const QByteArray user = "settled" + QByteArray::number(++m_settled);
    const auto hasCome = [&user](const Session &session) {
        const QList<NotificationServer::Shown> popups = shown(session, everybodysTitle);
        return std::any_of(popups.begin(), popups.end(), [&user](const NotificationServer::Shown &popup) {
            return popup.text == QLatin1String(user);
        });
    };
    const auto come = [&] { return hasCome(m_administrator) && (!m_hasOther || hasCome(m_other)); };
    // The service may still be taking its place.
    if (!QTest::qWaitFor([&] { return m_logging->send(record("user_login", user)); }, 10000)
        || !QTest::qWaitFor(come, 15000)) {
        return false;
    }
    // Each event has a thread of its own in the service.
    QTest::qWait(500);
    return true;
}

void ClickToPopupTest::whatIsSetUpInTheDialogIsApplied()
{
    m_page = m_machine.openPage();
    QVERIFY(m_page);
    chooseFromMenu(failedLogin, QStringLiteral("Enable notifications sending"));
    QTRY_VERIFY(dialog()->isVisible());
    setUp(ownTitle, {QStringLiteral("user"), QStringLiteral("terminal")});
    field<QRadioButton>("selectGroupRadioButton")->click();
    field<QCheckBox>("logFileCheckBox")->click();
    QTest::keyClicks(field<QLineEdit>("logFileEdit"), below("failed logins"));
    field<QCheckBox>("repeatCheckBox")->click();
    field<QSpinBox>("intervalSpinBox")->setValue(5);
    clickOk();

    chooseFromMenu(login, QStringLiteral("Enable notifications sending"));
    QTRY_VERIFY(dialog()->isVisible());
    setUp(everybodysTitle, {QStringLiteral("user")});
    clickOk();
    QVERIFY(!QFile::exists(fragment()));
    apply();
    QVERIFY(QFile::exists(fragment()));
    QVERIFY(settle());
}

void ClickToPopupTest::exactlyTheMatchingRecordPopsUp()
{
    for (const char *id : {"user_login-failed2", "user_login_failed", "my-user_login-failed", "user-login"}) {
        QVERIFY(m_logging->send(record(id, "nobody")));
    }
    QVERIFY(m_logging->send(record("user_login-failed", "ivanov <b>&")));
    QVERIFY(settle());
    const QList<NotificationServer::Shown> popups = shown(m_administrator, ownTitle);
    QCOMPARE(popups.size(), 1);
    QCOMPARE(popups.first().text, QStringLiteral("pts/0 ivanov &lt;b&gt;&amp;"));
    QCOMPARE(popups.first().actions.value(1), QStringLiteral("Stop Repeating"));
    const QString line = QString::fromUtf8(m_logging->contents(QStringLiteral("failed logins")));
    QCOMPARE(line.section(QLatin1Char(' '), 1), QStringLiteral("Вход не удался: pts/0 ivanov <b>&\n"));
    QCOMPARE(shown(m_administrator, everybodysTitle).size(), m_settled);
}

void ClickToPopupTest::itIsRepeatedAtTheInterval()
{
    const auto popups = [this] { return shown(m_administrator, ownTitle); };
    QTRY_COMPARE_WITH_TIMEOUT(popups().size(), 2, 10000);
    const NotificationServer::Shown repeated = popups().last();
    const qint64 distance = repeated.time - popups().first().time;
    QVERIFY2(distance > 4500 && distance < 9000, QByteArray::number(distance).constData());
    QCOMPARE(repeated.text, popups().first().text);
    QCOMPARE(m_logging->contents(QStringLiteral("failed logins")).count('\n'), 1);
    m_administrator.server.invoke(repeated.id, repeated.actions.value(0));
}

void ClickToPopupTest::noOtherUserIsTold()
{
    if (!m_hasOther) {
        QSKIP("needs the right to act for another user");
    }
    QCOMPARE(shown(m_other, everybodysTitle).size(), m_settled);
    QCOMPARE(shown(m_other, ownTitle).size(), 0);
}

void ClickToPopupTest::theExampleOfAnEventIsARecordThatArrives()
{
    chooseFromMenu(login, QStringLiteral("Show example of an event"));
    auto *example = m_page->findChild<QDialog *>(QStringLiteral("EventExample"));
    QVERIFY(example);
    QTRY_VERIFY(example->isVisible());
    const QByteArray text = example->findChild<QWidget *>(QStringLiteral("exampleText"))
                                ->property("plainText")
                                .toString()
                                .toUtf8();
    QTest::keyClick(example, Qt::Key_Escape);
    const QJsonObject record = QJsonDocument::fromJson(text).object();
    const QJsonObject values = record.value(QLatin1String("MSG")).toObject().constBegin()->toObject();
    const QString user = values.value(QLatin1String("user")).toString();
    QVERIFY2(!user.isEmpty(), text.constData());
    const int before = shown(m_administrator, everybodysTitle).size();
    QVERIFY(m_logging->send(text));
    QTRY_COMPARE_WITH_TIMEOUT(shown(m_administrator, everybodysTitle).size(), before + 1, 10000);
    QCOMPARE(shown(m_administrator, everybodysTitle).last().text, user.toHtmlEscaped());
}

void ClickToPopupTest::switchedOffItStaysOff()
{
    chooseFromMenu(failedLogin, QStringLiteral("Disable notifications sending"));
    QVERIFY(QFile::exists(fragment()));
    apply();
    QVERIFY(!QFile::exists(fragment()));
    const int before = shown(m_administrator, ownTitle).size();
    QTRY_VERIFY_WITH_TIMEOUT(m_logging->send(record("user_login-failed", "petrov")), 10000);
    QVERIFY(settle());
    QCOMPARE(shown(m_administrator, ownTitle).size(), before);
    QCOMPARE(m_logging->contents(QStringLiteral("failed logins")).count('\n'), 1);
    // The event itself is logged as before.
    QVERIFY(m_logging->contents(QStringLiteral("vortan/log/nivra/events/events.log")).contains("petrov"));

    m_page.reset();
    m_page = m_machine.openPage();
    QVERIFY(m_page);
    QVERIFY(!PageFixture::node(m_page->workingModel(), failedLogin)->isNotificationOn());
    QVERIFY(PageFixture::node(m_page->workingModel(), login)->isNotificationOn());
}

QTEST_MAIN(ClickToPopupTest)

#include "clicktopopuptest.moc"
