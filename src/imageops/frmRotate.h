#pragma once
// The Rotate dialog ("Define angle..."): an angle of 1 to 360 degrees, made into the
// divisor of 3.14 that the rotation turns by.

#include <QDialog>

class QLineEdit;

namespace velunta {

class Prompt;

class frmRotate : public QDialog {
    Q_OBJECT
public:
    // `lastDivisor` is the divisor of the last opening; above 0 the field shows its angle.
    frmRotate(int lastDivisor, Prompt& prompt, QWidget* parent = nullptr);

    // The divisor of the angle, or -1 when the dialog was cancelled.
    int RotateDivisor() const { return m_divisor; }
    QLineEdit* TxtAngle() const { return m_angle; }

    // OK: an angle outside 1 to 360 is refused with a message and the dialog stays.
    void Command1_Click();

private:
    Prompt& m_prompt;
    QLineEdit* m_angle = nullptr;
    int m_divisor = -1;
};

} // namespace velunta
