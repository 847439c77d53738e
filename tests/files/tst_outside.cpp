// The outside programs: the metafile converters (the size each header asks for, the
// drawing at that size; broken files, a missing or hanging converter refused in bounded
// time), the desktop's viewer, the wallpaper setters, the png and scanner companions.

#include "core/AppFolder.h"
#include "core/OutsideProgram.h"
#include "files/BmpWriter.h"
#include "files/OpenPicture.h"
#include "files/outside/DesktopViewer.h"
#include "files/outside/Metafile.h"
#include "files/outside/Scanner.h"
#include "files/outside/Wallpaper.h"
#include "files/read/PictureLoader.h"
#include "support/OutsideFixtures.h"
#include "support/OutsideTools.h"
#include "support/TestImages.h"

#include <QElapsedTimer>
#include <QtTest>

using namespace velunta;
using namespace velunta::test;

namespace {

QString companion(const QString& name)
{
    return CompanionProgram(QString(), name);
}

QString writeTemp(QTemporaryDir& dir, const QString& name, const QByteArray& bytes)
{
    const QString path = dir.filePath(name);
    WriteFile(path, bytes);
    return path;
}

bool near(QRgb p, QRgb want)
{
    return qAbs(qRed(p) - qRed(want)) < 40 && qAbs(qGreen(p) - qGreen(want)) < 40 &&
           qAbs(qBlue(p) - qBlue(want)) < 40;
}

} // namespace

