#include "print/SheetView.h"

#include <QPainter>

namespace velunta {

namespace {

constexpr int kShadow = 4;

// A big picture shown small: a fast cut to twice the size first, so the smooth pass
// reads a few million pixels rather than a hundred million.
QImage scaledFor(const QImage& full, QSize size)
{
    if (full.isNull() || size.isEmpty())
        return {};
    QImage source = full;
    if (full.width() > 4 * size.width() && full.height() > 4 * size.height())
        source = full.scaled(size * 2, Qt::IgnoreAspectRatio, Qt::FastTransformation);
    return source.scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
}

} // namespace

SheetView::SheetView(QWidget* parent) : QWidget(parent)
{
    setObjectName(QStringLiteral("picOffset"));
}

void SheetView::setSheet(QSize paper, QRect picture, const QImage& full)
{
    if (full.cacheKey() != m_full.cacheKey() || picture.size() != m_picture.size()) {
        m_full = full;
        // The sheet shows at most its own size of the picture; a picture far larger
        // than the paper is cut at the edge anyway.
        m_scaled = picture.width() <= 4 * paper.width() + 8 && picture.height() <= 4 * paper.height() + 8
                       ? scaledFor(full, picture.size())
                       : QImage();
    }
    m_paper = paper;
    m_picture = picture;
    setFixedSize(paper + QSize(kShadow, kShadow));
    update();
}

void SheetView::paintEvent(QPaintEvent*)
{
    QPainter p(this);
    const QRect paper(QPoint(0, 0), m_paper);
    p.fillRect(paper.translated(kShadow, kShadow), QColor(90, 90, 90));
    p.fillRect(paper, Qt::white);
    p.setClipRect(paper);
    if (!m_scaled.isNull())
        p.drawImage(m_picture.topLeft(), m_scaled);
    else if (!m_full.isNull())
        p.drawImage(m_picture, m_full); // beyond the sheet: only the clipped part is drawn
    p.setClipping(false);
    p.setPen(QColor(160, 160, 160));
    p.drawRect(paper.adjusted(0, 0, -1, -1));
}

} // namespace velunta
