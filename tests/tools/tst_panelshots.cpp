// Pictures of the option strip for review, taken from the screen: every tool's
// panel, the slider and the font lists open. Runs only when VELUNTA_PANEL_SHOTS names
// the folder for the pictures (scripts/panel-shots starts it under Xvfb).

#include "document/frmPaint.h"
#include "support/MainWindowFixture.h"
#include "tools/frmControls.h"

#include <QDir>
#include <QToolButton>
#include <QtTest>

using namespace velunta;
using namespace velunta::test;

class tst_PanelShots : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void shots()
    {
        const QString folder = qEnvironmentVariable("VELUNTA_PANEL_SHOTS");
        if (folder.isEmpty())
            QSKIP("VELUNTA_PANEL_SHOTS is not set");
        QDir().mkpath(folder);
        MainWindowFixture f;
        frmMain& m = f.main();
        m.resize(1260, 760);
        f.newDocument(320, 240);
        frmControls& c = *m.controls();
        // The screen's pixels of a rectangle of the main window, once it has settled.
        const auto shot = [&](const QRect& r, const QString& name) {
            for (int i = 0; i < 5; ++i) {
                MainWindowFixture::settle();
                QTest::qWait(40);
            }
            QVERIFY(m.screen()
                        ->grabWindow(m.winId(), r.x(), r.y(), r.width(), r.height())
                        .save(folder + u'/' + name + QStringLiteral(".png")));
        };
        const QRect strip(QPoint(0, c.mapTo(&m, QPoint(0, 0)).y()), QSize(m.width(), c.height()));
        for (int tool = 0; tool < 20; ++tool) {
            m.Cmd(tool)->click();
            m.ShowCursorPanel(tool == 0);
            shot(strip, QStringLiteral("panel-%1").arg(tool, 2, 10, QChar(u'0')));
        }
        const QRect withPopup = strip.adjusted(0, 0, 0, 330);
        m.Cmd(12)->click();
        c.ClickDropDown(7);
        shot(withPopup, QStringLiteral("panel-slider"));
        c.UnClickButton();
        c.ShowHideFonts();
        shot(withPopup, QStringLiteral("panel-fonts"));
        c.ShowHideFonts();
        c.ShowHideFontStyle();
        shot(withPopup, QStringLiteral("panel-fontstyle"));
        c.ShowHideFontStyle();
        m.Cmd(1)->click();
        c.ClickDropDown(4);
        shot(withPopup, QStringLiteral("panel-slider-pencil"));
        shot(m.rect(), QStringLiteral("window"));
    }
};

QTEST_MAIN(tst_PanelShots)
#include "tst_panelshots.moc"