class tst_Outside : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void sizeFromHeader_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<int>("kind");
        QTest::addColumn<QSize>("size");
        QTest::newRow("placeable, twips")
            << SmallWmf(2000, 1000, 1440) << int(PictureFormat::Wmf) << QSize(133, 67);
        QTest::newRow("placeable, pixels")
            << SmallWmf(320, 200, 96) << int(PictureFormat::Wmf) << QSize(320, 200);
        // No units per inch: the window extent stands in.
        QTest::newRow("placeable, inch 0")
            << SmallWmf(300, 150, 0) << int(PictureFormat::Wmf) << QSize(300, 150);
        QTest::newRow("plain") << SmallWmf(640, 400, 0, false) << int(PictureFormat::Wmf) << QSize(640, 400);
        QTest::newRow("emf frame") << SmallEmf({0, 0, 200, 100}, {0, 0, 5293, 2647})
                                   << int(PictureFormat::Emf) << QSize(200, 100);
        // A frame of nothing: the bounds (both edges included) decide.
        QTest::newRow("emf bounds") << SmallEmf({10, 10, 209, 59}, {0, 0, 0, 0}) << int(PictureFormat::Emf)
                                    << QSize(200, 50);
        QTest::newRow("emf no size") << SmallEmf({0, 0, -1, -1}, {0, 0, 0, 0}) << int(PictureFormat::Emf)
                                     << QSize();
        QTest::newRow("not a metafile") << QByteArray("BM not a drawing at all, just some bytes to read")
                                        << int(PictureFormat::Bmp) << QSize();
    }
    void sizeFromHeader()
    {
        QFETCH(QByteArray, bytes);
        QFETCH(int, kind);
        QFETCH(QSize, size);
        QCOMPARE(int(DetectPictureFormat(bytes)), kind);
        QCOMPARE(MetafileSize(bytes, PictureFormat(kind)), size);
    }

    void renderSizeStaysSane_data()
    {
        QTest::addColumn<QSize>("stated");
        QTest::addColumn<QSize>("converted");
        QTest::addColumn<QSize>("size");
        QTest::newRow("stated") << QSize(133, 67) << QSize(768, 384) << QSize(133, 67);
        QTest::newRow("converter's") << QSize() << QSize(768, 384) << QSize(768, 384);
        QTest::newRow("neither") << QSize() << QSize() << QSize(640, 480);
        QTest::newRow("huge, shape kept") << QSize(40000, 20000) << QSize() << QSize(4096, 2048);
        QTest::newRow("thin") << QSize(65535, 1) << QSize() << QSize(4096, 1);
    }
    void renderSizeStaysSane()
    {
        QFETCH(QSize, stated);
        QFETCH(QSize, converted);
        QFETCH(QSize, size);
        QCOMPARE(RenderSize(stated, converted), size);
    }

    void drawingRenderedAtItsOwnSize_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QString>("name");
        QTest::addColumn<QSize>("size");
        QTest::newRow("placeable wmf") << SmallWmf(2000, 1000, 1440) << "a.wmf" << QSize(133, 67);
        QTest::newRow("plain wmf") << SmallWmf(200, 100, 0, false) << "b.wmf" << QSize(200, 100);
        QTest::newRow("emf") << SmallEmf({0, 0, 199, 99}, {0, 0, 5292, 2646}) << "c.emf" << QSize(200, 100);
        // Known by their content, whatever the name says.
        QTest::newRow("emf named .bmp")
            << SmallEmf({0, 0, 199, 99}, {0, 0, 5292, 2646}) << "d.bmp" << QSize(200, 100);
    }
    void drawingRenderedAtItsOwnSize()
    {
        QFETCH(QByteArray, bytes);
        QFETCH(QString, name);
        QFETCH(QSize, size);
        QTemporaryDir dir;
        QString error;
        int number = -1;
        const QImage picture = OpenPicture(writeTemp(dir, name, bytes), &error, &number);
        QVERIFY2(!picture.isNull(), qPrintable(error));
        QCOMPARE(number, 0);
        QCOMPARE(picture.size(), size);
        QCOMPARE(picture.format(), QImage::Format_RGB32);
        const int w = size.width(), h = size.height();
        // Red top left, green ellipse's middle bottom right, white paper bottom left.
        QVERIFY(near(picture.pixel(w / 4, h / 4), qRgb(255, 0, 0)));
        QVERIFY(near(picture.pixel(3 * w / 4, 3 * h / 4), qRgb(0, 255, 0)));
        QVERIFY(near(picture.pixel(w / 4, 3 * h / 4), qRgb(255, 255, 255)));
    }

    void brokenDrawingSaysSo_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        const QByteArray wmf = SmallWmf(2000, 1000, 1440);
        const QByteArray emf = SmallEmf({0, 0, 199, 99}, {0, 0, 5292, 2646});
        QTest::newRow("wmf header only") << wmf.left(30);
        QTest::newRow("emf header only") << emf.left(60);
        QByteArray lying = emf;
        lying.replace(4, 4, QByteArray("\xFF\xFF\xFF\x7F", 4)); // a header record "2 GB" long
        QTest::newRow("emf record past the end") << lying;
        QByteArray garbage = wmf.left(40);
        for (int i = 0; i < 2000; ++i)
            garbage += char((i * 7919) & 0xFF);
        QTest::newRow("wmf garbage records") << garbage;
    }
    void brokenDrawingSaysSo()
    {
        QFETCH(QByteArray, bytes);
        QTemporaryDir dir;
        QString error;
        int number = 0;
        const QImage picture = OpenPicture(writeTemp(dir, QStringLiteral("x.wmf"), bytes), &error, &number);
        // Either the converter makes something of it, or the user is told why not.
        if (picture.isNull()) {
            QCOMPARE(number, 481);
            QVERIFY(!error.isEmpty());
        } else {
            QVERIFY(picture.width() <= kMaxMetafileSide && picture.height() <= kMaxMetafileSide);
        }
    }

    void missingConverterNamesThePackage_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QString>("package");
        QTest::newRow("wmf") << SmallWmf(200, 100, 96) << "libwmf-bin";
        QTest::newRow("emf") << SmallEmf({0, 0, 199, 99}, {0, 0, 5292, 2646}) << "emf2svg";
    }
    void missingConverterNamesThePackage()
    {
        QFETCH(QByteArray, bytes);
        QFETCH(QString, package);
        QTemporaryDir dir;
        const QString path = writeTemp(dir, QStringLiteral("x.bin"), bytes);
        FakePrograms fakes;
        fakes.onlyFakes();
        const MetafilePicture drawing = ConvertMetafile(path);
        QCOMPARE(drawing.failure, MetafilePicture::ConverterMissing);
        QVERIFY2(drawing.error.contains(u'"' + package + u'"'), qPrintable(drawing.error));
    }

    void hangingConverterIsStopped()
    {
        QTemporaryDir dir;
        const QString path = writeTemp(dir, QStringLiteral("x.wmf"), SmallWmf(200, 100, 96));
        FakePrograms fakes;
        fakes.add(QStringLiteral("wmf2svg"), QStringLiteral("exec /bin/sleep 60"));
        QElapsedTimer timer;
        timer.start();
        const MetafilePicture drawing = ConvertMetafile(path, {}, 1000);
        QCOMPARE(drawing.failure, MetafilePicture::TimedOut);
        QVERIFY(timer.elapsed() < 10000);
        // Esc on the progress strip ends the wait as well.
        const MetafilePicture stopped = ConvertMetafile(
            path, [](double) { return false; }, 30000);
        QCOMPARE(stopped.failure, MetafilePicture::Stopped);
    }

    void viewerFoundThroughTheFileTypeStore()
    {
        QTemporaryDir data;
        EnvScope home("XDG_DATA_HOME", data.path().toLocal8Bit());
        FakePrograms fakes;
        const QString program = fakes.add(QStringLiteral("picture viewer"));
        QDir().mkpath(data.filePath(QStringLiteral("applications/kde4")));
        WriteFile(data.filePath(QStringLiteral("applications/kde4/viewer.desktop")),
                  "[Desktop Action New]\nExec=wrong\n[Desktop Entry]\nType=Application\nName=Picture Viewer\n"
                  "Name[xx]=Other\nIcon=viewer\nExec=\"" +
                      program.toLocal8Bit() + "\" --title=%c %U\n");
        const DesktopViewer viewer = ViewerOfQuery("kde4-viewer.desktop\n");
        QVERIFY(viewer.known());
        QCOMPARE(viewer.name, QStringLiteral("Picture Viewer"));
        QCOMPARE(ViewerCommand(viewer, QStringLiteral("/tmp/a b.bmp")),
                 QStringList({program, QStringLiteral("--title=Picture Viewer"),
                              QStringLiteral("file:///tmp/a%20b.bmp")}));
        // Velunta itself, nothing, or an application whose program is gone: no viewer.
        QVERIFY(!ViewerOfQuery("com.zolvane.Velunta.desktop\n").known());
        QVERIFY(!ViewerOfQuery("").known());
        WriteFile(data.filePath(QStringLiteral("applications/gone.desktop")),
                  "[Desktop Entry]\nType=Application\nName=Gone\nExec=/nonexistent/viewer %f\n");
        QVERIFY(!ViewerOfQuery("gone.desktop").known());
    }

    void viewerCommandFillsTheFieldCodes_data()
    {
        QTest::addColumn<QString>("exec");
        QTest::addColumn<QStringList>("command");
        const QString f = QStringLiteral("/p/x.bmp");
        QTest::newRow("%f") << "sh -a %f" << QStringList{"sh", "-a", f};
        QTest::newRow("%F, old codes dropped") << "sh %d %F %m" << QStringList{"sh", f};
        QTest::newRow("no code: the file comes last") << "sh --new" << QStringList{"sh", "--new", f};
        QTest::newRow("quotes and escapes")
            << "sh \"a \\\"b\\\" \\\\c\" %f" << QStringList{"sh", "a \"b\" \\c", f};
        QTest::newRow("%i and %%") << "sh %i 100%% %f" << QStringList{"sh", "--icon", "ic", "100%", f};
    }
    void viewerCommandFillsTheFieldCodes()
    {
        QFETCH(QString, exec);
        QFETCH(QStringList, command);
        DesktopViewer viewer;
        viewer.exec = exec;
        viewer.icon = QStringLiteral("ic");
        QCOMPARE(ViewerCommand(viewer, QStringLiteral("/p/x.bmp")), command);
    }

    void wallpaperSetterByDesktop_data()
    {
        QTest::addColumn<QString>("current");
        QTest::addColumn<QString>("program");
        QTest::addColumn<QStringList>("arguments");
        const QString path = QStringLiteral("/home/u/Velunta/VeluntaWallPaper.bmp");
        const QString uri = QStringLiteral("file://") + path;
        const auto row = [](const char* current, QString program, QStringList arguments) {
            QTest::newRow(current) << QString::fromLatin1(current) << program << arguments;
        };
        const QStringList gnome{"set", "org.gnome.desktop.background", "picture-uri",      uri,
                                "set", "org.gnome.desktop.background", "picture-uri-dark", uri};
        row("ubuntu:GNOME", "gsettings", gnome);
        row("Budgie:GNOME", "gsettings", gnome);
        row("X-Cinnamon", "gsettings", {"set", "org.cinnamon.desktop.background", "picture-uri", uri});
        row("MATE", "gsettings", {"set", "org.mate.background", "picture-filename", path});
        row("KDE", "plasma-apply-wallpaperimage", {path});
        row("LXQt", "pcmanfm-qt", {"--set-wallpaper=" + path});
        row("openbox", "feh", {"--bg-fill", path});
    }
    void wallpaperSetterByDesktop()
    {
        QFETCH(QString, current);
        QFETCH(QString, program);
        QFETCH(QStringList, arguments);
        FakePrograms fakes;
        fakes.add(program);
        fakes.onlyFakes();
        const WallpaperResult result = SetDesktopWallpaper(
            QStringLiteral("/home/u/Velunta/VeluntaWallPaper.bmp"), DetectDesktop(current, {}));
        QVERIFY2(result.set, qPrintable(result.error));
        QCOMPARE(fakes.arguments(program), arguments);
    }

    void xfceSetsEveryMonitorsWallpaper()
    {
        FakePrograms fakes;
        fakes.add(QStringLiteral("xfconf-query"),
                  QStringLiteral(
                      "if [ \"$3\" = -l ]; then printf '/backdrop/screen0/monitor0/workspace0/last-image\\n"
                      "/backdrop/screen0/monitorHDMI-1/workspace0/last-image\\n"
                      "/backdrop/single-workspace-mode\\n'; fi"));
        fakes.onlyFakes();
        const WallpaperResult result = SetDesktopWallpaper(QStringLiteral("/w.bmp"), DesktopKind::Xfce);
        QVERIFY2(result.set, qPrintable(result.error));
        const QStringList args = fakes.arguments(QStringLiteral("xfconf-query"));
        QCOMPARE(args.count(QStringLiteral("/w.bmp")), 2);
        QVERIFY(args.contains(QStringLiteral("/backdrop/screen0/monitorHDMI-1/workspace0/last-image")));
    }

    void wallpaperFailureNamesTheCommand_data()
    {
        QTest::addColumn<QString>("body");
        QTest::addColumn<QString>("said");
        QTest::newRow("not installed") << QString() << "feh is not installed.";
        QTest::newRow("refused") << "echo 'cannot open display' >&2; exit 1"
                                 << "cannot open display";
    }
    void wallpaperFailureNamesTheCommand()
    {
        QFETCH(QString, body);
        QFETCH(QString, said);
        FakePrograms fakes;
        if (!body.isEmpty()) {
            fakes.add(QStringLiteral("feh"), body);
            fakes.add(QStringLiteral("xwallpaper"), body);
        }
        fakes.onlyFakes();
        const WallpaperResult result = SetDesktopWallpaper(QStringLiteral("/w.bmp"), DesktopKind::Other);
        QVERIFY(!result.set);
        QCOMPARE(result.tried, QStringLiteral("feh --bg-fill /w.bmp\nxwallpaper --zoom /w.bmp"));
        QVERIFY2(result.error.contains(said) || (body.isEmpty() && result.error.contains("xwallpaper")),
                 qPrintable(result.error));
    }

    // A BMP gets a PNG of its own name beside it (the PNG menus check both directions); a
    // file that is no picture is refused.
    void pngCompanionNamesAndRefuses()
    {
        const QString png = companion(QStringLiteral("png"));
        QVERIFY(!png.isEmpty());
        QTemporaryDir dir;
        const QString bmp = dir.filePath(QStringLiteral("pic.bmp"));
        QVERIFY(SaveBMP(Pattern(37, 21), bmp));
        QVERIFY(RunOutsideProgram(png, {bmp}).ok());
        QCOMPARE(DifferingPixels(LoadPicture(dir.filePath(QStringLiteral("pic.png"))), Pattern(37, 21)), 0);
        WriteFile(dir.filePath(QStringLiteral("junk.png")), "not a picture");
        const OutsideRun junk = RunOutsideProgram(png, {dir.filePath(QStringLiteral("junk.png"))});
        QCOMPARE(junk.exitCode, 2);
        QVERIFY(!junk.firstErrorLine().isEmpty());
    }

    void scannerCompanionScansTheTestDevice()
    {
        SaneTestSetup sane("test-picture Color pattern\n");
        const QString scanner = companion(QStringLiteral("scanner"));
        QVERIFY(!scanner.isEmpty());
        const ScannerList list = ListScanners(scanner);
        QVERIFY2(list.ok, qPrintable(list.error));
        QCOMPARE(list.devices.size(), size_t(2));
        QCOMPARE(list.devices[0].name, QStringLiteral("test:0"));
        QVERIFY(list.devices[0].label().contains(QStringLiteral("(test:0)")));
        QTemporaryDir dir;
        const QString file = dir.filePath(QStringLiteral("scan.bmp"));
        const ScanResult scan = ScanPage(scanner, QStringLiteral("test:1"), file);
        QVERIFY2(scan.outcome == ScanResult::Scanned, qPrintable(scan.error));
        // The page as SANE's own front end reads it, pixel for pixel.
        const QImage page = LoadPicture(file);
        const QByteArray pnm =
            RunTool(QStringLiteral("scanimage"),
                    {QStringLiteral("-d"), QStringLiteral("test:1"), QStringLiteral("--mode"),
                     QStringLiteral("Color"), QStringLiteral("--format=pnm")});
        const QImage expected = QImage::fromData(pnm, "PPM").convertToFormat(QImage::Format_RGB32);
        QVERIFY(!expected.isNull());
        QCOMPARE(DifferingPixels(page, expected), 0);
    }

    void scanFailuresTellAbortFromFailure()
    {
        SaneTestSetup sane("read-status-code \"SANE_STATUS_JAMMED\"\n");
        const QString scanner = companion(QStringLiteral("scanner"));
        QTemporaryDir dir;
        const QString file = dir.filePath(QStringLiteral("scan.bmp"));
        // A jam: aborted, nothing written. No such device, or no companion: failed.
        const ScanResult jammed = ScanPage(scanner, QStringLiteral("test:0"), file);
        QCOMPARE(jammed.outcome, ScanResult::Aborted);
        QVERIFY2(jammed.error.contains(QStringLiteral("jammed")), qPrintable(jammed.error));
        QVERIFY(!QFileInfo::exists(file));
        QCOMPARE(ScanPage(scanner, QStringLiteral("test:9"), file).outcome, ScanResult::Failed);
        QCOMPARE(ScanPage(QString(), QString(), file).outcome, ScanResult::Failed);
        // Esc while a device warms up stops the wait at once.
        FakePrograms fakes;
        const QString slow = fakes.add(QStringLiteral("slow-scanner"), QStringLiteral("exec /bin/sleep 60"));
        QElapsedTimer timer;
        timer.start();
        QCOMPARE(ScanPage(slow, QString(), file, [](double) { return false; }).outcome, ScanResult::Aborted);
        QVERIFY(timer.elapsed() < 10000);
    }
};

QTEST_MAIN(tst_Outside)
#include "tst_outside.moc"
