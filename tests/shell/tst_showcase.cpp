// Pictures of the running program for review: a stroke in each pencil style, and a
// photo at 25 %, 100 % and 500 %. Runs only when VELUNTA_SHOWCASE names the folder
// for the pictures; otherwise it is skipped.

#include "document/frmPaint.h"
#include "support/MainWindowFixture.h"
#include "support/TestImages.h"

#include <QDir>
#include <QMdiSubWindow>
#include <QToolButton>
#include <QtTest>

#include <cmath>

using namespace velunta;
using namespace velunta::test;

class tst_Showcase : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void pencilStyles();
    void zooms();
};

namespace {

QString folder() { return qEnvironmentVariable("VELUNTA_SHOWCASE"); }

void save(QWidget& w, const QString& name)
{
    MainWindowFixture::settle();
    QTest::qWait(100);
    w.grab().save(QDir(folder()).filePath(name));
}

} // namespace

void tst_Showcase::pencilStyles()
{
    if (folder().isEmpty())
        QSKIP("VELUNTA_SHOWCASE is not set");
    QDir().mkpath(folder());
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
        const int y = 20 + style * 40;
        // A wavy stroke of many samples, as a hand would draw it.
        m.PaintAreaMouseDown(*form, 1, 0, 20, y);
        for (int i = 1; i <= 120; ++i)
            m.PaintAreaMouseMove(*form, 1, 0, 20 + i * 4, float(y + 12 * std::sin(i / 6.0)));
        m.PaintAreaMouseUp(*form, 1, 0, 500, y);
    }
    save(m, QStringLiteral("pencil-styles.png"));
}

void tst_Showcase::zooms()
{
    if (folder().isEmpty())
        QSKIP("VELUNTA_SHOWCASE is not set");
    const QString photo = QDir(folder()).filePath(QStringLiteral("photo.bmp"));
    if (!QFile::exists(photo))
        QSKIP("no photo.bmp in the folder");
    MainWindowFixture f;
    frmMain& m = f.main();
    m.resize(1200, 800);
    m.FileToOpen = photo;
    m.Open_Click();
    frmPaint* form = m.activeDocument();
    qobject_cast<QMdiSubWindow*>(form->parentWidget())->showMaximized();
    for (int zoom : {25, 100, 500}) {
        form->PreDefZoom(zoom);
        save(m, QStringLiteral("zoom-%1.png").arg(zoom));
    }
}

QTEST_MAIN(tst_Showcase)
#include "tst_showcase.moc"
