#include "tools/Text.h"

#include "core/Gdi.h"
#include "core/Numbers.h"
#include "document/Document.h"
#include "document/DocumentView.h"
#include "document/DrawState.h"
#include "document/ToolHost.h"
#include "tools/SimplePaints.h"

#include <QFontMetrics>
#include <QStringList>

namespace velunta {

namespace {

// The frame of the text box: its text starts one pixel in.
constexpr int kBoxFrame = 1;

} // namespace

void TextTool(ToolContext& ctx, Document& doc, Surface& surface, int x, int y, double zoom)
{
    const DrawState& st = ctx.state;
    const double f = zoom / 100;
    TextBoxState& box = doc.textBox;
    if (doc.SelectArea.Visible) {
        doc.SelectArea.Visible = false;
        doc.invalidateView();
    }
    const bool bold = st.FontStyle.contains(QStringLiteral("Bold"));
    const bool italic = st.FontStyle.contains(QStringLiteral("Italic"));
    surface.FontName = Trim(st.FontName);
    surface.FontBold = bold;
    surface.FontItalic = italic;
    surface.FontSize = st.SelectorValues[7].Value;
    box.FontName = surface.FontName;
    box.Bold = bold;
    box.Italic = italic;
    box.FontSize = f * st.SelectorValues[7].Value;

    surface.ForeColor = st.ForeColor;
    box.ForeColor = st.ForeColor;
    box.BackColor = TextBoxBackColor(st.ForeColor, st.BackColor);
    box.Centred = st.CenterText;

    box.SizeCaption = QStringLiteral("M") + box.Text;
    box.LabelCaption = box.Text;
    const QSize size = MeasureTextBox(box, box.SizeCaption);
    if (st.TransparentText) {
        // The label shows the text over the picture; the box lies out of sight and
        // still takes the keys.
        box.Label = QRectF(f * x, f * y, size.width(), size.height() + 5);
        box.LabelVisible = true;
        box.Input = QRectF(f * x, -1000, size.width() + 5, size.height() + 5);
    } else {
        box.Input = QRectF(f * x, f * y, size.width() + 5, size.height() + 5);
    }
    box.InputVisible = true;
    box.FocusWanted = true;
    if (doc.viewWindow)
        doc.viewWindow->textBoxChanged();
}

void ApplyText(ToolContext& ctx, Document& doc)
{
    const DrawState& st = ctx.state;
    const TextBoxState& box = doc.textBox;
    if ((box.InputVisible || box.LabelVisible) && !box.Text.isEmpty()) {
        // Each line goes where the box showed it: from the label's corner in the
        // background mode, else from the inside of the box's frame, one box line below
        // the other, centred in the box's width when the box centres; then from view
        // pixels back to picture pixels.
        const bool label = box.LabelVisible;
        const QRectF& shown = label ? box.Label : box.Input;
        const double inset = label ? 0 : kBoxFrame;
        const double room = shown.width() - 2 * inset;
        const double advance = TextBoxLineHeight(box);
        const QFontMetrics metrics(TextBoxFont(box));
        const double k = 100 / doc.GetZoomFactor();
        Surface& s = doc.Buffer;
        s.ForeColor = st.ForeColor;
        const QStringList lines = box.Text.split(QStringLiteral("\r\n"));
        for (int i = 0; i < lines.size(); ++i) {
            double left = shown.left() + inset;
            if (st.CenterText)
                left += (room - metrics.horizontalAdvance(lines[i])) / 2;
            const double x = left * k, y = (shown.top() + inset + i * advance) * k;
            // The solid form backs the whole line, down to the next one, with the
            // background colour, as the box does.
            const int width = TextExtent(s, lines[i]).width();
            if (st.SolidText && width > 0)
                LineBoxFilled(s, I4(x), I4(y), I4(x) + width - 1, I4(y + advance * k) - 1, st.BackColor);
            DrawText(s, x, y, lines[i], false);
        }
        doc.SetDirtyTrue();
        ctx.host.PrepUndo(); // the press recorded the picture before; this is the result
    }
    ClearTextState(doc);
    UpdateView(doc, doc.Buffer, 0, 0, doc.GetZoomFactor());
}

void CancelText(Document& doc)
{
    ClearTextState(doc);
}

} // namespace velunta
