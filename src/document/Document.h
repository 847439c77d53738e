#pragma once
// One image document: its picture surfaces, the overlays on its view, and the
// fields of its window. The window (frmPaint) owns one and shows it; tools and
// commands work on it without a window.

#include "core/Gdi.h"
#include "core/Surface.h"
#include "document/Overlays.h"
#include "document/TextBox.h"
#include "document/UndoStore.h"

#include <QImage>
#include <QString>
#include <QVector>

#include <array>

namespace velunta {

class DocumentView;

// The view's geometry, kept by the window so the model can map between view and picture.
struct ViewGeometry {
    int paintLeft = 0; // PaintArea.Left inside Back (0 or negative when scrolled)
    int paintTop = 0;
    int paintWidth = 0; // PaintArea's outer size: picture x zoom / 100 + 2
    int paintHeight = 0;
    int backWidth = 0; // Back's scale size: the visible part
    int backHeight = 0;
    int hValue = 0; // the scroll bars' values and maxima
    int vValue = 0;
    int hMax = 0;
    int vMax = 0;
};

class Document {
public:
    Document();

    // The picture at true size, with its one-pixel frame. Its Tag is the file's full path,
    // empty while it was never saved.
    Surface Buffer{1};
    // The floating selection's pixels; Left, Top, Width, Height place it in picture coordinates.
    Surface BufferSelected{0};
    // The picture under the floating selection, to restore what a move uncovers.
    Surface SelectedBack{0};
    // The four slots of the undo ring: Undo, Undo2, Undo3, Undo4. A null or empty
    // snapshot is an empty slot.
    std::array<UndoSnapshotPtr, 4> UndoSlots;
    // Keeps the pixels of the undo steps: only what changed between them.
    UndoStore UndoKeep;
    // A copy of Buffer taken before a previewed operation.
    Surface TempBufferUndo{1};

    RectOverlay SelectArea;
    RectOverlay CropArea;
    RectOverlay DrawBox;
    RectOverlay DrawCircle;
    LineOverlay FollowLine;
    LineOverlay Temp;
    LineOverlay Temp2;
    LineOverlay Line1;
    LineOverlay Line2;

    // Fields of the window.
    bool Dirty = false;
    bool GridIsShown = false;
    int LastX = 0;
    int LastY = 0;
    double ZoomFactor = 100.0;
    float PointerImageA = 0;
    float PointerImageB = 0;
    bool KeyShortcutsOff = false;
    bool ShiftDown = false;
    bool KeyPointerActive = false;
    bool SnapByKey = false;
    int ZoomLimit = 500;
    double KeyPointerY = 0;
    double KeyPointerX = 0;

    // The stroke's state.
    bool Drawing = false;
    bool MouseReleased = false;
    int StartX = 0;
    int StartY = 0;
    float PointerX = 0;
    float PointerY = 0;
    bool SnapPressed = false;    // set at a press, cleared at the release: snap only while held
    bool BuffersChanged = false; // a stroke changed the picture: the release records it for undo
    // The selection's pixels float over the picture (SelectedBack holds what lies under them).
    bool SelectionLifted = false;
    // The float's own pixels while its transparent or blend option shows a preview; null otherwise.
    QImage FloatOriginal;
    // A stamp floating as it came, with its transparency: wherever it is moved, what
    // lies under it shows round it. FloatStampShown is what the float showed when last
    // laid, so a float painted on since is told apart and floats as it is. Null for
    // every other float.
    QImage FloatStamp;
    QImage FloatStampShown;
    // Counts the presses, so a tool can tell a new stroke from a move of the last one.
    int StrokeSerial = 0;
    // What the fill tool filled during the stroke StrokeSerial names, and with which
    // brush: another fill from inside that region would change nothing.
    struct FillMemo {
        int stroke = -1;
        bool selection = false;
        Color color = 0;
        int pattern = 0;
        bool border = false;
        FillRegion region;
    } FillDrag;
    // The text tool's box.
    TextBoxState textBox;
    // The marquee's origin in view pixels as last placed (SelectionViewX, SelectionViewY):
    // the pointer tool's drag of the selection starts from it. Whatever places the
    // marquee (a new area, a drag, Paste, Select All, a zoom) sets it, so the first drag
    // doesn't make the float jump.
    int LastSelectionLeft = 0;
    int LastSelectionTop = 0;

    // The window's tag (the document's name, "Untitled.bmp" for a blank page) and caption.
    QString Name;
    QString Caption;

    // Grid lines in view pixels while a grid is shown.
    QVector<int> GridColumns;
    QVector<int> GridRows;
    int GridColor = 0;

    ViewGeometry view;
    DocumentView* viewWindow = nullptr;

    void SetDirtyTrue() { Dirty = true; }
    void SetDirtyFalse() { Dirty = false; }
    double GetZoomFactor() const { return ZoomFactor; }

    // The name as the caption shows it: the text left of the first " -".
    QString CaptionName() const;
    // Caption := name, " - ", zoom, "%".
    void SetCaption(const QString& name);
    void RebuildCaption() { SetCaption(CaptionName()); }

    // Creates the picture surfaces for an outer size (picture + 2) filled with one colour.
    void CreatePicture(int outerWidth, int outerHeight, Color background);

    // The grid as a toggle: with lines shown it removes them; otherwise it lays lines every
    // stepX and stepY view pixels over the view (a colour of 0 or less is light grey). The
    // steps are in view pixels, so they keep their distance on the screen at every zoom.
    void DrawGrid(int stepX, int stepY, Color colour);

    // Requests to the window, dropped without one.
    void invalidateImageRect(const QRect& r);
    void invalidateView();
    void invalidateViewRect(const QRect& viewRect);
};

} // namespace velunta
