#include "core/InputCodes.h"

#include <QKeyEvent>

namespace velunta {

int ButtonCode(Qt::MouseButton b)
{
    switch (b) {
    case Qt::LeftButton:
        return kLeftButton;
    case Qt::RightButton:
        return kRightButton;
    case Qt::MiddleButton:
        return kMiddleButton;
    default:
        return kNoButton;
    }
}

int ButtonsCode(Qt::MouseButtons b)
{
    return (b & Qt::LeftButton ? kLeftButton : 0) | (b & Qt::RightButton ? kRightButton : 0) |
           (b & Qt::MiddleButton ? kMiddleButton : 0);
}

int ShiftCode(Qt::KeyboardModifiers m)
{
    return (m & Qt::ShiftModifier ? kShiftKey : 0) | (m & Qt::ControlModifier ? kCtrlKey : 0) |
           (m & Qt::AltModifier ? kAltKey : 0);
}

int KeyCodeOf(const QKeyEvent& e)
{
    const int k = e.key();
    if (k >= Qt::Key_A && k <= Qt::Key_Z)
        return k; // upper-case letters, as the shortcuts compare them
    if (k >= Qt::Key_0 && k <= Qt::Key_9)
        return k;
    switch (k) {
    case Qt::Key_Shift:
        return kKeyShift;
    case Qt::Key_Control:
        return kKeyControl;
    case Qt::Key_Escape:
        return kKeyEscape;
    case Qt::Key_Space:
        return kKeySpace;
    case Qt::Key_Left:
        return kKeyLeft;
    case Qt::Key_Up:
        return kKeyUp;
    case Qt::Key_Right:
        return kKeyRight;
    case Qt::Key_Down:
        return kKeyDown;
    case Qt::Key_Plus:
        return '+';
    case Qt::Key_Minus:
        return '-';
    default:
        return 0;
    }
}

} // namespace velunta
