// The outside programs behind the side doors: the desktop's viewer found through the
// file-type store, the wallpaper setter each desktop gets, the png companion's two
// directions and the scanner companion over SANE's test device.

#include "core/AppFolder.h"
#include "core/OutsideProgram.h"
#include "files/BmpWriter.h"
#include "files/outside/DesktopViewer.h"
#include "files/outside/Scanner.h"
#include "files/outside/Wallpaper.h"
#include "files/read/PictureLoader.h"
#include "support/OutsideFixtures.h"
#include "support/OutsideTools.h"
#include "support/TestImages.h"

#include <QtTest>

using namespace velunta;
using namespace velunta::test;

namespace {

QString companion(const QString& name)
{
    return CompanionProgram(QString(), name);
}

} // namespace

class tst_Outside : public QObject {
    Q_OBJECT
private Q_SLOTS:
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

    void pngCompanionRoundTrip()
    {
        const QString png = companion(QStringLiteral("png"));
        QVERIFY(!png.isEmpty());
        QTemporaryDir dir;
        const QImage picture =
            MakeImage(37, 21, [](int x, int y) { return Color(x * 6 + 256 * (y * 12) + 65536 * 77); });
        // Export: a BMP under a ".png" name becomes that PNG, which ImageMagick reads back.
        const QString exported = dir.filePath(QStringLiteral("out.png"));
        QVERIFY(SaveBMP(picture, exported));
        QVERIFY(RunOutsideProgram(png, {exported}).ok());
        QVERIFY(ReadFile(exported).startsWith("\x89PNG"));
        QCOMPARE(DifferingPixels(DecodeWithMagick(exported), picture), 0);
        // Import: a PNG leaves the same picture as "name.tmp", a BMP.
        QVERIFY(RunOutsideProgram(png, {exported}).ok());
        const QString tmp = dir.filePath(QStringLiteral("out.tmp"));
        QVERIFY(ReadFile(tmp).startsWith("BM"));
        QCOMPARE(DifferingPixels(LoadPicture(tmp), picture), 0);
        // Another picture beside gets a PNG of its own name; a file that is no picture is refused.
        const QString bmp = dir.filePath(QStringLiteral("pic.bmp"));
        QVERIFY(SaveBMP(picture, bmp));
        QVERIFY(RunOutsideProgram(png, {bmp}).ok());
        QCOMPARE(DifferingPixels(LoadPicture(dir.filePath(QStringLiteral("pic.png"))), picture), 0);
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
        QCOMPARE(page.size(), QSize(157, 196));
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
