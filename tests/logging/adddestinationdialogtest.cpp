// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include <adddestinationdialog.h>
#include <treeitem.h>

#include <QComboBox>
#include <QDialogButtonBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSpinBox>
#include <QTest>
#include <QToolButton>

namespace {
template <typename Widget> Widget *child(const QWidget &parent, const char *name)
{
    return parent.findChild<Widget *>(QString::fromUtf8(name));
}

void choose(const QWidget &dialog, const char *kind)
{
    auto *type = child<QComboBox>(dialog, "typeEdit");
    type->setCurrentIndex(type->findData(QString::fromUtf8(kind)));
}

void type(const QWidget &dialog, const char *name, const QString &text)
{
    child<QLineEdit>(dialog, name)->setText(text);
}

QString warning(const QWidget &dialog)
{
    return child<QLabel>(dialog, "warningLabel")->text();
}

const QString notValid = QStringLiteral("The destination name is not valid.");
const QString exists = QStringLiteral("Destination with this name already exists.");
const QString badAddress = QStringLiteral("The IP-address is not valid.");
} // namespace

class AddDestinationDialogTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void fieldsFollowTheKind()
    {
        const AddDestinationDialog dialog;
        QCOMPARE(dialog.windowTitle(), QStringLiteral("Destination adding"));
        QCOMPARE(child<QLabel>(dialog, "typeLabel")->text(), QStringLiteral("Type"));
        QCOMPARE(child<QLabel>(dialog, "nameLabel")->text(), QStringLiteral("Name"));
        QCOMPARE(child<QLabel>(dialog, "portLabel")->text(), QStringLiteral("Port"));
        QCOMPARE(child<QLabel>(dialog, "protocolLabel")->text(), QStringLiteral("Protocol"));
        for (const char *kind : {"file", "network", "file"}) {
            choose(dialog, kind);
            const bool network = QByteArray(kind) == "network";
            QCOMPARE(dialog.destinationType(), QString::fromUtf8(kind));
            QCOMPARE(child<QLabel>(dialog, "addressLabel")->text(),
                     network ? QStringLiteral("IP-address") : QStringLiteral("Address"));
            QCOMPARE(child<QWidget>(dialog, "portEdit")->isEnabled(), network);
            QCOMPARE(child<QWidget>(dialog, "protocolEdit")->isEnabled(), network);
            QCOMPARE(child<QWidget>(dialog, "chooseFileButton")->isEnabled(), !network);
        }
    }

    void protocolsAreInOrder()
    {
        const AddDestinationDialog dialog;
        const auto *protocol = child<QComboBox>(dialog, "protocolEdit");
        QCOMPARE(protocol->count(), 2);
        QCOMPARE(protocol->itemText(0), QStringLiteral("tcp"));
        QCOMPARE(protocol->itemText(1), QStringLiteral("udp"));
    }

    void portIsAPort()
    {
        const AddDestinationDialog dialog;
        auto *port = child<QSpinBox>(dialog, "portEdit");
        QCOMPARE(port->minimum(), 1);
        QCOMPARE(port->maximum(), 65535);
        QCOMPARE(port->value(), 514);
        port->setValue(0);
        QCOMPARE(port->value(), 1);
        port->setValue(70000);
        QCOMPARE(dialog.values().at(3).toString(), QStringLiteral("65535"));
    }

    void nameIsChecked()
    {
        AddDestinationDialog dialog;
        TreeItem taken({QStringLiteral("destination"), QStringLiteral("d_one"), QVariant()});
        TreeItem quoted({QStringLiteral("destination"), QStringLiteral("\"d_two\""), QVariant()});
        dialog.setDestItems({&taken, &quoted});
        dialog.setOtherNames({QStringLiteral("d_other")});
        QCOMPARE(dialog.nameValidationError(), notValid);
        const QMap<QString, QString> expected{
            {QStringLiteral("1d"), notValid},    {QStringLiteral("log"), notValid},
            {QStringLiteral("d_one"), exists},   {QStringLiteral("d_two"), exists},
            {QStringLiteral("d_other"), exists}, {QStringLiteral("d_One"), QString()},
            {QStringLiteral("d3"), QString()}};
        for (auto it = expected.begin(); it != expected.end(); ++it) {
            type(dialog, "nameEdit", it.key());
            QCOMPARE(dialog.nameValidationError(), it.value());
            QCOMPARE(warning(dialog), it.value());
        }
    }

    void networkAddressIsChecked_data()
    {
        QTest::addColumn<QString>("address");
        QTest::addColumn<bool>("valid");
        for (const char *address : {"10.0.0.1", "0.0.0.0", "255.255.255.255", "192.168.1.249"}) {
            QTest::newRow(address) << QString::fromUtf8(address) << true;
        }
        for (const char *address : {"", "256.0.0.1", "1.2.3.256", "1.2.3", "1.2.3.", "1.2.3.4.", "1.2.3.4.5",
                                    "1234", "a.b.c.d", " 1.2.3.4", "1.2.3.4 ", "01.2.3.4", "host"}) {
            QTest::newRow(address) << QString::fromUtf8(address) << false;
        }
    }

    void networkAddressIsChecked()
    {
        QFETCH(QString, address);
        QFETCH(bool, valid);
        AddDestinationDialog dialog;
        type(dialog, "nameEdit", QStringLiteral("d"));
        type(dialog, "addressEdit", address);
        QCOMPARE(dialog.addressValidationError(), QString());
        choose(dialog, "network");
        QCOMPARE(dialog.addressValidationError(), valid ? QString() : badAddress);
        QCOMPARE(dialog.inputValidationError(), valid ? QString() : badAddress);
        QCOMPARE(dialog.validateInput(), valid);
        type(dialog, "nameEdit", QStringLiteral("1"));
        QCOMPARE(dialog.inputValidationError(), notValid);
    }

    void wrongInputKeepsTheDialogOpen()
    {
        AddDestinationDialog dialog;
        dialog.show();
        auto *ok = child<QDialogButtonBox>(dialog, "buttonBox")->button(QDialogButtonBox::Ok);
        ok->click();
        QVERIFY(dialog.isVisible());
        QCOMPARE(warning(dialog), notValid);
        type(dialog, "nameEdit", QStringLiteral("d"));
        type(dialog, "addressEdit", QStringLiteral("/a(b"));
        QCOMPARE(warning(dialog), QString());
        ok->click();
        QVERIFY(dialog.isVisible());
        QVERIFY(warning(dialog).contains(QStringLiteral("“(”")));
        type(dialog, "addressEdit", QStringLiteral("/a b"));
        ok->click();
        QVERIFY(!dialog.isVisible());
        QCOMPARE(dialog.result(), int(QDialog::Accepted));
        QCOMPARE(dialog.values(),
                 (QVector<QVariant>{QStringLiteral("file"), QStringLiteral("d"), QStringLiteral("/a b"), 514,
                                    QStringLiteral("tcp")}));
    }

    void everyFieldIsReachedByKeyboardAndHasAName()
    {
        AddDestinationDialog dialog;
        choose(dialog, "network");
        dialog.show();
        QVERIFY(QTest::qWaitForWindowActive(&dialog));
        QCOMPARE(dialog.focusWidget()->objectName(), QStringLiteral("nameEdit"));
        QStringList reached;
        for (int i = 0; i < 7; ++i) {
            reached.append(dialog.focusWidget()->objectName());
            QTest::keyClick(dialog.focusWidget(), Qt::Key_Tab);
        }
        reached.removeAll(QString());
        QCOMPARE(reached.mid(0, 4),
                 (QStringList{QStringLiteral("nameEdit"), QStringLiteral("addressEdit"),
                              QStringLiteral("portEdit"), QStringLiteral("protocolEdit")}));
        QVERIFY(reached.contains(QStringLiteral("typeEdit")));
        for (const char *label : {"typeLabel", "nameLabel", "addressLabel", "portLabel", "protocolLabel"}) {
            QVERIFY2(child<QLabel>(dialog, label)->buddy(), label);
        }
        QVERIFY(!child<QToolButton>(dialog, "chooseFileButton")->accessibleName().isEmpty());
        QTest::keyClick(&dialog, Qt::Key_Escape);
        QVERIFY(!dialog.isVisible());
    }
};

QTEST_MAIN(AddDestinationDialogTest)

#include "adddestinationdialogtest.moc"
