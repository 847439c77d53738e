// Symbols & Stamps: the stamps that ship, their recolouring, and the palette beside
// the main window that stamps a picture as a floating selection.

#include "core/AppFolder.h"
#include "core/Gdi.h"
#include "document/frmPaint.h"
#include "imageops/FrmSymbols.h"
#include "imageops/Stamps.h"
#include "support/MainWindowFixture.h"
#include "support/TestImages.h"

#include <QApplication>
#include <QClipboard>
#include <QLabel>
#include <QMap>
#include <QPainter>
#include <QtTest>

using namespace velunta;
using namespace velunta::test;

namespace {

// A main window whose folder holds the program's data files, as a run's does.
struct StampsFixture : MainWindowFixture {
    StampsFixture() { CopyMissingDataFiles(qEnvironmentVariable("VELUNTA_DATA"), appFolder()); }
};

int FirstStamp(const FrmSymbols& palette, const QString& group, bool oneColour)
{
    for (int i = 0; i < palette.figureCount(); ++i)
        if (palette.stamp(i).group == group && palette.stamp(i).oneColour == oneColour)
            return i;
    return -1;
}

} // namespace

class tst_Stamps : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void everyGroupHasItsStamps()
    {
        StampsFixture f;
        QString problem;
        const QVector<Stamp> stamps = LoadStamps(f.appFolder() + QStringLiteral("stamps/"), &problem);
        QVERIFY2(!stamps.isEmpty(), qPrintable(problem));
        QMap<QString, int> perGroup;
        int oneColour = 0;
        for (const Stamp& s : stamps) {
            ++perGroup[s.group];
            oneColour += s.oneColour;
            // Colour pictures are never enlarged, so some are a little smaller.
            const int longer = std::max(s.picture.width(), s.picture.height());
            QVERIFY(longer <= kLargestStamp && longer >= kLargestStamp * 3 / 4);
            QVERIFY(s.picture.hasAlphaChannel());
            QVERIFY(qAlpha(s.picture.pixel(0, 0)) < 255 ||
                    qAlpha(s.picture.pixel(s.picture.width() - 1, 0)) < 255);
        }
        const QStringList groups = {"Birthday", "Weather", "Music", "Arrows", "Miscellaneous", "Holidays"};
        QCOMPARE(QStringList(perGroup.keys()).size(), groups.size());
        for (const QString& g : groups)
            QVERIFY2(perGroup.value(g) >= 24, qPrintable(g));
        QVERIFY(oneColour >= 24);
    }

    void stampLaysOnThePaper()
    {
        // Left half ink, right half clear: the clear half shows the paper.
        QImage picture(kLargestStamp, kLargestStamp / 2, QImage::Format_ARGB32);
        picture.fill(Qt::transparent);
        for (int y = 0; y < picture.height(); ++y)
            for (int x = 0; x < picture.width() / 2; ++x)
                picture.setPixel(x, y, qRgba(0, 0, 0, 255));
        RecolorStamp(picture, RGB(10, 20, 250));
        QCOMPARE(picture.pixel(1, 1), qRgba(10, 20, 250, 255));
        QCOMPARE(qAlpha(picture.pixel(100, 1)), 0);
        const QImage laid = StampPicture(picture, 16, RGB(255, 255, 0));
        QCOMPARE(laid.size(), QSize(16, 8));
        QCOMPARE(laid.format(), QImage::Format_RGB32);
        QCOMPARE(FromQRgb(laid.pixel(2, 3)), RGB(10, 20, 250));
        QCOMPARE(FromQRgb(laid.pixel(14, 3)), RGB(255, 255, 0));
    }

    // A double click floats the stamp laid on the colour under it. It came as a box of the
    // paper colour: on a coloured picture the user saw a white box round it until ticking
    // "Transparent color".
    void stampOnAColouredPictureShowsNoPaperBox()
    {
        StampsFixture f;
        frmMain& m = f.main();
        frmPaint* form = f.newDocument(300, 200);
        Document& doc = form->doc;
        const Color green = RGB(30, 120, 40), blue = RGB(20, 40, 200);
        doc.Buffer.setImage(MakeImage(300, 200, [&](int x, int) { return x < 150 ? green : blue; }));
        m.state().BackColor = RGB(255, 255, 255);
        m.mnusymbols_Click(0);
        FrmSymbols* palette = m.symbols();
        QVERIFY(palette && palette->isVisible() && !palette->isModal() && m.isEnabled());
        palette->setStampSize(2);
        const int cake = FirstStamp(*palette, QStringLiteral("Birthday"), false);
        QTest::mouseDClick(palette->tile(cake), Qt::LeftButton);
        MainWindowFixture::settle();
        QVERIFY(doc.SelectArea.Visible && doc.SelectionLifted);
        const QImage stamp = StampAtSize(palette->PicFigures(cake), 128);
        auto laidOn = [&](Color ground) {
            QImage e(stamp.size(), QImage::Format_RGB32);
            e.fill(ToQRgb(ground));
            QPainter p(&e);
            p.drawImage(0, 0, stamp);
            return e;
        };
        QCOMPARE(DifferingPixels(doc.BufferSelected.Image(), laidOn(green)), 0);
        QCOMPARE(GetPixel(doc.Buffer, 0, 0), green);
        // Dragged onto the blue half, the blue shows round it, and the green comes back.
        m.Cmd_Click(0);
        f.drag(*form, {40, 40}, {200, 60}, 4);
        QCOMPARE(int(doc.BufferSelected.Left), 160);
        QVERIFY(doc.Dirty);
        QCOMPARE(DifferingPixels(doc.BufferSelected.Image(), laidOn(blue)), 0);
        QCOMPARE(
            DifferingPixels(doc.Buffer.Image().copy(160, 20, stamp.width(), stamp.height()), laidOn(blue)),
            0);
        QCOMPARE(DifferingPixels(doc.Buffer.Image().copy(0, 0, 150, 200),
                                 MakeImage(150, 200, [&](int, int) { return green; })),
                 0);
        // Pasting the clipboard is a paste like any other: the picture as it is, paper and all.
        m.Paste_Click();
        QCOMPARE(DifferingPixels(doc.BufferSelected.Image(), laidOn(RGB(255, 255, 255))), 0);
    }

    void stampAfterAMovedStampDoesNotJump()
    {
        StampsFixture f;
        frmMain& m = f.main();
        frmPaint* form = f.newDocument(300, 200);
        m.mnusymbols_Click(0);
        FrmSymbols* palette = m.symbols();
        palette->setStampSize(0);
        const int heart = FirstStamp(*palette, QStringLiteral("Miscellaneous"), true);
        palette->PicFigures_DblClick(heart);
        const QImage first = form->doc.BufferSelected.Image().copy();
        QCOMPARE(std::max(first.width(), first.height()), 64);
        f.drag(*form, {20, 20}, {180, 120}, 4);
        palette->PicFigures_DblClick(heart);
        QCOMPARE(int(form->doc.BufferSelected.Left), 0);
        // The first stamp is put down where it stood.
        QCOMPARE(
            DifferingPixels(form->doc.Buffer.Image().copy(160, 100, first.width(), first.height()), first),
            0);
        // The new stamp follows the pointer from where it is, not from where the last one went.
        f.drag(*form, {20, 20}, {70, 40}, 4);
        QCOMPARE(int(form->doc.BufferSelected.Left), 50);
        QCOMPARE(int(form->doc.BufferSelected.Top), 20);
    }

    void colorsUpdateRecoloursOnlyTheOneColourStamps()
    {
        StampsFixture f;
        frmMain& m = f.main();
        f.newDocument();
        m.mnusymbols_Click(0);
        FrmSymbols* palette = m.symbols();
        const int star = FirstStamp(*palette, QStringLiteral("Miscellaneous"), true);
        const int sun = FirstStamp(*palette, QStringLiteral("Weather"), false);
        QVERIFY(star >= 0 && sun >= 0);
        const QImage sunBefore = palette->PicFigures(sun).copy();
        m.state().ForeColor = RGB(220, 30, 40);
        palette->Command1_Click();
        QCOMPARE(palette->stampColor(), RGB(220, 30, 40));
        const QImage& recoloured = palette->PicFigures(star);
        const QImage& original = palette->stamp(star).picture;
        for (int y = 0; y < recoloured.height(); ++y)
            for (int x = 0; x < recoloured.width(); ++x) {
                QCOMPARE(qAlpha(recoloured.pixel(x, y)), qAlpha(original.pixel(x, y)));
                if (qAlpha(original.pixel(x, y)) > 0)
                    QCOMPARE(recoloured.pixel(x, y) & 0xFFFFFF, ToQRgb(RGB(220, 30, 40)) & 0xFFFFFF);
            }
        QCOMPARE(DifferingPixels(palette->PicFigures(sun), sunBefore), 0);
        // A pick in the palette's own colour row follows through Timer1.
        palette->setStampColor(RGB(0, 128, 0));
        const QPoint middle(recoloured.width() / 2, recoloured.height() / 2);
        QTRY_COMPARE(palette->PicFigures(star).pixel(middle) & 0xFFFFFF, ToQRgb(RGB(0, 128, 0)) & 0xFFFFFF);
    }

    void paletteReturnsWhereItWasLeft()
    {
        StampsFixture f;
        frmMain& m = f.main();
        f.newDocument();
        m.mnusymbols_Click(0);
        FrmSymbols* palette = m.symbols();
        // At first at the right edge of the screen.
        const QRect area = m.screen()->availableGeometry();
        QVERIFY(palette->frameGeometry().right() <= area.right());
        QVERIFY(palette->frameGeometry().right() > area.right() - 40);
        palette->move(area.left() + 40, area.top() + 50);
        const QPoint left = palette->pos();
        palette->Command3_Click();
        QVERIFY(!palette->isVisible());
        m.mnusymbols_Click(0);
        QCOMPARE(m.symbols(), palette);
        QCOMPARE(palette->pos(), left);
    }

    void missingStampsSayWhere()
    {
        Color fore = 0, back = 0xFFFFFF;
        FrmSymbols palette(QStringLiteral("/nonexistent/stamps/"), fore, back);
        QCOMPARE(palette.figureCount(), 0);
        auto* label = palette.findChild<QLabel*>(QStringLiteral("lblMissing"));
        QVERIFY(label && label->text().contains(QStringLiteral("/nonexistent/stamps/")));
        palette.PicFigures_DblClick(0); // nothing to stamp, nothing happens
    }
};

QTEST_MAIN(tst_Stamps)
#include "tst_stamps.moc"
