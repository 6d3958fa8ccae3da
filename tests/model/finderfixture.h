// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "shownmodel.h"
#include "treemaker.h"

#include <eventfinder.h>
#include <eventsproxymodel.h>

#include <QComboBox>
#include <QKeyEvent>
#include <QLineEdit>
#include <QTest>
#include <QToolButton>
#include <QTreeView>
#include <QVBoxLayout>

/// Counts how often it lays out its rows.
class CountingView : public QTreeView
{
public:
    int layouts = 0;

protected:
    void updateGeometries() override
    {
        ++layouts;
        QTreeView::updateGeometries();
    }
};

/// A search bar over a view of a small tree.
class FinderFixture
{
public:
    /// Shows both in a window of their own.
    void show();
    void close();

    [[nodiscard]] QLineEdit *field() const
    {
        return m_finder->findChild<QLineEdit *>(QStringLiteral("eventSearch"));
    }
    [[nodiscard]] QComboBox *modes() const
    {
        return m_finder->findChild<QComboBox *>(QStringLiteral("searchFilter"));
    }
    [[nodiscard]] QToolButton *previous() const
    {
        return m_finder->findChild<QToolButton *>(QStringLiteral("searchPrev"));
    }
    [[nodiscard]] QToolButton *next() const
    {
        return m_finder->findChild<QToolButton *>(QStringLiteral("searchNext"));
    }
    void type(const QString &text) const
    {
        field()->setFocus();
        field()->selectAll();
        if (text.isEmpty()) {
            QTest::keyClick(field(), Qt::Key_Delete);
        } else {
            // One key after the other, except that the test library has no keys for Cyrillic letters.
            for (const QChar letter : text) {
                QKeyEvent press(QEvent::KeyPress, 0, Qt::NoModifier, QString(letter));
                QApplication::sendEvent(field(), &press);
            }
        }
    }
    static void press(QToolButton *button) { QTest::mouseClick(button, Qt::LeftButton); }
    [[nodiscard]] bool isRed() const { return field()->palette().color(QPalette::Text) == QColor(Qt::red); }
    [[nodiscard]] static QString nativeName(const QModelIndex &index)
    {
        return index.data(CheckableTreeModel::NativeNameRole).toString();
    }
    /// The names of the selected rows, each as "group/event/parameter".
    [[nodiscard]] QString selected() const
    {
        QStringList rows;
        const QModelIndexList indexes = m_view->selectionModel()->selectedRows();
        for (QModelIndex index : indexes) {
            QString path = nativeName(index);
            while ((index = index.parent()).isValid()) {
                path.prepend(nativeName(index) + QLatin1Char('/'));
            }
            rows.append(path);
        }
        return rows.join(QLatin1Char(' '));
    }
    [[nodiscard]] QModelIndex shownAt(const QString &path) const
    {
        QModelIndex index;
        const QStringList names = path.split(QLatin1Char('/'));
        for (const QString &name : names) {
            QModelIndex found;
            for (int row = 0; row < m_proxy->rowCount(index); ++row) {
                const QModelIndex child = m_proxy->index(row, 0, index);
                found = nativeName(child) == name ? child : found;
            }
            index = found;
        }
        return index;
    }
    void select(const QString &path, int column = 0) const
    {
        const QModelIndex index = shownAt(path);
        QVERIFY2(index.isValid(), qPrintable(path));
        m_view->expand(index.parent());
        m_view->selectionModel()->select(index.siblingAtColumn(column), QItemSelectionModel::ClearAndSelect);
    }
    static std::unique_ptr<EventTreeItem> sampleTree();

    std::unique_ptr<ShownModel> m_model;
    std::unique_ptr<EventsProxyModel> m_proxy;
    std::unique_ptr<QAbstractItemModelTester> m_tester;
    std::unique_ptr<QWidget> m_window;
    CountingView *m_view = nullptr;
    EventFinder *m_finder = nullptr;
};

inline std::unique_ptr<EventTreeItem> FinderFixture::sampleTree()
{
    auto root = TreeMaker::root();
    EventTreeItem *files = TreeMaker::group(root.get(), "files", "Watched things");
    EventTreeItem *open = TreeMaker::event(files, "open", "0");
    open->localizedName = QStringLiteral("File opened");
    TreeMaker::parameter(open, "mode", "x");
    TreeMaker::event(files, "rotate", "0")->localizedName = QStringLiteral("Rotation");
    EventTreeItem *logins = TreeMaker::group(root.get(), "sessions", "Logins");
    EventTreeItem *enter = TreeMaker::event(logins, "enter", "1");
    enter->localizedName = QStringLiteral("Учёт входов");
    EventTreeItem *leave = TreeMaker::event(logins, "leave", "0");
    leave->localizedName = QStringLiteral("УЧЕТ ВЫХОДОВ");
    TreeMaker::parameter(leave, "tty", "x");
    EventTreeItem *last = TreeMaker::group(root.get(), "time", "Clock");
    TreeMaker::event(last, "set", "1")->localizedName = QStringLiteral("Clock set");
    TreeMaker::event(last, "zone", "0")->localizedName = QStringLiteral("Zone changed");
    return root;
}

inline void FinderFixture::show()
{
    m_model = std::make_unique<ShownModel>(sampleTree());
    m_proxy = std::make_unique<EventsProxyModel>();
    m_tester = std::make_unique<QAbstractItemModelTester>(
        m_proxy.get(), QAbstractItemModelTester::FailureReportingMode::QtTest);
    m_proxy->setSourceModel(&**m_model);
    m_window = std::make_unique<QWidget>();
    m_view = new CountingView;
    m_view->setModel(m_proxy.get());
    m_view->setAnimated(false);
    m_finder = new EventFinder(m_view, &**m_model, m_proxy.get(), nullptr);
    auto *layout = new QVBoxLayout(m_window.get());
    layout->addWidget(m_finder);
    layout->addWidget(m_view);
    m_window->resize(600, 200);
    m_window->show();
    QVERIFY(QTest::qWaitForWindowActive(m_window.get()));
}

inline void FinderFixture::close()
{
    m_window.reset();
    m_tester.reset();
    m_proxy.reset();
    m_model.reset();
}
