#pragma once
// "Grid SetUp": the grid's steps, snapping, the grid colour, and saving them.

#include "core/Color.h"

#include <QDialog>

#include <array>

class QCheckBox;
class QLabel;
class QLineEdit;
class QSpinBox;

namespace velunta {

class Prompt;
class SettingsStore;

struct GridSettings {
    int GridX = 10;
    int GridY = 10;
    bool SnapToGrid = false;
    Color GridColor = RGB(240, 240, 240);
    bool Constrain = false; // "Same Width and Height"
};

class frmGridSetup : public QDialog {
    Q_OBJECT
public:
    frmGridSetup(const GridSettings& settings, Prompt& prompt, SettingsStore& store,
                 QWidget* parent = nullptr);
    // The values as the dialog holds them (after "Apply").
    GridSettings settings() const;

    QLineEdit* txtGrid(int i) const { return m_text.at(i); }
    QSpinBox* VScroll1(int i) const { return m_bar.at(i); }
    QCheckBox* chkSnap() const { return m_snap; }
    QCheckBox* Constrain() const { return m_constrain; }
    QLabel* lblGridcolor() const { return m_colour; }
    // "Save Grid and Snap Settings".
    void SaveSettings();
    // Command3: the colour dialog chooses the grid colour, which is the grid's at once
    // (gridColorChosen), not only after "Apply".
    void ChooseColour();

Q_SIGNALS:
    void gridColorChosen(Color colour);

private:
    void textChanged(int i);
    void barChanged(int i);
    void constrainClicked();
    void showColour();

    Prompt& m_prompt;
    SettingsStore& m_store;
    std::array<QLineEdit*, 2> m_text{};
    std::array<QSpinBox*, 2> m_bar{};
    QCheckBox* m_snap = nullptr;
    QCheckBox* m_constrain = nullptr;
    QLabel* m_colour = nullptr;
    Color m_gridColour = 0;
    bool m_syncing = false;
};

} // namespace velunta
