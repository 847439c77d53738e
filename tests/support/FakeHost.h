#pragma once
// A tool host and a document view that record what the tools ask of them, so the
// pointer pipeline and the tools run without any window.

#include "document/Document.h"
#include "document/DocumentView.h"
#include "document/DrawState.h"
#include "document/ToolHost.h"
#include "document/UndoRing.h"
#include "support/TestImages.h"
#include "tools/PointerPipeline.h"
#include "tools/Selection.h"
#include "tools/SimplePaints.h"

#include <QStringList>

namespace velunta::test {

class FakeHost : public ToolHost {
public:
    explicit FakeHost(Document& doc) : doc(doc) {}
    Document* ActiveDocument() override { return &doc; }
    void PrepUndo() override
    {
        ++prepUndoCalls;
        if (undo)
            velunta::PrepUndo(*undo, doc);
        if (onPrepUndo)
            onPrepUndo();
    }
    void SetSelBak() override { velunta::SetSelBak(doc); }
    void SaveUndoBitmap() override { ++undoBitmaps; }
    void ValidateMenus() override {}
    void PictureResized() override { ++resizes; }
    void BeginBusy(bool progress) override { busy << progress; }
    bool StepProgress(double) override { return false; }
    void EndBusy() override { busy.removeLast(); }
    void StrokeEnded() override
    {
        if (undo)
            undo->UndoSuppressed = false;
    }
    void SetUndoEnabled(bool enabled) override { undoEnabled = enabled; }
    bool UndoEnabled() const override { return undoEnabled; }
    void Undo_Click() override { ++undoCalls; }
    void SelectTool(int tool) override
    {
        state->LastTool = state->CurrentTool;
        state->CurrentTool = tool;
        selected << tool;
    }
    void Cmd_Click(int index) override { SelectTool(index); }
    void ShowImageContextMenu(Document&) override { ++contextMenus; }
    void SetCoordsText(const QString& text) override { coords = text; }
    void SetAreaText(const QString& text) override { area = text; }
    void SetZoomText(const QString&) override {}
    void ClearZoomOptions() override { ++zoomOptionsCleared; }
    void ShowCursorPanel(bool visible) override { state->CursorPanelVisible = visible; }
    void SetBlendText(const QString&) override {}
    void SetAngleText(const QString& text, int alignment) override
    {
        angle = text;
        angleAlignment = alignment;
    }
    bool ToggleSnapGrid() override { return state->SnapToGrid = !state->SnapToGrid; }
    void ShowPickedColor(Color c) override { picked = c; }
    void ColorsChanged() override { ++colorChanges; }
    void ShowTransparencyColor(Color c) override { transparencyShown = c; }
    void ShowReplaceColor(int index, Color c) override { replaceShown[index] = c; }
    void DetailPicked(Document&, double x, double y) override { detailPicks.append({x, y}); }

    Document& doc;
    DrawState* state = nullptr;
    UndoState* undo = nullptr; // when set, undo steps are recorded for real
    std::function<void()> onPrepUndo;
    int prepUndoCalls = 0, undoBitmaps = 0, undoCalls = 0, contextMenus = 0, zoomOptionsCleared = 0,
        colorChanges = 0, resizes = 0;
    QList<bool> busy; // the busy states open now, with or without the progress strip
    bool undoEnabled = false;
    QList<int> selected;
    QList<QPointF> detailPicks;
    QString coords, area, angle;
    int angleAlignment = 0;
    Color picked = kNoColor;
    Color transparencyShown = kNoColor;
    Color replaceShown[2] = {kNoColor, kNoColor};
};

class FakeView : public DocumentView {
public:
    explicit FakeView(Document& doc) : doc(doc) { doc.viewWindow = this; }
    ~FakeView() override { doc.viewWindow = nullptr; }
    void invalidateImageRect(const QRect& r) override { invalidated |= r; }
    void invalidateView() override {}
    void setPointerShape(int shape) override { pointer = shape; }
    int pointerShape() const override { return pointer; }
    void PreDefZoom(double zoom) override { doc.ZoomFactor = zoom; }
    void RealignZoom(double ratioY, double ratioX) override { realigns << qMakePair(ratioY, ratioX); }
    void captionChanged() override {}

    Document& doc;
    QRect invalidated;
    int pointer = -1;
    QList<QPair<double, double>> realigns;
};

// A visible floating selection of one colour over `where` of the document's picture.
inline Surface& ShowFloat(Document& doc, const QRect& where, Color fill)
{
    Surface& sel = doc.BufferSelected;
    sel.BackColor = fill;
    sel.setScaleSize(where.width(), where.height());
    sel.Cls();
    sel.Left = where.x();
    sel.Top = where.y();
    doc.SelectArea.Visible = true;
    return sel;
}

// A document of w x h white pixels, a draw state, a host and a view, wired together.
struct ToolBench {
    explicit ToolBench(int w = 40, int h = 30)
    {
        doc.CreatePicture(w + 2, h + 2, 0xFFFFFF);
        doc.view.paintWidth = w + 2;
        doc.view.paintHeight = h + 2;
        host.state = &state;
    }
    // The picture's pixel x, y becomes f(x, y).
    void paint(const std::function<Color(int, int)>& f)
    {
        doc.Buffer.setImage(MakeImage(doc.Buffer.ScaleWidth(), doc.Buffer.ScaleHeight(), f));
    }
    // A press at the first point, moves through the others and the release at the last,
    // through the pointer pipeline, in view pixels.
    void mouse(const QList<QPointF>& points, int button = kLeftButton)
    {
        PaintArea_MouseDown(ctx, doc, button, 0, float(points.first().x()), float(points.first().y()));
        for (const QPointF& p : points.mid(1))
            PaintArea_MouseMove(ctx, doc, button, 0, float(p.x()), float(p.y()));
        PaintArea_MouseUp(ctx, doc, button, 0, float(points.last().x()), float(points.last().y()));
    }
    // One step of the current tool at image position x, y; button 0 is the release.
    void dispatch(int x, int y, int button = kLeftButton, bool shift = false, double zoom = 100)
    {
        bool drawing = button != 0;
        ToolDispatch(ctx, doc, doc.Buffer, x, y, zoom, drawing, button, shift);
    }
    Document doc;
    DrawState state;
    FakeHost host{doc};
    FakeView view{doc};
    ToolContext ctx{state, host};
};

} // namespace velunta::test
