#pragma once
// The brightness and contrast dialog: the picture twice, unchanged (Picture2) and as
// the result (Picture1), side by side in two viewports that the user drags; a slider,
// Preview, Reset, OK and Cancel. Brightness adds the slider's value to every channel;
// contrast moves every channel away from the middle (or towards it) by the value.
//
// Preview works on the whole picture, or with "Update visible area only" on what the
// result's viewport shows, which is what makes it quick on a large picture. OK always
// gives a complete result: after a partial preview, or after a change that no preview
// has shown, it runs the whole preview first.

#include "imageops/CanvasOps.h"

#include <QDialog>
#include <QElapsedTimer>
#include <QImage>

class QCheckBox;
class QLabel;
class QSlider;

namespace velunta {

class ImagePlane;
class zolButton;

class frmBrightContrast : public QDialog {
    Q_OBJECT
public:
    // `picture` is what the command works on (the selection's pixels or the picture);
    // `brightnessMode` picks brightness, otherwise contrast.
    frmBrightContrast(const QImage& picture, bool brightnessMode, QWidget* parent = nullptr);

    // The result after OK: Picture1.
    const QImage& adjustedPicture() const { return m_picture1; }
    // Whether the result differs from the picture at all.
    bool changed() const { return !m_changed.isEmpty(); }

    bool BrightnessMode() const { return m_brightness; }
    // The last preview covered only the visible area.
    bool PreviewPartial() const { return m_previewPartial; }

    QSlider* HScroll1() const { return m_slider; }
    QLabel* lblVal() const { return m_value; }
    QCheckBox* Check1() const { return m_lock; }
    QCheckBox* Check2() const { return m_visibleOnly; }
    zolButton* Command1() const { return m_previewContrast; }
    zolButton* Command2() const { return m_previewBrightness; }
    zolButton* Command4() const { return m_reset; }
    zolButton* cmdOk() const { return m_ok; }
    ImagePlane* picLeft() const { return m_left; }
    ImagePlane* picRight() const { return m_right; }
    const QImage& Picture1() const { return m_picture1; }
    const QImage& Picture2() const { return m_picture2; }

    // Preview of contrast (Command1) and of brightness (Command2), Reset (Command4), OK.
    void Command1_Click();
    void Command2_Click();
    void Command4_Click();
    void cmdOk_Click();

private:
    void HScroll1_Change();
    // The preview of the mode over the visible area (`partial`) or the whole picture.
    void preview(bool partial);
    // Picture1 takes Picture2's pixels where it differs outside `keep`.
    void restoreOutside(const QRect& keep);
    bool showProgress(double fraction);
    void planeDragged(ImagePlane* plane, int dx, int dy);

    const bool m_brightness;
    const QImage m_picture2;
    QImage m_picture1;
    // The part of Picture1 that may differ from Picture2.
    QRect m_changed;
    bool m_previewPartial = false;
    // A preview of the whole picture shows the slider's value as it stands.
    bool m_fullPreviewCurrent = false;

    ImagePlane* m_left = nullptr;
    ImagePlane* m_right = nullptr;
    QSlider* m_slider = nullptr;
    QLabel* m_value = nullptr;
    QLabel* m_image1 = nullptr;
    QLabel* m_image2 = nullptr;
    QCheckBox* m_lock = nullptr;
    QCheckBox* m_visibleOnly = nullptr;
    QLabel* m_progressB = nullptr;
    QWidget* m_progressTrack = nullptr;
    QWidget* m_progress = nullptr;
    zolButton* m_previewContrast = nullptr;
    zolButton* m_previewBrightness = nullptr;
    zolButton* m_reset = nullptr;
    zolButton* m_ok = nullptr;
    zolButton* m_cancel = nullptr;
    QElapsedTimer m_sinceProgress;
};

} // namespace velunta
