#pragma once
// Small previews of picture files, for the thumbnail view of the open dialog. The
// files go through the program's own decoders, as an opened picture does; a JPEG is
// reduced while it decodes, so a large photo costs a fraction of its full decoding.
// Display-free and safe to call from any thread.

#include <QByteArrayView>
#include <QImage>
#include <QString>

namespace velunta {

struct Thumbnail {
    QImage image;      // fits side x side, Format_RGB32; null when the file gives none
    QSize pictureSize; // the picture's own size
    QString error;     // why there is no image, in a few words
    bool ok() const { return !image.isNull(); }
};

// Files larger than this get no preview: no picture within the limits is that big
// on disk except a raw bitmap, and reading it would hold up the rest of the folder.
inline constexpr qint64 kMaxThumbnailFileBytes = qint64(256) << 20;

Thumbnail MakeThumbnail(QByteArrayView bytes, int side);
Thumbnail ReadThumbnail(const QString& path, int side);

} // namespace velunta
