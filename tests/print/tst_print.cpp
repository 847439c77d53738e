// The print preview: its settings file, the sheet and best fit, and pages printed to PDF
// and rendered back to pixels.

#include "print/SheetView.h"
#include "print/frmPrint.h"
#include "support/FakeServices.h"
#include "support/MainWindowFixture.h"
#include "support/OutsideTools.h"
#include "support/TestImages.h"
#include "widgets/zolButton.h"

#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QDir>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QRadioButton>
#include <QScreen>
#include <QScrollBar>
#include <QTemporaryDir>
#include <QtTest>

using namespace velunta;
using namespace velunta::test;

namespace {

const QByteArray kDefaultsFile = ";Zolvane-Velunta v" VELUNTA_VERSION "\r\n;Print Settings\r\n"
                                 " 1 \r\n 1 \r\n 0 \r\n 0 \r\n 100 \r\n 100 \r\n 1 \r\n"
                                 " 200 \r\n 200 \r\n 11925 \r\n 8925 \r\n";

QImage solid(int w, int h, QColor c)
{
    QImage image(w, h, QImage::Format_RGB32);
    image.fill(c);
    return image;
}

// The first page of a PDF at 72 dots per inch: one pixel to a point.
QImage render(const QString& pdf)
{
    const QString base = pdf.chopped(4);
    if (RunTool(QStringLiteral("pdftoppm"), {"-r", "72", "-png", "-singlefile", pdf, base}).isNull())
        return {};
    return QImage(base + QStringLiteral(".png")).convertToFormat(QImage::Format_RGB32);
}

// The bounding box of the pixels that are not white.
QRect inked(const QImage& page)
{
    QRect box;
    for (int y = 0; y < page.height(); ++y) {
        const auto* line = reinterpret_cast<const QRgb*>(page.constScanLine(y));
        for (int x = 0; x < page.width(); ++x)
            if (qRed(line[x]) < 200 || qGreen(line[x]) < 200 || qBlue(line[x]) < 200)
                box |= QRect(x, y, 1, 1);
    }
    return box;
}

} // namespace

class tst_print : public QObject {
    Q_OBJECT
    QTemporaryDir m_dir;
    ScriptedPrompt m_prompt;
    ScriptedDialogs m_dialogs;
    QString folder() const { return m_dir.path() + u'/'; }
    QString ini() const { return folder() + QStringLiteral("VeluntaPrint.ini"); }

private Q_SLOTS:
    void init()
    {
        QFile::remove(ini());
        m_prompt.shown.clear();
    }

    void settingsFileIsExactAndRoundTrips()
    {
        QCOMPARE(PrintSettingsText(PrintDefaults(), QStringLiteral(VELUNTA_VERSION)), kDefaultsFile);
        PrintSettings s;
        s.Quality = 2;
        s.Paper = 4;
        s.ColorMode = 1;
        s.Orientation = 1;
        s.MarginLeft = -20;
        s.MarginTop = 1500;
        s.ZoomIndex = 4;
        s.WinLeft = -300;
        s.WinWidth = 20000;
        QVERIFY(WritePrintSettings(ini(), s, QStringLiteral(VELUNTA_VERSION)));
        const QByteArray written = ReadFile(ini());
        PrintSettings back;
        QVERIFY(ReadPrintSettings(ini(), back));
        QCOMPARE(back, s);
        QCOMPARE(PrintSettingsText(back, QStringLiteral(VELUNTA_VERSION)), written);
        QVERIFY(written.contains("\r\n-20 \r\n 1500 \r\n"));
    }

