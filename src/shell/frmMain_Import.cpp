// The side doors of the image files: Import of six more formats into a new document,
// Export to PNG and to a BMP of another colour depth through the companion programs,
// Copy To (the selection to a BMP file) and Paste From (a file as a floating selection).

#include "shell/frmMain.h"

#include "core/AppFolder.h"
#include "core/OutsideProgram.h"
#include "core/Prompt.h"
#include "document/ImageCommand.h"
#include "document/frmPaint.h"
#include "files/BmpWriter.h"
#include "files/DialogAPI.h"
#include "files/FileNames.h"
#include "files/read/PictureLoader.h"
#include "shell/Services.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryFile>

#include <cerrno>
#include <cstdio>
#include <cstring>

namespace velunta {

namespace {

struct ImportFormat {
    const char* label;     // as the dialog lists it
    const char* pattern;   // the files it shows
    const char* extension; // what the document's name loses for ".BMP"
};

constexpr ImportFormat kImports[6] = {
    {"Windows Meta Files", "*.wmf", ".wmf"},
    {"ICO Files", "*.ico", ".ico"},
    {"Device Independent Bitmap Files", "*.dib", ".dib"},
    {"Enhanced Windows Metafiles", "*.emf", ".emf"},
    {"Run-Length Encoded", "*.rle", ".rle"},
    {"Portable Network Graphics", "*.png", ".png"},
};
constexpr int kImportPng = 5;

// A conversion by a companion gets this long before it is given up.
constexpr int kCompanionTimeLimitMs = 60000;

const QByteArray kPngSignature("\x89PNG\r\n\x1A\n", 8);

// The dialog's filter, "Windows Meta Files (*.WMF *.wmf)": a desktop's own dialog may
// match patterns by their case.
QString importFilter(const ImportFormat& format)
{
    const QString pattern = QLatin1String(format.pattern);
    return QLatin1String(format.label) + QStringLiteral(" (") + pattern.toUpper() + u' ' + pattern + u')';
}

// The document's name for an imported file: "photo.png" becomes "photo.BMP", since the
// picture is a BMP from now on and saving it never touches the file it came from.
QString importedName(const QString& path, const char* extension)
{
    const qsizetype at = path.toLower().lastIndexOf(QLatin1String(extension));
    return at < 0 ? path : path.left(at + 1) + QStringLiteral("BMP");
}

// The name with its extension replaced by `extension` (added when it has none).
QString withExtension(const QString& path, const QString& extension)
{
    const QFileInfo info(path);
    const qsizetype dot = info.fileName().lastIndexOf(u'.');
    return (dot > 0 ? path.left(path.size() - info.fileName().size() + dot) : path) + extension;
}

bool startsWith(const QString& path, const QByteArray& signature)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) && file.read(signature.size()) == signature;
}

QString companionMissing(const QString& name)
{
    return QCoreApplication::translate("frmMain", "Velunta's program \"%1\" is missing from its folder. "
                                                  "Please install Velunta again.")
        .arg(name);
}

} // namespace

void frmMain::Imports_Click(int index)
{
    if (index < 0 || index > 5)
        return;
    const ImportFormat& format = kImports[index];
    const QString path = ShowOpenDialog(m_services.dialogs, tr("Import..."), importFilter(format));
    if (path.isEmpty())
        return;
    const QString name = importedName(path, format.extension);

    frmPaint* form = createDocument();
    form->doc.Name = name;
    form->doc.SetCaption(name);
    bool loaded = false;
    const QString png = CompanionProgram(m_services.AppFolder, QStringLiteral("png"));
    const QString converted = withExtension(path, QStringLiteral(".tmp"));
    // The png companion leaves the picture beside the file as "name.tmp"; when it is
    // missing, or a file of that name is in the way, the program's own loader reads the PNG.
    if (index == kImportPng && !png.isEmpty() && !QFileInfo::exists(converted)) {
        OutsideRun run;
        {
            BusyScope busy(*this, true);
            OutsideOptions options;
            options.timeLimitMs = kCompanionTimeLimitMs;
            options.keepWaiting = [&](double gone) { return !busy.progress(gone); };
            run = RunOutsideProgram(png, {path}, options);
        }
        if (QFileInfo::exists(converted)) {
            loaded = loadIntoDocument(*form, converted, path);
            QFile::remove(converted);
        } else {
            form->parentWidget()->show();
            showLoadError(path, ErrInvalidPicture,
                          run.outcome == OutsideRun::Stopped
                              ? tr("The conversion was stopped.")
                              : tr("The PNG converter did not convert it.") + u' ' + run.firstErrorLine());
        }
    } else {
        loaded = loadIntoDocument(*form, path, path);
    }
    if (!loaded) {
        ValidateMenus();
        return;
    }
    form->doc.Buffer.Tag = name;
    showDocument(form, false);
    ValidateMenus();
}

