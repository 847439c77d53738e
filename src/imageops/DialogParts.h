#pragma once
// Parts the picture dialogs share: the picture shown smaller, option keys, the
// editable number lists and the colour samples that open the colour dialog.

#include "core/Color.h"

#include <QImage>
#include <QLabel>
#include <QPixmap>
#include <QSize>

#include <initializer_list>

class QComboBox;
class QDialogButtonBox;

namespace velunta {

class zolButton;

// The picture scaled smoothly to fit `box`, never enlarged past twice its size.
QPixmap Thumbnail(const QImage& picture, QSize box);

// A sunken box that shows a picture of at most `box`, centred.
QLabel* PictureBox(QWidget* parent, const QString& name, QSize box);

// OK (named Command1, the default button) and Cancel (Command2) in a button box.
QDialogButtonBox* OkCancel(QWidget* parent);

// An option key of a group: the option keys of one container form the group.
zolButton* OptionKey(QWidget* group, const QString& name, const QString& caption, const QString& tip);
// A command key of a dialog.
zolButton* CommandKey(QWidget* parent, const QString& name, const QString& caption, const QString& tip);

// An editable list of whole numbers that takes up to `digits` digits typed.
QComboBox* NumberList(QWidget* parent, const QString& name, const QString& tip,
                      std::initializer_list<int> values, int digits = 4);

// A colour sample; a click asks for another colour through the colour dialog and
// emits changed() when one was chosen.
class ColorSampleLabel : public QLabel {
    Q_OBJECT
public:
    ColorSampleLabel(const QString& name, const QString& tip, QWidget* parent);
    Color color() const { return m_color; }
    void setColor(Color c);

Q_SIGNALS:
    void changed(Color c);

protected:
    void mousePressEvent(QMouseEvent* e) override;

private:
    Color m_color = 0;
};

} // namespace velunta
