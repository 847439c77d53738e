#pragma once
// "Export as JPG": asks for the quality of the JPEG file.

#include <QDialog>

class QLineEdit;

namespace velunta {

class Prompt;

class FrmSaveJPGs : public QDialog {
    Q_OBJECT
public:
    // lastQuality: the quality used earlier in this run, 0 for none (the box then shows 90).
    FrmSaveJPGs(int lastQuality, Prompt& prompt, QWidget* parent = nullptr);
    // The quality chosen; 0 means 90 to the writer.
    int quality() const { return m_quality; }
    QLineEdit* TxtJPGQuality() const { return m_text; }
    void CmdOK_Click();

private:
    Prompt& m_prompt;
    QLineEdit* m_text = nullptr;
    int m_quality = 90;
};

} // namespace velunta
