// The outside tools: the desktop's picture viewer ("Copy To <viewer>"), scanning through
// SANE ("Select TWAIN Source...", "Acquire Image...") and the desktop's wallpaper.

#include "shell/frmMain.h"

#include "core/AppFolder.h"
#include "core/OutsideProgram.h"
#include "core/Prompt.h"
#include "core/SettingsStore.h"
#include "document/ImageCommand.h"
#include "document/frmPaint.h"
#include "files/BmpWriter.h"
#include "files/outside/DesktopViewer.h"
#include "files/outside/Scanner.h"
#include "files/outside/Wallpaper.h"
#include "shell/Logging.h"
#include "shell/Services.h"
#include "shell/frmSelectSource.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QRegularExpression>
#include <QTimer>

namespace velunta {

namespace {

// The chosen scanner, by SANE's name for it.
const QString kScannerKey = QStringLiteral("ScannerDevice");
const QString kAcquireTitle = QStringLiteral("Acquire Image from Twain device");
// xdg-mime asks the desktop's own tools, which may be slow to start; the entry waits no longer.
constexpr int kViewerQueryLimitMs = 5000;

// A name a file can have: what the document is called, without its folder, as a BMP.
QString handOverName(const QString& documentName)
{
    QString name = QFileInfo(documentName).completeBaseName();
    name.replace(QRegularExpression(QStringLiteral("[^\\w .()+-]")), QStringLiteral("_"));
    return (name.trimmed().isEmpty() ? QStringLiteral("Untitled") : name) + QStringLiteral(".bmp");
}

} // namespace

void frmMain::validateOutsideTools()
{
    showEntry(MenuId::mnucopyIrfanview, IrfanViewPath.size() > 5);
    // Scanning needs the companion that runs the scanner drivers; it is looked for once.
    if (m_scannerThere < 0)
        m_scannerThere = CompanionProgram(m_services.AppFolder, QStringLiteral("scanner")).isEmpty() ? 0 : 1;
    enable(MenuId::mnuSelTwain, m_scannerThere == 1);
    enable(MenuId::mnuAcquire, m_scannerThere == 1);
}

void frmMain::FindIrfanView()
{
    showEntry(MenuId::mnucopyIrfanview, false);
    IrfanViewPath.clear();
    // The pictures handed over in an earlier run are done with.
    QDir(m_services.AppFolder + QStringLiteral("temp/view")).removeRecursively();
    const QString xdgMime = FindOutsideProgram(QStringLiteral("xdg-mime"));
    if (xdgMime.isEmpty())
        return;
    // The answer comes while the window is already up, so a slow desktop doesn't hold up the start.
    auto* query = new QProcess(this);
    query->setProgram(xdgMime);
    query->setArguments({QStringLiteral("query"), QStringLiteral("default"), QStringLiteral("image/bmp")});
    query->setStandardInputFile(QProcess::nullDevice());
    connect(query, &QProcess::finished, this, [this, query] {
        const DesktopViewer viewer = ViewerOfQuery(query->readAllStandardOutput());
        query->deleteLater();
        if (!viewer.known())
            return;
        IrfanViewPath = viewer.exec;
        IrfanViewName = viewer.name;
        IrfanViewIcon = viewer.icon;
        IrfanViewFile = viewer.desktopFile;
        action(MenuId::mnucopyIrfanview)->setText(tr("Copy To %1").arg(viewer.name));
        ValidateMenus();
    });
    connect(query, &QProcess::errorOccurred, query, [query](QProcess::ProcessError error) {
        if (error == QProcess::FailedToStart)
            query->deleteLater();
    });
    QTimer::singleShot(kViewerQueryLimitMs, query, [query] { query->kill(); });
    query->start();
}

void frmMain::mnucopyIrfanview_Click()
{
    frmPaint* form = activeDocument();
    if (!form || IrfanViewPath.size() <= 5)
        return;
    const Document& doc = form->doc;
    const QImage& picture = doc.SelectArea.Visible ? doc.BufferSelected.Image() : doc.Buffer.Image();
    // The viewer reads the file when it likes, so it stays until the next start; named
    // after the document, so the viewer's title says what it shows.
    const QString folder = m_services.AppFolder + QStringLiteral("temp/view/");
    QDir().mkpath(folder);
    const QString file = folder + handOverName(doc.CaptionName());
    WriteFailure failure;
    if (!SaveBMP(picture, file, &failure)) {
        showSaveError(failure);
        return;
    }
    const DesktopViewer viewer{QString(), IrfanViewName, IrfanViewPath, IrfanViewIcon, IrfanViewFile};
    const QStringList command = ViewerCommand(viewer, file);
    const QString program = FindOutsideProgram(command.value(0));
    if (program.isEmpty() || !StartOutsideProgram(program, command.mid(1)))
        m_services.prompt.MsgBox(tr("%1 could not be started.").arg(IrfanViewName), vbExclamation,
                                 action(MenuId::mnucopyIrfanview)->text());
    QCoreApplication::processEvents();
}

void frmMain::mnuSelTwain_Click()
{
    const QString companion = CompanionProgram(m_services.AppFolder, QStringLiteral("scanner"));
    ScannerList found;
    {
        BusyScope busy(*this, true);
        found = ListScanners(companion, [&](double gone) { return !busy.progress(gone); });
    }
    const QString title = tr("Select TWAIN Source");
    if (!found.ok) {
        m_services.prompt.MsgBox(tr("The scanners could not be listed.") + QStringLiteral("\n\n") +
                                     found.error,
                                 vbExclamation, title);
        return;
    }
    if (found.devices.empty()) {
        m_services.prompt.MsgBox(tr("No scanner was found.") + QStringLiteral("\n\n") +
                                     tr("Please check that the scanner is switched on and connected, "
                                        "then try again."),
                                 vbInformation, title);
        return;
    }
    frmSelectSource dialog(found.devices, m_services.settings.GetSetting(kScannerKey), this);
    if (dialog.exec() == QDialog::Accepted && !dialog.device().isEmpty())
        m_services.settings.SaveSetting(kScannerKey, dialog.device());
    update();
}

void frmMain::mnuAcquire_Click()
{
    const QString companion = CompanionProgram(m_services.AppFolder, QStringLiteral("scanner"));
    QDir().mkpath(m_services.AppFolder + QStringLiteral("temp"));
    const QString file = m_services.AppFolder + QStringLiteral("temp/scan.bmp");
    QFile::remove(file);
    ScanResult scan;
    {
        // The progress strip shows how far the page has come; Esc stops the scan.
        BusyScope busy(*this, true);
        scan = ScanPage(companion, m_services.settings.GetSetting(kScannerKey), file,
                        [&](double done) { return !busy.progress(done); });
    }
    if (scan.outcome == ScanResult::Scanned && QFileInfo::exists(file)) {
        // The scan is a new picture of no file yet: it is named after the scan, and Save asks where.
        m_undo.SkipNextPrepUndo = true;
        frmPaint* form = createDocument();
        const QString name = QFileInfo(file).fileName();
        form->doc.Name = name;
        form->doc.SetCaption(name);
        if (loadIntoDocument(*form, file, file)) {
            showDocument(form, MaximizeOnOpen);
            // Closing it asks first, since the scan exists nowhere else.
            form->doc.SetDirtyTrue();
            PrepUndo();
        }
        QFile::remove(file);
        return;
    }
    QFile::remove(file);
    if (!scan.error.isEmpty())
        qCWarning(lcShell) << "Acquire Image:" << scan.error;
    if (scan.outcome == ScanResult::Aborted)
        m_services.prompt.MsgBox(tr("Scan has been aborted.") + QStringLiteral("\n\n") +
                                     tr("Note: Please be patient, because some devices needs up to minute to "
                                        "prepare a scan."),
                                 vbInformation, kAcquireTitle);
    else
        m_services.prompt.MsgBox(
            tr("Scan has been aborted because of device not powered ON, or user interuption."), vbOKOnly,
            kAcquireTitle);
}

void frmMain::mnuwallpaper_Click()
{
    const QString path = m_services.AppFolder + QStringLiteral("VeluntaWallPaper.bmp");
    frmPaint* form = activeDocument();
    WriteFailure failure{WriteError::Refused, QString()};
    const bool written = form && SaveBMP(form->doc.Buffer.Image(), path, &failure);
    QCoreApplication::processEvents();
    if (!written || !QFileInfo::exists(path)) {
        m_services.prompt.MsgBox(tr("No image has been created yet or the current tile (named: ") + path +
                                     tr(") could not be saved."),
                                 vbExclamation,
                                 tr("Wallpaper not set. Err") + QString::number(int(failure.error)));
        return;
    }
    // The file stays: the desktop reads it again later, at the next login say.
    WallpaperResult result;
    {
        BusyScope busy(*this, false);
        result = SetDesktopWallpaper(QFileInfo(path).absoluteFilePath(), RunningDesktop());
    }
    if (result.set)
        m_services.prompt.MsgBox(tr("Wallpaper has been set (VeluntaWallPaper.bmp)"), vbOKOnly, QString());
    else
        m_services.prompt.MsgBox(tr("The desktop did not take the picture as its wallpaper.") +
                                     QStringLiteral("\n\n") + tr("Command tried:") + u'\n' + result.tried +
                                     QStringLiteral("\n\n") + result.error,
                                 vbExclamation, tr("Wallpaper not set"));
}

} // namespace velunta
