// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include <destinationsmodel.h>
#include <destinationtext.h>
#include <maintree.h>
#include <treeitem.h>

#include <QAbstractItemModelTester>
#include <QSignalSpy>
#include <QTest>

namespace {
const char sample[] = R"(@include "scl.conf"

source nivra_events_src {
    internal();
};
destination d_file {
    file("/var/log/a b" template(t));
};
destination d_net {
    network("10.0.0.1" port(514) transport(tcp) flags(syslog-protocol));
};
destination d_pipe {
    pipe("/run/p");
};
destination d_two {
    file("/var/log/orders");
    file("/var/log/b");
};
destination d_none {
};
log {
    source(nivra_events_src);
    destination(d_file);
};
)";

QString shown(const DestinationsModel &model, int row, int column)
{
    return model.index(row, column).data().toString();
}
} // namespace

class DestinationsModelTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_model = std::make_unique<DestinationsModel>();
        m_tester = std::make_unique<QAbstractItemModelTester>(
            m_model.get(), QAbstractItemModelTester::FailureReportingMode::QtTest);
        m_model->setRootItem(MainTree::read(sample).release());
    }
    void cleanup()
    {
        m_tester.reset();
        m_model.reset();
    }

    void emptyModelHasARootAndNoRows()
    {
        const DestinationsModel model;
        QVERIFY(model.rootItem());
        QCOMPARE(model.rowCount(), 0);
        QCOMPARE(model.columnCount(), 3);
        QVERIFY(!model.destination(0));
    }

    void eachDestinationIsARow()
    {
        QCOMPARE(m_model->rowCount(), 5);
        QCOMPARE(m_model->columnCount(), 3);
        QCOMPARE(shown(*m_model, 0, 0), QStringLiteral("File"));
        QCOMPARE(shown(*m_model, 0, 1), QStringLiteral("d_file"));
        QCOMPARE(shown(*m_model, 0, 2), QStringLiteral("/var/log/a b"));
        QCOMPARE(shown(*m_model, 1, 0), QStringLiteral("Network"));
        QCOMPARE(shown(*m_model, 1, 2),
                 QStringLiteral("10.0.0.1 port(514) transport(tcp) flags(syslog-protocol)"));
        QCOMPARE(shown(*m_model, 2, 0), QStringLiteral("pipe"));
        QCOMPARE(shown(*m_model, 3, 0), QStringLiteral("File"));
        QCOMPARE(shown(*m_model, 3, 2), QStringLiteral("/var/log/orders; /var/log/b"));
        QCOMPARE(shown(*m_model, 4, 1), QStringLiteral("d_none"));
        QCOMPARE(shown(*m_model, 4, 2), QString());
        QCOMPARE(m_model->index(0, 2).data(Qt::ToolTipRole).toString(), QStringLiteral("/var/log/a b"));
        QCOMPARE(m_model->rowCount(m_model->index(0, 0)), 0);
    }

    void columnsHaveTitles()
    {
        QCOMPARE(m_model->headerData(0, Qt::Horizontal).toString(), QStringLiteral("Parameter"));
        QCOMPARE(m_model->headerData(1, Qt::Horizontal).toString(), QStringLiteral("Name"));
        QCOMPARE(m_model->headerData(2, Qt::Horizontal).toString(), QStringLiteral("Value"));
        QVERIFY(!m_model->headerData(3, Qt::Horizontal).isValid());
        QVERIFY(!m_model->headerData(0, Qt::Vertical).isValid());
    }

    void cellsAreNotEdited()
    {
        const QModelIndex index = m_model->index(0, 2);
        QCOMPARE(m_model->flags(index), Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemNeverHasChildren);
        QVERIFY(!m_model->setData(index, QStringLiteral("/x")));
        QCOMPARE(index.data().toString(), QStringLiteral("/var/log/a b"));
    }

    void insertedDestinationIsTheLastRowAndHasALogPath()
    {
        QSignalSpy inserted(m_model.get(), &QAbstractItemModel::rowsInserted);
        TreeItem *root = m_model->rootItem();
        const int before = root->childCount();
        const QVector<QVariant> values{QStringLiteral("file"), QStringLiteral("d_new"), QStringLiteral("/n"),
                                       1, QStringLiteral("tcp")};
        m_model->insertItem(DestinationText::makeBlock(values, root));

        QCOMPARE(inserted.size(), 1);
        QCOMPARE(inserted.first().at(1).toInt(), 5);
        QCOMPARE(m_model->rowCount(), 6);
        QCOMPARE(shown(*m_model, 5, 1), QStringLiteral("d_new"));
        QCOMPARE(root->childCount(), before + 2);
        QCOMPARE(m_model->destinations(), DestinationsModel::extractDestinations(root));
        QVERIFY(MainTree::written(*root).endsWith(
            "log {\n    source(nivra_events_src);\n    destination(d_new);\n};\n\n"));
    }

    void deletedDestinationLeavesRowAndTree()
    {
        QSignalSpy removed(m_model.get(), &QAbstractItemModel::rowsRemoved);
        TreeItem *root = m_model->rootItem();
        const int before = root->childCount();
        QVERIFY(m_model->deleteItem(m_model->destination(1)));

        QCOMPARE(removed.size(), 1);
        QCOMPARE(removed.first().at(1).toInt(), 1);
        QCOMPARE(root->childCount(), before - 1);
        QCOMPARE(m_model->destinations(), DestinationsModel::extractDestinations(root));
        QVERIFY(!MainTree::written(*root).contains("d_net"));
        QVERIFY(!m_model->deleteItem(root->child(0)));
        QCOMPARE(root->childCount(), before - 1);
    }

private:
    std::unique_ptr<DestinationsModel> m_model;
    std::unique_ptr<QAbstractItemModelTester> m_tester;
};

QTEST_MAIN(DestinationsModelTest)

#include "destinationsmodeltest.moc"
