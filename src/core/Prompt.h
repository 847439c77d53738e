#pragma once
// Message boxes and file dialogs go through these two services, so tests can answer
// them. The real ones show QMessageBox and QFileDialog.

#include <QString>

namespace velunta {

// Answers, as the program's message boxes give them.
enum PromptAnswer { vbOK = 1, vbCancel = 2, vbAbort = 3, vbRetry = 4, vbIgnore = 5, vbYes = 6, vbNo = 7 };

// Styles: buttons in the low bits, the icon above them.
enum PromptStyle {
    vbOKOnly = 0,
    vbOKCancel = 1,
    vbYesNoCancel = 3,
    vbYesNo = 4,
    vbCritical = 16,
    vbQuestion = 32,
    vbExclamation = 48,
    vbInformation = 64,
    // The questions the program asks with an icon, by the values it passes. Their icons
    // are the program's own, not the bits' (the Qt prompt maps each value): 0x34 asks
    // with a question mark, 0x44 warns, 67 asks Yes, No or Cancel with a question mark.
    vbQuestionYesNo = 0x34,
    vbWarningYesNo = 0x44,
    vbQuestionYesNoCancel = 67,
    // Earlier names of the same values, named after their bits.
    vbYesNoWarning = vbQuestionYesNo,
    vbYesNoInformation = vbWarningYesNo,
    vbYesNoCancelInformation = vbQuestionYesNoCancel,
};

class Prompt {
public:
    virtual ~Prompt() = default;
    // Shows a modal box and returns the answer.
    virtual int MsgBox(const QString& text, int style = vbOKOnly, const QString& title = QString()) = 0;
};

class FileDialogs {
public:
    virtual ~FileDialogs() = default;
    // The folder the dialogs open in: the one last chosen from (kept in the settings).
    // Empty means the user's pictures folder.
    QString StartFolder;
    // A ready filter in Qt's form ("Picture Files (*.bmp *.jpg);;All Files (*)").
    // Returns the chosen path, or an empty string on cancel.
    virtual QString getOpenFileName(const QString& title, const QString& filter,
                                    const QString& defaultName) = 0;
    // filterIndex is 1-based in and out; it changes only when the user confirms.
    virtual QString getSaveFileName(const QString& title, const QString& filter, const QString& defaultName,
                                    int& filterIndex) = 0;
};

} // namespace velunta
