#include "imageops/FrmSymbols.h"

#include "widgets/ButtonLooks.h"
#include "widgets/ColorMath.h"
#include "widgets/StripParts.h"
#include "widgets/zolButton.h"

#include <QApplication>
#include <QClipboard>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QPainter>
#include <QScreen>
#include <QScrollArea>
#include <QScrollBar>
#include <QTimer>
#include <QVBoxLayout>

#include <algorithm>

namespace velunta {

namespace {

constexpr int kColumns = 6;
constexpr int kTileSide = 60;
constexpr int kShownSide = 50;

// The groups in the order the palette shows them.
const char* const kGroups[] = {
    QT_TRANSLATE_NOOP("velunta::FrmSymbols", "Birthday"),
    QT_TRANSLATE_NOOP("velunta::FrmSymbols", "Weather"),
    QT_TRANSLATE_NOOP("velunta::FrmSymbols", "Music"),
    QT_TRANSLATE_NOOP("velunta::FrmSymbols", "Arrows"),
    QT_TRANSLATE_NOOP("velunta::FrmSymbols", "Miscellaneous"),
    QT_TRANSLATE_NOOP("velunta::FrmSymbols", "Holidays"),
};

} // namespace

StampTile::StampTile(const Color& paper, QWidget* parent) : QWidget(parent), m_paper(paper)
{
    setFixedSize(kTileSide, kTileSide);
    setFocusPolicy(Qt::StrongFocus);
    setCursor(Qt::PointingHandCursor);
}

void StampTile::setPicture(const QImage& picture)
{
    // The palette shows the stamp smaller than it lands, reduced once here rather than
    // at every paint.
    m_shown = picture.scaled(kShownSide, kShownSide, Qt::KeepAspectRatio, Qt::SmoothTransformation)
                  .convertToFormat(QImage::Format_ARGB32_Premultiplied);
    update();
}

void StampTile::paintEvent(QPaintEvent*)
{
    QPainter p(this);
    p.fillRect(rect(), ToQColor(m_paper));
    p.drawImage((width() - m_shown.width()) / 2, (height() - m_shown.height()) / 2, m_shown);
    const bool marked = m_hover || hasFocus();
    p.setPen(
        QPen(marked ? palette().color(QPalette::Highlight) : palette().color(QPalette::Mid), marked ? 2 : 1));
    p.setBrush(Qt::NoBrush);
    p.drawRect(marked ? rect().adjusted(1, 1, -1, -1) : rect().adjusted(0, 0, -1, -1));
}

void StampTile::mouseDoubleClickEvent(QMouseEvent*)
{
    Q_EMIT doubleClicked();
}

void StampTile::keyPressEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter || event->key() == Qt::Key_Space)
        Q_EMIT doubleClicked();
    else
        QWidget::keyPressEvent(event);
}

void StampTile::enterEvent(QEnterEvent*)
{
    m_hover = true;
    update();
}

void StampTile::leaveEvent(QEvent*)
{
    m_hover = false;
    update();
}

FrmSymbols::FrmSymbols(const QString& stampFolder, const Color& foreColor, const Color& backColor,
                       QWidget* parent)
    : QWidget(parent, Qt::Tool), m_foreColor(foreColor), m_backColor(backColor)
{
    setObjectName(QStringLiteral("FrmSymbols"));
    setWindowTitle(tr("Symbols & Stamps"));
    m_stampColor = std::max(foreColor, 0);

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(6, 6, 6, 6);
    layout->setSpacing(6);
    m_scroll = new QScrollArea(this);
    m_scroll->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_scroll->verticalScrollBar()->setObjectName(QStringLiteral("VScroll1"));
    m_scroll->setWidget(buildStamps(stampFolder));
    m_scroll->setFixedWidth(m_scroll->widget()->sizeHint().width() +
                            m_scroll->verticalScrollBar()->sizeHint().width() + 2 * m_scroll->frameWidth());
    layout->addWidget(m_scroll, 1);

    auto* hint =
        new QLabel(tr("Double-click a stamp to put it on your picture, then drag it into place."), this);
    hint->setWordWrap(true);
    layout->addWidget(hint);

    auto* sizeRow = new QHBoxLayout;
    sizeRow->addWidget(new QLabel(tr("Stamp size:"), this));
    const QString sizeNames[3] = {tr("Small"), tr("Medium"), tr("Large")};
    auto* sizeBox = new QWidget(this); // one group of option keys
    auto* sizeKeys = new QHBoxLayout(sizeBox);
    sizeKeys->setContentsMargins(0, 0, 0, 0);
    for (int i = 0; i < 3; ++i) {
        m_sizes[i] = new zolButton(sizeNames[i], sizeBox);
        m_sizes[i]->setObjectName(QStringLiteral("OptSize(%1)").arg(i));
        m_sizes[i]->setToolTip(tr("Stamps %1 pixels across").arg(kStampSizes[i]));
        OptionLook(m_sizes[i]);
        m_sizes[i]->setMode(2);
        m_sizes[i]->setFixedHeight(24);
        sizeKeys->addWidget(m_sizes[i]);
        connect(m_sizes[i], &zolButton::Click, this, [this, i] { setStampSize(i); });
    }
    sizeRow->addWidget(sizeBox);
    sizeRow->addStretch(1);
    layout->addLayout(sizeRow);
    layout->addWidget(buildColorRow());

    m_timer1 = new QTimer(this);
    m_timer1->setObjectName(QStringLiteral("Timer1"));
    m_timer1->setSingleShot(true);
    m_timer1->setInterval(40);
    connect(m_timer1, &QTimer::timeout, this, &FrmSymbols::ColorsUpdate);

    setStampSize(1);
    ColorsUpdate();
}

