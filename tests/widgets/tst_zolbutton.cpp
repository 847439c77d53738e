// The program's button: looks and shapes, outlines cut from pictures, the option
// group, the pointer and key state machine, the property map and the access keys.
// With VELUNTA_BUTTON_GALLERY=<file.png> it also draws every look in every shape and
// state into one picture for review (scripts/button-gallery takes it at 100 % and 200 %).

#include "document/frmPaint.h"
#include "support/MainWindowFixture.h"
#include "support/TestImages.h"
#include "widgets/Icons.h"
#include "widgets/zolButton.h"

#include <QAccessible>
#include <QDialog>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QPainter>
#include <QtTest>

using namespace velunta;
using namespace velunta::test;

namespace {

// A picture from rows of letters: '.' white (the transparent colour when it stands
// top left), 'R' red, 'B' blue, 'K' black, ' ' fully clear.
QImage Picture(const QStringList& rows)
{
    QImage img = ImageFromRows(rows, {{u'R', RGB(255, 0, 0)}, {u'B', RGB(0, 0, 255)}, {u'K', 0}})
                     .convertToFormat(QImage::Format_ARGB32);
    for (int y = 0; y < img.height(); ++y) {
        auto* line = reinterpret_cast<QRgb*>(img.scanLine(y));
        for (int x = 0; x < img.width(); ++x)
            line[x] = rows[y][x] == u' ' ? 0 : line[x];
    }
    return img;
}

// The pixels of a region as rows of '#' and '.', for readable comparisons.
QStringList Pixels(const QRegion& r, QSize s)
{
    QStringList rows;
    for (int y = 0; y < s.height(); ++y) {
        QString row;
        for (int x = 0; x < s.width(); ++x)
            row += r.contains(QPoint(x, y)) ? u'#' : u'.';
        rows << row;
    }
    return rows;
}

// Counts the paint events a widget gets.
class PaintCounter : public QObject {
public:
    int count = 0;
    bool eventFilter(QObject*, QEvent* e) override
    {
        if (e->type() == QEvent::Paint)
            ++count;
        return false;
    }
};

// A dialog of buttons in a row.
struct Window {
    QDialog top;
    QHBoxLayout* row = new QHBoxLayout(&top);
    zolButton* add(const QString& caption = QString())
    {
        auto* b = new zolButton(caption, &top);
        row->addWidget(b);
        return b;
    }
    void show()
    {
        top.show();
        QVERIFY(QTest::qWaitForWindowExposed(&top));
    }
};

QRgb Pixel(const QImage& img, QPoint p)
{
    return img.convertToFormat(QImage::Format_ARGB32).pixel(p);
}

// What the button paints, over nothing.
QImage Face(QWidget* w)
{
    QImage img(w->size() * w->devicePixelRatioF(), QImage::Format_ARGB32_Premultiplied);
    img.setDevicePixelRatio(w->devicePixelRatioF());
    img.fill(Qt::transparent);
    // A masked widget renders from its mask's corner.
    w->render(&img, w->mask().boundingRect().topLeft(), QRegion(), QWidget::DrawChildren);
    return img;
}

} // namespace

