#pragma once
// The New Image dialog: size, name and background of a new picture.

#include "core/Color.h"

#include <QDialog>
#include <QLabel>

#include <array>

class QLineEdit;
class QRadioButton;

namespace velunta {

class Prompt;

struct NewImageChoice {
    int width = 0;
    int height = 0;
    QString name;
    Color background = 0xFFFFFF;
};

class frmNew : public QDialog {
    Q_OBJECT
public:
    // lastWidth and lastHeight are the size of the last new picture of this run (0 for
    // none); defaultWidth and defaultHeight the size the fields show otherwise.
    frmNew(int lastWidth, int lastHeight, Prompt& prompt, QWidget* parent = nullptr, int defaultWidth = 640,
           int defaultHeight = 480);

    NewImageChoice choice() const { return m_choice; }

    QLineEdit* TxtWidth() const { return m_width; }
    QLineEdit* TxtHeight() const { return m_height; }
    QLineEdit* txtName() const { return m_name; }
    QRadioButton* OptSizes(int i) const { return m_sizes.at(i); }
    QRadioButton* Option1(int i) const { return m_backgrounds.at(i); }
    QLabel* Label2() const { return m_sample; }
    QWidget* Picselcol() const { return m_strip; }

    // OK (Command1(1)).
    void Command1_Click();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void chooseSize(int index);
    void setSampleColor(Color c);

    Prompt& m_prompt;
    QLineEdit* m_width = nullptr;
    QLineEdit* m_height = nullptr;
    QLineEdit* m_name = nullptr;
    std::array<QRadioButton*, 7> m_sizes{};
    std::array<QRadioButton*, 3> m_backgrounds{};
    QLabel* m_sample = nullptr;
    QLabel* m_strip = nullptr;
    QImage m_stripImage;
    Color m_sampleColor = 0xFFFFFF;
    NewImageChoice m_choice;
};

} // namespace velunta
