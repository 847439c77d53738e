#pragma once
// The vector overlays that lie on the view of a document. They are drawn over the
// picture in view coordinates and never reach its pixels.

namespace velunta {

// A rectangle or ellipse outline (SelectArea, CropArea, DrawBox, DrawCircle).
struct RectOverlay {
    bool Visible = false;
    double Left = 0;
    double Top = 0;
    double Width = 0;
    double Height = 0;

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
};

} // namespace velunta
