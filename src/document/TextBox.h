#pragma once
// The text tool's box on a document's view: the text being typed (TextInput), the
// transparent label that shows it over the picture in the background mode
// (lblTextInput) and the hidden label that measures it (lblTextSize). The document
// holds them as plain values; the window shows them and reports the typing back.

#include "core/Color.h"

#include <QFont>
#include <QRectF>
#include <QSize>
#include <QString>

namespace velunta {

class Document;

struct TextBoxState {
    QString Text;                              // TextInput.Text, lines joined by "\r\n"
    QString SizeCaption = QStringLiteral("M"); // lblTextSize.Caption: one letter of room more
    bool InputVisible = false;                 // TextInput.Visible
    QRectF Input;                              // TextInput's place and size in view pixels
    bool LabelVisible = false;                 // lblTextInput.Visible
    QString LabelCaption;                      // lblTextInput.Caption
    QRectF Label;                              // lblTextInput's place and size
    // The font of the box: the text tool's font at the zoom.
    QString FontName = QStringLiteral("Arial");
    double FontSize = 12; // points, 96 dpi
    bool Bold = false;
    bool Italic = false;
    Color ForeColor = 0;
    Color BackColor = 0xFFFFFF; // TextInput.BackColor
    bool Centred = false;
    bool FocusWanted = false; // TextInput.SetFocus was asked for
};

// The box's font: its name, style, and its size at the zoom as pixels at 96 dpi, as
// the picture's text gets it.
QFont TextBoxFont(const TextBoxState& box);
// The distance from one line of the box to the next, in view pixels: the font's
// height and its leading, as the box and the label lay their lines.
double TextBoxLineHeight(const TextBoxState& box);
// Width and height in view pixels that a caption takes in the box's font; lines are
// split at "\r\n".
QSize MeasureTextBox(const TextBoxState& box, const QString& caption);

// TextInput_Change: the box and the label grow with the text (measured with one "W"
// of room), while the box shows.
void UpdateTextbox(Document& doc);

// Empties and hides the box and the label; the measuring label goes back to "M".
void ClearTextState(Document& doc);

// The box's background for the working colours: the background colour, but white
// (black for a white foreground) when both are alike, so the text stays legible.
Color TextBoxBackColor(Color fore, Color back);
// The box takes the working colours; a showing box is redrawn.
void SetTextBoxColors(Document& doc, Color fore, Color back);

} // namespace velunta
