#include "document/Document.h"

#include "core/Numbers.h"
#include "document/DocumentView.h"

namespace velunta {

Document::Document()
{
    Buffer.BackColor = 0xFFFFFF;
    BufferSelected.BackColor = 0xFFFFFF;
    SelectedBack.BackColor = 0xFFFFFF;
    UndoKeep.attach(Buffer);
}

QString Document::CaptionName() const
{
    const int cut = int(Caption.indexOf(QStringLiteral(" -")));
    return cut < 0 ? Caption : Caption.left(cut);
}

void Document::SetCaption(const QString& name)
{
    Caption = name + QStringLiteral(" - ") + NumberText(ZoomFactor) + QStringLiteral("%");
    if (viewWindow)
        viewWindow->captionChanged();
}

void Document::CreatePicture(int outerWidth, int outerHeight, Color background)
{
    Buffer.BackColor = background;
    Buffer.clearPicture();
    Buffer.setSize(outerWidth, outerHeight);
    Buffer.Cls();
}

void Document::DrawGrid(int stepX, int stepY, Color colour)
{
    if (colour <= 0)
        colour = RGB(240, 240, 240);
    if (GridIsShown) {
        GridColumns.clear();
        GridRows.clear();
        GridIsShown = false;
        invalidateView();
        return;
    }
    const int width = view.paintWidth - 2, height = view.paintHeight - 2;
    if (stepX >= 1)
        for (int x = stepX; x < width; x += stepX)
            GridColumns.append(x);
    if (stepY >= 1)
        for (int y = stepY; y < height; y += stepY)
            GridRows.append(y);
    GridColor = colour;
    GridIsShown = true;
    invalidateView();
}

void Document::invalidateImageRect(const QRect& r)
{
    if (viewWindow && !r.isEmpty())
        viewWindow->invalidateImageRect(r);
}

void Document::invalidateViewRect(const QRect& r)
{
    if (viewWindow && !r.isEmpty())
        viewWindow->invalidateViewRect(r);
}

void Document::invalidateView()
{
    if (viewWindow)
        viewWindow->invalidateView();
}

} // namespace velunta
