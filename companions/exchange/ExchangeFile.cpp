#include "exchange/ExchangeFile.h"

#include "files/BmpWriter.h"
#include "files/read/PictureLoader.h"

namespace velunta {

QImage ReadExchangePicture(const QString& path, QString* error)
{
    QString why;
    int number = 0;
    QImage picture = LoadPicture(path, &why, &number);
    if (picture.isNull() && error)
        *error = why.isEmpty() ? QStringLiteral("error %1").arg(number) : why;
    return picture;
}

bool WriteExchangePicture(const QImage& picture, const QString& path, QString* error)
{
    WriteFailure failure;
    if (SaveBMP(picture, path, &failure))
        return true;
    if (error)
        *error = failure.reason;
    return false;
}

} // namespace velunta
