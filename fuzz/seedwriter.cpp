// Adds to a seed corpus the files the program's own writers make and the
// variants built byte by byte: velunta_seedwriter OUT writes into OUT/bmp,
// OUT/gif, OUT/jpeg, OUT/ico and OUT/png. Pictures stay small, so the fuzzers
// mutate them quickly.

#include "files/BmpWriter.h"
#include "files/GIF.h"
#include "files/JpegWriter.h"
#include "files/cDIBSection.h"

#include "support/PictureBytes.h"
#include "support/TestImages.h"

#include <QDir>
#include <QFile>

#include <cstdio>

using namespace velunta;
using namespace velunta::test;

namespace {

QImage picture()
{
    return MakeImage(24, 16, [](int x, int y) { return RGB(x * 10, y * 15, (x ^ y) * 8); });
}

} // namespace

int main(int argc, char** argv)
{
    if (argc != 2) {
        std::fprintf(stderr, "usage: velunta_seedwriter OUT\n");
        return 2;
    }
    const QDir out(QString::fromLocal8Bit(argv[1]));
    for (const char* kind : {"bmp", "gif", "jpeg", "ico", "png"})
        out.mkpath(QString::fromLatin1(kind));
    const auto path = [&](const char* name) { return out.filePath(QString::fromLatin1(name)); };
    bool ok = true;
    const auto put = [&](const char* name, const QByteArray& bytes) {
        QFile file(path(name));
        ok = file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size() && ok;
    };

    // The program's own writers.
    const QImage image = picture();
    ok = SaveBMP(image, path("bmp/own.bmp")) && ok;
    cDIBSection dib;
    ok = dib.CreateFromPicture(image) && ok;
    ok = SaveJPG(dib, path("jpeg/own-q90.jpg"), 90) && ok;
    ok = SaveJPG(dib, path("jpeg/own-q20.jpg"), 20) && ok;
    ok = GIF().SaveGIF(image, path("gif/own.gif"), false, -1) && ok;
    ok = GIF().SaveGIF(image, path("gif/own-transparent.gif"), true, RGB(0, 0, 0)) && ok;
    ok = GIF().SaveGIF(image.convertToFormat(QImage::Format_Indexed8), path("gif/own-indexed.gif"), false,
                       -1) &&
         ok;

    // Variants no tool writes.
    const QByteArray palette = QByteArray::fromHex("FFFFFF00 00000000 0000FF00");
    put("bmp/rle4-jump.bmp",
        BmpFile(6, 3, 40, 4, 2, palette,
                QByteArray::fromHex("0612 0000 0003 2020 0122 0000 0002 0200 0222 0001")));
    put("bmp/rle8-past-row.bmp",
        BmpFile(4, 3, 40, 8, 1, palette,
                QByteArray::fromHex("0602 0000 0202 000300000000 0000 00020500 0202 0001")));
    put("bmp/top-down.bmp",
        BmpFile(2, -2, 40, 24, 0, {}, QByteArray::fromHex("0000FF FFFFFF 0000 000000 0000FF 0000")));
    put("bmp/os2-64.bmp", BmpFile(2, 2, 64, 8, 0, palette, QByteArray::fromHex("0201 0000 0100 0000")));
    put("bmp/os2-12.bmp", BmpFile(2, 2, 12, 8, 0, QByteArray::fromHex("FFFFFF 000000 0000FF"),
                                  QByteArray::fromHex("0201 0000 0100 0000")));
    put("bmp/bitfields-565.bmp", BmpFile(2, 1, 40, 16, 3, QByteArray::fromHex("00F80000 E0070000 1F000000"),
                                         QByteArray::fromHex("00F8 1F00")));
    put("bmp/packed.dib", BmpFile(2, 1, 40, 8, 0, palette, QByteArray::fromHex("02010000"), -1, 3).mid(14));
    const QByteArray cursorDib = BmpFile(2, 4, 40, 1, 0, QByteArray::fromHex("0000FF00 FF000000"),
                                         QByteArray::fromHex("40000000 80000000 00000000 40000000"))
                                     .mid(14);
    put("ico/cursor.cur", IconFile(2, {{2, 2, 0x0101, cursorDib}}));
    put("ico/icon-dib.ico", IconFile(1, {{2, 2, 1, cursorDib}}));
    const auto be16 = [](std::initializer_list<quint16> values) {
        QByteArray row;
        for (quint16 v : values)
            row.append(char(v >> 8)).append(char(v & 0xFF));
        return row;
    };
    put("png/rgb16-trns.png",
        PngFile(3, 1, 16, 2, {be16({0x1234, 0x5678, 0x9ABC, 0x1234, 0x5678, 0x9ABD, 0xFFFF, 0, 0x8000})},
                PngChunk("tRNS", be16({0x1234, 0x5678, 0x9ABC}))));
    put("png/grey16-trns.png",
        PngFile(3, 1, 16, 0, {be16({0x8001, 0x8000, 0x0101})}, PngChunk("tRNS", be16({0x8001}))));
    // A text chunk stating 1.3 GB ahead of a small picture: the reader must not take that
    // memory before it finds the file ending.
    put("png/text-stating-1.3gb.png",
        PngFile(24, 16, 8, 2, {QByteArray(72, 0)}, QByteArray::fromHex("4d600125") + "tEXtkey"));
    put("ico/icon-png.ico", IconFile(1, {{3, 1, 32, PngFile(3, 1, 8, 0, {QByteArray::fromHex("00FF80")})}}));
    const QByteArray two = QByteArray::fromHex("000000FF0000");
    put("gif/code-size-11.gif", GifFile({16, 4, 0, 0, 16, 4, 11, two, QByteArray(64, 1)}));
    put("gif/partly-outside.gif", GifFile({4, 3, 2, 2, 3, 2, 2, two, QByteArray(6, 1)}));
    put("gif/no-screen.gif", GifFile({0, 0, 1, 0, 1, 2, 2, two, QByteArray(2, 1)}));
    if (!ok)
        std::fprintf(stderr, "velunta_seedwriter: some files could not be written\n");
    return ok ? 0 : 1;
}
