// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include <composedicon.h>

#include <QDir>
#include <QFile>
#include <QPixmap>
#include <QTemporaryDir>
#include <QTest>

class ComposedIconTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();

    void everySizeOfTheFirstIconIsComposed();
    void iconsStandSideBySide();
    void missingSecondIconLeavesItsHalfTransparent();
    void missingFirstIconGivesAnEmptyIcon();

private:
    QTemporaryDir m_directory;
};

void ComposedIconTest::initTestCase()
{
    const QDir theme(m_directory.filePath(QStringLiteral("plain")));
    QVERIFY(theme.mkpath(QStringLiteral("16")));
    QVERIFY(theme.mkpath(QStringLiteral("32")));
    QFile index(theme.filePath(QStringLiteral("index.theme")));
    QVERIFY(index.open(QIODevice::WriteOnly));
    index.write("[Icon Theme]\nName=plain\nComment=plain\nDirectories=16,32\n"
                "[16]\nSize=16\nType=Fixed\n[32]\nSize=32\nType=Fixed\n");
    for (const int size : {16, 32}) {
        QPixmap pixmap(size, size);
        pixmap.fill(Qt::red);
        QVERIFY(pixmap.save(theme.filePath(QStringLiteral("%1/red.png").arg(size))));
        pixmap.fill(Qt::blue);
        QVERIFY(pixmap.save(theme.filePath(QStringLiteral("%1/blue.png").arg(size))));
    }
    QIcon::setThemeSearchPaths({m_directory.path()});
    QIcon::setThemeName(QStringLiteral("plain"));
}

void ComposedIconTest::everySizeOfTheFirstIconIsComposed()
{
    const QIcon icon = createComposedIcon(QStringLiteral("red"), QStringLiteral("blue"));
    QList<QSize> sizes = icon.availableSizes();
    std::sort(sizes.begin(), sizes.end(), [](QSize a, QSize b) { return a.width() < b.width(); });
    QCOMPARE(sizes, (QList<QSize>{{32, 16}, {64, 32}}));
}

void ComposedIconTest::iconsStandSideBySide()
{
    const QIcon icon = createComposedIcon(QStringLiteral("red"), QStringLiteral("blue"));
    const QImage image = icon.pixmap(64, 32).toImage();
    QCOMPARE(image.size(), QSize(64, 32));
    QCOMPARE(image.pixelColor(0, 0), QColor(Qt::red));
    QCOMPARE(image.pixelColor(31, 31), QColor(Qt::red));
    QCOMPARE(image.pixelColor(32, 0), QColor(Qt::blue));
    QCOMPARE(image.pixelColor(63, 31), QColor(Qt::blue));
}

void ComposedIconTest::missingSecondIconLeavesItsHalfTransparent()
{
    const QIcon icon = createComposedIcon(QStringLiteral("red"), QStringLiteral("no-such-icon"));
    const QImage image = icon.pixmap(32, 16).toImage();
    QCOMPARE(image.pixelColor(8, 8), QColor(Qt::red));
    QCOMPARE(image.pixelColor(24, 8).alpha(), 0);
}

void ComposedIconTest::missingFirstIconGivesAnEmptyIcon()
{
    QVERIFY(createComposedIcon(QStringLiteral("no-such-icon"), QStringLiteral("blue")).isNull());
}

QTEST_MAIN(ComposedIconTest)

#include "composedicontest.moc"
