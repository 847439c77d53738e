#include "document/TextBox.h"

#include "core/Numbers.h"
#include "document/Document.h"
#include "document/DocumentView.h"

#include <QFontMetrics>
#include <QStringList>
#include <QTextLayout>

#include <algorithm>
#include <cmath>

namespace velunta {

QFont TextBoxFont(const TextBoxState& box)
{
    QFont font(box.FontName);
    font.setPixelSize(std::max(1, I4(box.FontSize * 96.0 / 72.0)));
    font.setBold(box.Bold);
    font.setItalic(box.Italic);
    return font;
}

double TextBoxLineHeight(const TextBoxState& box)
{
    QTextLayout layout(QStringLiteral("M"), TextBoxFont(box));
    layout.beginLayout();
    QTextLine line = layout.createLine();
    line.setLeadingIncluded(true);
    layout.endLayout();
    return line.height();
}

QSize MeasureTextBox(const TextBoxState& box, const QString& caption)
{
    const QFontMetrics metrics(TextBoxFont(box));
    const QStringList lines = caption.split(QStringLiteral("\r\n"));
    int widest = 0;
    for (const QString& line : lines)
        widest = std::max(widest, metrics.horizontalAdvance(line));
    return QSize(widest, int(std::ceil(lines.size() * TextBoxLineHeight(box))));
}

void UpdateTextbox(Document& doc)
{
    TextBoxState& box = doc.textBox;
    if (!box.InputVisible)
        return;
    box.SizeCaption = QStringLiteral("W") + box.Text;
    const QSize size = MeasureTextBox(box, box.SizeCaption);
    box.Input.setSize(QSizeF(size.width() + 5, size.height() + 5));
    box.LabelCaption = box.Text;
    box.Label.setSize(QSizeF(size.width(), size.height() + 5));
    if (doc.viewWindow)
        doc.viewWindow->textBoxChanged();
}

void ClearTextState(Document& doc)
{
    TextBoxState& box = doc.textBox;
    box.Text.clear();
    box.SizeCaption = QStringLiteral("M");
    box.InputVisible = false;
    box.LabelVisible = false;
    box.LabelCaption.clear();
    box.FocusWanted = false;
    if (doc.viewWindow)
        doc.viewWindow->textBoxChanged();
}

Color TextBoxBackColor(Color fore, Color back)
{
    return fore != back ? back : fore == 0xFFFFFF ? 0 : 0xFFFFFF;
}

void SetTextBoxColors(Document& doc, Color fore, Color back)
{
    TextBoxState& box = doc.textBox;
    box.ForeColor = fore;
    box.BackColor = TextBoxBackColor(fore, back);
    if (doc.viewWindow && (box.InputVisible || box.LabelVisible))
        doc.viewWindow->textBoxChanged();
}

} // namespace velunta
