#include "files/OpenPicture.h"

#include "files/outside/Metafile.h"
#include "files/read/PictureLoader.h"

namespace velunta {

QImage OpenPicture(const QString& path, QString* error, int* errorNumber,
                   const std::function<bool(double)>& keepWaiting)
{
    // The loader tells a drawing by its first bytes and refuses it; only then does the
    // converter run, so a picture is read once.
    const LoadedPicture loaded = ReadPicture(path);
    if (!IsMetafile(loaded.format)) {
        if (error)
            *error = loaded.error;
        if (errorNumber)
            *errorNumber = loaded.errorNumber;
        return loaded.image;
    }
    MetafilePicture drawing = ConvertMetafile(path, keepWaiting);
    if (error)
        *error = drawing.error;
    if (errorNumber)
        *errorNumber = drawing.image.isNull() ? int(ErrInvalidPicture) : 0;
    return drawing.image;
}

} // namespace velunta
