// Renders the program's icon, drawn once as SVG, at the sizes of the hicolor icon
// theme: velunta_icons <app.svg> <output folder> <icon name> <size>...
// Each size becomes <output folder>/<size>x<size>/apps/<icon name>.png.

#include <QDir>
#include <QGuiApplication>
#include <QImage>
#include <QPainter>
#include <QSvgRenderer>

#include <cstdio>

int main(int argc, char** argv)
{
    // No display is needed to render into an image.
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication app(argc, argv);
    const QStringList args = QCoreApplication::arguments();
    if (args.size() < 5) {
        std::fprintf(stderr, "usage: velunta_icons <svg> <folder> <name> <size>...\n");
        return 2;
    }
    QSvgRenderer svg(args[1]);
    if (!svg.isValid()) {
        std::fprintf(stderr, "velunta_icons: %s is not a valid SVG file\n", qPrintable(args[1]));
        return 1;
    }
    for (int i = 4; i < args.size(); ++i) {
        const int size = args[i].toInt();
        if (size <= 0)
            return 2;
        QImage image(size, size, QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::transparent);
        QPainter painter(&image);
        painter.setRenderHint(QPainter::Antialiasing);
        svg.render(&painter, QRectF(0, 0, size, size));
        painter.end();
        const QString folder = QStringLiteral("%1/%2x%2/apps").arg(args[2]).arg(size);
        QDir().mkpath(folder);
        if (!image.save(folder + u'/' + args[3] + QStringLiteral(".png"))) {
            std::fprintf(stderr, "velunta_icons: can't write into %s\n", qPrintable(folder));
            return 1;
        }
    }
    return 0;
}
