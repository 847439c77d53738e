#include "imageops/frmEditDetail.h"

#include "widgets/ButtonLooks.h"
#include "widgets/zolButton.h"

#include <QDialogButtonBox>
#include <QGridLayout>
#include <QLabel>
#include <QMouseEvent>
#include <QPainter>
#include <QShortcut>
#include <QVBoxLayout>

#include <algorithm>

namespace velunta {

namespace {

// Enough steps back for a long session of pixel work; each is at most 16 KB.
constexpr std::size_t kMaxUndo = 200;
// Below this cell size the grid lines would hide the pixels.
constexpr int kMinCellForLines = 4;

void showSwatch(QLabel* label, Color c)
{
    label->setStyleSheet(
        QStringLiteral("background: %1; border: 1px solid black;").arg(QColor::fromRgb(ToQRgb(c)).name()));
}

} // namespace

QRect DetailArea(QSize pictureSize, QPoint centre)
{
    const int w = std::min(kDetailSide, pictureSize.width());
    const int h = std::min(kDetailSide, pictureSize.height());
    if (w <= 0 || h <= 0)
        return {};
    const int left = std::clamp(centre.x() - w / 2, 0, pictureSize.width() - w);
    const int top = std::clamp(centre.y() - h / 2, 0, pictureSize.height() - h);
    return {left, top, w, h};
}

DetailGrid::DetailGrid(QWidget* parent) : QWidget(parent)
{
    setObjectName(QStringLiteral("picDetail"));
    setMinimumSize(256, 256);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
    setMouseTracking(false);
}

void DetailGrid::setImage(const QImage& image)
{
    m_image = image.convertToFormat(QImage::Format_RGB32);
    m_undo.clear();
    update();
}

void DetailGrid::setColors(Color fore, Color back)
{
    m_fore = fore;
    m_back = back;
}

void DetailGrid::undo()
{
    if (m_undo.empty())
        return;
    m_image = std::move(m_undo.back());
    m_undo.pop_back();
    update();
    Q_EMIT edited();
}

QSize DetailGrid::sizeHint() const
{
    // Ten screen pixels a cell for a full area: big enough to hit, small enough to fit.
    return {kDetailSide * 8 + 1, kDetailSide * 8 + 1};
}

int DetailGrid::cellSize() const
{
    if (m_image.isNull())
        return 1;
    // One pixel is kept for the closing grid line.
    return std::max(1, std::min((width() - 1) / m_image.width(), (height() - 1) / m_image.height()));
}

QPoint DetailGrid::origin() const
{
    const int cell = cellSize();
    return {(width() - cell * m_image.width()) / 2, (height() - cell * m_image.height()) / 2};
}

QPoint DetailGrid::cellAt(QPoint pos) const
{
    const int cell = cellSize();
    const QPoint p = pos - origin();
    if (m_image.isNull() || p.x() < 0 || p.y() < 0)
        return {-1, -1};
    const QPoint c(p.x() / cell, p.y() / cell);
    if (c.x() >= m_image.width() || c.y() >= m_image.height())
        return {-1, -1};
    return c;
}

QPoint DetailGrid::cellCentre(QPoint cell) const
{
    const int size = cellSize();
    return origin() + QPoint(cell.x() * size + size / 2, cell.y() * size + size / 2);
}

void DetailGrid::paintEvent(QPaintEvent*)
{
    QPainter p(this);
    p.fillRect(rect(), palette().window());
    if (m_image.isNull())
        return;
    const int cell = cellSize();
    const QPoint o = origin();
    const QRect grid(o, QSize(cell * m_image.width(), cell * m_image.height()));
    // Scaled without smoothing: every pixel stays one flat cell.
    p.drawImage(grid, m_image);
    if (cell < kMinCellForLines)
        return;
    p.setPen(QColor(128, 128, 128));
    for (int x = 0; x <= m_image.width(); ++x)
        p.drawLine(o.x() + x * cell, grid.top(), o.x() + x * cell, grid.top() + grid.height());
    for (int y = 0; y <= m_image.height(); ++y)
        p.drawLine(grid.left(), o.y() + y * cell, grid.left() + grid.width(), o.y() + y * cell);
}

void DetailGrid::mousePressEvent(QMouseEvent* event)
{
    const bool left = event->button() == Qt::LeftButton;
    if (!left && event->button() != Qt::RightButton)
        return;
    const QPoint cell = cellAt(event->position().toPoint());
    if (cell.x() < 0)
        return;
    if (m_picking) {
        const Color c = FromQRgb(m_image.pixel(cell));
        (left ? m_fore : m_back) = c;
        m_picking = false;
        Q_EMIT picked();
        return;
    }
    if (m_undo.size() >= kMaxUndo)
        m_undo.erase(m_undo.begin());
    m_undo.push_back(m_image);
    m_strokeColor = ToQRgb(left ? m_fore : m_back);
    m_stroking = true;
    m_lastCell = cell;
    paintLine(cell, cell);
}

void DetailGrid::mouseMoveEvent(QMouseEvent* event)
{
    if (!m_stroking)
        return;
    // Outside the grid the stroke waits at its last cell and goes on where it comes back.
    const QPoint cell = cellAt(event->position().toPoint());
    if (cell.x() < 0 || cell == m_lastCell)
        return;
    paintLine(m_lastCell, cell);
    m_lastCell = cell;
}

void DetailGrid::mouseReleaseEvent(QMouseEvent*)
{
    m_stroking = false;
}

void DetailGrid::paintLine(QPoint from, QPoint to)
{
    // Every cell between two pointer positions, so a fast drag leaves no gaps.
    int x = from.x(), y = from.y();
    const int dx = std::abs(to.x() - x), dy = -std::abs(to.y() - y);
    const int sx = x < to.x() ? 1 : -1, sy = y < to.y() ? 1 : -1;
    int err = dx + dy;
    for (;;) {
        reinterpret_cast<QRgb*>(m_image.scanLine(y))[x] = m_strokeColor;
        if (x == to.x() && y == to.y())
            break;
        const int e2 = 2 * err;
        if (e2 >= dy) {
            err += dy;
            x += sx;
        }
        if (e2 <= dx) {
            err += dx;
            y += sy;
        }
    }
    update();
    Q_EMIT edited();
}

frmEditDetail::frmEditDetail(const QImage& area, Color fore, Color back, QWidget* parent) : QDialog(parent)
{
    setObjectName(QStringLiteral("frmEditDetail"));
    setWindowTitle(tr("Detailed Editing"));
    auto* layout = new QGridLayout(this);

    m_grid = new DetailGrid(this);
    m_grid->setImage(area);
    m_grid->setColors(fore, back);
    layout->addWidget(m_grid, 0, 0, 2, 1);

    auto* side = new QVBoxLayout;
    side->addWidget(new QLabel(tr("Real size:"), this));
    m_preview = new QLabel(this);
    m_preview->setObjectName(QStringLiteral("picPreview"));
    m_preview->setFixedSize(kDetailSide + 4, kDetailSide + 4);
    m_preview->setAlignment(Qt::AlignCenter);
    m_preview->setFrameShape(QFrame::Box);
    side->addWidget(m_preview);

    auto* colours = new QGridLayout;
    m_foreSwatch = new QLabel(this);
    m_backSwatch = new QLabel(this);
    for (QLabel* swatch : {m_foreSwatch, m_backSwatch})
        swatch->setFixedSize(24, 24);
    colours->addWidget(m_foreSwatch, 0, 0);
    colours->addWidget(new QLabel(tr("Left button"), this), 0, 1);
    colours->addWidget(m_backSwatch, 1, 0);
    colours->addWidget(new QLabel(tr("Right button"), this), 1, 1);
    side->addLayout(colours);

    m_picker = new zolButton(this);
    m_picker->setObjectName(QStringLiteral("cmdPicker"));
    m_picker->setCaption(tr("&Pick a colour"));
    m_picker->setToolTip(
        tr("Click a cell to take its colour: left for the left button, right for the right"));
    m_picker->setMode(1);
    OptionLook(m_picker);
    connect(m_picker, &zolButton::Click, this, [this] { m_grid->setPicking(m_picker->Value()); });
    side->addWidget(m_picker);

    m_undo = new zolButton(this);
    m_undo->setObjectName(QStringLiteral("cmdUndo"));
    m_undo->setCaption(tr("&Undo"));
    m_undo->setToolTip(tr("Take back the last change in this window (Ctrl+Z)"));
    DialogLook(m_undo);
    connect(m_undo, &zolButton::Click, m_grid, &DetailGrid::undo);
    connect(new QShortcut(QKeySequence::Undo, this), &QShortcut::activated, m_grid, &DetailGrid::undo);
    side->addWidget(m_undo);
    side->addStretch();
    layout->addLayout(side, 0, 1);

    auto* buttons = new QDialogButtonBox(Qt::Vertical, this);
    AddDialogButton(buttons, tr("OK"), QDialogButtonBox::AcceptRole, QStringLiteral("cmdOK"));
    AddDialogButton(buttons, tr("Cancel"), QDialogButtonBox::RejectRole, QStringLiteral("cmdCancel"));
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    layout->addWidget(buttons, 1, 1, Qt::AlignBottom);
    layout->setColumnStretch(0, 1);

    connect(m_grid, &DetailGrid::edited, this, &frmEditDetail::refresh);
    connect(m_grid, &DetailGrid::picked, this, [this] {
        m_picker->setValue(false);
        refresh();
    });
    refresh();
}

void frmEditDetail::refresh()
{
    m_preview->setPixmap(QPixmap::fromImage(m_grid->image()));
    showSwatch(m_foreSwatch, m_grid->foreColor());
    showSwatch(m_backSwatch, m_grid->backColor());
    m_undo->setEnabled(m_grid->canUndo());
}

} // namespace velunta
