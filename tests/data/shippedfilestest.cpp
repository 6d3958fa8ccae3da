// SPDX-FileCopyrightText: 2026 The admin-events authors
// SPDX-License-Identifier: GPL-2.0-or-later

#include <KConfigGroup>
#include <KDesktopFile>

#include <QColor>
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QImageReader>
#include <QRegularExpression>
#include <QTest>
#include <QXmlStreamReader>

#include <cmath>

namespace {
struct Drawing
{
    QString error; ///< empty for a drawing that can be used
    QString textColour; ///< the stylesheet's own colour, empty for a drawing in fixed colours
};

bool isSquare(const QString &viewBox)
{
    const QStringList numbers = viewBox.split(QLatin1Char(' '));
    return numbers.size() == 4 && numbers[0] == QLatin1String("0") && numbers[1] == QLatin1String("0")
        && numbers[2] == numbers[3] && numbers[2].toInt() > 0;
}

/// Reads an icon and says what a desktop could not show of it.
Drawing readDrawing(const QByteArray &svg)
{
    static const QSet<QString> allowed{QStringLiteral("svg"), QStringLiteral("style"),
                                       QStringLiteral("path")};
    static const QRegularExpression colour(
        QStringLiteral("\\.ColorScheme-Text \\{ color: (#[0-9a-f]{6}); \\}"));
    Drawing drawing;
    int paths = 0;
    QXmlStreamReader xml(svg);
    while (!xml.atEnd()) {
        if (xml.readNext() != QXmlStreamReader::StartElement) {
            continue;
        }
        const QString name = xml.name().toString();
        const QXmlStreamAttributes attributes = xml.attributes();
        if (!allowed.contains(name)) {
            drawing.error = QLatin1String("element ") + name;
        } else if (name == QLatin1String("svg")
                   && !isSquare(attributes.value(QLatin1String("viewBox")).toString())) {
            drawing.error = QStringLiteral("no square viewBox");
        } else if (name == QLatin1String("path")) {
            ++paths;
            if (attributes.value(QLatin1String("d")).isEmpty()) {
                drawing.error = QStringLiteral("an empty path");
            }
        } else if (name == QLatin1String("style")) {
            drawing.textColour = colour.match(xml.readElementText()).captured(1);
        }
    }
    if (xml.hasError()) {
        drawing.error = xml.errorString();
    } else if (paths == 0) {
        drawing.error = QStringLiteral("nothing drawn");
    }
    return drawing;
}

double luminance(const QColor &colour)
{
    const auto linear
        = [](double c) { return c <= 0.03928 ? c / 12.92 : std::pow((c + 0.055) / 1.055, 2.4); };
    return 0.2126 * linear(colour.redF()) + 0.7152 * linear(colour.greenF())
        + 0.0722 * linear(colour.blueF());
}

double contrast(const QColor &a, const QColor &b)
{
    const double one = luminance(a) + 0.05;
    const double other = luminance(b) + 0.05;
    return std::max(one, other) / std::min(one, other);
}

QStringList iconFiles()
{
    QStringList files;
    QDirIterator it(QStringLiteral(SHIPPED_DATA "/icons/hicolor"), QDir::Files, QDirIterator::Subdirectories);
    while (it.hasNext()) {
        files.append(it.next());
    }
    files.sort();
    return files;
}

QByteArray content(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}
} // namespace

class ShippedFilesTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyIconInUseIsShipped();
    void theIconCanBeDrawn_data();
    void theIconCanBeDrawn();
    void theIconIsLegibleOnLightAndDark_data();
    void theIconIsLegibleOnLightAndDark();
    void theIconLeavesInkAtSixteenPixels_data();
    void theIconLeavesInkAtSixteenPixels();
    void aDamagedIconIsNoticed();
    void theDesktopFileNamesThePage();
    void theDesktopFileSpeaksRussian();
    void theDesktopFileNamesACategoryOfTheShell();
};

void ShippedFilesTest::everyIconInUseIsShipped()
{
    QStringList names;
    const QStringList files = iconFiles();
    for (const QString &file : files) {
        QVERIFY2(file.endsWith(QLatin1String(".svg")), qPrintable(file));
        names.append(QFileInfo(file).completeBaseName());
    }
    for (const char *name : {"zep-notifications", "gear", "legalmoves", "document-folder", "previous", "next",
                             "preferences-security-events"}) {
        QCOMPARE(names.count(QLatin1String(name)), 1);
    }
}

void ShippedFilesTest::theIconCanBeDrawn_data()
{
    QTest::addColumn<QString>("path");
    const QStringList files = iconFiles();
    for (const QString &file : files) {
        QTest::newRow(qPrintable(QFileInfo(file).completeBaseName())) << file;
    }
}

void ShippedFilesTest::theIconCanBeDrawn()
{
    QFETCH(QString, path);
    const Drawing drawing = readDrawing(content(path));
    QVERIFY2(drawing.error.isEmpty(), qPrintable(drawing.error));
}

void ShippedFilesTest::theIconIsLegibleOnLightAndDark_data()
{
    theIconCanBeDrawn_data();
}

