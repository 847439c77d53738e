// Pictures of the running program for review: a stroke in each pencil style, and a
// photo at 25 %, 100 % and 500 %. Runs only when VELUNTA_SHOWCASE names the folder
// for the pictures (the zooms also need photo.bmp in it); otherwise it is skipped.

#include "document/frmPaint.h"
#include "support/MainWindowFixture.h"

#include <QDir>
#include <QMdiSubWindow>
#include <QToolButton>
#include <QtTest>

#include <cmath>

using namespace velunta;
using namespace velunta::test;

class tst_Showcase : public QObject {
    Q_OBJECT
    const QDir folder{qEnvironmentVariable("VELUNTA_SHOWCASE")};
    void save(QWidget& w, const QString& name)
    {
        MainWindowFixture::settle();
        QTest::qWait(100);
        QVERIFY(w.grab().save(folder.filePath(name)));
    }
private Q_SLOTS:
    void init()
    {
        if (qEnvironmentVariableIsEmpty("VELUNTA_SHOWCASE"))
            QSKIP("VELUNTA_SHOWCASE is not set");
        QDir().mkpath(folder.path());
    }
    void pencilStyles()
    {
        MainWindowFixture f;
        frmMain& m = f.main();
        m.resize(1200, 800);
        frmPaint* form = f.newDocument(560, 470);
        m.Cmd(1)->click();
        m.state().ForeColor = RGB(30, 60, 200);
        m.state().BackColor = RGB(255, 220, 0);
        m.state().SelectorValues[4].Value = 6;
        for (int style = 0; style <= 10; ++style) {
            m.state().PencilStyle = style;
            const int y = 20 + style * 40; // a wavy stroke of many samples, as a hand draws it
            m.PaintAreaMouseDown(*form, 1, 0, 20, y);
            for (int i = 1; i <= 120; ++i)
                m.PaintAreaMouseMove(*form, 1, 0, 20 + i * 4, float(y + 12 * std::sin(i / 6.0)));
            m.PaintAreaMouseUp(*form, 1, 0, 500, y);
        }
        save(m, QStringLiteral("pencil-styles.png"));
    }
    void zooms()
    {
        if (!folder.exists(QStringLiteral("photo.bmp")))
            QSKIP("no photo.bmp in the folder");
        MainWindowFixture f;
        f.main().resize(1200, 800);
        f.main().FileToOpen = folder.filePath(QStringLiteral("photo.bmp"));
        f.main().Open_Click();
        frmPaint* form = f.main().activeDocument();
        qobject_cast<QMdiSubWindow*>(form->parentWidget())->showMaximized();
        for (int zoom : {25, 100, 500}) {
            form->PreDefZoom(zoom);
            save(f.main(), QStringLiteral("zoom-%1.png").arg(zoom));
        }
    }
};

QTEST_MAIN(tst_Showcase)
#include "tst_showcase.moc"
