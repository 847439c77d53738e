// Texture fill: the tiles land where copying the texture tile by tile puts them, the
// dialog refuses what it can't read, and the command fills with one undo step.

#include "core/AppFolder.h"
#include "core/Gdi.h"
#include "core/Numbers.h"
#include "core/SettingsStore.h"
#include "document/frmPaint.h"
#include "imageops/FrmTextures.h"
#include "imageops/TileTexture.h"
#include "support/MainWindowFixture.h"
#include "support/TestImages.h"

#include <QApplication>
#include <QListWidget>
#include <QPainter>
#include <QTemporaryDir>
#include <QTimer>
#include <QtTest>

#include <functional>

using namespace velunta;
using namespace velunta::test;

namespace {

// The plain way to fill: the texture copied with BitBlt at every step of its size.
void LiteralTileTexture(Surface& target, const Surface& texture)
{
    for (int y = 0; y < target.ScaleHeight(); y += texture.ScaleHeight())
        for (int x = 0; x < target.ScaleWidth(); x += texture.ScaleWidth())
            BitBlt(target, x, y, texture.ScaleWidth(), texture.ScaleHeight(), texture, 0, 0, SRCCOPY);
}

} // namespace

class tst_Textures : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void tilesAsCopiesOfTheTexture_data()
    {
        QTest::addColumn<QSize>("target");
        QTest::addColumn<QSize>("texture");
        QTest::newRow("last tiles cut") << QSize(37, 23) << QSize(8, 5);
        QTest::newRow("whole tiles") << QSize(32, 20) << QSize(8, 5);
        QTest::newRow("one pixel") << QSize(19, 7) << QSize(1, 1);
        QTest::newRow("one row") << QSize(19, 7) << QSize(5, 1);
        QTest::newRow("one column") << QSize(19, 7) << QSize(1, 3);
        QTest::newRow("texture larger") << QSize(10, 6) << QSize(30, 40);
        QTest::newRow("one tile wide") << QSize(6, 30) << QSize(6, 4);
    }
    void tilesAsCopiesOfTheTexture()
    {
        QFETCH(QSize, target);
        QFETCH(QSize, texture);
        Surface tile;
        tile.setImage(Pattern(texture.width(), texture.height(), 9));
        Surface fast = MakeSurface(target.width(), target.height(), RGB(1, 2, 3));
        Surface literal = fast, command = fast;
        QVERIFY(TileTexture(fast, tile));
        QVERIFY(FillWithTexture(command, tile));
        LiteralTileTexture(literal, tile);
        QCOMPARE(DifferingPixels(fast.Image(), literal.Image()), 0);
        QCOMPARE(DifferingPixels(command.Image(), literal.Image()), 0);
    }

    // Where one tile meets the next, the step from the last column to the first is no
    // bigger than the steps between neighbouring columns inside (and so for rows), with a
    // little room for a vein along the edge: the built-in textures tile without seams.
    void builtInTexturesHaveNoSeams_data()
    {
        QTest::addColumn<QString>("path");
        const QDir folder(qEnvironmentVariable("VELUNTA_DATA") + QStringLiteral("/textures"));
        const QStringList files = folder.entryList(TextureFileFilters(), QDir::Files, QDir::Name);
        QVERIFY(files.size() >= 12);
        for (const QString& file : files)
            QTest::newRow(qPrintable(file)) << folder.filePath(file);
    }
    void builtInTexturesHaveNoSeams()
    {
        QFETCH(QString, path);
        const QImage t = QImage(path).convertToFormat(QImage::Format_RGB32);
        QVERIFY(!t.isNull());
        auto step = [&t](QPoint a, QPoint b) {
            const QRgb p = t.pixel(a), q = t.pixel(b);
            return std::abs(qRed(p) - qRed(q)) + std::abs(qGreen(p) - qGreen(q)) +
                   std::abs(qBlue(p) - qBlue(q));
        };
        for (bool columns : {true, false}) {
            // The summed step between line i and line i + 1, wrapping round.
            const int lines = columns ? t.width() : t.height(), length = columns ? t.height() : t.width();
            QVector<double> sums(lines);
            for (int i = 0; i < lines; ++i)
                for (int j = 0; j < length; ++j)
                    sums[i] +=
                        columns ? step({i, j}, {(i + 1) % lines, j}) : step({j, i}, {j, (i + 1) % lines});
            const double edge = sums.takeLast();
            const double inside = *std::max_element(sums.begin(), sums.end());
            QVERIFY2(edge <= 1.25 * inside,
                     qPrintable(QStringLiteral("%1 step at the edge %2, inside at most %3")
                                    .arg(columns ? "column" : "row")
                                    .arg(edge)
                                    .arg(inside)));
        }
    }

    void emptyTextureChangesNothing()
    {
        Surface target = MakeSurface(8, 8, RGB(5, 6, 7));
        const QImage before = target.Image().copy();
        QVERIFY(!TileTexture(target, Surface()));
        QVERIFY(!FillWithTexture(target, Surface()));
        QCOMPARE(DifferingPixels(target.Image(), before), 0);
    }

    void unreadableFilesKeepTheChoice_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QString>("title");
        QTest::newRow("not a picture")
            << QByteArray("just some text, no picture") << "Incompatible picture format";
        QTest::newRow("no file") << QByteArray() << "Unable to open picture";
    }
    void unreadableFilesKeepTheChoice()
    {
        QFETCH(QByteArray, bytes);
        QFETCH(QString, title);
        QTemporaryDir folder;
        const QString path = folder.filePath(QStringLiteral("texture.bmp"));
        if (!bytes.isEmpty())
            QVERIFY(WriteFile(path, bytes));
        ScriptedPrompt prompt;
        FrmTextures dialog(QString(), QString(), prompt);
        const QImage tiny = MakeImage(1, 1, [](int, int) { return RGB(10, 200, 30); });
        QVERIFY(tiny.save(folder.filePath(QStringLiteral("tiny.bmp"))));
        QVERIFY(dialog.File1_Click(folder.filePath(QStringLiteral("tiny.bmp"))));
        QVERIFY(!dialog.File1_Click(path));
        QCOMPARE(prompt.shown.size(), 1);
        QCOMPARE(prompt.shown[0].text, QStringLiteral("Could not open/read the selected picture."));
        QCOMPARE(prompt.shown[0].title, title);
        QVERIFY(dialog.TextureChosen && dialog.TextureFromFile);
        QCOMPARE(dialog.texture().size(), QSize(1, 1));
        QCOMPARE(dialog.userTexture(),
                 QFileInfo(folder.filePath(QStringLiteral("tiny.bmp"))).absoluteFilePath());
    }

    void fillsTheSelectionWithOneUndoStep()
    {
        MainWindowFixture f;
        frmMain& m = f.main();
        CopyMissingDataFiles(qEnvironmentVariable("VELUNTA_DATA"), f.appFolder());
        frmPaint* form = f.newDocument(40, 30, RGB(200, 0, 0));
        Document& doc = form->doc;
        QVERIFY(m.action(QStringLiteral("mnuTexturefill"))->isEnabled());
        m.Cmd_Click(5);
        f.drag(*form, {10, 8}, {30, 24});
        QVERIFY(doc.SelectArea.Visible);
        // The float lands where its place rounds to (the view's frame puts it between pixels).
        const QRect where(I4(doc.BufferSelected.Left), I4(doc.BufferSelected.Top),
                          doc.BufferSelected.ScaleWidth(), doc.BufferSelected.ScaleHeight());
        QVERIFY(where.width() > 10 && where.height() > 10);
        WhenShown<FrmTextures>([](FrmTextures& d) {
            QVERIFY(d.textureCount() >= 12);
            d.ImgTextures_Click(2);
            QVERIFY(d.TextureChosen && !d.TextureFromFile);
            d.Command1_Click();
        });
        m.mnuTexturefill_Click();
        QVERIFY(doc.Dirty);
        // The texture of the program's folder, from the selection's top left; the
        // picture around the selection keeps its red.
        QDir textures(f.appFolder() + QStringLiteral("textures"));
        const QImage texture =
            QImage(textures.filePath(textures.entryList(TextureFileFilters(), QDir::Files, QDir::Name).at(2)))
                .convertToFormat(QImage::Format_RGB32)
                .copy(QRect(QPoint(), where.size()));
        QCOMPARE(DifferingPixels(doc.BufferSelected.Image(), texture), 0);
        QImage expected = doc.Buffer.Image().copy();
        expected.fill(ToQRgb(RGB(200, 0, 0)));
        QPainter(&expected).drawImage(where.topLeft(), texture);
        QCOMPARE(DifferingPixels(doc.Buffer.Image(), expected), 0);
        m.Undo_Click();
        QCOMPARE(GetPixel(doc.Buffer, where.x() + 2, where.y() + 2), RGB(200, 0, 0));
    }

    void cancelAndNoChoiceChangeNothing()
    {
        MainWindowFixture f;
        frmMain& m = f.main();
        frmPaint* form = f.newDocument(20, 20, RGB(0, 0, 200));
        WhenShown<FrmTextures>([](FrmTextures& d) { d.Command1_Click(); }); // OK with nothing chosen
        m.mnuTexturefill_Click();
        WhenShown<FrmTextures>([](FrmTextures& d) {
            d.ImgTextures_Click(0);
            d.reject();
        });
        m.mnuTexturefill_Click();
        QVERIFY(!form->doc.Dirty);
        QCOMPARE(GetPixel(form->doc.Buffer, 3, 3), RGB(0, 0, 200));
    }

    void userTextureFolderIsRemembered()
    {
        MainWindowFixture f;
        frmMain& m = f.main();
        frmPaint* form = f.newDocument(9, 9);
        QTemporaryDir folder;
        const QString path = folder.filePath(QStringLiteral("spots.bmp"));
        QVERIFY(MakeImage(2, 2, [](int x, int y) {
                    return (x + y) & 1 ? RGB(0, 0, 0) : RGB(255, 255, 0);
                }).save(path));
        WhenShown<FrmTextures>([path](FrmTextures& d) {
            d.openFolder(QFileInfo(path).absolutePath());
            QCOMPARE(d.File1()->count(), 1);
            QVERIFY(d.File1_Click(path));
            d.Command1_Click();
        });
        m.mnuTexturefill_Click();
        QCOMPARE(GetPixel(form->doc.Buffer, 8, 8), RGB(255, 255, 0));
        QCOMPARE(GetPixel(form->doc.Buffer, 7, 8), RGB(0, 0, 0));
        QString shownFolder, shownFile;
        WhenShown<FrmTextures>([&](FrmTextures& d) {
            shownFolder = d.folder();
            if (QListWidgetItem* item = d.File1()->currentItem())
                shownFile = item->text();
            d.reject();
        });
        m.mnuTexturefill_Click();
        QCOMPARE(shownFolder, QFileInfo(path).absolutePath());
        QCOMPARE(shownFile, QStringLiteral("spots.bmp"));
    }
};

QTEST_MAIN(tst_Textures)
#include "tst_textures.moc"
