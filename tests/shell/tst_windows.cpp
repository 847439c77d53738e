// The windows as a user meets them: a new picture opens wholly inside the documents'
// area, one step from the one before; Cascade leaves every window room to work in; a
// picture as large as the screen is not shrunk on open; the scroll bars move the view
// the way their thumbs show; and the main window fits a 1024 x 600 netbook screen.

#include "core/Gdi.h"
#include "document/PaintArea.h"
#include "document/frmPaint.h"
#include "imageops/frmNew.h"
#include "shell/QtServices.h"
#include "support/MainWindowFixture.h"
#include "support/TestImages.h"
#include "tools/frmControls.h"

#include <QLabel>
#include <QLineEdit>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMessageBox>
#include <QRadioButton>
#include <QScreen>
#include <QScrollBar>
#include <QTemporaryDir>
#include <QTimer>
#include <QtTest>

using namespace velunta;
using namespace velunta::test;

namespace {

QMdiSubWindow* windowOf(frmPaint* form)
{
    return qobject_cast<QMdiSubWindow*>(form->parentWidget());
}

} // namespace

class tst_Windows : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void newWindowOutsideTheWorkArea()
    {
        MainWindowFixture f;
        const QRect area = f.main().mdiArea()->viewport()->rect();
        QList<QMdiSubWindow*> windows;
        // Small ones step down and right; one larger than the area is cut to fit at its
        // step; when that would leave too little, a window starts again at the top left.
        QList<QSize> sizes{QSize(100, 80), QSize(300, 200)};
        const int large = 20;
        sizes.insert(2, large, QSize(1500, 1100)); // larger than the area
        sizes << QSize(120, 90);
        for (const QSize size : sizes)
            windows << windowOf(f.newDocument(size.width(), size.height()));
        for (QMdiSubWindow* sw : windows)
            QVERIFY2(area.contains(sw->geometry()), qPrintable(QStringLiteral("%1,%2 %3x%4")
                                                                   .arg(sw->x())
                                                                   .arg(sw->y())
                                                                   .arg(sw->width())
                                                                   .arg(sw->height())));
        bool restarted = false;
        for (int i = 1; i < windows.size(); ++i) {
            const QMdiSubWindow *sw = windows[i], *before = windows[i - 1];
            if (sw->pos() == QPoint(0, 0)) {
                restarted = true;
                continue;
            }
            QVERIFY(sw->x() > before->x() && sw->y() > before->y());
            if (i >= 2 && i < 2 + large) // a large picture keeps room to work in
                QVERIFY(sw->width() >= area.width() * 2 / 3 && sw->height() >= area.height() * 2 / 3);
        }
        QVERIFY(restarted);
        QCOMPARE(windows[2]->size(), area.size() - QSize(windows[2]->x(), windows[2]->y()));
    }

    // File > New: the dialog's size and colour make the picture, in a window inside the
    // area; a size below 2 is refused with a message and makes nothing.
    void newImageDialog()
    {
        MainWindowFixture f;
        QTimer::singleShot(0, [] {
            auto* dialog = qobject_cast<frmNew*>(QApplication::activeModalWidget());
            QVERIFY(dialog);
            QCOMPARE(dialog->txtName()->text(), QStringLiteral("Untitled"));
            dialog->TxtWidth()->setText(QStringLiteral("1"));
            dialog->Command1_Click();
            QVERIFY(dialog->isVisible());
            dialog->OptSizes(3)->click(); // 1024 x 768
            QCOMPARE(dialog->TxtWidth()->text(), QStringLiteral("1024"));
            dialog->Option1(1)->click(); // black
            dialog->Command1_Click();
        });
        f.main().NewImage_Click();
        QCOMPARE(f.prompt.shown.size(), 1);
        QCOMPARE(f.prompt.shown.first().text, QStringLiteral("Invalid size"));
        frmPaint* form = f.main().activeDocument();
        QVERIFY(form);
        QCOMPARE(QSize(form->doc.Buffer.ScaleWidth(), form->doc.Buffer.ScaleHeight()), QSize(1024, 768));
        QCOMPARE(GetPixel(form->doc.Buffer, 5, 5), Color(0));
        QCOMPARE(form->doc.Caption, QStringLiteral("Untitled - 100%"));
        QVERIFY(f.main().mdiArea()->viewport()->rect().contains(windowOf(form)->geometry()));
    }

    void cascadeShrinksWindowsToTitleBars()
    {
        MainWindowFixture f;
        for (int i = 0; i < 6; ++i)
            f.newDocument(200 + 40 * i, 150);
        f.main().Cascade_Click();
        const QRect area = f.main().mdiArea()->viewport()->rect();
        for (frmPaint* form : f.main().documents()) {
            QMdiSubWindow* sw = windowOf(form);
            QVERIFY(area.contains(sw->geometry()));
            // Room to paint in, not a title bar: at least two thirds of the area.
            QVERIFY(sw->height() >= area.height() * 2 / 3 && sw->width() >= area.width() * 2 / 3);
            QVERIFY(form->height() > sw->height() / 2);
        }
    }

    void pictureAsWideAsTheScreenIsShrunk_data()
    {
        QTest::addColumn<int>("extra"); // pixels beyond the screen's width
        QTest::addColumn<double>("zoom");
        QTest::newRow("exactly as wide: stays") << 0 << 100.0;
        QTest::newRow("one pixel wider: fitted") << 1 << 25.0;
    }
    void pictureAsWideAsTheScreenIsShrunk()
    {
        QFETCH(int, extra);
        QFETCH(double, zoom);
        QTemporaryDir dir;
        MainWindowFixture f;
        const QSize screen = f.main().screen()->size();
        const QString path = dir.filePath(QStringLiteral("wide.bmp"));
        QVERIFY(MakeImage(screen.width() + extra, 8, [](int, int) { return 0xFFFFFF; }).save(path, "BMP"));
        f.main().FitBigImages = true;
        f.main().FileToOpen = path;
        f.main().Open_Click();
        QCOMPARE(f.main().activeDocument()->doc.ZoomFactor, zoom);
    }

    // The view stands at minus the bar's value: the thumb at the left shows the left
    // edge, an arrow steps by the visible width, and a bar with nothing to do is off.
    void scrollBarsMirrored()
    {
        MainWindowFixture f;
        frmPaint* form = f.newDocument(3000, 40);
        QScrollBar* h = form->HScroll1();
        QScrollBar* v = form->VScroll1();
        QVERIFY(h->isEnabled());
        QVERIFY(!v->isEnabled()); // 40 pixels fit
        QCOMPARE(h->value(), h->minimum());
        QCOMPARE(form->paintArea()->x(), -h->value());
        QCOMPARE(h->singleStep(), form->back()->width());
        h->triggerAction(QAbstractSlider::SliderSingleStepAdd);
        QCOMPARE(form->paintArea()->x(), -h->value());
        QCOMPARE(h->value(), h->minimum() + form->back()->width());
        h->setValue(h->maximum()); // the right edge of the picture at the right of the view
        QCOMPARE(form->paintArea()->x() + form->paintArea()->width(), form->back()->width());
    }

    // Each style shows its own icon and buttons; the program's own values (hexadecimal 34
    // and 44, 67) before their bits.
    void messageBoxShowsNoIcon_data()
    {
        using B = QMessageBox;
        QTest::addColumn<int>("style");
        QTest::addColumn<int>("icon");
        QTest::addColumn<int>("buttons");
        QTest::newRow("plain") << int(vbOKOnly) << int(B::NoIcon) << int(B::Ok);
        QTest::newRow("information") << int(vbInformation) << int(B::Information) << int(B::Ok);
        QTest::newRow("critical, OK and Cancel")
            << vbCritical + vbOKCancel << int(B::Critical) << int(B::Ok | B::Cancel);
        QTest::newRow("exclamation, Yes No Cancel")
            << vbExclamation + vbYesNoCancel << int(B::Warning) << int(B::Yes | B::No | B::Cancel);
        QTest::newRow("question, OK and Cancel")
            << vbQuestion + vbOKCancel << int(B::Question) << int(B::Ok | B::Cancel);
        QTest::newRow("Yes and No") << int(vbYesNo) << int(B::NoIcon) << int(B::Yes | B::No);
        QTest::newRow("hex 34: question") << int(vbQuestionYesNo) << int(B::Question) << int(B::Yes | B::No);
        QTest::newRow("hex 44: warning") << int(vbWarningYesNo) << int(B::Warning) << int(B::Yes | B::No);
        QTest::newRow("67: question, Cancel too")
            << int(vbQuestionYesNoCancel) << int(B::Question) << int(B::Yes | B::No | B::Cancel);
    }
    void messageBoxShowsNoIcon()
    {
        QFETCH(int, style);
        QFETCH(int, icon);
        QFETCH(int, buttons);
        QtPrompt prompt;
        int shownIcon = -1, shownButtons = -1;
        QTimer::singleShot(0, [&] {
            auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
            QVERIFY(box);
            shownIcon = box->icon();
            shownButtons = box->standardButtons();
            box->button(box->standardButtons() & QMessageBox::Cancel ? QMessageBox::Cancel
                        : box->standardButtons() & QMessageBox::No   ? QMessageBox::No
                                                                     : QMessageBox::Ok)
                ->click();
        });
        const int answer = prompt.MsgBox(QStringLiteral("Text"), style, QStringLiteral("Velunta"));
        QCOMPARE(shownIcon, icon);
        QCOMPARE(shownButtons, buttons);
        QCOMPARE(answer, buttons & QMessageBox::Cancel ? int(vbCancel)
                         : buttons & QMessageBox::No   ? int(vbNo)
                                                       : int(vbOK));
    }

    void mainWindowFitsANetbook()
    {
        MainWindowFixture f;
        frmMain& m = f.main();
        // Every panel, the widest too, leaves the window within 1024 pixels.
        for (int tool = 0; tool < kToolCount; ++tool) {
            m.SelectTool(tool);
            QVERIFY2(m.minimumSizeHint().width() <= 1000, qPrintable(QString::number(tool)));
        }
        QVERIFY(m.minimumSizeHint().height() <= 560);
        m.resize(1000, 560);
        MainWindowFixture::settle();
        QVERIFY(m.width() <= 1000);
        // The read-outs keep room for "4000 x 3000" and more.
        QLabel* size = m.lblImgSize();
        size->setText(QStringLiteral("40000 x 30000"));
        QVERIFY(size->width() >= size->fontMetrics().horizontalAdvance(size->text()) + 8);
    }
};

QTEST_MAIN(tst_Windows)
#include "tst_windows.moc"
