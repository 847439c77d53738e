#include "files/read/Thumbnail.h"

#include "files/read/Decoders.h"
#include "files/read/PictureLoader.h"

#include <QCoreApplication>
#include <QFile>

namespace velunta {

namespace {

QImage fit(const QImage& picture, int side)
{
    if (picture.width() <= side && picture.height() <= side)
        return picture.convertToFormat(QImage::Format_RGB32);
    return picture.scaled(side, side, Qt::KeepAspectRatio, Qt::SmoothTransformation)
        .convertToFormat(QImage::Format_RGB32);
}

} // namespace

Thumbnail MakeThumbnail(QByteArrayView bytes, int side)
{
    Thumbnail thumb;
    side = qMax(1, side);
    const PictureFormat format = DetectPictureFormat(bytes);
    if (format == PictureFormat::Jpeg) {
        LoadFailure failure;
        const QImage reduced = DecodeJPEGScaled(bytes, side, failure, &thumb.pictureSize);
        if (reduced.isNull())
            thumb.error = failure.text.isEmpty()
                              ? QCoreApplication::translate("PictureFiles", "Damaged JPEG file.")
                              : failure.text;
        else
            thumb.image = fit(reduced, side);
        return thumb;
    }
    if (IsMetafile(format)) {
        thumb.error = QCoreApplication::translate("PictureFiles", "A drawing: open it to see it.");
        return thumb;
    }
    LoadedPicture loaded = DecodePicture(bytes);
    if (loaded.image.isNull()) {
        thumb.error = loaded.error;
        return thumb;
    }
    thumb.pictureSize = loaded.image.size();
    thumb.image = fit(loaded.image, side);
    return thumb;
}

Thumbnail ReadThumbnail(const QString& path, int side)
{
    QFile file(path);
    Thumbnail thumb;
    if (!file.open(QIODevice::ReadOnly)) {
        thumb.error = QCoreApplication::translate("PictureFiles", "The file can't be read.");
        return thumb;
    }
    if (file.size() > kMaxThumbnailFileBytes) {
        thumb.error = QCoreApplication::translate("PictureFiles", "Too large for a preview.");
        return thumb;
    }
    const QByteArray bytes = file.readAll();
    return MakeThumbnail(bytes, side);
}

} // namespace velunta
