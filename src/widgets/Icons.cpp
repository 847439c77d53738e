#include "widgets/Icons.h"

#include <QFile>
#include <QGuiApplication>
#include <QHash>
#include <QIconEngine>
#include <QImage>
#include <QPainter>
#include <QPixmapCache>
#include <QScreen>
#include <QSvgRenderer>

#include <cmath>
#include <memory>

namespace velunta {
namespace {

QString NumberedName(const QString& group, int index)
{
    return group + u'-' + QString::number(index).rightJustified(2, u'0');
}

QString PathOf(const QString& name)
{
    return QStringLiteral(":/icons/") + name + QStringLiteral(".svg");
}

// One parsed renderer per picture, kept for the life of the program (GUI thread only).
QSvgRenderer* Renderer(const QString& name)
{
    static QHash<QString, std::shared_ptr<QSvgRenderer>> renderers;
    auto it = renderers.constFind(name);
    if (it != renderers.constEnd())
        return it->get();
    std::shared_ptr<QSvgRenderer> r;
    if (QFile::exists(PathOf(name))) {
        r = std::make_shared<QSvgRenderer>(PathOf(name));
        if (!r->isValid())
            r.reset();
    }
    renderers.insert(name, r);
    return r.get();
}

// A greyed, faded copy for disabled buttons.
QImage Disabled(QImage img)
{
    img = img.convertToFormat(QImage::Format_ARGB32);
    for (int y = 0; y < img.height(); ++y) {
        auto* line = reinterpret_cast<QRgb*>(img.scanLine(y));
        for (int x = 0; x < img.width(); ++x) {
            const int grey = 100 + qGray(line[x]) / 2;
            line[x] = qRgba(grey, grey, grey, qAlpha(line[x]) / 2);
        }
    }
    return img;
}

QPixmap Render(const QString& name, QSize logical, qreal dpr, QIcon::Mode mode)
{
    QSvgRenderer* r = Renderer(name);
    if (!r || logical.isEmpty())
        return {};
    if (dpr <= 0)
        dpr = 1;
    const QSize fitted = r->defaultSize().scaled(logical, Qt::KeepAspectRatio);
    const QSize device(std::max(1, int(std::lround(fitted.width() * dpr))),
                       std::max(1, int(std::lround(fitted.height() * dpr))));
    const QString key = QStringLiteral("velunta-icon:%1:%2x%3:%4")
                            .arg(name)
                            .arg(device.width())
                            .arg(device.height())
                            .arg(mode == QIcon::Disabled ? 1 : 0);
    QPixmap pm;
    if (!QPixmapCache::find(key, &pm)) {
        QImage img(device, QImage::Format_ARGB32_Premultiplied);
        img.fill(Qt::transparent);
        QPainter p(&img);
        p.setRenderHint(QPainter::Antialiasing);
        r->render(&p, QRectF(QPointF(0, 0), QSizeF(device)));
        p.end();
        pm = QPixmap::fromImage(mode == QIcon::Disabled ? Disabled(img) : img);
        QPixmapCache::insert(key, pm);
    }
    pm.setDevicePixelRatio(dpr);
    return pm;
}

// Draws the SVG afresh for every size and ratio a widget asks for.
class SvgIconEngine : public QIconEngine {
public:
    explicit SvgIconEngine(QString name) : name_(std::move(name)) {}

    // QIcon asks for device pixels here and tags the result with the ratio itself.
    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State) override
    {
        return Render(name_, size, 1.0, mode);
    }
    void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State) override
    {
        const qreal dpr = painter->device() ? painter->device()->devicePixelRatioF() : 1.0;
        const QPixmap pm = Render(name_, rect.size(), dpr, mode);
        const QSizeF shown = pm.deviceIndependentSize();
        painter->drawPixmap(QRectF(rect.x() + (rect.width() - shown.width()) / 2,
                                   rect.y() + (rect.height() - shown.height()) / 2, shown.width(),
                                   shown.height()),
                            pm, QRectF(pm.rect()));
    }
    QSize actualSize(const QSize& size, QIcon::Mode, QIcon::State) override
    {
        QSvgRenderer* r = Renderer(name_);
        return r ? r->defaultSize().scaled(size, Qt::KeepAspectRatio) : QSize();
    }
    QList<QSize> availableSizes(QIcon::Mode, QIcon::State) override
    {
        return {QSize(16, 16), QSize(24, 24), QSize(32, 32), QSize(48, 48)};
    }
    QString key() const override { return QStringLiteral("velunta-svg"); }
    QIconEngine* clone() const override { return new SvgIconEngine(name_); }
    // Made only for pictures that exist; each is read when it is first drawn, so
    // the buttons of panels nobody opens cost nothing.
    bool isNull() override { return false; }
    QString iconName() override { return name_; }

private:
    QString name_;
};

QHash<int, QPoint> ReadHotspots()
{
    QHash<int, QPoint> spots;
    QFile f(QStringLiteral(":/icons/cursors.txt"));
    if (!f.open(QIODevice::ReadOnly | QIODevice::Text))
        return spots;
    while (!f.atEnd()) {
        const QString line = QString::fromUtf8(f.readLine()).trimmed();
        const QStringList parts = line.split(u' ', Qt::SkipEmptyParts);
        if (parts.size() != 3 || line.startsWith(u'#'))
            continue;
        bool ok[3];
        const int index = parts[0].toInt(&ok[0]), x = parts[1].toInt(&ok[1]), y = parts[2].toInt(&ok[2]);
        if (ok[0] && ok[1] && ok[2])
            spots.insert(index, QPoint(x, y));
    }
    return spots;
}

} // namespace

QIcon NamedIcon(const QString& name)
{
    if (!QFile::exists(PathOf(name)))
        return {};
    return QIcon(new SvgIconEngine(name));
}

QIcon ToolIcon(int tool)
{
    return NamedIcon(NumberedName(QStringLiteral("tool"), tool));
}
QIcon CommandIcon(int index)
{
    return NamedIcon(NumberedName(QStringLiteral("cmd"), index));
}
QIcon StyleIcon(const QString& group, int index)
{
    return NamedIcon(NumberedName(group, index));
}

QPixmap IconPixmap(const QString& name, int logicalSize, qreal devicePixelRatio)
{
    return Render(name, QSize(logicalSize, logicalSize), devicePixelRatio, QIcon::Normal);
}

QPixmap IconPixmap(const QString& name, QSize logicalSize, qreal devicePixelRatio)
{
    return Render(name, logicalSize, devicePixelRatio, QIcon::Normal);
}

QPoint CursorHotspot(int index)
{
    static const QHash<int, QPoint> spots = ReadHotspots();
    return spots.value(index, QPoint(-1, -1));
}

QCursor ToolCursor(int index)
{
    const QPoint hot = CursorHotspot(index);
    qreal dpr = 1.0;
    if (const QScreen* screen = QGuiApplication::primaryScreen())
        dpr = screen->devicePixelRatio();
    const QPixmap pm = IconPixmap(NumberedName(QStringLiteral("cursor"), index), 32, dpr);
    if (pm.isNull() || hot.x() < 0)
        return QCursor(Qt::ArrowCursor);
    // The hot spot is in logical pixels; Qt scales it with the pixmap's ratio.
    return QCursor(pm, hot.x(), hot.y());
}

} // namespace velunta
