#include "imageops/Stamps.h"

#include <QFile>
#include <QImageReader>
#include <QPainter>

#include <algorithm>
#include <cmath>

namespace velunta {

QVector<Stamp> LoadStamps(const QString& folder, QString* problem)
{
    QVector<Stamp> stamps;
    QFile list(folder + QStringLiteral("stamps.txt"));
    if (!list.open(QIODevice::ReadOnly | QIODevice::Text)) {
        if (problem)
            *problem = list.errorString();
        return stamps;
    }
    while (!list.atEnd()) {
        const QStringList fields = QString::fromUtf8(list.readLine()).trimmed().split(u'\t');
        if (fields.size() < 4 || fields[1].contains(QStringLiteral("..")))
            continue;
        QImageReader reader(folder + fields[1]);
        // A stamp is small; a file that claims more is no stamp of ours.
        const QSize size = reader.size();
        if (size.width() > 4 * kLargestStamp || size.height() > 4 * kLargestStamp)
            continue;
        QImage picture = reader.read();
        if (picture.isNull())
            continue;
        stamps.push_back({fields[0], fields[3], fields[2] == QLatin1String("mono"),
                          picture.convertToFormat(QImage::Format_ARGB32)});
    }
    if (stamps.isEmpty() && problem)
        *problem = QStringLiteral("no stamp pictures");
    return stamps;
}

void RecolorStamp(QImage& picture, Color colour)
{
    if (picture.format() != QImage::Format_ARGB32)
        picture = picture.convertToFormat(QImage::Format_ARGB32);
    const QRgb ink = ToQRgb(colour) & 0x00FFFFFFu;
    for (int y = 0; y < picture.height(); ++y) {
        auto* line = reinterpret_cast<QRgb*>(picture.scanLine(y));
        for (int x = 0; x < picture.width(); ++x)
            line[x] = (line[x] & 0xFF000000u) | ink;
    }
}

QImage StampAtSize(const QImage& picture, int side)
{
    if (picture.isNull() || side <= 0)
        return QImage();
    // All stamps are drawn on one square of kLargestStamp, so they keep their sizes
    // to one another (a face is rounder and smaller than a cake) at every size.
    const double scale = double(side) / kLargestStamp;
    const int w = std::max(1, int(std::lround(picture.width() * scale)));
    const int h = std::max(1, int(std::lround(picture.height() * scale)));
    // The reduction averages the pixels it folds together (a plain bilinear draw would
    // skip some at a half), so thin strokes of a sign stay even.
    return w == picture.width() && h == picture.height()
               ? picture
               : picture.scaled(w, h, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
}

QImage StampPicture(const QImage& picture, int side, Color paper)
{
    const QImage scaled = StampAtSize(picture, side);
    if (scaled.isNull())
        return QImage();
    QImage out(scaled.size(), QImage::Format_RGB32);
    out.fill(ToQRgb(paper));
    QPainter p(&out);
    p.drawImage(0, 0, scaled);
    p.end();
    return out;
}

} // namespace velunta
