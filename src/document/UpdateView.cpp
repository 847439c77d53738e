#include "document/UpdateView.h"

#include "core/Gdi.h"
#include "core/Numbers.h"
#include "document/Document.h"

namespace velunta {

void UpdateView(Document& doc, Surface& surface, double /*x*/, double /*y*/, double /*zoom*/)
{
    if (doc.SelectArea.Visible) {
        const Surface& sel = doc.BufferSelected;
        BitBlt(surface, I4(sel.Left), I4(sel.Top), sel.Width(), sel.Height(), sel, 0, 0, SRCCOPY);
    }
    const QRect touched = surface.takeTouched();
    if (!touched.isEmpty())
        doc.invalidateImageRect(touched);
}

} // namespace velunta
