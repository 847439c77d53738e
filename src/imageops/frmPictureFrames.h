#pragma once
// The Picture Frames dialog: a gradient frame (start and end colours, thickness,
// layout) or a transparency frame (thickness, level, fade), with a preview that
// follows every change on a small copy of the picture.

#include "imageops/Frames.h"

#include <QDialog>

#include <array>

class QCheckBox;
class QComboBox;
class QLabel;
class QRadioButton;

namespace velunta {

class ColorSampleLabel;
class zolButton;

class frmPictureFrames : public QDialog {
    Q_OBJECT
public:
    // `picture` is what the preview frames; `settings` are the choices of the last OK.
    frmPictureFrames(FrameSettings& settings, const QImage& picture, QWidget* parent = nullptr);

    // The frame as the controls show it.
    const FrameSettings& choice() const { return m_work; }
    // Command3 "Borders..." closed the dialog: the borders dialog is to open.
    bool wantsBorders() const { return m_wantsBorders; }

    // Runs after each change of a control: the preview shows the frame.
    void FramesUpdate();
    // OK (Command1) keeps the choices; Command3 "Borders...".
    void Command1_Click();
    void Command3_Click();
    // How long the last preview took, in milliseconds.
    double lastUpdateMs() const { return m_lastUpdateMs; }

    QRadioButton* optFrame(int index) const { return m_optFrame.at(index); }
    QComboBox* cmbThickness() const { return m_cmbThickness; }
    QComboBox* cmbTransThick() const { return m_cmbTransThick; }
    QComboBox* cmbTransLevel() const { return m_cmbTransLevel; }
    QCheckBox* chkTransFade() const { return m_chkTransFade; }
    QRadioButton* optFade(int index) const { return m_optFade.at(index); }
    ColorSampleLabel* Label2(int index) const { return m_colors.at(index); }
    zolButton* frameStyle(int index) const { return m_styles.at(index); }
    QLabel* Image1() const { return m_image1; }
    const QImage& previewImage() const { return m_preview; }

private:
    // The controls into the settings, then the preview.
    void readControls();

    FrameSettings& m_settings;
    FrameSettings m_work;
    FramePreview m_picture2;
    QImage m_preview;
    bool m_wantsBorders = false;
    bool m_loading = true;
    double m_lastUpdateMs = 0;

    std::array<QRadioButton*, 2> m_optFrame{};
    std::array<QRadioButton*, 2> m_optFade{};
    std::array<ColorSampleLabel*, 2> m_colors{};
    std::array<zolButton*, kFrameLayoutCount> m_styles{};
    QComboBox* m_cmbThickness = nullptr;
    QComboBox* m_cmbTransThick = nullptr;
    QComboBox* m_cmbTransLevel = nullptr;
    QCheckBox* m_chkTransFade = nullptr;
    QLabel* m_image1 = nullptr;
};

} // namespace velunta
