#pragma once
// The vector overlays that lie on the view of a document. They are drawn over the
// picture in view coordinates and never reach its pixels.

#include <QRect>

#include <algorithm>
#include <cmath>

namespace velunta {

// The view pixels a shown overlay covers from (x1, y1) to (x2, y2), with two to spare on
// each side for the pen and the rounding; a hidden one covers none. A tool that moves
// an overlay repaints what it covered before and covers now, not the whole view.
inline QRect OverlayViewRect(bool visible, double x1, double y1, double x2, double y2)
{
    if (!visible)
        return QRect();
    const int left = int(std::floor(std::min(x1, x2))) - 2, top = int(std::floor(std::min(y1, y2))) - 2;
    const int right = int(std::ceil(std::max(x1, x2))) + 3, bottom = int(std::ceil(std::max(y1, y2))) + 3;
    return QRect(QPoint(left, top), QPoint(right, bottom));
}

// A rectangle or ellipse outline (SelectArea, CropArea, DrawBox, DrawCircle).
struct RectOverlay {
    bool Visible = false;
    double Left = 0;
    double Top = 0;
    double Width = 0;
    double Height = 0;

    QRect viewRect() const { return OverlayViewRect(Visible, Left, Top, Left + Width, Top + Height); }

    void Move(double left, double top, double width, double height)
    {
        Left = left;
        Top = top;
        Width = width;
        Height = height;
    }

    // Keeps a marquee on a view of this drawable size: a box running past the right or
    // bottom edge is cut there, and a negative left or top moves to 0 with the size
    // reduced by the overhang.
    void clipTo(double viewWidth, double viewHeight)
    {
        if (Width > viewWidth - Left)
            Width = viewWidth - Left;
        if (Height > viewHeight - Top)
            Height = viewHeight - Top;
        if (Left < 0) {
            Width += Left;
            Left = 0;
        }
        if (Top < 0) {
            Height += Top;
            Top = 0;
        }
    }
};

// A line (FollowLine, Temp, Temp2, the guidelines Line1 and Line2).
struct LineOverlay {
    bool Visible = false;
    double X1 = 0;
    double Y1 = 0;
    double X2 = 0;
    double Y2 = 0;
    int BorderColor = 0; // packed colour
    int BorderStyle = 1; // 1 solid, 2 dash, 3 dot, 4 dash dot

    QRect viewRect() const { return OverlayViewRect(Visible, X1, Y1, X2, Y2); }
};

} // namespace velunta
