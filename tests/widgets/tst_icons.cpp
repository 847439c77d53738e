// Every icon and pointer loads from the compiled-in art. With VELUNTA_ICON_SHEET=<file.png>
// the test also draws a contact sheet of all art at 1x and 2x for a designer to look at
// (VELUNTA_ICON_SHEET_ONLY=<prefix> limits it to names starting with that prefix).

#include "widgets/Icons.h"

#include <QApplication>
#include <QDir>
#include <QPainter>
#include <QSvgRenderer>
#include <QtTest>

using namespace velunta;
using namespace Qt::StringLiterals;

namespace {

bool HasInk(const QPixmap& pm)
{
    const QImage img = pm.toImage();
    for (int y = 0; y < img.height(); ++y)
        for (int x = 0; x < img.width(); ++x)
            if (qAlpha(img.pixel(x, y)) > 128)
                return true;
    return false;
}

void DrawSheet(const QString& file, const QString& only)
{
    const QColor panel(185, 214, 249), white(Qt::white), black(Qt::black);
    QStringList names = QDir(u":/icons"_s, u"*.svg"_s).entryList();
    names = names.filter(QRegularExpression(u'^' + QRegularExpression::escape(only)));
    const QStringList order =
        u"tool cmd pencil rect circle edge3d bright dissolve enhance arrow cursor"_s.split(u' ');
    const auto rank = [&](const QString& n) { return order.indexOf(n.section(u'-', 0, 0)) & 0xFF; };
    std::stable_sort(names.begin(), names.end(), [&](auto& a, auto& b) { return rank(a) < rank(b); });
    QImage sheet(1320, 3000, QImage::Format_RGB32);
    sheet.fill(QColor(236, 238, 242));
    QPainter p(&sheet);
    p.setFont(QFont(u"Sans"_s, 7));
    int x = 6, y = 6, rowHeight = 0;
    QString lastGroup;
    for (const QString& file : names) {
        const QString name = file.chopped(4),
                      group = rank(name) < 0xFF ? name.section(u'-', 0, 0) : QString();
        const QSize size = QSvgRenderer(u":/icons/"_s + file).defaultSize();
        const bool cursor = name.startsWith(u"cursor"_s);
        // 1x and 2x on panel blue and white (pointers: on white and black), then 1x disabled.
        const QList<QColor> backs =
            cursor ? QList{white, black, white, black} : QList{panel, white, panel, white, panel};
        const int w = 8 * int(backs.size()) + (cursor ? 6 : 7) * size.width(), h = 14 + 2 * size.height() + 4;
        if (x + w > sheet.width() || (group != lastGroup && x > 6)) {
            x = 6, y += rowHeight + 6, rowHeight = 0;
        }
        lastGroup = group;
        p.setPen(Qt::black);
        p.drawText(x, y + 10, name);
        int cx = x;
        for (int i = 0; i < backs.size(); ++i) {
            const int scale = i == 2 || i == 3 ? 2 : 1;
            const QRect box(cx, y + 14, size.width() * scale + 4, size.height() * scale + 4);
            p.fillRect(box, backs[i]);
            p.drawPixmap(box.topLeft() + QPoint(2, 2),
                         i < 4 ? IconPixmap(name, size * scale, 1.0)
                               : NamedIcon(name).pixmap(size, 1.0, QIcon::Disabled));
            if (cursor && scale == 2) {
                const QPoint hot = box.topLeft() + QPoint(2, 2) + 2 * CursorHotspot(name.right(2).toInt());
                p.fillRect(QRect(hot, QSize(2, 2)), Qt::red);
            }
            cx += box.width() + 4;
        }
        x += w + 10;
        rowHeight = std::max(rowHeight, h);
    }
    p.end();
    QVERIFY(sheet.copy(0, 0, sheet.width(), y + rowHeight + 6).save(file));
}

} // namespace

class TstIcons : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void everyIconLoads()
    {
        QStringList names = QStringLiteral("app logo dropdown font font-style swap-colors restore-colors "
                                           "eyedropper-small")
                                .split(u' ');
        const QList<QPair<QString, int>> groups{
            {u"tool"_s, 20},        {u"cmd"_s, 23},         {u"pencil-style"_s, 11}, {u"rect-style"_s, 6},
            {u"circle-style"_s, 3}, {u"edge3d-style"_s, 4}, {u"bright-style"_s, 4},  {u"dissolve"_s, 4},
            {u"arrow-style"_s, 2},  {u"enhance"_s, 3}};
        for (const auto& [group, count] : groups)
            for (int i = 0; i < count; ++i)
                names << group + u'-' + QString::number(i).rightJustified(2, u'0');
        QVERIFY(!ToolIcon(19).isNull() && !CommandIcon(22).isNull() && !StyleIcon(u"enhance"_s, 2).isNull());
        QVERIFY(ToolIcon(20).isNull() && NamedIcon(u"no-such-icon"_s).isNull());
        for (const QString& name : names) {
            QVERIFY2(!NamedIcon(name).isNull(), qPrintable(name));
            QVERIFY2(HasInk(NamedIcon(name).pixmap(24)), qPrintable(name));
        }
    }

    void rendersAtDevicePixels()
    {
        const QPixmap pm = IconPixmap(u"tool-03"_s, 24, 2.0);
        QCOMPARE(pm.size(), QSize(48, 48));
        QCOMPARE(pm.devicePixelRatio(), 2.0);
        QCOMPARE(IconPixmap(u"logo"_s, QSize(128, 40), 1.0).size(), QSize(128, 40));
        QCOMPARE(ToolIcon(1).pixmap(QSize(16, 16), 2.0).size(), QSize(32, 32));
    }

    void cursorsHaveHotspots()
    {
        for (int i = 0; i < 22; ++i) {
            const QPoint hot = CursorHotspot(i);
            QVERIFY2(hot.x() >= 0 && hot.x() <= 31 && hot.y() >= 0 && hot.y() <= 31,
                     qPrintable(QString::number(i)));
            const QCursor c = ToolCursor(i);
            QCOMPARE(c.shape(), Qt::BitmapCursor);
            QCOMPARE(c.hotSpot(), hot);
        }
        QCOMPARE(ToolCursor(22).shape(), Qt::ArrowCursor);
    }

    void contactSheet()
    {
        const QString file = qEnvironmentVariable("VELUNTA_ICON_SHEET");
        if (file.isEmpty())
            QSKIP("set VELUNTA_ICON_SHEET=<file.png> to draw the contact sheet");
        DrawSheet(file, qEnvironmentVariable("VELUNTA_ICON_SHEET_ONLY"));
    }
};

QTEST_MAIN(TstIcons)
#include "tst_icons.moc"