QWidget* FrmSymbols::buildStamps(const QString& stampFolder)
{
    auto* page = new QWidget;
    auto* pageLayout = new QVBoxLayout(page);
    pageLayout->setContentsMargins(4, 4, 4, 4);
    QString problem;
    m_stamps = LoadStamps(stampFolder, &problem);
    m_figures.resize(m_stamps.size());
    m_tiles.resize(m_stamps.size(), nullptr);
    for (int i = 0; i < m_stamps.size(); ++i)
        m_figures[i] = m_stamps[i].picture;
    if (m_stamps.isEmpty()) {
        auto* missing =
            new QLabel(tr("The stamps were not found in\n%1\n(%2)").arg(stampFolder, problem), page);
        missing->setObjectName(QStringLiteral("lblMissing"));
        pageLayout->addWidget(missing);
    }
    for (const char* group : kGroups) {
        const QString key = QString::fromLatin1(group);
        QGroupBox* frame = nullptr;
        QGridLayout* grid = nullptr;
        int placed = 0;
        for (int i = 0; i < m_stamps.size(); ++i) {
            if (m_stamps[i].group != key)
                continue;
            if (!frame) {
                frame = new QGroupBox(tr(group), page);
                frame->setObjectName(QStringLiteral("Frame") + key);
                grid = new QGridLayout(frame);
                grid->setSpacing(3);
                pageLayout->addWidget(frame);
            }
            auto* tile = new StampTile(m_backColor, frame);
            tile->setObjectName(QStringLiteral("PicFigures(%1)").arg(i));
            tile->setToolTip(m_stamps[i].name);
            grid->addWidget(tile, placed / kColumns, placed % kColumns);
            ++placed;
            connect(tile, &StampTile::doubleClicked, this, [this, i] { PicFigures_DblClick(i); });
            m_tiles[i] = tile;
        }
        if (grid)
            for (int c = placed; c < kColumns; ++c)
                grid->setColumnMinimumWidth(c, kTileSide);
    }
    pageLayout->addStretch(1);
    return page;
}

