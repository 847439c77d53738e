#include "tools/Selection.h"

#include "core/Gdi.h"
#include "core/Numbers.h"
#include "document/Document.h"
#include "document/DrawState.h"
#include "document/ToolHost.h"
#include "tools/SimplePaints.h"

#include <QPainter>

#include <algorithm>
#include <cmath>

namespace velunta {

namespace {

void forgetStamp(Document& doc)
{
    doc.FloatStamp = QImage();
    doc.FloatStampShown = QImage();
}

// The float's stamp over what lies under it now.
void layStamp(Document& doc)
{
    Surface& sel = doc.BufferSelected;
    QImage shown = doc.SelectedBack.Image().copy();
    if (shown.size() != doc.FloatStamp.size() || sel.Image().size() != shown.size()) {
        forgetStamp(doc);
        return;
    }
    QPainter p(&shown);
    p.drawImage(0, 0, doc.FloatStamp);
    p.end();
    sel.setImage(shown);
    doc.FloatStampShown = sel.Image();
}

// After a move: the stamp is laid again over its new place, unless the float was
// painted on, changed by a command or is showing its options since it was laid.
void followStamp(Document& doc)
{
    if (doc.FloatStamp.isNull())
        return;
    if (!doc.FloatOriginal.isNull() || doc.BufferSelected.Image() != doc.FloatStampShown)
        forgetStamp(doc);
    else
        layStamp(doc);
}

// The float and what lies under it take the same rectangle.
void placeBoth(Document& doc, double left, double top, int width, int height)
{
    forgetStamp(doc);
    doc.BufferSelected.clearPicture();
    doc.BufferSelected.Move(left, top, width, height);
    doc.SelectedBack.clearPicture();
    doc.SelectedBack.Move(left, top, width, height);
}

} // namespace

void SetSelBak(Document& doc)
{
    if (doc.SelectionLifted)
        return;
    Surface& back = doc.SelectedBack;
    back.setSize(doc.BufferSelected.Width(), doc.BufferSelected.Height());
    BitBlt(back, 0, 0, doc.BufferSelected.ScaleWidth(), doc.BufferSelected.ScaleHeight(), doc.BufferSelected,
           0, 0, SRCCOPY);
    doc.SelectionLifted = true;
}

void DropSelection(Document& doc)
{
    doc.SelectArea.Visible = false;
    doc.SelectionLifted = false;
    doc.FloatOriginal = QImage();
    forgetStamp(doc);
    doc.invalidateView();
}

void SelectAreaStroke(ToolContext& ctx, Document& doc, Surface& surface, int x, int y, double zoom,
                      bool drawing)
{
    const double f = zoom / 100.0, k = 100.0 / zoom;
    RectOverlay& area = doc.SelectArea;
    const QRect before = area.viewRect() | doc.CropArea.viewRect();
    doc.CropArea.Visible = false;
    if (drawing) {
        if (x > surface.CurrentX) {
            area.Left = f * surface.CurrentX;
            area.Width = f * x - f * surface.CurrentX;
        } else {
            area.Left = f * x;
            area.Width = f * surface.CurrentX - f * x;
        }
        if (y > surface.CurrentY) {
            area.Top = f * surface.CurrentY;
            area.Height = f * y - f * surface.CurrentY;
        } else {
            area.Top = f * y;
            area.Height = f * surface.CurrentY - f * y;
        }
        // The marquee stays on the view.
        area.clipTo(doc.view.paintWidth - 2, doc.view.paintHeight - 2);
        area.Visible = true;
        doc.invalidateViewRect(before | area.viewRect());
        return;
    }
    // A click without a drag drops the marquee.
    const bool still = surface.CurrentX < x + 1 && surface.CurrentX > x - 1 && surface.CurrentY < y + 1 &&
                       surface.CurrentY > y - 1;
    if (still || surface.CurrentX == x || surface.CurrentY == y || area.Width <= 0 || area.Height <= 0) {
        DropSelection(doc);
        return;
    }
    // Lift the area into the float; what lies under it starts as the background colour
    // until SetSelBak takes the float's pixels.
    Surface& sel = doc.BufferSelected;
    placeBoth(doc, area.Left * k, area.Top * k, I4(area.Width * k), I4(area.Height * k));
    BitBlt(sel, 0, 0, sel.Width(), sel.Height(), doc.Buffer, I4(area.Left * k), I4(area.Top * k), SRCCOPY);
    sel.CurrentX = doc.Buffer.CurrentX - area.Left * k;
    sel.CurrentY = doc.Buffer.CurrentY - area.Top * k;
    Surface& back = doc.SelectedBack;
    back.BackColor = ctx.state.BackColor;
    back.Cls();
    back.CurrentX = sel.CurrentX;
    back.CurrentY = sel.CurrentY;
    doc.LastSelectionLeft = I2(area.Left);
    doc.LastSelectionTop = I2(area.Top);
    doc.SelectionLifted = false;
    doc.FloatOriginal = QImage();
    if (area.Visible)
        SetSelBak(doc);
    doc.invalidateView();
}

void MoveSelection(ToolContext& ctx, Document& doc, Surface& surface, int x, int y, double zoom, bool drawing)
{
    if (!doc.SelectArea.Visible)
        return;
    // The marquee follows the pointer at the view's own scale, so a selection moves at
    // every zoom (a whole-number factor would stand still below 50 % and run ahead at 150 %).
    const double z = zoom / 100.0;
    const double k = 100.0 / zoom;
    Surface& sel = doc.BufferSelected;
    Surface& back = doc.SelectedBack;
    auto restoreAndResave = [&] {
        // What the float covered comes back, then what it now covers is kept.
        BitBlt(surface, I4(sel.Left), I4(sel.Top), sel.Width(), sel.Height(), back, 0, 0, SRCCOPY);
        sel.Move(doc.SelectArea.Left * k, doc.SelectArea.Top * k);
        back.Move(doc.SelectArea.Left * k, doc.SelectArea.Top * k);
        BitBlt(back, 0, 0, sel.Width(), sel.Height(), doc.Buffer, I4(sel.Left), I4(sel.Top), SRCCOPY);
        back.CurrentX = surface.CurrentX - doc.SelectArea.Left * k;
        back.CurrentY = surface.CurrentY - doc.SelectArea.Top * k;
        followStamp(doc);
    };
    if (drawing) {
        doc.SelectArea.Left = double(x) * z - (z * surface.CurrentX - doc.LastSelectionLeft);
        doc.SelectArea.Top = double(y) * z - (z * surface.CurrentY - doc.LastSelectionTop);
        restoreAndResave();
    } else {
        BitBlt(surface, I4(sel.Left), I4(sel.Top), sel.Width(), sel.Height(), back, 0, 0, SRCCOPY);
        // The division and product make a rounding step of the anchored position.
        doc.LastSelectionLeft = I2(doc.SelectArea.Left / 100 * 100);
        doc.LastSelectionTop = I2(doc.SelectArea.Top / 100 * 100);
        sel.Move(k * doc.LastSelectionLeft, k * doc.LastSelectionTop);
        back.Move(k * doc.LastSelectionLeft, k * doc.LastSelectionTop);
        BitBlt(back, 0, 0, sel.Width(), sel.Height(), doc.Buffer, I4(sel.Left), I4(sel.Top), SRCCOPY);
        back.CurrentX = surface.CurrentX - doc.SelectArea.Left * k;
        back.CurrentY = surface.CurrentY - doc.SelectArea.Top * k;
        followStamp(doc);
    }
    doc.invalidateView();
    UpdateView(doc, surface, x, y, zoom);
}

void FillSelection(Document& doc, Color colour)
{
    Surface& sel = doc.BufferSelected;
    sel.clearPicture();
    sel.BackColor = colour;
    sel.Cls();
    doc.FloatOriginal = QImage();
    forgetStamp(doc);
    UpdateView(doc, doc.Buffer, 0, 0, doc.ZoomFactor);
}

void SelectAll(Document& doc)
{
    const Surface& buffer = doc.Buffer;
    placeBoth(doc, 0, 0, buffer.ScaleWidth(), buffer.ScaleHeight());
    BitBlt(doc.BufferSelected, 0, 0, buffer.ScaleWidth(), buffer.ScaleHeight(), buffer, 0, 0, SRCCOPY);
    BitBlt(doc.SelectedBack, 0, 0, buffer.ScaleWidth(), buffer.ScaleHeight(), buffer, 0, 0, SRCCOPY);
    doc.SelectArea.Move(0, 0, doc.view.paintWidth - 2, doc.view.paintHeight - 2);
    doc.LastSelectionLeft = 0;
    doc.LastSelectionTop = 0;
    doc.SelectArea.Visible = true;
    doc.FloatOriginal = QImage();
    doc.invalidateView();
}

void PlaceFloat(Document& doc, const QImage& picture)
{
    const double z = doc.ZoomFactor;
    // The view's visible top left, so that a paste lands where the user looks.
    const double viewLeft = doc.view.paintLeft < 0 ? std::abs(doc.view.paintLeft) : 0;
    const double viewTop = doc.view.paintTop < 0 ? std::abs(doc.view.paintTop) : 0;
    UpdateView(doc, doc.Buffer, 0, 0, z);
    RectOverlay& area = doc.SelectArea;
    area.Move(viewLeft, viewTop, picture.width() * z / 100, picture.height() * z / 100);
    Surface& sel = doc.BufferSelected;
    placeBoth(doc, area.Left / z * 100, area.Top / z * 100, I4(area.Width / z * 100),
              I4(area.Height / z * 100));
    sel.setImage(picture.copy(0, 0, sel.Width(), sel.Height()));
    sel.CurrentX = doc.Buffer.CurrentX - area.Left / z * 100;
    sel.CurrentY = doc.Buffer.CurrentY - area.Top / z * 100;
    Surface& back = doc.SelectedBack;
    BitBlt(back, 0, 0, sel.Width(), sel.Height(), doc.Buffer, I4(area.Left / z * 100), I4(area.Top / z * 100),
           SRCCOPY);
    back.CurrentX = sel.CurrentX;
    back.CurrentY = sel.CurrentY;
    area.Visible = true;
    doc.LastSelectionLeft = I2(area.Left);
    doc.LastSelectionTop = I2(area.Top);
    doc.SelectionLifted = true;
    doc.FloatOriginal = QImage();
    UpdateView(doc, doc.Buffer, 0, 0, z);
    doc.invalidateView();
}

void LetStampShowThrough(Document& doc, const QImage& stamp)
{
    if (!doc.SelectArea.Visible || stamp.size() != doc.BufferSelected.Image().size())
        return;
    doc.FloatStamp = stamp;
    layStamp(doc);
    UpdateView(doc, doc.Buffer, 0, 0, doc.ZoomFactor);
    doc.invalidateView();
}

int MixChannel(int over, int under, int ratio)
{
    const double v = std::nearbyint(ratio / 255.0 * (over - under) + under);
    return std::clamp(int(v), 0, 255);
}

bool PreviewFloat(Document& doc, bool transparent, Color key, bool blend, int ratio,
                  const ProgressFn& progress)
{
    if (!doc.SelectArea.Visible)
        return true;
    SetSelBak(doc);
    Surface& sel = doc.BufferSelected;
    if (doc.FloatOriginal.isNull())
        doc.FloatOriginal = sel.Image().copy();
    const QImage& own = doc.FloatOriginal;
    const QImage& under = doc.SelectedBack.Image();
    QImage& out = sel.Image();
    const int w = std::min({own.width(), out.width()}), h = std::min(own.height(), out.height());
    const QRgb keyRgb = ToQRgb(key) & 0xFFFFFF;
    for (int y = 0; y < h; ++y) {
        const auto* o = reinterpret_cast<const QRgb*>(own.constScanLine(y));
        const auto* u = y < under.height() ? reinterpret_cast<const QRgb*>(under.constScanLine(y)) : nullptr;
        auto* d = reinterpret_cast<QRgb*>(out.scanLine(y));
        for (int x = 0; x < w; ++x) {
            QRgb c = o[x];
            // Under the float is what the picture held there; where it ends, the float stays.
            const bool hasUnder = u && x < under.width();
            if (transparent && hasUnder && (c & 0xFFFFFF) == keyRgb)
                c = u[x];
            if (blend && hasUnder)
                c = qRgb(MixChannel(qRed(c), qRed(u[x]), ratio), MixChannel(qGreen(c), qGreen(u[x]), ratio),
                         MixChannel(qBlue(c), qBlue(u[x]), ratio));
            d[x] = c | 0xFF000000u;
        }
        if ((y & 31) == 31 && progress && progress(double(y) / h)) {
            CancelFloatPreview(doc);
            return false;
        }
    }
    sel.touchAll();
    UpdateView(doc, doc.Buffer, 0, 0, doc.ZoomFactor);
    return true;
}

void KeepFloatPreview(Document& doc)
{
    doc.FloatOriginal = QImage();
}

void CancelFloatPreview(Document& doc)
{
    if (doc.FloatOriginal.isNull())
        return;
    doc.BufferSelected.setImage(doc.FloatOriginal);
    doc.FloatOriginal = QImage();
    UpdateView(doc, doc.Buffer, 0, 0, doc.ZoomFactor);
}

} // namespace velunta
