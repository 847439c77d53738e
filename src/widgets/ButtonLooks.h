#pragma once
// The looks the program gives its buttons, so that every window matches: one place
// to choose the style and colours of the dialog keys and of the buttons on bars.

#include "core/Color.h"

#include <QDialogButtonBox>

class QDialog;

namespace velunta {

class zolButton;

// A command key of a dialog or a tool panel (OK, Cancel, Apply Text...): a plastic
// key in the panels' blue that turns warm under the pointer.
void DialogLook(zolButton* b);

// An option or check key of a dialog or a panel: the dialog key, warm while it is on.
void OptionLook(zolButton* b);

// A button on a bar of the main window or a tool panel, drawn on the bar's colours:
// `back` shows where the style fills (a chosen tool, a pressed key), `hover` while the
// pointer is over it. The keyboard reaches it with Tab; a click leaves the focus where
// it was, with the picture.
void BarLook(zolButton* b, int style, Color back, Color hover);

// A dialog key with the dialog look, added to `box` in `role`; the accepting key is
// the default button, which Enter clicks.
zolButton* AddDialogButton(QDialogButtonBox* box, const QString& caption, QDialogButtonBox::ButtonRole role,
                           const QString& name = QString());

// The OK and Cancel keys of a dialog, named cmdOK and cmdCancel: OK is the default and
// accepts, Cancel rejects. The caller places the box.
QDialogButtonBox* OkCancelButtons(QDialog* dialog);

} // namespace velunta