QWidget* FrmSymbols::buildColorRow()
{
    auto* row = new QGroupBox(tr("Colour of the one-colour stamps"), this);
    auto* rowLayout = new QHBoxLayout(row);
    m_lblcolor = new ColorSample(row);
    m_lblcolor->setObjectName(QStringLiteral("lblcolor"));
    m_lblcolor->setFixedSize(36, 36);
    m_lblcolor->setToolTip(tr("The colour of the arrows, hearts, stars and signs"));
    rowLayout->addWidget(m_lblcolor, 0, Qt::AlignTop);

    // The strip's fixed colours, its rows laid across.
    QVector<QPoint> places;
    for (int i = 0; i < kMSColorCount; ++i)
        places.append(MSColorPlace(i).transposed());
    m_picselcol = new SwatchGrid(places, QSize(13, 13), 2, row);
    m_picselcol->setObjectName(QStringLiteral("Picselcol"));
    for (int i = 0; i < kMSColorCount; ++i)
        m_picselcol->setColor(i, MSColorValue(i));
    m_picselcol->setToolTip(tr("Click a colour for the one-colour stamps"));
    connect(m_picselcol, &SwatchGrid::cellPressed, this, [this](int index, int) {
        if (index >= 0)
            setStampColor(m_picselcol->color(index));
    });
    rowLayout->addWidget(m_picselcol);

    auto* keys = new QVBoxLayout;
    auto* take = new zolButton(tr("Drawing Colour"), row);
    take->setObjectName(QStringLiteral("Command1"));
    take->setToolTip(tr("Give the one-colour stamps the colour you draw with"));
    DialogLook(take);
    take->setFixedHeight(26);
    connect(take, &zolButton::Click, this, &FrmSymbols::Command1_Click);
    keys->addWidget(take);
    keys->addStretch(1);
    auto* close = new zolButton(tr("Close"), row);
    close->setObjectName(QStringLiteral("Command3"));
    DialogLook(close);
    close->setFixedHeight(26);
    connect(close, &zolButton::Click, this, &FrmSymbols::Command3_Click);
    keys->addWidget(close);
    rowLayout->addLayout(keys, 1);
    return row;
}

QScrollBar* FrmSymbols::VScroll1() const
{
    return m_scroll->verticalScrollBar();
}

void FrmSymbols::Open()
{
    QScreen* screen = parentWidget() ? parentWidget()->screen() : QGuiApplication::primaryScreen();
    const QRect area = screen->availableGeometry();
    resize(sizeHint().width(), std::clamp(area.height() - 100, 320, 760));
    QPoint place = m_place;
    if (!m_placed) {
        // The right edge of the screen, clear of the window frame.
        place = QPoint(area.right() - width() - 12, area.top() + 40);
    } else {
        // Where it was left, unless that screen has gone: then on this one.
        bool seen = false;
        for (QScreen* s : QGuiApplication::screens())
            seen = seen || s->availableGeometry().intersects(QRect(place, QSize(width(), 40)));
        if (!seen)
            place = QPoint(area.right() - width() - 12, area.top() + 40);
    }
    move(place);
    show();
    raise();
    activateWindow();
    m_place = pos();
    m_placed = true;
}

void FrmSymbols::hideEvent(QHideEvent* event)
{
    if (m_placed)
        m_place = pos();
    QWidget::hideEvent(event);
}

void FrmSymbols::PicFigures_DblClick(int index)
{
    if (index < 0 || index >= m_figures.size())
        return;
    QClipboard* clipboard = QApplication::clipboard();
    clipboard->clear();
    m_lastStamp = StampAtSize(m_figures[index], kStampSizes[m_size]);
    m_lastOnPaper = StampPicture(m_figures[index], kStampSizes[m_size], std::max(m_backColor, 0));
    clipboard->setImage(m_lastOnPaper);
    // The clipboard settles before the paste reads it; the first time once more. A
    // click in the palette meanwhile waits, so a stamp is never pasted twice at once.
    QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
    if (!m_firstStampDone) {
        QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
        m_firstStampDone = true;
    }
    Q_EMIT pasteRequested();
}

void FrmSymbols::Command1_Click()
{
    setStampColor(std::max(m_foreColor, 0));
    ColorsUpdate();
}

void FrmSymbols::Command3_Click()
{
    close();
}

void FrmSymbols::setStampColor(Color c)
{
    if (c < 0)
        return;
    m_stampColor = c;
    m_lblcolor->setColor(c);
    m_timer1->start();
}

void FrmSymbols::ColorsUpdate()
{
    m_timer1->stop();
    m_lblcolor->setColor(m_stampColor);
    for (int i = 0; i < m_stamps.size(); ++i) {
        if (m_stamps[i].oneColour) {
            m_figures[i] = m_stamps[i].picture.copy();
            RecolorStamp(m_figures[i], m_stampColor);
        }
        if (m_tiles[i]) // a stamp of a group the palette doesn't show has no tile
            m_tiles[i]->setPicture(m_figures[i]);
    }
}

void FrmSymbols::setStampSize(int index)
{
    m_size = std::clamp(index, 0, 2);
    for (int i = 0; i < 3; ++i)
        m_sizes[i]->setValue(i == m_size);
}

void FrmSymbols::PaperChanged()
{
    for (StampTile* tile : m_tiles)
        if (tile)
            tile->update();
}

} // namespace velunta
