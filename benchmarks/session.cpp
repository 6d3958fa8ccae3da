// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include "session.h"

#include <admineventsmodule.h>
#include <checkabletreemodel.h>
#include <eventlookup.h>
#include <eventtreeitem.h>
#include <systempaths.h>

#include <QAbstractProxyModel>
#include <QApplication>
#include <QCheckBox>
#include <QDialogButtonBox>
#include <QElapsedTimer>
#include <QFile>
#include <QLineEdit>
#include <QMenu>
#include <QMessageBox>
#include <QPushButton>
#include <QTest>
#include <QTreeView>

namespace {
constexpr int patience = 60000; // ms
constexpr int rest = 80; // ms
const QString plainEvent = QStringLiteral("event-0001");
const QString auditedEvent = QStringLiteral("event-0004"); // every fifth one names 600 accounts
const QStringList auditedUsers{QStringLiteral("message-audit-events"), QStringLiteral("open"),
                               QStringLiteral("users")};

QMenu *openMenu()
{
    return qobject_cast<QMenu *>(QApplication::activePopupWidget());
}

void choose(const QString &text)
{
    QMenu *menu = openMenu();
    const QList<QAction *> actions = menu ? menu->actions() : QList<QAction *>();
    for (QAction *action : actions) {
        if (action->text() == text) {
            menu->hide();
            action->trigger();
            return;
        }
    }
}

bool appendByte(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::Append) && file.write("\n") == 1;
}
} // namespace

Session::Session()
{
    // Nothing here is to end in a question or a complaint; where one appears, it is what went wrong.
    QObject::connect(&m_boxes, &QTimer::timeout, [this] {
        if (auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget())) {
            m_error = box->text();
            box->reject();
        }
    });
    constexpr int interval = 100; // ms
    m_boxes.start(interval);
}

Session::~Session() = default;

QString Session::run()
{
    open();
    for (const auto &part : {&Session::clickAround, &Session::search, &Session::expand, &Session::openDialogs,
                             &Session::editAudited, &Session::apply, &Session::reload}) {
        if (m_error.isEmpty()) {
            (this->*part)();
        }
    }
    return m_error;
}

void Session::act(const char *name, const Step &step, const Condition &done)
{
    if (!m_error.isEmpty()) {
        return;
    }
    bool begun = false;
    QElapsedTimer clock;
    clock.start();
    m_watch.restart();
    QTimer::singleShot(0, &m_watch, [&begun, &step] {
        begun = true;
        step();
    });
    bool finished = false;
    while (!finished && m_error.isEmpty() && clock.elapsed() < patience) {
        QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents);
        finished = begun && done();
    }
    const auto total = static_cast<double>(clock.elapsed());
    QTest::qWait(rest);
    m_acts.push_back({name, m_watch.longestGap(), total, m_watch.sawBusySign(), false});
    if (!finished && m_error.isEmpty()) {
        m_error = QStringLiteral("This did not do what it is for: %1").arg(QLatin1String(name));
    }
}

QModelIndex Session::show(const QString &event, const QStringList &path, int column) const
{
    const EventTreeItem *item = EventLookup::findEvent(*m_page->workingModel()->rootItem(), event);
    for (const QString &name : path) {
        item = item ? item->findChildTopLevelByNativeName(name) : nullptr;
    }
    if (!item) {
        return {};
    }
    const auto *proxy = qobject_cast<const QAbstractProxyModel *>(m_view->model());
    const QModelIndex index = proxy->mapFromSource(m_page->workingModel()->indexOf(item, column));
    m_view->scrollTo(index);
    return index;
}

void Session::click(const QModelIndex &index, bool box) const
{
    const QRect cell = m_view->visualRect(index);
    constexpr int halfBox = 8;
    QTest::mouseClick(m_view->viewport(), Qt::LeftButton, {},
                      box ? QPoint(cell.left() + halfBox, cell.center().y()) : cell.center());
}

void Session::doubleClick(const QModelIndex &index) const
{
    const QPoint place = m_view->visualRect(index).center();
    QTest::mouseClick(m_view->viewport(), Qt::LeftButton, {}, place);
    QTest::mouseDClick(m_view->viewport(), Qt::LeftButton, {}, place);
}

void Session::closeWindow(const char *objectName)
{
    if (auto *window = m_page->findChild<QWidget *>(QLatin1String(objectName))) {
        window->close();
    }
    QTest::qWait(rest);
}

void Session::open()
{
    act(
        "construct the page",
        [this] { m_page = std::make_unique<AdminEventsModule>(nullptr, QVariantList()); },
        [] { return true; });
    m_view = m_page->findChild<QTreeView *>(QStringLiteral("singleEventsView"));
    m_page->resize(900, 700);
    act(
        "show the page: first load", [this] { m_page->show(); },
        [this] {
            return !m_page->isBusy() && m_page->workingModel()->rowCount() > 0
                && m_page->findChild<QWidget *>(QStringLiteral("DBusDialog"));
        });
    m_acts.back().mayTakeLonger = true;
}

void Session::clickAround()
{
    QModelIndex index = show(plainEvent, {}, 0);
    act(
        "click: select an event", [&] { click(index, false); }, [] { return true; });
    const QVariant before = index.data(Qt::CheckStateRole);
    act(
        "click: check an event", [&] { click(index, true); },
        [&] { return index.data(Qt::CheckStateRole) != before; });
    act(
        "key: check it back", [this] { QTest::keyClick(m_view, Qt::Key_Space); },
        [&] { return index.data(Qt::CheckStateRole) == before; });
    const QModelIndex group = index.parent();
    m_view->scrollTo(group);
    act(
        "click: check a group of 50 events", [&] { click(group, true); },
        [this] { return !m_page->compareModels(); });
    index = show(auditedEvent, {}, 0);
    act(
        "click: check an audited event", [&] { click(index, true); }, [] { return true; });
}

