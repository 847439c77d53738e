#pragma once
// The Image Size dialog: the picture's new width and height, typed or chosen from the
// offered sizes, doubled or halved, with the proportions kept while asked.

#include <QDialog>

#include <array>

class QCheckBox;
class QLabel;
class QLineEdit;
class QRadioButton;

namespace velunta {

class zolButton;

class frmSize : public QDialog {
    Q_OBJECT
public:
    // The fields start with the picture's size, whose proportions "Constrain
    // Proportions" keeps.
    frmSize(int scaleWidth, int scaleHeight, QWidget* parent = nullptr);

    // The size chosen on OK. The dialog is accepted only with both values 1 or more.
    qint64 chosenWidth() const { return m_chosenWidth; }
    qint64 chosenHeight() const { return m_chosenHeight; }

    QLineEdit* TxtWidth() const { return m_width; }
    QLineEdit* TxtHeight() const { return m_height; }
    QCheckBox* Check1() const { return m_constrain; }
    QLabel* Constrain() const { return m_symbol; }
    QRadioButton* OptSizes(int i) const { return m_sizes.at(i); }
    zolButton* Command2() const { return m_half; }
    zolButton* Command3() const { return m_double; }

    // OK (Command1(1)): a value below 1 in either field closes the dialog and changes
    // nothing, without a message.
    void Command1_Click();

private:
    void TxtWidth_Change();
    void TxtHeight_Change();
    // A field the user typed in keeps its digits only; with the proportion kept the
    // other field follows, at `ratio` of it.
    void fieldEdited(QLineEdit* field, QLineEdit* other, double ratio);
    void Check1_Click();
    // Double (factor 2) and Half (factor 0).
    void scale(bool twice);
    void chooseSize(int index);
    void clearSizes();

    const double m_scaleWidth;
    const double m_scaleHeight;
    QLineEdit* m_width = nullptr;
    QLineEdit* m_height = nullptr;
    QCheckBox* m_constrain = nullptr;
    QLabel* m_symbol = nullptr;
    std::array<QRadioButton*, 5> m_sizes{};
    zolButton* m_double = nullptr;
    zolButton* m_half = nullptr;
    qint64 m_chosenWidth = 0;
    qint64 m_chosenHeight = 0;
};

} // namespace velunta
