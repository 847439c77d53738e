#pragma once
// The Borders dialog: a brush (one of the program's own, or a picture from a file),
// its size and background colour, the layout of the tiles and the way they are put
// down, with a preview on a small copy of the picture.

#include "imageops/Borders.h"

#include <QDialog>
#include <QImage>
#include <QVector>

#include <array>

class QLabel;
class QLineEdit;
class QListWidget;
class QListWidgetItem;

namespace velunta {

class Prompt;
class zolButton;

// The program's own brushes: the pictures of the "borders" folder under `appFolder`,
// in the order of their names.
QVector<QImage> BuiltInBrushes(const QString& appFolder);

class frmBorders : public QDialog {
    Q_OBJECT
public:
    // `picture` is what the preview shows the border on; `drawingColor` goes into Merge.
    frmBorders(BorderSettings& settings, const QVector<QImage>& brushes, const QImage& picture,
               Color drawingColor, Prompt& prompt, QWidget* parent = nullptr);

    // BorderApply: the dialog was closed with OK.
    bool BorderApply() const { return m_apply; }
    // The brush as it is drawn: the art on the background colour at the chosen size.
    QImage brush() const;

    // Picborderbrush(index)_Click: the brush becomes the active one.
    void Picborderbrush_Click(int index);
    // The file brush: a picture file of the list. False (after a message) when it
    // isn't a picture that can be read; the choice stays as it was.
    bool LoadFileBrush(const QString& path);
    // The file list shows the pictures and folders of `folder`.
    void ShowFolder(const QString& folder);
    // Command4 "Apply size and color", Command5 "Background color...", Command7 the
    // preview, Command1 OK.
    void Command4_Click();
    void Command5_Click();
    void SetBackground(Color c);
    void Command7_Click();
    void Command1_Click();

    QLabel* Picborderbrush(int index) const { return m_brushLabels.at(index); }
    int brushCount() const { return int(m_brushLabels.size()); }
    QLabel* Image2() const { return m_image2; }
    QLabel* imgPreview() const { return m_imgPreview; }
    QLabel* lblBrushSize() const { return m_lblSize; }
    QLineEdit* TxtWidth() const { return m_txtWidth; }
    QLineEdit* TxtHeight() const { return m_txtHeight; }
    QListWidget* File1() const { return m_file1; }
    zolButton* Optstyle(int index) const { return m_styles.at(index); }
    zolButton* optEffect(int index) const { return m_effects.at(index); }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    // The art of the active brush, as it is before it is sized.
    const QImage& activeArt() const;
    void showBrushes();
    void showActiveBrush();
    void fileActivated(QListWidgetItem* item);

    BorderSettings& m_settings;
    BorderSettings m_work; // the choices as the dialog shows them; OK keeps them
    QVector<QImage> m_arts;
    QImage m_fileArt;
    Color m_drawingColor;
    Prompt& m_prompt;
    QImage m_picBuf; // the small copy of the picture the preview draws on
    QSize m_pictureSize;
    bool m_apply = false;
    QString m_folder;

    QVector<QLabel*> m_brushLabels;
    QLabel* m_picture1 = nullptr;
    QLabel* m_image2 = nullptr;
    QLabel* m_imgPreview = nullptr;
    QLabel* m_lblSize = nullptr;
    QLabel* m_lblFolder = nullptr;
    QLineEdit* m_txtWidth = nullptr;
    QLineEdit* m_txtHeight = nullptr;
    QListWidget* m_file1 = nullptr;
    std::array<zolButton*, kBorderLayoutCount> m_styles{};
    std::array<zolButton*, kBorderEffectCount> m_effects{};
};

} // namespace velunta