void Session::search()
{
    auto *field = m_page->findChild<QLineEdit *>(QStringLiteral("eventSearch"));
    const QString query = QStringLiteral("login");
    for (int length = 1; length <= query.size(); ++length) {
        act(
            "keystroke in the search field", [&] { QTest::keyClick(field, query.at(length - 1).toLatin1()); },
            [&] { return field->text().size() == length; });
    }
    act(
        "click: next match",
        [this] {
            QTest::mouseClick(m_page->findChild<QWidget *>(QStringLiteral("searchNext")), Qt::LeftButton);
        },
        [] { return true; });
    act(
        "clear the search field", [&] { field->clear(); }, [&] { return field->text().isEmpty(); });
}

void Session::expand()
{
    QModelIndex index = show(auditedEvent, auditedUsers.mid(0, 2), 0);
    act(
        "expand an operation", [&] { m_view->expand(index); }, [&] { return m_view->isExpanded(index); });
    index = show(auditedEvent, auditedUsers, 0);
    m_view->setCurrentIndex(index);
    act(
        "key: expand 400 users", [this] { QTest::keyClick(m_view, Qt::Key_Right); },
        [&] { return m_view->isExpanded(index); });
    act(
        "scroll to the last of them", [&] { m_view->scrollTo(index.model()->index(399, 0, index)); },
        [] { return true; });
    const auto menu = [this] {
        const QPoint corner = m_view->viewport()->rect().center();
        Q_EMIT m_view->customContextMenuRequested(corner);
    };
    act("context menu", menu, [] { return openMenu() != nullptr; });
    act(
        "menu: collapse all", [] { choose(QStringLiteral("Collapse all")); }, [] { return !openMenu(); });
    menu();
    act(
        "menu: expand all", [] { choose(QStringLiteral("Expand all")); }, [] { return !openMenu(); });
}

void Session::openDialogs()
{
    const auto visible = [this](const char *name) {
        const auto *window = m_page->findChild<QWidget *>(QLatin1String(name));
        return window && window->isVisible();
    };
    const auto menuOn = [this](const QString &event) {
        m_view->setCurrentIndex(show(event, {}, 0));
        Q_EMIT m_view->customContextMenuRequested(m_view->viewport()->rect().center());
    };
    menuOn(auditedEvent);
    act(
        "dialog: example of an event", [] { choose(QStringLiteral("Show example of an event")); },
        [&] { return visible("EventExample"); });
    closeWindow("EventExample");
    menuOn(plainEvent);
    act(
        "dialog: notification", [] { choose(QStringLiteral("Enable notifications sending")); },
        [&] { return visible("DBusDialog"); });
    closeWindow("DBusDialog");
    act(
        "window: common settings",
        [this] {
            QTest::mouseClick(m_page->findChild<QWidget *>(QStringLiteral("commonSettingsButton")),
                              Qt::LeftButton);
        },
        [&] { return visible("CommonSettingsWindow"); });
    closeWindow("CommonSettingsWindow");
    menuOn(auditedEvent);
    act(
        "menu: reset an event", [] { choose(QStringLiteral("Reset to the default state")); },
        [] { return !openMenu(); });
}

void Session::editAudited()
{
    const QModelIndex users = show(auditedEvent, auditedUsers, 1);
    act(
        "dialog: 400 audited users", [&] { doubleClick(users); },
        [this] {
            const auto *dialog = m_page->findChild<QWidget *>(QStringLiteral("AuditDialog"));
            return dialog && dialog->isVisible();
        });
    auto *dialog = m_page->findChild<QWidget *>(QStringLiteral("AuditDialog"));
    auto *filter = dialog->findChild<QLineEdit *>(QStringLiteral("filterEdit"));
    act(
        "audit dialog: keystroke in the filter", [&] { QTest::keyClick(filter, '1'); },
        [&] { return filter->text().size() == 1; });
    auto *all = dialog->findChild<QCheckBox *>(QStringLiteral("allSuccessCheckBox"));
    act(
        "audit dialog: check all shown", [&] { all->click(); }, [] { return true; });
    act(
        "audit dialog: take over",
        [&] {
            dialog->findChild<QDialogButtonBox *>(QStringLiteral("buttonBox"))
                ->button(QDialogButtonBox::Ok)
                ->click();
        },
        [&] { return !dialog->isVisible(); });
    // Back to what the system records: else applying would end in a question.
    act(
        "reload: by the shell", [this] { m_page->load(); }, [this] { return !m_page->isBusy(); });
}

void Session::apply()
{
    const QModelIndex index = show(plainEvent, {}, 0);
    act(
        "click: check an event again", [&] { click(index, true); },
        [this] { return !m_page->compareModels(); });
    act(
        "apply", [this] { m_page->save(); }, [this] { return !m_page->isBusy() && m_page->compareModels(); });
}

void Session::reload()
{
    bool reloaded = false;
    const auto connection = QObject::connect(m_page->workingModel(), &QAbstractItemModel::modelReset,
                                             [&reloaded] { reloaded = true; });
    act(
        "reload: another program changed the file",
        [] { (void)appendByte(SystemPaths::resolve(SystemPaths::eventSettingsFile())); },
        [&] { return reloaded; });
    QObject::disconnect(connection);
}
