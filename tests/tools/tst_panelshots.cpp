// Pictures of the option strip for review, taken from the screen: every tool's
// panel, the slider and the font list open. Runs only when VELUNTA_PANEL_SHOTS names
// the folder for the pictures (scripts/panel-shots starts it under Xvfb).

#include "document/frmPaint.h"
#include "support/MainWindowFixture.h"
#include "tools/frmControls.h"
#include "tools/frmFonts.h"
#include "tools/frmSelector.h"

#include <QDir>
#include <QScreen>
#include <QToolButton>
#include <QWindow>
#include <QtTest>

using namespace velunta;
using namespace velunta::test;

class tst_PanelShots : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void shots();
};

namespace {

void letItShow()
{
    for (int i = 0; i < 5; ++i) {
        MainWindowFixture::settle();
        QTest::qWait(40);
    }
}

// The screen's pixels of a rectangle of the main window.
QPixmap Shot(QWidget& main, const QRect& r)
{
    return main.screen()->grabWindow(main.winId(), r.x(), r.y(), r.width(), r.height());
}

} // namespace

void tst_PanelShots::shots()
{
    const QString folder = qEnvironmentVariable("VELUNTA_PANEL_SHOTS");
    if (folder.isEmpty())
        QSKIP("VELUNTA_PANEL_SHOTS is not set");
    QDir().mkpath(folder);
    MainWindowFixture f;
    f.main().resize(1260, 760);
    f.newDocument(320, 240);
    frmControls& c = *f.main().controls();
    f.main().ShowCursorPanel(true);
    letItShow();
    const QRect strip(QPoint(0, c.mapTo(&f.main(), QPoint(0, 0)).y()), QSize(f.main().width(), c.height()));
    for (int tool = 0; tool < 20; ++tool) {
        f.main().Cmd(tool)->click();
        if (tool == 0)
            f.main().ShowCursorPanel(true);
        letItShow();
        QVERIFY(Shot(f.main(), strip)
                    .save(folder + QStringLiteral("/panel-%1.png").arg(tool, 2, 10, QChar(u'0'))));
    }
    const QRect withPopup = strip.adjusted(0, 0, 0, 330);

    f.main().Cmd(12)->click();
    c.ClickDropDown(7);
    letItShow();
    QVERIFY(Shot(f.main(), withPopup).save(folder + QStringLiteral("/panel-slider.png")));
    c.UnClickButton();
    c.ShowHideFonts();
    letItShow();
    QVERIFY(Shot(f.main(), withPopup).save(folder + QStringLiteral("/panel-fonts.png")));
    c.ShowHideFonts();
    c.ShowHideFontStyle();
    letItShow();
    QVERIFY(Shot(f.main(), withPopup).save(folder + QStringLiteral("/panel-fontstyle.png")));
    c.ShowHideFontStyle();
    f.main().Cmd(1)->click();
    c.ClickDropDown(4);
    letItShow();
    QVERIFY(Shot(f.main(), withPopup).save(folder + QStringLiteral("/panel-slider-pencil.png")));
    QVERIFY(Shot(f.main(), f.main().rect()).save(folder + QStringLiteral("/window.png")));
}

QTEST_MAIN(tst_PanelShots)
#include "tst_panelshots.moc"