void frmMain::mnuExportPNG_Click()
{
    frmPaint* form = activeDocument();
    if (!form)
        return;
    int index = 1;
    const QString chosen = ShowSaveDialog(m_services.dialogs, tr("Export As PNG..."), QStringLiteral("PNG"),
                                          ExportProposal(form->doc.Caption, QStringLiteral(".png")), index);
    if (chosen.isEmpty())
        return;
    const QString target = QFileInfo(ExportFileName(chosen, QStringLiteral(".png"))).absoluteFilePath();
    const QString png = CompanionProgram(m_services.AppFolder, QStringLiteral("png"));
    if (png.isEmpty()) {
        m_services.prompt.MsgBox(companionMissing(QStringLiteral("png")), vbExclamation,
                                 tr("Export As PNG..."));
        return;
    }
    // The picture goes to the companion as a BMP in a file of its own beside the target,
    // which it turns into the PNG; only a finished PNG replaces the file chosen, so a
    // failed export leaves an older file of that name as it was.
    QTemporaryFile exchange(QFileInfo(target).absolutePath() + QStringLiteral("/.velunta-XXXXXX.png"));
    WriteFailure failure;
    QString problem;
    {
        BusyScope busy(*this, true);
        if (!exchange.open()) {
            failure = {WriteError::Refused, exchange.errorString()};
        } else {
            exchange.close();
            if (SaveBMP(form->doc.Buffer.Image(), exchange.fileName(), &failure)) {
                OutsideOptions options;
                options.timeLimitMs = kCompanionTimeLimitMs;
                options.keepWaiting = [&](double gone) { return !busy.progress(gone); };
                const OutsideRun run = RunOutsideProgram(png, {exchange.fileName()}, options);
                if (run.outcome == OutsideRun::Stopped)
                    return; // the user stopped it: nothing was exported, nothing to say
                if (!run.ok() || !startsWith(exchange.fileName(), kPngSignature))
                    problem = run.outcome == OutsideRun::TimedOut ? tr("The converter took too long.")
                                                                  : run.firstErrorLine();
                else if (std::rename(QFile::encodeName(exchange.fileName()).constData(),
                                     QFile::encodeName(target).constData()) != 0)
                    failure = {WriteError::Refused, QString::fromLocal8Bit(std::strerror(errno))};
                else
                    exchange.setAutoRemove(false);
            }
        }
    }
    if (failure.error != WriteError::None)
        showSaveError(failure);
    else if (exchange.autoRemove())
        m_services.prompt.MsgBox(
            tr("The picture could not be exported as PNG.") +
                (problem.isEmpty() ? QString() : QString(QStringLiteral("\n\n") + problem)),
            vbExclamation, tr("Export As PNG..."));
}

void frmMain::mnuExportBMPOptions_Click()
{
    frmPaint* form = activeDocument();
    if (!form)
        return;
    const QString program = CompanionProgram(m_services.AppFolder, QStringLiteral("bmpExport"));
    if (program.isEmpty()) {
        m_services.prompt.MsgBox(companionMissing(QStringLiteral("bmpExport")), vbExclamation,
                                 QStringLiteral("Velunta"));
        return;
    }
    // The document's own name with ".bmp", taken as the caption reads at 100%, so that a
    // zoom of 50% or 1000% doesn't cut the name short.
    const QString name =
        QFileInfo(ExportProposal(form->doc.CaptionName() + QStringLiteral(" - 100%"), QStringLiteral(".bmp")))
            .absoluteFilePath();
    BusyScope busy(*this, false);
    // A picture that has no such BMP yet (a new one, or one opened from another format)
    // is written there first, so the companion has the picture to work on; an existing
    // file is never replaced here.
    WriteFailure failure;
    if (!QFileInfo::exists(name) && !SaveBMP(form->doc.Buffer.Image(), name, &failure)) {
        busy.end();
        showSaveError(failure);
        return;
    }
    const bool started = StartOutsideProgram(program, {name, QStringLiteral("/dialog")});
    QCoreApplication::processEvents();
    busy.end();
    if (!started)
        m_services.prompt.MsgBox(companionMissing(QStringLiteral("bmpExport")), vbExclamation,
                                 QStringLiteral("Velunta"));
}

void frmMain::mnuCopyTo_Click()
{
    frmPaint* form = activeDocument();
    if (!form || !form->doc.SelectArea.Visible)
        return;
    int index = 1;
    QString path = ShowSaveDialog(m_services.dialogs, tr("Copy To..."), QStringLiteral("BMP"),
                                  CopyToName.isEmpty() ? QStringLiteral("Untitled.bmp") : CopyToName, index);
    if (path.isEmpty())
        return;
    if (!path.toLower().contains(QLatin1String(".bmp")))
        path += QStringLiteral(".bmp");
    WriteFailure failure;
    bool written = false;
    {
        BusyScope busy(*this, false);
        written = SaveBMP(form->doc.BufferSelected.Image(), path, &failure);
    }
    if (!written) {
        showSaveError(failure);
        return;
    }
    CopyToName = path;
    // The document keeps its changed mark: a copy of the selection is no save of the picture.
}

void frmMain::mnuPasteFrom_Click()
{
    if (!activeDocument())
        return;
    const QString path = ShowOpenDialog(m_services.dialogs, tr("Paste From..."));
    if (path.isEmpty())
        return;
    QString error;
    int errorNumber = 0;
    const QImage picture = openPictureFile(path, error, errorNumber);
    if (picture.isNull()) {
        showLoadError(path, errorNumber, error);
        return;
    }
    // The picture is pasted without passing through the clipboard, which keeps what the
    // user put there.
    PastePicture(picture);
}

} // namespace velunta
