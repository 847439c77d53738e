#pragma once
// Windows metafiles (WMF, placeable or plain, and EMF) are drawings, not pictures:
// they open through the Debian converters wmf2svg (libwmf-bin) and emf2svg-conv
// (emf2svg), whose SVG is rendered by Qt Svg at the size the metafile states for
// itself. The converters run with a time limit, so a broken file can't hang the program.

#include "core/OutsideProgram.h"
#include "files/read/PictureLoader.h"

#include <QByteArrayView>
#include <QImage>
#include <QSize>
#include <QString>

namespace velunta {

// Which files are metafiles the picture loader decides (DetectPictureFormat).

// The size in pixels (96 to the inch) the drawing asks for: a placeable WMF's frame and
// units per inch, a plain WMF's window extent, an EMF's frame (else its bounds). Invalid
// when the header states none that makes sense.
QSize MetafileSize(QByteArrayView bytes, PictureFormat kind);

// The size a drawing is rendered at: the stated size, else the converter's own, else
// 640 x 480; in any case no side above kMaxMetafileSide, the shape kept.
inline constexpr int kMaxMetafileSide = 4096;
QSize RenderSize(QSize stated, QSize converted);

struct MetafilePicture {
    enum Failure { None, ConverterMissing, Damaged, TimedOut, Stopped };
    QImage image; // Format_RGB32 on white; null on failure
    Failure failure = None;
    QString error; // a sentence for the user
};

// The converter a kind needs, and the package that holds it.
QString MetafileConverter(PictureFormat kind);
QString MetafileConverterPackage(PictureFormat kind);

// Converts and renders the drawing in `path`. `keepWaiting` is asked while a converter
// runs (see OutsideOptions); `timeLimitMs` bounds each converter's run.
MetafilePicture ConvertMetafile(const QString& path, const std::function<bool(double)>& keepWaiting = {},
                                int timeLimitMs = 20000);

} // namespace velunta
