#include "support/TestImages.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QStandardPaths>

#include <cmath>
#include <csignal>
#include <sys/resource.h>

namespace velunta::test {

Surface MakeSurface(int w, int h, Color fill, int border)
{
    Surface s(border);
    s.BackColor = fill;
    s.setScaleSize(w, h);
    s.Cls();
    return s;
}

QImage MakeImage(int w, int h, const std::function<Color(int, int)>& f)
{
    QImage image(w, h, QImage::Format_RGB32);
    for (int y = 0; y < h; ++y) {
        auto* line = reinterpret_cast<QRgb*>(image.scanLine(y));
        for (int x = 0; x < w; ++x)
            line[x] = ToQRgb(f(x, y));
    }
    return image;
}

QImage Pattern(int w, int h, int seed)
{
    return MakeImage(w, h, [seed](int x, int y) {
        return RGB((x * 37 + y + seed) % 256, (y * 53 + x * 3) % 256, (x * y + 11 + seed) % 256);
    });
}

QImage ImageFromRows(const QStringList& rows, const QHash<QChar, Color>& palette)
{
    QHash<QChar, Color> map = palette;
    if (!map.contains(u'.'))
        map.insert(u'.', 0xFFFFFF);
    if (!map.contains(u'#'))
        map.insert(u'#', 0);
    const int h = int(rows.size());
    const int w = h ? int(rows.first().size()) : 0;
    return MakeImage(w, h, [&](int x, int y) { return map.value(rows[y][x], 0xFFFFFF); });
}

QStringList RowsOf(const Surface& s, Color c, QChar on)
{
    QStringList rows;
    const QImage& image = s.Image();
    for (int y = 0; y < image.height(); ++y) {
        const auto* line = reinterpret_cast<const QRgb*>(image.constScanLine(y));
        QString row;
        for (int x = 0; x < image.width(); ++x)
            row += FromQRgb(line[x]) == c ? on : QChar(u'.');
        rows << row;
    }
    return rows;
}

int DifferingPixels(const QImage& a, const QImage& b)
{
    if (a.size() != b.size())
        return -1;
    const QImage ca = a.convertToFormat(QImage::Format_RGB32);
    const QImage cb = b.convertToFormat(QImage::Format_RGB32);
    int n = 0;
    for (int y = 0; y < ca.height(); ++y) {
        const auto* la = reinterpret_cast<const QRgb*>(ca.constScanLine(y));
        const auto* lb = reinterpret_cast<const QRgb*>(cb.constScanLine(y));
        for (int x = 0; x < ca.width(); ++x)
            n += (la[x] & 0xFFFFFF) != (lb[x] & 0xFFFFFF);
    }
    return n;
}

double Psnr(const QImage& a, const QImage& b)
{
    const QImage ca = a.convertToFormat(QImage::Format_RGB32);
    const QImage cb = b.convertToFormat(QImage::Format_RGB32);
    double sum = 0;
    for (int y = 0; y < ca.height(); ++y) {
        const auto* la = reinterpret_cast<const QRgb*>(ca.constScanLine(y));
        const auto* lb = reinterpret_cast<const QRgb*>(cb.constScanLine(y));
        for (int x = 0; x < ca.width(); ++x) {
            const double dr = qRed(la[x]) - qRed(lb[x]);
            const double dg = qGreen(la[x]) - qGreen(lb[x]);
            const double db = qBlue(la[x]) - qBlue(lb[x]);
            sum += dr * dr + dg * dg + db * db;
        }
    }
    const double mse = sum / (3.0 * ca.width() * ca.height());
    return mse == 0 ? 99.0 : 10.0 * std::log10(255.0 * 255.0 / mse);
}

bool WriteFile(const QString& path, const QByteArray& bytes)
{
    QDir().mkpath(QFileInfo(path).absolutePath());
    QFile f(path);
    return f.open(QIODevice::WriteOnly) && f.write(bytes) == bytes.size();
}

QString WriteScript(const QString& path, const QString& body)
{
    if (!WriteFile(path, "#!/bin/sh\n" + body.toLocal8Bit() + '\n'))
        return {};
    QFile::setPermissions(path, QFile::permissions(path) | QFile::ExeOwner | QFile::ExeUser);
    return path;
}

QByteArray ReadFile(const QString& path)
{
    QFile f(path);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
}

bool HaveTool(const QString& program)
{
    return !QStandardPaths::findExecutable(program).isEmpty();
}

void WithFullDisk(qint64 bytes, const std::function<void()>& fn)
{
    std::signal(SIGXFSZ, SIG_IGN);
    rlimit old{};
    getrlimit(RLIMIT_FSIZE, &old);
    rlimit limit = old;
    limit.rlim_cur = rlim_t(bytes);
    setrlimit(RLIMIT_FSIZE, &limit);
    fn();
    setrlimit(RLIMIT_FSIZE, &old);
}

} // namespace velunta::test
