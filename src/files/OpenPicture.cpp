#include "files/OpenPicture.h"

#include "files/PictureLoader.h"
#include "files/outside/Metafile.h"

#include <QFile>

namespace velunta {

namespace {

QByteArray fileHead(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.read(64) : QByteArray();
}

} // namespace

bool IsMetafileFile(const QString& path)
{
    return DetectMetafile(fileHead(path)) != MetafileKind::None;
}

QImage OpenPicture(const QString& path, QString* error, int* errorNumber,
                   const std::function<bool(double)>& keepWaiting)
{
    if (!IsMetafileFile(path))
        return LoadPicture(path, error, errorNumber);
    MetafilePicture drawing = ConvertMetafile(path, keepWaiting);
    if (error)
        *error = drawing.error;
    if (errorNumber)
        *errorNumber = drawing.image.isNull() ? int(ErrInvalidPicture) : 0;
    return drawing.image;
}

} // namespace velunta
