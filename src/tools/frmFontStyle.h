#pragma once
// The font style list of the text tool: "Normal", "Bold", "Italic", "Bold Italic".

#include "tools/PopupPanel.h"

namespace velunta {

class frmFontStyle : public PickList {
    Q_OBJECT
public:
    explicit frmFontStyle(QWidget* parent);
};

// Bold and italic of a style name; an unknown name is "Normal".
bool FontStyleBold(const QString& style);
bool FontStyleItalic(const QString& style);

} // namespace velunta
