#pragma once
// The True Color Palette: picks any colour. It shows the colour it was given (old)
// beside the one being made (new), a saturation/value field with a hue strip, R/G/B
// and H/S/V fields, the HTML form, an eyedropper over the program's windows and the
// colours chosen earlier in this run.
//
// Callers that wait for the answer use pick(); the colour strip also opens it
// modeless and takes the answer from finished().

#include "core/Color.h"
#include "widgets/zolButton.h"

#include <QDialog>
#include <QVector>

#include <array>

class QLabel;
class QLineEdit;
class QSpinBox;

namespace velunta {

class ColorSample;
class HueStrip;
class SatValField;

class frmColor : public QDialog {
    Q_OBJECT
public:
    explicit frmColor(QWidget* parent = nullptr);

    // Shows c as both the old and the new colour.
    void setColor(Color c);
    // The new colour.
    Color color() const { return m_color; }
    Color oldColor() const { return m_old; }

    // Shows the dialog modally with `initial`; the chosen colour, or -1 on cancel.
    static Color pick(Color initial, QWidget* parent);

    // The colours confirmed in this run, newest first (at most twelve).
    static QVector<Color> recentColors();

    // The colour shown under a screen point in one of the program's windows; -1
    // where no window of the program is.
    static Color ProgramColorAt(const QPoint& globalPos);

    // Parts: spin(0..2) R, G, B; spin(3..5) H, S, V.
    QSpinBox* spin(int index) const { return m_spin[index]; }
    QLineEdit* htmlField() const { return m_html; }
    QLabel* messageLabel() const { return m_message; }
    zolButton* eyedropper() const { return m_dropper; }
    ColorSample* recentSample(int index) const { return m_recent[index]; }
    bool picking() const { return m_picking; }

    void done(int result) override;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void mouseMoveEvent(QMouseEvent* e) override;
    void mousePressEvent(QMouseEvent* e) override;
    void keyPressEvent(QKeyEvent* e) override;

private:
    // The colour from its channels; the hue stays where it was for greys.
    void setRgb(Color c);
    void setHsv(double h, double s, double v);
    // Every field shown again from the state.
    void showState();
    // Reads the HTML field; a text that is no colour is told and changes nothing.
    bool takeHtml();
    void startPicking();
    void stopPicking();
    void showRecent();

    Color m_color = 0;
    Color m_old = 0;
    double m_h = 0, m_s = 0, m_v = 0;
    bool m_showing = false;
    bool m_picking = false;

    SatValField* m_field = nullptr;
    HueStrip* m_hue = nullptr;
    ColorSample* m_oldSample = nullptr;
    ColorSample* m_newSample = nullptr;
    std::array<QSpinBox*, 6> m_spin{};
    QLineEdit* m_html = nullptr;
    QLabel* m_message = nullptr;
    zolButton* m_dropper = nullptr;
    std::array<ColorSample*, 12> m_recent{};
    QLabel* m_noRecent = nullptr;
};

} // namespace velunta
