#pragma once
// What the document model asks of the window that shows it. A document without a
// window (in a test, say) has none, and these requests are then dropped.

#include <QRect>

namespace velunta {

// The pointer pictures over the view: each tool's own by its number (0..19), and these.
enum PointerShape : int {
    kPointerArrow = -1,
    kPointerMoveSelection = 20, // over a selection the pointer tool drags
    kPointerDetail = 21,        // picking the area of Detailed Editing
};

class DocumentView {
public:
    virtual ~DocumentView() = default;
    // Repaint the part of the view that shows this rectangle of the picture.
    virtual void invalidateImageRect(const QRect& imageRect) = 0;
    // Repaint the whole view, overlays included.
    virtual void invalidateView() = 0;
    // Repaint a rectangle of the view, in view pixels (overlays that moved).
    virtual void invalidateViewRect(const QRect& viewRect) { invalidateView(); }
    // The pointer picture over the view (PointerShape, or a tool's number).
    virtual void setPointerShape(int shape) = 0;
    virtual int pointerShape() const = 0;
    // True while the pointer rests over the picture.
    virtual bool pointerOverPicture() const { return false; }
    // Zoom and layout (zoom percent already stored in the document).
    virtual void PreDefZoom(double zoom) = 0;
    virtual void RealignZoom(double ratioY, double ratioX) = 0;
    // The window's caption changed.
    virtual void captionChanged() = 0;
    // The text tool's box (Document::textBox) changed: show it as it now stands.
    virtual void textBoxChanged() {}
};

} // namespace velunta
