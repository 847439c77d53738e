#pragma once
// Symbols & Stamps: a palette of small ready-made pictures that floats beside the
// main window without blocking it. A double click puts a stamp on the clipboard and
// asks the main window to paste it, so it arrives as a floating selection the user
// drags into place, with the picture showing round it. The one-colour stamps take the
// colour chosen in the palette's colour row.

#include "core/Color.h"
#include "imageops/Stamps.h"

#include <QPointer>
#include <QVector>
#include <QWidget>

#include <array>

class QLabel;
class QScrollArea;
class QScrollBar;
class QTimer;

namespace velunta {

class ColorSample;
class StampTile;
class SwatchGrid;
class zolButton;

class FrmSymbols : public QWidget {
    Q_OBJECT
public:
    // `foreColor` and `backColor` are SelColor(0) and SelColor(1): the colour Command1
    // takes, and the paper the stamps are laid on.
    FrmSymbols(const QString& stampFolder, const Color& foreColor, const Color& backColor,
               QWidget* parent = nullptr);

    // Shows the palette: the first time at the right edge of the screen, after that
    // where it was left (kept on a screen that is still there).
    void Open();

    // The stamps, PicFigures(index) as they stand now (one-colour stamps recoloured).
    int figureCount() const { return int(m_figures.size()); }
    const QImage& PicFigures(int index) const { return m_figures.at(index); }
    const Stamp& stamp(int index) const { return m_stamps.at(index); }
    StampTile* tile(int index) const { return m_tiles.at(index); }
    QScrollBar* VScroll1() const;

    // Stamps the picture: the stamp at the chosen size on the clipboard, then the
    // paste of the main window.
    void PicFigures_DblClick(int index);
    // The last stamp as it went on the clipboard (on the paper colour) and with its
    // own transparency, so the paste can let the picture show round it.
    const QImage& lastStampOnPaper() const { return m_lastOnPaper; }
    const QImage& lastStamp() const { return m_lastStamp; }
    // Takes the drawing colour for the one-colour stamps.
    void Command1_Click();
    // Closes the palette.
    void Command3_Click();
    // Recolours the one-colour stamps to the chosen colour.
    void ColorsUpdate();

    // The colour of the one-colour stamps (lblcolor); Timer1 brings the stamps along.
    Color stampColor() const { return m_stampColor; }
    void setStampColor(Color c);
    // The stamp size: an index of kStampSizes.
    int stampSize() const { return m_size; }
    void setStampSize(int index);
    // The paper colour changed: the stamps show on it.
    void PaperChanged();

Q_SIGNALS:
    void pasteRequested();

protected:
    void hideEvent(QHideEvent* event) override;

private:
    QWidget* buildStamps(const QString& stampFolder);
    QWidget* buildColorRow();

    const Color& m_foreColor;
    const Color& m_backColor;
    QVector<Stamp> m_stamps;
    QVector<QImage> m_figures;
    QImage m_lastStamp;
    QImage m_lastOnPaper;
    QVector<StampTile*> m_tiles;
    QScrollArea* m_scroll = nullptr;
    ColorSample* m_lblcolor = nullptr;
    SwatchGrid* m_picselcol = nullptr;
    std::array<zolButton*, 3> m_sizes{};
    QTimer* m_timer1 = nullptr;
    Color m_stampColor = 0;
    int m_size = 1;
    bool m_firstStampDone = false;
    bool m_placed = false;
    QPoint m_place;
};

// One stamp in the palette, shown on the paper colour. A double click (or Enter)
// stamps it.
class StampTile : public QWidget {
    Q_OBJECT
public:
    StampTile(const Color& paper, QWidget* parent);
    void setPicture(const QImage& picture);

Q_SIGNALS:
    void doubleClicked();

protected:
    void paintEvent(QPaintEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void enterEvent(QEnterEvent* event) override;
    void leaveEvent(QEvent* event) override;

private:
    const Color& m_paper;
    QImage m_shown;
    bool m_hover = false;
};

} // namespace velunta
