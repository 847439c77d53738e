#pragma once
// The popup slider of a selector: a track (ScrollBar) with a thumb (ScrollBlock) and
// two step buttons (imgMinPlus). Moving the thumb sets the selector's value between
// its minimum (far left) and maximum (far right) through CalcPos.

#include "tools/PopupPanel.h"

class QAbstractButton;
class QLabel;

namespace velunta {

class frmControls;
struct DrawState;

// The value of a thumb at blockLeft on a track at barLeft: far left is the minimum,
// far right (blockLeft = barLeft + barWidth - blockWidth) the maximum.
double SliderValue(double blockLeft, double barLeft, double barWidth, double blockWidth, int minimum,
                   int maximum);
// The thumb's left for a value, the inverse of SliderValue.
double SliderLeft(double value, double barLeft, double barWidth, double blockWidth, int minimum, int maximum);

class frmSelector : public PopupPanel {
    Q_OBJECT
public:
    frmSelector(frmControls& controls, DrawState& state, QWidget* parent);

    // Opens for selector `index` under its read-out, the thumb at the current value.
    void Open(int index, const QWidget* anchor);
    // The selector index the slider serves (the form's Tag).
    int Tag() const { return m_index; }

    // Value, caption and, for the text size, the active document's font follow the thumb.
    void CalcPos();

    // The thumb's left edge in the panel, limited to the track, then CalcPos.
    void setThumbLeft(double left);
    double thumbLeft() const { return m_thumbLeft; }
    // The leftmost and rightmost places of the thumb.
    double thumbMinimum() const;
    double thumbMaximum() const;

    // The step buttons: k = 1 one value up, k = 0 one down.
    void imgMinPlus_Click(int k);
    // A press on the track: the thumb centres on x (panel coordinates), limited.
    void ScrollBar_MouseDown(double x);

    QWidget* ScrollBar() const { return m_bar; }
    QWidget* ScrollBlock() const { return m_block; }
    QAbstractButton* imgMinPlus(int k) const { return m_step[k ? 1 : 0]; }
    QString readout() const;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;

private:
    void placeBlock();

    frmControls& m_controls;
    DrawState& m_state;
    int m_index = 0;
    double m_thumbLeft = 0;
    bool m_dragging = false;
    double m_grip = 0;
    QWidget* m_bar = nullptr;
    QWidget* m_block = nullptr;
    QAbstractButton* m_step[2] = {nullptr, nullptr};
    QLabel* m_readout = nullptr;
};

} // namespace velunta
