#pragma once
// The window of the two drawing companions: the picture Velunta handed over, on which
// the user places the points of Bezier curves (VeluntaExt1) or the corners of polygons
// (VeluntaExt2), in the colour and thickness Velunta left in the settings. OK draws
// the figures into the picture and writes it back; Cancel leaves the file untouched.

#include "drawing/Shapes.h"
#include "exchange/CompanionSettings.h"

#include <QDialog>
#include <QImage>

#include <array>

class QLabel;
class QRadioButton;
class QSpinBox;

namespace velunta {

class PointCanvas;
class zolButton;

class frmShapeEditor : public QDialog {
    Q_OBJECT
public:
    frmShapeEditor(ShapeKind kind, const QImage& picture, const QString& path,
                   const CompanionSettings& settings, QWidget* parent = nullptr);

    PointCanvas* canvas() const { return m_canvas; }
    // The picture with every figure drawn so far, as OK writes it.
    QImage result() const;

    void accept() override;

private:
    void chooseColor(bool fill);
    void showColors();
    void shapeChanged();

    ShapeKind m_kind;
    QImage m_picture;
    QString m_path;
    PointCanvas* m_canvas = nullptr;
    zolButton* m_undo = nullptr;
    zolButton* m_clear = nullptr;
    zolButton* m_new = nullptr;
    zolButton* m_color = nullptr;
    zolButton* m_fill = nullptr;
    QSpinBox* m_thickness = nullptr;
    std::array<QRadioButton*, 3> m_styles{};
    QLabel* m_hint = nullptr;
};

// The main of VeluntaExt1 (Bezier curves) and VeluntaExt2 (polygons): the editor on the
// picture named by the one argument. Exit codes: 0 done or cancelled, 1 no picture
// named, 2 the picture can't be read.
int RunShapeEditor(int argc, char** argv, ShapeKind kind);

} // namespace velunta
