// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include <configaccessservice.h>
#include <rotationwriter.h>
#include <treeitem.h>

#include <QTest>

#include <memory>

namespace {
TreeItem *add(TreeItem &parent, const QString &keyword, const QVariant &value = QString())
{
    auto *item = new TreeItem({keyword, value}, &parent);
    parent.appendChild(item);
    return item;
}

std::unique_ptr<TreeItem> emptyRoot()
{
    return std::make_unique<TreeItem>(
        QVector<QVariant>{QStringLiteral("Parameter"), QStringLiteral("Value")});
}
} // namespace

class RotationWriterTest : public QObject
{
    Q_OBJECT

private:
    ConfigAccessService m_service{nullptr};
    RotationWriter m_writer{m_service, QStringLiteral("/etc/logrotate.d/syslog-ng-mod-nivra")};

private Q_SLOTS:
    void eachDirectiveIsALine()
    {
        const auto root = emptyRoot();
        TreeItem *section = add(*root, QStringLiteral("/a \"/b c\""));
        add(*section, QStringLiteral("daily"));
        add(*section, QStringLiteral("create"), QStringLiteral("0640 root adm"));
        add(*section, QStringLiteral("postrotate"),
            QStringList{QStringLiteral("first"), QString(), QStringLiteral("last")});
        add(*section, QStringLiteral("prerotate"), QStringLiteral("one\ntwo"));
        QCOMPARE(m_writer.createConfig(root.get()),
                 (QStringList{QStringLiteral("/a \"/b c\" {"), QStringLiteral("\tdaily"),
                              QStringLiteral("\tcreate 0640 root adm"), QStringLiteral("\tpostrotate"),
                              QStringLiteral("\t\tfirst"), QStringLiteral("\t\t"), QStringLiteral("\t\tlast"),
                              QStringLiteral("\tendscript"), QStringLiteral("\tprerotate"),
                              QStringLiteral("\t\tone"), QStringLiteral("\t\ttwo"),
                              QStringLiteral("\tendscript"), QStringLiteral("}")}));
        QCOMPARE(m_writer.getConfig(root.get()), m_writer.createConfig(root.get()));
    }

    void scriptMayBeEmpty()
    {
        const auto root = emptyRoot();
        add(*add(*root, QStringLiteral("/a")), QStringLiteral("prerotate"), QStringList());
        QCOMPARE(m_writer.createConfig(root.get()),
                 (QStringList{QStringLiteral("/a {"), QStringLiteral("\tprerotate"),
                              QStringLiteral("\tendscript"), QStringLiteral("}")}));
    }

    void treeWithoutSectionHasNoLines()
    {
        const auto root = emptyRoot();
        QCOMPARE(m_writer.createConfig(root.get()), QStringList());
        QCOMPARE(m_writer.createConfig(nullptr), QStringList());
    }
};

QTEST_GUILESS_MAIN(RotationWriterTest)
#include "rotationwritertest.moc"
