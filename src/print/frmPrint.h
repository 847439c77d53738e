#pragma once
// "Print Preview": the picture on a scaled sheet of paper, placed at the margins and
// sized by best fit, and the print run. The sheet's paper, orientation, colour,
// quality, margins and zoom come from VeluntaPrint.ini and go back there only through
// "Save settings".

#include "print/PrintSettings.h"

#include <QDialog>
#include <QImage>

#include <array>

class QButtonGroup;
class QComboBox;
class QLabel;
class QLineEdit;
class QMenu;
class QPrinter;
class QRadioButton;
class QScrollArea;
class QScrollBar;

namespace velunta {

class FileDialogs;
class Prompt;
class zolButton;
class SheetView;

// The printer choice that writes a PDF file instead of going to a printer.
inline constexpr const char* kPdfPrinterCaption = "Print to PDF file";

class frmPrint : public QDialog {
    Q_OBJECT
public:
    // `picture` is the active document's image; `appFolder` ends with "/".
    frmPrint(const QImage& picture, const QString& appFolder, Prompt& prompt, FileDialogs& dialogs,
             QWidget* parent = nullptr);
    ~frmPrint() override;

    // The file of the settings and the picture's working copy.
    QString settingsPath() const;
    QString tempPicturePath() const;

    // Reads the file into the record, or the defaults when it can't be read.
    void GetPrintSettings();
    // Puts the record into the controls; with `write` the file too.
    void SetPrintSettings(bool write);
    // The controls as a record.
    PrintSettings currentSettings() const;
    // The menu's commands.
    void mnusavesettings_Click();
    void mnurestore_Click();
    void mnuZoompercent_Click(int index);
    void mnuprintSetup_Click();
    void Command1_Click(); // best fit
    void ReDrawScalePic();
    // Prints; false when nothing went to the printer.
    bool printPic();

    // Where a PDF print goes without asking (tests, a repeated print to the same file).
    void setPdfFile(const QString& path) { m_pdfFile = path; }
    // Picks the printer by its caption in the list; false when there is none of that name.
    bool choosePrinter(const QString& name);

    // The parts, by their names.
    QRadioButton* OptQuality(int i) const { return m_quality.at(i); }
    QRadioButton* OptPaper(int i) const { return m_paper.at(i); }
    QRadioButton* OptColor(int i) const { return m_color.at(i); }
    QRadioButton* OptOrient(int i) const { return m_orient.at(i); }
    QScrollBar* HScroll1(int i) const { return m_margin.at(i); }
    QLabel* lblMargin(int i) const { return m_marginText.at(i); }
    QComboBox* Cmbzoom() const { return m_zoom; }
    QComboBox* cmbPrinter() const { return m_printer; }
    QLineEdit* txtCopies() const { return m_copies; }
    zolButton* CmdPrint() const { return m_cmdPrint; }
    zolButton* Command1() const { return m_cmdFit; }
    SheetView* picOffset() const { return m_sheet; }
    QScrollArea* picHolder() const { return m_holder; }
    // The sheet in twips as it lies (landscape swapped), and the picture on it.
    QSizeF sheetTwips() const;
    QRectF pictureTwips() const;
    int zoomPercent() const { return m_zoomPercent; }

protected:
    void done(int result) override;

private:
    void buildControls();
    void LoadItForPrint();
    void applyWindowPlace();
    void rememberWindowPlace();
    void marginChanged(int i);
    // Writes the record; a failure is said in a box and leaves the old file.
    bool writeSettings();
    // Asks the printer chosen in the list, or the PDF file; false when cancelled.
    bool preparePrinter(QPrinter& printer);
    int copiesToPrint();

    QString m_appFolder;
    Prompt& m_prompt;
    FileDialogs& m_dialogs;
    PrintSettings m_settings;
    QImage m_picture;   // picPrint: the picture at full size
    QImage m_grey;      // its grey form, made when monochrome is first shown
    QSizeF m_printSize; // its size on the sheet, in twips
    int m_zoomPercent = 35;
    QString m_pdfFile;
    bool m_applying = false;

    std::array<QRadioButton*, 3> m_quality{};
    std::array<QRadioButton*, 5> m_paper{};
    std::array<QRadioButton*, 2> m_color{};
    std::array<QRadioButton*, 2> m_orient{};
    std::array<QScrollBar*, 2> m_margin{};
    std::array<QLabel*, 2> m_marginText{};
    QComboBox* m_zoom = nullptr;
    QComboBox* m_printer = nullptr;
    QLineEdit* m_copies = nullptr;
    zolButton* m_cmdPrint = nullptr;
    zolButton* m_cmdFit = nullptr;
    SheetView* m_sheet = nullptr;
    QScrollArea* m_holder = nullptr;
};

} // namespace velunta
