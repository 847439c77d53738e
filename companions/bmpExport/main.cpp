// bmpExport: writes a picture as a BMP file of 1, 4, 8 or 24 bits, with or without
// dithering, in place.
//
//     bmpExport <picture> /dialog   asks in its own window, showing the result first
//     bmpExport <picture>           converts with the choice last made in the window
//                                   (24 bits at first): any picture becomes a plain BMP
//
// Exit codes: 0 written or cancelled, 1 no picture named, 2 the picture can't be read,
// 3 the file can't be written.

#include "bmpExport/ColorDepth.h"
#include "bmpExport/frmColorDepth.h"
#include "exchange/ExchangeFile.h"

#include <QApplication>
#include <QMessageBox>

#include <cstdio>
#include <cstring>
#include <memory>
#include <strings.h>

int main(int argc, char** argv)
{
    using namespace velunta;
    // The window is asked for by "/dialog" anywhere after the picture's name; without it
    // the program needs no display.
    bool dialog = false;
    const char* path = nullptr;
    for (int i = 1; i < argc; ++i) {
        if (strcasecmp(argv[i], "/dialog") == 0)
            dialog = true;
        else if (!path)
            path = argv[i];
    }
    std::unique_ptr<QCoreApplication> app =
        dialog ? std::make_unique<QApplication>(argc, argv) : std::make_unique<QCoreApplication>(argc, argv);
    if (!path) {
        std::fprintf(stderr, "usage: bmpExport <picture> [/dialog]\n");
        return 1;
    }
    const QString file = QString::fromLocal8Bit(path);
    QString error;
    const QImage picture = ReadExchangePicture(file, &error);
    if (picture.isNull()) {
        std::fprintf(stderr, "bmpExport: %s: %s\n", path, qPrintable(error));
        if (dialog)
            QMessageBox::warning(nullptr, frmColorDepth::tr("Color Depth and Dither"),
                                 frmColorDepth::tr("The picture %1 can't be read:\n%2").arg(file, error));
        return 2;
    }
    if (dialog) {
        frmColorDepth window(picture, file, RememberedChoice());
        window.exec();
        return 0;
    }
    if (!WriteBMPVariant(picture, RememberedChoice(), file, &error)) {
        std::fprintf(stderr, "bmpExport: %s: %s\n", path, qPrintable(error));
        return 3;
    }
    return 0;
}
