#pragma once
// Hosts for the benchmarks: a document window host that does nothing, and a tool
// bench with a real window so a stroke's refresh paints what a user would see.

#include "document/DocumentHost.h"
#include "document/DrawState.h"
#include "document/PaintArea.h"
#include "document/ToolHost.h"
#include "document/UndoRing.h"
#include "document/frmPaint.h"
#include "tools/SimplePaints.h"

#include <QApplication>
#include <QCursor>
#include <QImage>
#include <QPainter>

#include <benchmark/benchmark.h>

namespace velunta::bench {

class NullDocumentHost : public DocumentHost {
public:
    void PaintAreaMouseDown(frmPaint&, int, int, float, float) override {}
    void PaintAreaMouseMove(frmPaint&, int, int, float, float) override {}
    void PaintAreaMouseUp(frmPaint&, int, int, float, float) override {}
    void PaintAreaWheelZoom(frmPaint&, bool, float, float) override {}
    void FormKeyDown(frmPaint&, int, int) override {}
    void FormKeyUp(frmPaint&, int, int) override {}
    bool FormQueryUnload(frmPaint&) override { return true; }
    void FormTerminated(frmPaint&) override {}
    void SetImageSizeText(const QString&) override {}
    void ZoomChanged(frmPaint&) override {}
    QCursor PointerCursor(int) override { return QCursor(); }
};

// A tool host that records the undo steps as the program does, in the ring of `undo`;
// what the main window would show of a stroke (read-outs, menus) it leaves out.
class UndoToolHost : public ToolHost {
public:
    Document* ActiveDocument() override { return doc; }
    void PrepUndo() override
    {
        if (doc)
            velunta::PrepUndo(undo, *doc);
    }
    void StrokeEnded() override { undo.UndoSuppressed = false; }
public:
    void SetSelBak() override {}
    void SaveUndoBitmap() override {}
    void ValidateMenus() override {}
    void PictureResized() override {}
    void BeginBusy(bool) override {}
    bool StepProgress(double) override { return false; }
    void EndBusy() override {}
    void SetUndoEnabled(bool) override {}
    bool UndoEnabled() const override { return false; }
    void Undo_Click() override {}
    void SelectTool(int) override {}
    void Cmd_Click(int) override {}
    void ShowImageContextMenu(Document&) override {}
    void SetCoordsText(const QString&) override {}
    void SetAreaText(const QString&) override {}
    void SetZoomText(const QString&) override {}
    void ClearZoomOptions() override {}
    void ShowCursorPanel(bool) override {}
    void SetBlendText(const QString&) override {}
    void SetAngleText(const QString&, int) override {}
    bool ToggleSnapGrid() override { return false; }
    void ShowPickedColor(Color) override {}
    void ColorsChanged() override {}
    void ShowTransparencyColor(Color) override {}
    void ShowReplaceColor(int, Color) override {}
    void DetailPicked(Document&, double, double) override {}
    Document* doc = nullptr;
    UndoState undo;
};

// A document window of a viewport of `view` (the window's size) over a w x h picture,
// scrolled to its middle; its tools record real undo steps.
struct WindowBench {
    WindowBench(int w, int h, double zoom = 100, QSize view = QSize(380, 280))
    {
        tools.doc = &form.doc;
        form.resize(view);
        form.doc.CreatePicture(w + 2, h + 2, 0xFFFFFF);
        form.doc.ZoomFactor = zoom;
        form.SizePaintArea();
        form.Form_Resize();
        form.RealignZoom(0.5, 0.5);
        screen = QImage(form.back()->size(), QImage::Format_ARGB32_Premultiplied);
    }
    // Paints the visible view, as the window system would after a refresh.
    void paintView()
    {
        QPainter p(&screen);
        form.back()->render(&p, QPoint(), QRegion(form.back()->rect()), QWidget::DrawChildren);
    }
    // Shows the window, so that a refresh paints through the window system's path.
    void showWindow()
    {
        form.show();
        QCoreApplication::processEvents();
    }
    // What the event loop does after a mouse event of a shown window: it paints the
    // rectangles the refresh invalidated, not the whole window.
    static void refreshView() { QCoreApplication::processEvents(); }
    // The picture position at the middle of the visible view.
    QPoint visibleMiddle() const
    {
        const double z = form.doc.ZoomFactor / 100.0;
        return QPoint(int((form.back()->width() / 2 - form.paintArea()->x()) / z),
                      int((form.back()->height() / 2 - form.paintArea()->y()) / z));
    }
    NullDocumentHost host;
    frmPaint form{host};
    QImage screen;
    DrawState state;
    UndoToolHost tools;
    ToolContext ctx{state, tools};
};

} // namespace velunta::bench

// The benchmarks' main: an offscreen application around Google Benchmark's run.
#define VELUNTA_BENCHMARK_MAIN()                                                                             \
    int main(int argc, char** argv)                                                                          \
    {                                                                                                        \
        qputenv("QT_QPA_PLATFORM", "offscreen");                                                             \
        QApplication app(argc, argv);                                                                        \
        benchmark::Initialize(&argc, argv);                                                                  \
        benchmark::RunSpecifiedBenchmarks();                                                                 \
        benchmark::Shutdown();                                                                               \
        return 0;                                                                                            \
    }
