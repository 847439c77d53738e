#pragma once
// "GIF Export Options": the transparent colour of a GIF export. The dialog stays open
// beside the picture; its eyedropper selects the colour picker, and each colour picked
// flows into the dialog.

#include "core/Color.h"

#include <QDialog>

#include <array>
#include <functional>

class QCheckBox;
class QLabel;
class QLineEdit;
class QTimer;

namespace velunta {
class zolButton;

class frmSaveGifs : public QDialog {
    Q_OBJECT
public:
    // `currentColour` gives the colour the program's R, G, B boxes show.
    frmSaveGifs(std::function<Color()> currentColour, QWidget* parent = nullptr);

    QCheckBox* ChkSaveOptions(int i) const { return m_options.at(i); }
    QLineEdit* txtrgbgifcolor(int i) const { return m_rgb.at(i); }
    QLabel* Label1() const { return m_sample; }
    QTimer* Timer1() const { return m_timer; }
    zolButton* Command3() const { return m_eyedropper; }
    Color chosenColour() const;
    // Copies the program's R, G, B into the boxes.
    void ColorsUpdate();
    void Command1_Click();

Q_SIGNALS:
    // The eyedropper: select the colour picker.
    void pickRequested();
    // "Save": the transparent colour, or -1 without one.
    void saveRequested(Color colour);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void txtrgbgifcolor_Change();
    void ChkSaveOptions_Click();
    void startEyedropper();

    std::function<Color()> m_currentColour;
    std::array<QCheckBox*, 2> m_options{};
    std::array<QLineEdit*, 3> m_rgb{};
    QLabel* m_sample = nullptr;
    zolButton* m_eyedropper = nullptr;
    QTimer* m_timer = nullptr;
};

} // namespace velunta
