// Every icon and pointer loads from the compiled-in art. With VELUNTA_ICON_SHEET=<file.png>
// the test also draws a contact sheet of all art at 1x and 2x for a designer to look at
// (VELUNTA_ICON_SHEET_ONLY=<prefix> limits it to names starting with that prefix).

#include "widgets/Icons.h"

#include <QDir>
#include <QPainter>
#include <QSvgRenderer>
#include <QtTest>

using namespace velunta;
using namespace Qt::StringLiterals;

namespace {

bool HasInk(const QPixmap& pm)
{
    const QImage img = pm.toImage().convertToFormat(QImage::Format_ARGB32);
    for (int y = 0; y < img.height(); ++y)
        for (int x = 0; x < img.width(); ++x)
            if (qAlpha(img.pixel(x, y)) > 128)
                return true;
    return false;
}

} // namespace

class TstIcons : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void everyIconLoads()
    {
        QStringList names =
            u"app logo dropdown font font-style swap-colors restore-colors eyedropper-small"_s.split(u' ');
        const QList<QPair<QString, int>> groups{
            {u"tool"_s, 20},        {u"cmd"_s, 23},         {u"pencil-style"_s, 11}, {u"rect-style"_s, 6},
            {u"circle-style"_s, 3}, {u"edge3d-style"_s, 4}, {u"bright-style"_s, 4},  {u"dissolve"_s, 4},
            {u"arrow-style"_s, 2},  {u"enhance"_s, 3}};
        for (const auto& [group, count] : groups)
            for (int i = 0; i < count; ++i)
                names << group + u'-' + QString::number(i).rightJustified(2, u'0');
        QVERIFY(!ToolIcon(19).isNull() && !CommandIcon(22).isNull() && !StyleIcon(u"enhance"_s, 2).isNull());
        QVERIFY(ToolIcon(20).isNull() && NamedIcon(u"no-such-icon"_s).isNull());
        for (const QString& name : names)
            QVERIFY2(HasInk(NamedIcon(name).pixmap(24)), qPrintable(name));
    }

    void rendersAtDevicePixels()
    {
        const QPixmap pm = IconPixmap(u"tool-03"_s, 24, 2.0);
        QCOMPARE(pm.size(), QSize(48, 48));
        QCOMPARE(pm.devicePixelRatio(), 2.0);
        QCOMPARE(IconPixmap(u"logo"_s, QSize(128, 40), 1.0).size(), QSize(128, 40));
    }

    void cursorsHaveHotspots()
    {
        for (int i = 0; i < 22; ++i) {
            const QPoint hot = CursorHotspot(i);
            QVERIFY2(QRect(0, 0, 32, 32).contains(hot), qPrintable(QString::number(i)));
            QCOMPARE(ToolCursor(i).shape(), Qt::BitmapCursor);
            QCOMPARE(ToolCursor(i).hotSpot(), hot);
        }
        QCOMPARE(ToolCursor(22).shape(), Qt::ArrowCursor);
    }

    // Each piece of art at 1x and 2x on panel blue and white (pointers on white and
    // black, with their hot spots in red at 2x), then 1x disabled.
    void contactSheet()
    {
        const QString file = qEnvironmentVariable("VELUNTA_ICON_SHEET");
        if (file.isEmpty())
            QSKIP("set VELUNTA_ICON_SHEET=<file.png> to draw the contact sheet");
        const QString only = qEnvironmentVariable("VELUNTA_ICON_SHEET_ONLY");
        QImage sheet(1320, 3000, QImage::Format_RGB32);
        sheet.fill(QColor(236, 238, 242));
        QPainter p(&sheet);
        p.setFont(QFont(u"Sans"_s, 7));
        int x = 6, y = 6, rowHeight = 0;
        QString lastGroup;
        for (const QString& svg : QDir(u":/icons"_s, u"*.svg"_s).entryList()) {
            const QString name = svg.chopped(4), group = name.section(u'-', 0, 0);
            if (!name.startsWith(only))
                continue;
            const QSize size = QSvgRenderer(u":/icons/"_s + svg).defaultSize();
            const bool cursor = group == u"cursor"_s;
            const QColor panel(185, 214, 249), second = cursor ? Qt::black : Qt::white;
            const QList<QColor> backs{cursor ? Qt::white : panel, second, cursor ? Qt::white : panel, second,
                                      panel};
            const int count = cursor ? 4 : 5, w = 8 * count + (count + 2) * size.width();
            if (x + w > sheet.width() || (group != lastGroup && x > 6))
                x = 6, y += rowHeight + 6, rowHeight = 0;
            lastGroup = group;
            p.drawText(x, y + 10, name);
            for (int i = 0, cx = x; i < count; ++i) {
                const int scale = i == 2 || i == 3 ? 2 : 1;
                const QRect box(cx, y + 14, size.width() * scale + 4, size.height() * scale + 4);
                p.fillRect(box, backs[i]);
                p.drawPixmap(box.topLeft() + QPoint(2, 2),
                             i < 4 ? IconPixmap(name, size * scale, 1.0)
                                   : NamedIcon(name).pixmap(size, 1.0, QIcon::Disabled));
                if (cursor && scale == 2)
                    p.fillRect(QRect(box.topLeft() + QPoint(2, 2) + 2 * CursorHotspot(name.right(2).toInt()),
                                     QSize(2, 2)),
                               Qt::red);
                cx += box.width() + 4;
            }
            x += w + 10;
            rowHeight = std::max(rowHeight, 18 + 2 * size.height());
        }
        p.end();
        QVERIFY(sheet.copy(0, 0, sheet.width(), y + rowHeight + 6).save(file));
    }
};

QTEST_MAIN(TstIcons)
#include "tst_icons.moc"