class tst_zolButton : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void everyLookAndShapeRenders_data()
    {
        QTest::addColumn<int>("style");
        QTest::addColumn<int>("shape");
        for (int style = 0; style < 8; ++style)
            for (int shape = 0; shape < 9; ++shape)
                QTest::addRow("style %d shape %d", style, shape) << style << shape;
    }
    void everyLookAndShapeRenders()
    {
        QFETCH(int, style);
        QFETCH(int, shape);
        Window w;
        zolButton* b = w.add(QStringLiteral("&Go||on"));
        b->setPicture(shape >= 7
                          ? QVariant::fromValue(Picture({"....", ".RR.", ".RR.", "...."}).scaled(40, 24))
                          : QVariant::fromValue(CommandIcon(0)));
        b->setButtonStyle(style);
        b->setButtonShape(shape);
        b->setBackColor(RGB(200, 220, 255));
        b->setGradientMode(style % 5);
        b->setFixedSize(shape >= 7 ? b->size() : QSize(90, 44));
        w.show();
        const QImage plain = Face(b);
        QTest::mouseMove(b, b->rect().center());
        QTRY_VERIFY(b->HoverActive());
        QTest::mousePress(b, Qt::LeftButton, {}, b->rect().center());
        const QImage pressed = Face(b);
        QTest::mouseRelease(b, Qt::LeftButton, {}, b->rect().center());
        QVERIFY(plain != pressed);
        if (shape >= 7) {
            // The red middle of the picture is the face, and the cut-away corner is clear.
            QCOMPARE(b->size(), QSize(40, 24));
            QCOMPARE(qAlpha(Pixel(plain, {0, 0})), 0);
            QCOMPARE(qRed(Pixel(plain, {20, 12})), 255);
        }
    }

    void outlineCutFromPicture_data()
    {
        QTest::addColumn<QImage>("picture");
        QTest::addColumn<QStringList>("expected");
        QTest::newRow("cross") << Picture({"..R.", ".RRR", "..R."}) << QStringList{"..#.", ".###", "..#."};
        QTest::newRow("hole inside") << Picture({"..RRR", ".RR.R", "RRRRR"})
                                     << QStringList{"..###", ".##.#", "#####"};
        QTest::newRow("key black") << Picture({"KRRK", "RKKR", "KRRK"})
                                   << QStringList{".##.", "#..#", ".##."};
        QTest::newRow("clear key") << Picture({" RR ", "R  B", " BB "})
                                   << QStringList{".##.", "#..#", ".##."};
        QTest::newRow("all key") << Picture({"BBB", "BBB"}) << QStringList{"...", "..."};
        QImage fine = Picture({"..R.", "....", "....", "...."});
        fine.setDevicePixelRatio(2);
        QTest::newRow("2x picture") << fine << QStringList{".#", ".."};
    }
    void outlineCutFromPicture()
    {
        QFETCH(QImage, picture);
        QFETCH(QStringList, expected);
        Window w;
        zolButton* b = w.add();
        b->setPicture(picture);
        b->setButtonShape(7);
        w.show();
        const QSize size(expected.first().size(), int(expected.size()));
        QCOMPARE(b->size(), size);
        QCOMPARE(Pixels(b->WindowRegion(), size), expected);
        const bool empty = !expected.join(QString()).contains(u'#');
        if (empty) {
            // Nothing to see and nothing to click: a click falls through to the window.
            QVERIFY(b->WindowRegion().isEmpty());
            QVERIFY(b->testAttribute(Qt::WA_TransparentForMouseEvents));
        } else {
            QCOMPARE(Pixels(b->mask(), size), expected);
        }
    }

    void optionGroupChoosesOneAndRenumbersWhenOneLeaves()
    {
        Window w;
        zolButton* b[3] = {w.add(QStringLiteral("A")), w.add(QStringLiteral("B")),
                           w.add(QStringLiteral("C"))};
        for (zolButton* x : b)
            x->setMode(2);
        QCOMPARE(w.top.property("zb_OptCount").toInt(), 3);
        w.show();
        QSignalSpy clicks(b[1], &zolButton::Click);
        b[0]->setValue(true);
        QTest::mouseClick(b[1], Qt::LeftButton);
        QVERIFY(!b[0]->Value() && b[1]->Value() && !b[2]->Value());
        QCOMPARE(clicks.count(), 1);
        // Clicked again, an option that is on stays on and raises nothing.
        QTest::mouseClick(b[1], Qt::LeftButton);
        QVERIFY(b[1]->Value());
        QCOMPARE(clicks.count(), 1);
        QVERIFY(zolButton::OptionGroupHasValue(&w.top));
        // An arrow moves the focus to the next option, whose key-up chooses it.
        b[1]->setFocus();
        QTest::keyPress(b[1], Qt::Key_Right);
        QCOMPARE(QApplication::focusWidget(), b[2]);
        QTest::keyRelease(b[2], Qt::Key_Right);
        QVERIFY(b[2]->Value() && !b[1]->Value());
        // A check button flips; a command button has no value to set.
        b[0]->setMode(1);
        QTest::mouseClick(b[0], Qt::LeftButton);
        QTest::mouseClick(b[0], Qt::LeftButton);
        QVERIFY(!b[0]->Value());
        b[0]->setMode(0);
        b[0]->setValue(true);
        QVERIFY(!b[0]->Value());
        // The group keeps its numbers in order as buttons leave it.
        QCOMPARE(w.top.property("zb_OptCount").toInt(), 2);
        QCOMPARE(w.top.property("zb_Obj1").value<QObject*>(), b[1]);
        QCOMPARE(w.top.property("zb_Obj2").value<QObject*>(), b[2]);
        QVERIFY(!w.top.property("zb_Obj3").isValid());
        delete b[1];
        QCOMPARE(w.top.property("zb_Obj1").value<QObject*>(), b[2]);
        QVERIFY(!w.top.property("zb_Obj2").isValid());
        delete b[2];
        QVERIFY(!w.top.property("zb_OptCount").isValid());
    }

    void pressedThenMovedOffStaysPressedUntilRelease()
    {
        Window w;
        zolButton* b = w.add(QStringLiteral("Press"));
        auto* other = w.add(QStringLiteral("Other"));
        QSignalSpy clicks(b, &zolButton::Click);
        QSignalSpy inside(b, &zolButton::MouseOnButton);
        QCursor::setPos(5000, 5000);
        w.show();
        QTest::mouseMove(b, b->rect().center());
        QTRY_VERIFY(b->HoverActive());
        QTest::mousePress(b, Qt::LeftButton, {}, b->rect().center());
        QCursor::setPos(other->mapToGlobal(other->rect().center()));
        QTRY_VERIFY_WITH_TIMEOUT(!b->HoverActive(), 100);
        QCOMPARE(b->StateFlags() & 6, 2); // still held down, no longer under the pointer
        QCOMPARE(inside.count(), 2);
        QCOMPARE(inside.last().first().toBool(), false);
        QTest::mouseRelease(b, Qt::LeftButton, {}, b->mapFromGlobal(other->mapToGlobal(QPoint(5, 5))));
        QCOMPARE(b->StateFlags() & 2, 0);
        QCOMPARE(clicks.count(), 0);
    }

    void eventsComeInOrder()
    {
        Window w;
        zolButton* b = w.add(QStringLiteral("Go"));
        w.show();
        QStringList seen;
        connect(b, &zolButton::MouseDown, b, [&] { seen << QStringLiteral("MouseDown"); });
        connect(b, &zolButton::MouseUp, b, [&] { seen << QStringLiteral("MouseUp"); });
        connect(b, &zolButton::KeyDown, b, [&](int code) { seen << QStringLiteral("KeyDown %1").arg(code); });
        connect(b, &zolButton::KeyPress, b,
                [&](int code) { seen << QStringLiteral("KeyPress %1").arg(code); });
        connect(b, &zolButton::KeyUp, b, [&](int code) { seen << QStringLiteral("KeyUp %1").arg(code); });
        connect(b, &zolButton::Click, b, [&] { seen << QStringLiteral("Click"); });
        connect(b, &zolButton::DoubleClick, b,
                [&](int button) { seen << QStringLiteral("DoubleClick %1").arg(button); });
        QTest::mouseClick(b, Qt::LeftButton);
        QTest::keyClick(b, Qt::Key_Space);
        QTest::mouseClick(b, Qt::LeftButton);
        QTest::mouseDClick(b, Qt::LeftButton);
        QTest::mouseRelease(b, Qt::LeftButton);
        // A right click is no click.
        QTest::mouseClick(b, Qt::RightButton);
        QCOMPARE(seen, QStringList({"MouseDown", "MouseUp", "Click", "KeyDown 32", "KeyPress 32", "KeyUp 32",
                                    "Click", "MouseDown", "MouseUp", "Click", "DoubleClick 1", "MouseDown",
                                    "MouseUp", "Click", "MouseDown", "MouseUp"}));
        QCOMPARE(b->LastButton(), 2);
    }

    void keysReachTheRightButton()
    {
        Window w;
        auto* edit = new QLineEdit(&w.top);
        w.row->addWidget(edit);
        zolButton* ok = w.add(QStringLiteral("&Apply||all"));
        zolButton* option = w.add(QStringLiteral("On"));
        zolButton* fish = w.add(QStringLiteral("Fish && &Chips"));
        ok->setDefault(true);
        option->setMode(1);
        w.show();
        QCOMPARE(ok->StateFlags() & 1, 1);
        QSignalSpy clicks(ok, &zolButton::Click), chips(fish, &zolButton::Click);
        QTest::keyClick(&w.top, Qt::Key_A, Qt::AltModifier);
        QTest::keyClick(&w.top, Qt::Key_F, Qt::AltModifier); // "&&" is a plain ampersand, not a key
        QTest::keyClick(&w.top, Qt::Key_C, Qt::AltModifier);
        QCOMPARE(clicks.count(), 1);
        QCOMPARE(chips.count(), 1);
        // Enter in a text box, or on a check button, is the default button's; on another
        // command button it is that button's.
        edit->setFocus();
        QTest::keyClick(edit, Qt::Key_Return);
        option->setFocus();
        QTest::keyClick(option, Qt::Key_Return);
        QCOMPARE(clicks.count(), 3);
        QVERIFY(!option->Value());
        fish->setFocus();
        QTest::keyClick(fish, Qt::Key_Return);
        QCOMPARE(clicks.count(), 3);
        QCOMPARE(chips.count(), 2);
        // "||" breaks the line: two lines stand taller than one.
        QVERIFY(ok->sizeHint().height() > fish->sizeHint().height());
        // Screen readers hear the caption, or the tooltip where there is none.
        zolButton* bare = w.add();
        bare->setToolTip(QStringLiteral("Open"));
        QCOMPARE(QAccessible::queryAccessibleInterface(fish)->text(QAccessible::Name),
                 QStringLiteral("Fish & Chips"));
        QCOMPARE(QAccessible::queryAccessibleInterface(bare)->text(QAccessible::Name),
                 QStringLiteral("Open"));
    }

    void settersRefuseWithMessages()
    {
        zolButton b;
        QSignalSpy refused(&b, &zolButton::Refused);
        b.setButtonShape(7);
        QCOMPARE(b.ButtonShape(), 0);
        QCOMPARE(refused.takeFirst().first().toString(),
                 QStringLiteral("The Picture Property must be assigned first and must be a bitmap or JPEG."));
        b.setPicture(Picture({"..", ".R"}));
        b.setButtonShape(8);
        b.setPictureSize(3);
        QCOMPARE(b.PictureSize(), 0);
        QCOMPARE(refused.takeFirst().first().toString(),
                 QStringLiteral("The picture size cannot be changed for Shaped buttons"));
        b.setPicture(CommandIcon(1));
        QCOMPARE(b.ButtonShape(), 0);
        QVERIFY(refused.takeFirst().first().toString().startsWith(
            QStringLiteral("Icons cannot be used for custom buttons. Only use bitmaps\r\n")));
        b.setPictureAlign(2);
        b.setCaptionAlign(0);
        QCOMPARE(b.CaptionAlign(), 2);
        QVERIFY(refused.takeFirst().first().toString().endsWith(
            QStringLiteral("button captions can only be center aligned")));
        // Out of range: ignored without a word.
        b.setButtonStyle(8);
        b.setButtonShape(-1);
        b.setMode(3);
        b.setGradientMode(5);
        QCOMPARE(b.ButtonStyle() + b.ButtonShape() + b.Mode() + b.GradientMode(), 0);
        QVERIFY(refused.isEmpty());
    }

    void propertyMapRoundTrips_data()
    {
        QTest::addColumn<QVariantMap>("bag");
        QTest::newRow("defaults") << QVariantMap();
        // clang-format off
        QTest::newRow("everything") << QVariantMap{
            {"Caption", "&Save||now"}, {"CapAlign", 1}, {"CapStyle", 3}, {"BackStyle", 4}, {"Shape", 5},
            {"Gradient", 2}, {"cGradient", RGB(1, 2, 3)}, {"cFore", RGB(200, 0, 0)}, {"ImgSize", 2},
            {"cBack", RGB(10, 20, 30)}, {"cFHover", kSysHighlight}, {"cBhover", RGB(255, 231, 162)},
            {"LockHover", 2}, {"Focus", false}, {"Mode", 1}, {"Value", true}, {"CustomClick", 1},
            {"Image", "cmd-02"}, {"ImgAlign", 1}, {"Enabled", false}, {"mPointer", 2}};
        // clang-format on
        QTest::newRow("cut from picture") << QVariantMap{{"Shape", 8}, {"Image", Picture({"..R", "RRR"})}};
    }
    void propertyMapRoundTrips()
    {
        QFETCH(QVariantMap, bag);
        zolButton first, second;
        first.ReadProperties(bag);
        const QVariantMap written = first.WriteProperties();
        QCOMPARE(written, bag);
        second.ReadProperties(written);
        QCOMPARE(second.WriteProperties(), written);
    }

    void propertyMapReadsKeysInAnyCase()
    {
        QWidget container;
        container.setPalette(QPalette(QColor(10, 100, 200)));
        zolButton b(&container);
        b.ReadProperties({{"CBHOVER", "#FF8000"}, {"cback", "&HFF0000&"}, {"mode", "2"}, {"Value", "True"}});
        QCOMPARE(b.HoverBackColor(), RGB(255, 128, 0));
        QCOMPARE(b.BackColor(), RGB(0, 0, 255));
        QVERIFY(b.Value());
        QCOMPARE(container.property("zb_OptCount").toInt(), 1);
        // Bad values give the defaults, and a missing back colour is the container's.
        b.ReadProperties({{"Shape", 12}, {"CapAlign", "x"}, {"cFore", "&Hzz"}});
        QCOMPARE(b.ButtonShape(), 0);
        QCOMPARE(b.CaptionAlign(), 2);
        QCOMPARE(b.ForeColor(), kSysButtonText);
        QCOMPARE(b.BackColor(), RGB(10, 100, 200));
        QVERIFY(!container.property("zb_OptCount").isValid());
    }

    void delayedDrawingKeepsThePicture()
    {
        Window w;
        zolButton* b = w.add();
        b->setBackColor(RGB(255, 0, 0));
        w.show();
        const QPoint middle = b->rect().center();
        QCOMPARE(Pixel(b->grab().toImage(), middle), qRgb(255, 0, 0));
        b->DelayDrawing(true);
        b->setBackColor(RGB(0, 0, 255));
        QCOMPARE(Pixel(b->grab().toImage(), middle), qRgb(255, 0, 0));
        b->DelayDrawing(false);
        QCOMPARE(Pixel(b->grab().toImage(), middle), qRgb(0, 0, 255));
        b->ResetDefaultColors();
        QCOMPARE(b->BackColor(), FromQColor(w.top.palette().color(QPalette::Window)));
    }

    void hoverOverTheToolbarRepaintsNoDocument()
    {
        MainWindowFixture f;
        frmMain& m = f.main();
        m.resize(1100, 700);
        m.show();
        QVERIFY(QTest::qWaitForWindowExposed(&m));
        frmPaint* form = f.newDocument(300, 200);
        MainWindowFixture::settle();
        QWidget* view = form->findChild<QWidget*>(QStringLiteral("PaintArea"));
        QVERIFY(view);
        PaintCounter views, buttons;
        view->installEventFilter(&views);
        for (int i = 0; i < 23; ++i) {
            zolButton* b = m.CmdCommands(i);
            b->installEventFilter(&buttons);
            if (!b->isVisible())
                continue;
            // The window is held to the screen (800 pixels wide offscreen); a button past
            // its edge can't be under the pointer.
            const QPoint centre = b->mapToGlobal(b->rect().center());
            if (!m.screen()->geometry().contains(centre) || !m.frameGeometry().contains(centre))
                continue;
            QCursor::setPos(centre);
            QTRY_VERIFY2(b->HoverActive() || !b->isEnabled(), qPrintable(b->toolTip()));
        }
        QCursor::setPos(m.mapToGlobal(QPoint(5, m.height() - 5)));
        QTest::qWait(80);
        QVERIFY(buttons.count > 0);
        QCOMPARE(views.count, 0);
    }

    void gallery()
    {
        const QString out = qEnvironmentVariable("VELUNTA_BUTTON_GALLERY");
        if (out.isEmpty())
            QSKIP("VELUNTA_BUTTON_GALLERY is not set");
        // Columns: the nine shapes; rows: each look plain, under the pointer, pressed
        // and on, with a gradient on every other look; over the toolbar's blue.
        // Three rows of three, so the window fits a small screen at 200 % too.
        QWidget w;
        auto* grid = new QGridLayout(&w);
        const QImage cut = Picture({"....RRRR....", "..RRRRRRRR..", ".RRRRBBRRRR.", "RRRRBBBBRRRR",
                                    ".RRRRBBRRRR.", "..RRRRRRRR..", "....RRRR...."})
                               .scaled(84, 40);
        QList<zolButton*> shapes;
        for (int shape = 0; shape < 9; ++shape)
            grid->addWidget(shapes.emplace_back(new zolButton(&w)), shape / 3, shape % 3);
        w.move(0, 0);
        w.show();
        QVERIFY(QTest::qWaitForWindowExposed(&w));
        const qreal dpr = w.devicePixelRatioF();
        const int cellW = 92, cellH = 48, left = 110;
        QImage sheet(QSize(left + 9 * cellW, 8 * 4 * cellH + 20) * dpr, QImage::Format_ARGB32_Premultiplied);
        sheet.setDevicePixelRatio(dpr);
        sheet.fill(QColor(216, 231, 252));
        QPainter p(&sheet);
        const char* const states[4] = {"plain", "hover", "pressed", "on"};
        for (int style = 0; style < 8; ++style)
            for (int state = 0; state < 4; ++state) {
                const int y = 10 + (style * 4 + state) * cellH;
                p.drawText(QRect(6, y, left - 10, cellH - 4), Qt::AlignVCenter,
                           QStringLiteral("style %1 %2").arg(style).arg(QLatin1String(states[state])));
                for (int shape = 0; shape < 9; ++shape) {
                    zolButton* b = shapes[shape];
                    const QVariant image =
                        shape >= 7 ? QVariant(cut)
                                   : QVariant(QStringLiteral("cmd-%1").arg(style + 3, 2, 10, QChar(u'0')));
                    // clang-format off
                    b->ReadProperties({
                        {"Caption", QStringLiteral("&Look %1||shape %2").arg(style).arg(shape)},
                        {"Shape", shape}, {"BackStyle", style}, {"Image", image}, {"Value", state == 3},
                        {"cBack", RGB(236, 240, 248)}, {"cBhover", RGB(255, 231, 162)},
                        {"cGradient", RGB(150, 190, 240)}, {"Gradient", style % 2 ? 1 + style / 2 : 0},
                        {"Mode", state == 3 ? 1 : 0}});
                    // clang-format on
                    if (shape < 7)
                        b->setFixedSize(cellW - 8, cellH - 8);
                    QCursor::setPos(state == 1 ? b->mapToGlobal(b->rect().center()) : QPoint(5000, 5000));
                    QTRY_COMPARE(b->HoverActive(), state == 1);
                    if (state == 2)
                        QTest::mousePress(b, Qt::LeftButton, {}, b->rect().center());
                    p.drawImage(QPoint(left + shape * cellW, y), Face(b));
                    if (state == 2)
                        QTest::mouseRelease(b, Qt::LeftButton, {}, QPoint(-5, -5));
                }
            }
        p.end();
        QVERIFY(sheet.save(out));
    }
};

QTEST_MAIN(tst_zolButton)
#include "tst_zolbutton.moc"
