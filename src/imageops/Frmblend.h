#pragma once
// The Blend dialog: the style of the mix, the percentage, the direction of the
// reflection (with the selection tool) and a picture from a file to blend in. It
// leaves its answer in the BlendState it is given: BlendMode 0 when nothing is to
// happen.

#include "imageops/Blend.h"

#include <QDialog>
#include <QImage>

#include <array>

class QCheckBox;
class QComboBox;
class QLabel;

namespace velunta {

class FileDialogs;
class Prompt;
class zolButton;

class Frmblend : public QDialog {
    Q_OBJECT
public:
    // `shown` is what imgtoblend shows first (what lies under the selection); the
    // "Vertical" box shows only with `directionVisible` (the selection tool).
    Frmblend(BlendState& state, const QImage& shown, bool directionVisible, Prompt& prompt,
             FileDialogs& dialogs, QWidget* parent = nullptr);

    // A picture from a file goes to PicTexture and is what gets blended in: it shows in
    // imgtoblend with its size, and the direction no longer applies.
    void setBlendPicture(const QImage& picture);
    // PicTexture: the picture from a file, null while none was opened.
    const QImage& blendPicture() const { return m_picTexture; }

    // OK (Command1), Cancel (Command2) and "open image to blend" (cmdOpen).
    void Command1_Click();
    void Command2_Click();
    void cmdOpen_Click();

    QComboBox* cmbBlend() const { return m_cmbBlend; }
    QCheckBox* chkDirection() const { return m_chkDirection; }
    zolButton* Option1(int index) const { return m_styles.at(index); }
    zolButton* cmdOpen() const { return m_cmdOpen; }
    QLabel* Label2() const { return m_label2; }
    QLabel* imgtoblend() const { return m_imgtoblend; }

private:
    void showPicture(const QImage& picture);

    BlendState& m_state;
    Prompt& m_prompt;
    FileDialogs& m_dialogs;
    QImage m_picTexture;
    QComboBox* m_cmbBlend = nullptr;
    QCheckBox* m_chkDirection = nullptr;
    std::array<zolButton*, kBlendStyleCount> m_styles{};
    zolButton* m_cmdOpen = nullptr;
    QLabel* m_label2 = nullptr;
    QLabel* m_imgtoblend = nullptr;
};

} // namespace velunta