    // A damaged file gives the defaults, quietly; a window placed off the screen or larger
    // than it lands on it; the file is only read.
    void settingsFileAsFound_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<bool>("damaged");
        const QByteArray place = kDefaultsFile.left(kDefaultsFile.indexOf(" 200 "));
        QTest::newRow("garbage") << QByteArray("\x01\xff garbage\r\nnot numbers\r\n") << true;
        QTest::newRow("missing lines") << place << true;
        QTest::newRow("letter in a number")
            << QByteArray(kDefaultsFile).replace(" 100 \r\n 1 ", " 1x0 \r\n 1 ") << true;
        QTest::newRow("huge margin") << QByteArray(kDefaultsFile).replace(" 100 \r\n 1 ", " 99999999 \r\n 1 ")
                                     << true;
        QTest::newRow("paper out of the table")
            << QByteArray(kDefaultsFile).replace(" 1 \r\n 0 \r\n 0", " 7 \r\n 0 \r\n 0") << true;
        QTest::newRow("empty") << QByteArray() << true;
        QTest::newRow("window far away and huge")
            << place + " 2147483647 \r\n-2147483648 \r\n 2147483647 \r\n 2147483647 \r\n"
            << false;
        QTest::newRow("window too small to apply") << place + " 200 \r\n 200 \r\n 11000 \r\n 3000 \r\n"
                                                   << false;
    }
    void settingsFileAsFound()
    {
        QFETCH(QByteArray, bytes);
        QFETCH(bool, damaged);
        QVERIFY(WriteFile(ini(), bytes));
        frmPrint form(solid(40, 30, Qt::red), folder(), m_prompt, m_dialogs);
        const QRect room = QGuiApplication::primaryScreen()->availableGeometry();
        QVERIFY2(room.contains(form.geometry().topLeft()), qPrintable(QDebug::toString(form.geometry())));
        QVERIFY(form.width() <= room.width() && form.height() <= room.height());
        QVERIFY(form.width() != 11000 / 15);
        if (damaged) {
            const PrintSettings s = form.currentSettings(), d = PrintDefaults();
            QCOMPARE(s.Paper, d.Paper);
            QCOMPARE(s.Quality, d.Quality);
            QCOMPARE(s.MarginLeft, d.MarginLeft);
            QCOMPARE(s.ZoomIndex, d.ZoomIndex);
            QCOMPARE(form.lblMargin(0)->text(), QStringLiteral("100"));
        }
        QVERIFY(m_prompt.shown.isEmpty());
        QCOMPARE(ReadFile(ini()), bytes);
    }

    void landscapeSwapsTheSheetAndZoomScalesIt()
    {
        frmPrint form(solid(40, 30, Qt::red), folder(), m_prompt, m_dialogs);
        form.OptPaper(0)->click(); // A3
        QCOMPARE(form.sheetTwips(), QSizeF(16200, 24200));
        form.OptOrient(1)->click();
        QCOMPARE(form.sheetTwips(), QSizeF(24200, 16200));
        form.Cmbzoom()->setCurrentIndex(4); // 100%: 15 twips to the pixel
        QCOMPARE(form.picOffset()->paper(), QSize(1613, 1080));
        form.mnuZoompercent_Click(0); // 15%, which the list doesn't have
        QCOMPARE(form.zoomPercent(), 15);
        QCOMPARE(form.Cmbzoom()->currentIndex(), -1);
        QCOMPARE(form.Cmbzoom()->placeholderText(), QStringLiteral("15%"));
        QCOMPARE(form.picOffset()->paper(), QSize(242, 162));
        form.HScroll1(0)->setValue(50);
        QCOMPARE(form.lblMargin(0)->text(), QStringLiteral("050"));
        form.HScroll1(0)->setValue(1500);
        QCOMPARE(form.lblMargin(0)->text(), QStringLiteral("1500"));
    }

    void monochromeChoiceLeftTheSheetInColour()
    {
        frmPrint form(solid(200, 200, QColor(220, 20, 20)), folder(), m_prompt, m_dialogs);
        const QPoint inside = form.picOffset()->picZoom().center();
        QVERIFY(QColor(form.picOffset()->grab().toImage().pixel(inside)).red() > 180);
        form.OptColor(1)->click();
        const QColor shown = form.picOffset()->grab().toImage().pixel(inside);
        QVERIFY(shown.red() == shown.green() && shown.green() == shown.blue());
    }

    void bestFitKeepsProportionsInsideTheSheet_data()
    {
        QTest::addColumn<QSize>("picture");
        QTest::addColumn<int>("orientation");
        QTest::newRow("wide, portrait") << QSize(4000, 1000) << 0;
        QTest::newRow("tall, landscape") << QSize(300, 900) << 1;
        QTest::newRow("one pixel") << QSize(1, 1) << 0;
    }
    void bestFitKeepsProportionsInsideTheSheet()
    {
        QFETCH(QSize, picture);
        QFETCH(int, orientation);
        frmPrint form(solid(picture.width(), picture.height(), Qt::blue), folder(), m_prompt, m_dialogs);
        form.OptOrient(orientation)->click();
        form.HScroll1(0)->setValue(600);
        form.HScroll1(1)->setValue(400);
        form.Command1()->click();
        const QRectF pic = form.pictureTwips();
        const QSizeF sheet = form.sheetTwips();
        QCOMPARE(pic.topLeft(), QPointF(600, 400));
        QVERIFY(pic.right() <= sheet.width() - 300 + 0.5 && pic.bottom() <= sheet.height() - 200 + 0.5);
        QVERIFY(qFuzzyCompare(pic.right(), sheet.width() - 300) ||
                qFuzzyCompare(pic.bottom(), sheet.height() - 200));
        QVERIFY(qAbs(pic.width() / pic.height() - double(picture.width()) / picture.height()) < 1e-9);
    }

    void restoreChangesTheControlsNotTheFile()
    {
        frmPrint form(solid(40, 30, Qt::red), folder(), m_prompt, m_dialogs);
        form.OptPaper(3)->click();
        form.OptQuality(2)->click();
        form.HScroll1(1)->setValue(900);
        form.mnusavesettings_Click();
        QCOMPARE(m_prompt.shown.last().text, QStringLiteral("Print Settings Saved."));
        const QByteArray saved = ReadFile(ini());
        QVERIFY(saved.startsWith(";Zolvane-Velunta v"));
        QVERIFY(saved.contains(";Print Settings\r\n 2 \r\n 3 \r\n 0 \r\n 0 \r\n 100 \r\n 900 \r\n"));
        form.mnurestore_Click();
        QCOMPARE(m_prompt.shown.last().title, QStringLiteral("Restore to Default Print Settings"));
        QVERIFY(form.OptPaper(1)->isChecked());
        QCOMPARE(form.HScroll1(1)->value(), 100);
        QCOMPARE(ReadFile(ini()), saved);
        // A new preview starts from the saved file.
        frmPrint again(solid(40, 30, Qt::red), folder(), m_prompt, m_dialogs);
        QVERIFY(again.OptPaper(3)->isChecked());
        QCOMPARE(again.HScroll1(1)->value(), 900);
    }

    void unwritableFolderSaysSoAndKeepsWorking()
    {
        frmPrint form(solid(40, 30, Qt::red), QStringLiteral("/proc/no-such-folder/"), m_prompt, m_dialogs);
        form.mnusavesettings_Click();
        QCOMPARE(m_prompt.shown.size(), 1);
        QVERIFY(m_prompt.shown[0].text.startsWith(QStringLiteral("Could not save the print settings.")));
        form.Command1()->click();
        QVERIFY(form.pictureTwips().width() > 40 * 15);
    }

    void printedPageStandsAtTheMargins_data()
    {
        QTest::addColumn<int>("orientation");
        QTest::addColumn<int>("colorMode");
        QTest::addColumn<int>("quality");
        QTest::addColumn<QSize>("page"); // in points
        QTest::newRow("portrait, colour") << 0 << 0 << 1 << QSize(595, 842);
        QTest::newRow("landscape, colour, draft") << 1 << 0 << 0 << QSize(842, 595);
        QTest::newRow("portrait, monochrome, high") << 0 << 1 << 2 << QSize(595, 842);
    }
    void printedPageStandsAtTheMargins()
    {
        if (QStandardPaths::findExecutable(QStringLiteral("pdftoppm")).isEmpty())
            QSKIP("pdftoppm (poppler-utils) is not installed");
        QFETCH(int, orientation);
        QFETCH(int, colorMode);
        QFETCH(int, quality);
        QFETCH(QSize, page);
        // 100 x 50 pixels are 1500 x 750 twips: 75 x 37.5 points.
        frmPrint form(solid(100, 50, QColor(220, 20, 20)), folder(), m_prompt, m_dialogs);
        QVERIFY(form.choosePrinter(QString::fromLatin1(kPdfPrinterCaption)));
        const QString pdf = folder() + QStringLiteral("page.pdf");
        form.setPdfFile(pdf);
        form.OptPaper(1)->click(); // A4
        form.OptOrient(orientation)->click();
        form.OptColor(colorMode)->click();
        form.OptQuality(quality)->click();
        form.HScroll1(0)->setValue(1440); // an inch
        form.HScroll1(1)->setValue(720);
        QVERIFY(form.printPic());
        QVERIFY(m_prompt.shown.isEmpty());
        const QImage rendered = render(pdf);
        QCOMPARE(rendered.size(), page);
        const QRect box = inked(rendered);
        QVERIFY2(qAbs(box.left() - 72) <= 1 && qAbs(box.top() - 36) <= 1 && qAbs(box.width() - 75) <= 2 &&
                     qAbs(box.height() - 38) <= 2,
                 qPrintable(QDebug::toString(box)));
        const QRgb mid = rendered.pixel(box.center());
        if (colorMode == 1)
            QVERIFY(qRed(mid) == qGreen(mid) && qGreen(mid) == qBlue(mid));
        else
            QVERIFY(qRed(mid) > 180 && qGreen(mid) < 80);
    }

    void copiesOutOfRangeAreSetBack_data()
    {
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QString>("after");
        for (const auto& [typed, after] :
             {std::pair{"0", "1"}, {"x", "1"}, {"-4", "1"}, {"100000", "999"}, {"3", "3"}})
            QTest::newRow(typed) << QString::fromLatin1(typed) << QString::fromLatin1(after);
    }
    void copiesOutOfRangeAreSetBack()
    {
        QFETCH(QString, typed);
        QFETCH(QString, after);
        frmPrint form(solid(2, 2, Qt::black), folder(), m_prompt, m_dialogs);
        QVERIFY(form.choosePrinter(QString::fromLatin1(kPdfPrinterCaption)));
        form.setPdfFile(folder() + QStringLiteral("copies.pdf"));
        form.txtCopies()->setText(typed);
        QVERIFY(form.printPic());
        QCOMPARE(form.txtCopies()->text(), after);
        // The PDF file holds one page a copy.
        QFile pdf(folder() + QStringLiteral("copies.pdf"));
        QVERIFY(pdf.open(QIODevice::ReadOnly));
        QCOMPARE(pdf.readAll().count("/Type /Page\n"), after.toInt());
    }

    void refusedPrintSaysSo()
    {
        frmPrint form(solid(20, 20, Qt::black), folder(), m_prompt, m_dialogs);
        QVERIFY(form.choosePrinter(QString::fromLatin1(kPdfPrinterCaption)));
        form.setPdfFile(folder() + QStringLiteral("no/such/folder/x.pdf"));
        QVERIFY(!form.printPic());
        QCOMPARE(m_prompt.shown.size(), 1);
        QCOMPARE(m_prompt.shown[0].text, QStringLiteral("Could not print the picture."));
        QVERIFY(m_prompt.shown[0].title.startsWith(QStringLiteral("Print error nr")));
    }

    void cancelledPdfPrintsNothing()
    {
        frmPrint form(solid(20, 20, Qt::black), folder(), m_prompt, m_dialogs);
        QVERIFY(form.choosePrinter(QString::fromLatin1(kPdfPrinterCaption)));
        m_dialogs.paths.clear(); // the file dialog is cancelled
        QVERIFY(!form.printPic());
        QVERIFY(m_prompt.shown.isEmpty());
    }

    void fileMenuAndToolbarOpenThePreview()
    {
        MainWindowFixture fixture;
        frmMain& m = fixture.main();
        fixture.newDocument(64, 48);
        QSize seen;
        QString temp;
        QTimer::singleShot(0, [&] {
            auto* form = qobject_cast<frmPrint*>(QApplication::activeModalWidget());
            QVERIFY(form);
            temp = form->tempPicturePath();
            seen = QImage(temp).size();
            QCOMPARE(form->windowTitle(), QStringLiteral("Print Preview"));
            form->close();
        });
        m.CmdCommands(5)->click();
        QCOMPARE(seen, QSize(64, 48));
        QVERIFY(!QFile::exists(temp));
    }
};

QTEST_MAIN(tst_print)
#include "tst_print.moc"