void ShippedFilesTest::theIconIsLegibleOnLightAndDark()
{
    QFETCH(QString, path);
    const QByteArray svg = content(path);
    const Drawing drawing = readDrawing(svg);
    if (QFileInfo(path).completeBaseName() == QLatin1String("preferences-security-events")) {
        // The page's own icon is coloured, and carries its ground with it.
        QVERIFY(drawing.textColour.isEmpty() && !svg.contains("currentColor"));
        return;
    }
    // A theme that follows the colour scheme replaces this colour; elsewhere it has to do on its own.
    const QColor colour(drawing.textColour);
    QVERIFY2(colour.isValid(), svg.constData());
    QVERIFY(contrast(colour, QColor(0xef, 0xf0, 0xf1)) >= 3.0);
    QVERIFY(contrast(colour, QColor(0x2a, 0x2e, 0x32)) >= 3.0);
    // An outline against a selected row is white whatever the theme.
    const int drawn = svg.count("<path") - svg.count("<path fill=\"none\" stroke=\"#ffffff\"");
    QVERIFY(drawn > 0);
    QCOMPARE(svg.count("class=\"ColorScheme-Text\""), drawn);
    QCOMPARE(svg.count("=\"currentColor\""), drawn);
}

void ShippedFilesTest::theIconLeavesInkAtSixteenPixels_data()
{
    theIconCanBeDrawn_data();
}

void ShippedFilesTest::theIconLeavesInkAtSixteenPixels()
{
    if (!QImageReader::supportedImageFormats().contains("svg")) {
        QSKIP("the toolkit's SVG reader is not installed");
    }
    QFETCH(QString, path);
    QImageReader reader(path);
    reader.setScaledSize(QSize(16, 16));
    const QImage image = reader.read().convertToFormat(QImage::Format_ARGB32);
    QCOMPARE(image.size(), QSize(16, 16));
    int strong = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            strong += qAlpha(image.pixel(x, y)) >= 160;
        }
    }
    // A chevron is the lightest of them; a filled square would say nothing.
    QVERIFY2(strong >= 12 && strong <= 200, QByteArray::number(strong).constData());
}

void ShippedFilesTest::aDamagedIconIsNoticed()
{
    QCOMPARE(readDrawing("<svg viewBox=\"0 0 16 16\"><path d=\"M0 0H1\"/></svg>").error, QString());
    QVERIFY(!readDrawing("<svg viewBox=\"0 0 16 16\"><path d=\"M0 0H1\"/>").error.isEmpty());
    QVERIFY(!readDrawing("<svg><path d=\"M0 0H1\"/></svg>").error.isEmpty());
    QVERIFY(!readDrawing("<svg viewBox=\"0 0 16 22\"><path d=\"M0 0H1\"/></svg>").error.isEmpty());
    QVERIFY(!readDrawing("<svg viewBox=\"0 0 16 16\"/>").error.isEmpty());
    QVERIFY(!readDrawing("<svg viewBox=\"0 0 16 16\"><image/><path d=\"M0 0H1\"/></svg>").error.isEmpty());
}

void ShippedFilesTest::theDesktopFileNamesThePage()
{
    const QString path = QStringLiteral(SHIPPED_DATA "/applications/kcm_adminevents.desktop");
    QVERIFY(QFileInfo::exists(path));
    const KDesktopFile file(path);
    const KConfigGroup group = file.desktopGroup();
    QCOMPARE(file.readType(), QStringLiteral("Service"));
    QCOMPARE(group.readEntry("X-KDE-ServiceTypes"), QStringLiteral("KCModule"));
    QCOMPARE(group.readEntry("X-KDE-Library"), QStringLiteral("kcm_adminevents"));
    QCOMPARE(group.readEntry("Exec"), QStringLiteral("kcmshell5 kcm_adminevents"));
    QVERIFY(group.readEntry("X-KDE-Weight", 0) > 0);
    const QString icon = file.readIcon();
    const QStringList icons = iconFiles().filter(QLatin1Char('/') + icon + QLatin1String(".svg"));
    QVERIFY2(icons.size() == 1, qPrintable(icon));
}

void ShippedFilesTest::theDesktopFileSpeaksRussian()
{
    const QString text
        = QString::fromUtf8(content(QStringLiteral(SHIPPED_DATA "/applications/kcm_adminevents.desktop")));
    for (const char *key : {"Name", "Comment", "X-KDE-Keywords"}) {
        const QRegularExpression english(QStringLiteral("^%1=[A-Za-z]").arg(QLatin1String(key)),
                                         QRegularExpression::MultilineOption);
        const QRegularExpression russian(QStringLiteral("^%1\\[ru\\]=[А-Яа-яё]").arg(QLatin1String(key)),
                                         QRegularExpression::MultilineOption);
        QVERIFY2(english.match(text).hasMatch(), key);
        QVERIFY2(russian.match(text).hasMatch(), key);
    }
}

void ShippedFilesTest::theDesktopFileNamesACategoryOfTheShell()
{
    const QDir categories(QStringLiteral("/usr/share/systemsettings/categories"));
    const QStringList files = categories.entryList({QStringLiteral("*.desktop")}, QDir::Files);
    if (files.isEmpty()) {
        QSKIP("System Settings is not installed");
    }
    const KDesktopFile page(QStringLiteral(SHIPPED_DATA "/applications/kcm_adminevents.desktop"));
    const QString wanted = page.desktopGroup().readEntry("X-KDE-System-Settings-Parent-Category");
    QStringList offered;
    for (const QString &file : files) {
        offered.append(KDesktopFile(categories.filePath(file))
                           .desktopGroup()
                           .readEntry("X-KDE-System-Settings-Category"));
    }
    QVERIFY2(!wanted.isEmpty() && offered.contains(wanted), qPrintable(wanted));
}

QTEST_GUILESS_MAIN(ShippedFilesTest)

#include "shippedfilestest.moc"
