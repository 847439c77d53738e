#include "exchange/EffectProgram.h"

#include "exchange/ExchangeFile.h"

#include <QCoreApplication>
#include <QFileInfo>

#include <cstdio>

namespace velunta {

int RunEffectProgram(int argc, char** argv, const std::function<void(QImage&)>& effect)
{
    QCoreApplication app(argc, argv);
    const QStringList args = QCoreApplication::arguments();
    const QString name = QFileInfo(args.value(0)).fileName();
    if (args.size() != 2) {
        std::fprintf(stderr, "usage: %s <picture.bmp>\nThe picture is rewritten in place.\n",
                     qPrintable(name));
        return kEffectUsage;
    }
    const QString path = args[1];
    QString error;
    QImage picture = ReadExchangePicture(path, &error);
    if (picture.isNull()) {
        std::fprintf(stderr, "%s: %s: %s\n", qPrintable(name), qPrintable(path), qPrintable(error));
        return kEffectUnreadable;
    }
    effect(picture);
    if (!WriteExchangePicture(picture, path, &error)) {
        std::fprintf(stderr, "%s: %s: %s\n", qPrintable(name), qPrintable(path), qPrintable(error));
        return kEffectUnwritable;
    }
    return kEffectDone;
}

} // namespace velunta
