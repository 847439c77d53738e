#include "drawing/Shapes.h"

#include <QImage>
#include <QPainter>

#include <algorithm>
#include <cmath>

namespace velunta {

QPointF BezierPoint(const QVector<QPointF>& points, double t)
{
    if (points.isEmpty())
        return {};
    QVector<QPointF> p = points;
    for (qsizetype n = p.size() - 1; n > 0; --n)
        for (qsizetype i = 0; i < n; ++i)
            p[i] = p[i] + (p[i + 1] - p[i]) * t;
    return p[0];
}

QPainterPath BezierPath(const QVector<QPointF>& points)
{
    QPainterPath path;
    if (points.isEmpty())
        return path;
    path.moveTo(points[0]);
    // A step of about two pixels along the control polygon keeps the curve smooth.
    double length = 0;
    for (qsizetype i = 1; i < points.size(); ++i)
        length += std::hypot(points[i].x() - points[i - 1].x(), points[i].y() - points[i - 1].y());
    const int steps = std::clamp(int(length / 2), 8, 4000);
    for (int s = 1; s <= steps; ++s)
        path.lineTo(BezierPoint(points, double(s) / steps));
    return path;
}

void PaintShape(QPainter& painter, const Shape& shape)
{
    if (shape.points.isEmpty())
        return;
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    QPen pen(ToQColor(shape.line), std::max(1, shape.thickness), Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin);
    const bool polygon = shape.kind == ShapeKind::Polygon && shape.points.size() >= 3;
    const bool filled = polygon && shape.style != PolygonStyle::Outline;
    const bool outlined = !polygon || shape.style != PolygonStyle::Filled;
    painter.setPen(outlined ? pen : Qt::NoPen);
    painter.setBrush(filled ? QBrush(ToQColor(shape.fill)) : Qt::NoBrush);
    if (shape.points.size() == 1) {
        // A single point is a round dot as wide as the line.
        painter.setPen(Qt::NoPen);
        painter.setBrush(ToQColor(shape.line));
        const double r = std::max(1, shape.thickness) / 2.0;
        painter.drawEllipse(shape.points[0], r, r);
    } else if (polygon) {
        painter.drawPolygon(shape.points.constData(), int(shape.points.size()));
    } else if (shape.kind == ShapeKind::Polygon) {
        painter.drawLine(shape.points[0], shape.points[1]);
    } else {
        painter.drawPath(BezierPath(shape.points));
    }
    painter.restore();
}

void DrawShapes(QImage& picture, const QVector<Shape>& shapes)
{
    if (shapes.isEmpty())
        return;
    if (picture.format() != QImage::Format_RGB32)
        picture = picture.convertToFormat(QImage::Format_RGB32);
    QPainter painter(&picture);
    // A pixel's middle lies at +0.5: a point placed on pixel (x, y) is drawn centred on it.
    painter.translate(0.5, 0.5);
    for (const Shape& shape : shapes)
        PaintShape(painter, shape);
}

} // namespace velunta
