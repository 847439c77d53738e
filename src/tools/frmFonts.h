#pragma once
// The font name list of the text tool: every font family of the system, each name
// shown in its own face.

#include "tools/PopupPanel.h"

namespace velunta {

class frmFonts : public PickList {
    Q_OBJECT
public:
    explicit frmFonts(QWidget* parent);
};

} // namespace velunta
