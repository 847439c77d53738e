#pragma once
// Buttons, modifiers and keys as the program's event handlers compare them: the
// numbers the pointer and key events carry from the widgets to the tools.

#include <Qt>

class QKeyEvent;

namespace velunta {

// Buttons as the events carry them.
enum PointerButton { kNoButton = 0, kLeftButton = 1, kRightButton = 2, kMiddleButton = 4 };
// Modifiers, added up.
enum ShiftKey { kShiftKey = 1, kCtrlKey = 2, kAltKey = 4 };
// Key codes the keyboard handler compares with; letters and digits are their upper-case
// characters.
enum KeyCode {
    kKeyShift = 16,
    kKeyControl = 17,
    kKeyEscape = 27,
    kKeySpace = 32,
    kKeyLeft = 37,
    kKeyUp = 38,
    kKeyRight = 39,
    kKeyDown = 40,
};

int ButtonCode(Qt::MouseButton b);
int ButtonsCode(Qt::MouseButtons b);
int ShiftCode(Qt::KeyboardModifiers m);
// The key code the keyboard shortcuts compare with; 0 for keys they don't know.
int KeyCodeOf(const QKeyEvent& e);

} // namespace velunta
