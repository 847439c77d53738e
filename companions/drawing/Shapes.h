#pragma once
// The figures of the two drawing companions, drawn the same way on the picture and on
// the editor's view: a Bezier curve whose first and last points it runs through and
// whose points between pull it, and a polygon through its corners.

#include "core/Color.h"

#include <QPainterPath>
#include <QPointF>
#include <QVector>

class QPainter;

namespace velunta {

enum class ShapeKind { Bezier, Polygon };

// How a polygon is painted.
enum class PolygonStyle { Outline = 0, Filled = 1, FilledOutline = 2 };

struct Shape {
    ShapeKind kind = ShapeKind::Bezier;
    QVector<QPointF> points; // in picture pixels
    Color line = 0;
    Color fill = 0xFFFFFF;
    int thickness = 1;
    PolygonStyle style = PolygonStyle::Outline;
};

// The point of the curve of control points `points` at t in 0..1 (de Casteljau).
QPointF BezierPoint(const QVector<QPointF>& points, double t);
// The curve as a line through enough of its points to look smooth at 1:1.
QPainterPath BezierPath(const QVector<QPointF>& points);

// Paints the shape with `painter` as it stands (the caller sets any view transform).
// One point is a dot, two a line; a polygon closes from three corners on.
void PaintShape(QPainter& painter, const Shape& shape);

// Paints the shapes on the picture, in order.
void DrawShapes(QImage& picture, const QVector<Shape>& shapes);

} // namespace velunta
