// Writing pictures: Save, Save As, the exports, the Properties box and the question
// when a changed picture is closed. Every write goes through FileSaveAs.

#include "shell/frmMain.h"

#include "core/Numbers.h"
#include "core/Prompt.h"
#include "document/ImageCommand.h"
#include "document/frmPaint.h"
#include "files/BmpWriter.h"
#include "files/DialogAPI.h"
#include "files/FileNames.h"
#include "files/FrmSaveJPGs.h"
#include "files/GIF.h"
#include "files/JpegWriter.h"
#include "files/frmSaveGifs.h"
#include "shell/Services.h"
#include "widgets/Icons.h"

#include <QApplication>
#include <QDir>
#include <QFileInfo>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QPointer>
#include <QToolButton>

namespace velunta {

void frmMain::Save_Click()
{
    frmPaint* form = activeDocument();
    if (!form)
        return;
    const QString name = form->doc.Buffer.Tag;
    if (name.isEmpty()) {
        SaveAs_Click();
        return;
    }
    // ".jpeg" is not known here: such a file is written in the format last used.
    SaveFilterIndex = FilterIndexOfName(name, SaveFilterIndex, false);
    if (SaveFilterIndex == kFilterPictures || SaveFilterIndex == kFilterJpeg || SaveFilterIndex == kFilterGif)
        saveByFilter(name, SaveFilterIndex);
    else
        SaveAs_Click(); // a name whose format isn't one we write would be left unsaved without a word
}

void frmMain::SaveAs_Click()
{
    frmPaint* form = activeDocument();
    if (!form)
        return;
    const QString name = form->doc.Buffer.Tag;
    SaveFilterIndex = FilterIndexOfName(name, SaveFilterIndex, true);
    const QString chosen = ShowSaveDialog(m_services.dialogs, tr("Save As..."), QString(),
                                          name.isEmpty() ? form->doc.CaptionName() : name, SaveFilterIndex);
    if (chosen.size() <= 1)
        return;
    const QString target = SaveAsFileName(chosen, SaveFilterIndex);
    if (FormatOfFilter(SaveFilterIndex) && confirmOverwrite(chosen, target)) // All Files writes nothing
        saveByFilter(target, SaveFilterIndex);
}

bool frmMain::saveByFilter(const QString& name, int filterIndex)
{
    int quality = 90; // an ordinary save of a JPEG is always at 90
    const std::optional<SaveFormat> format = FormatOfFilter(filterIndex);
    return format && FileSaveAs(name, *format, kNoColor, quality);
}

bool frmMain::FileSaveAs(const QString& fileName, SaveFormat format, Color transparentColor, int& quality)
{
    frmPaint* form = activeDocument();
    if (!form)
        return false;
    const bool gif = format == SaveFormat::Gif || format == SaveFormat::GifTransparent;
    // A GIF is written row by row with the progress strip; Esc stops it.
    BusyScope busy(*this, gif);
    QCoreApplication::processEvents();
    // The writers read the picture's own rows. This handle shares them, so a change made
    // while a GIF's progress lets events through detaches the picture instead of
    // changing what is being written.
    const QImage picture = form->doc.Buffer.Image();
    WriteFailure failure;
    bool written = true;
    if (format == SaveFormat::Jpeg) {
        if (quality <= 0)
            quality = 90;
        if (!fileName.isEmpty() && !SaveJPG(picture, fileName, quality, &failure)) {
            busy.end();
            // One box: the refusal, and why below it.
            m_services.prompt.MsgBox(
                tr("Failed to save the picture to the file: '") + fileName + QStringLiteral("'") +
                    (failure.reason.isEmpty() ? QString() : QStringLiteral("\n\n") + failure.reason),
                vbExclamation, QStringLiteral("Velunta"));
            return false;
        }
    } else if (format == SaveFormat::Bmp) {
        written = SaveBMP(picture, fileName, &failure);
    } else if (gif) {
        const bool transparent = format == SaveFormat::GifTransparent;
        written = GIF().SaveGIF(picture, fileName, transparent, transparent ? transparentColor : kNoColor,
                                &failure, busy.progressFn());
    }
    busy.end();
    // A save the user stopped with Esc is no error: the old file stays, the picture stays
    // unsaved, and that is all the box says.
    if (!written && failure.error == WriteError::Cancelled)
        m_services.prompt.MsgBox(tr("Saving cancelled. The file was left as it was."), vbOKOnly,
                                 QStringLiteral("Velunta"));
    else if (!written)
        showSaveError(failure);
    if (!written)
        return false;
    Document& doc = form->doc;
    doc.Buffer.Tag = fileName;
    // The window's name follows too, so "Undo to last saved image" goes back to this file.
    doc.Name = fileName;
    doc.SetCaption(fileName);
    doc.SetDirtyFalse();
    enable(MenuId::mnuundorevert, true);
    MRUDlist(2, fileName);
    return true;
}

void frmMain::showSaveError(const WriteFailure& failure)
{
    m_services.prompt.MsgBox(tr("Error saving file: ") + QString::number(int(failure.error)) +
                                 QStringLiteral(" - ") + failure.reason,
                             vbOKOnly, QStringLiteral("Velunta"));
}

void frmMain::mnuExportBMP_Click()
{
    frmPaint* form = activeDocument();
    if (!form)
        return;
    int index = 1;
    QString name = ShowSaveDialog(m_services.dialogs, tr("Export As BMP..."), QStringLiteral("BMP"),
                                  ExportProposal(form->doc.Caption, QStringLiteral(".bmp")), index);
    if (name.isEmpty())
        return;
    int quality = 0;
    const QString target = ExportFileName(name, QStringLiteral(".bmp"));
    if (confirmOverwrite(name, target))
        FileSaveAs(target, SaveFormat::Bmp, kNoColor, quality);
}

void frmMain::mnuExportJPG_Click()
{
    frmPaint* form = activeDocument();
    if (!form)
        return;
    FrmSaveJPGs dialog(LastJpegQuality, m_services.prompt, this);
    if (dialog.exec() != QDialog::Accepted)
        return;
    LastJpegQuality = dialog.quality();
    int index = 1;
    const QString name = ShowSaveDialog(m_services.dialogs, tr("Export As JPG..."), QStringLiteral("JPG"),
                                        ExportProposal(form->doc.Caption, QStringLiteral(".jpg")), index);
    if (name.isEmpty())
        return;
    int quality = dialog.quality();
    const QString target = ExportFileName(name, QStringLiteral(".jpg"));
    if (confirmOverwrite(name, target))
        FileSaveAs(target, SaveFormat::Jpeg, kNoColor, quality);
}

void frmMain::mnuExportGif_Click()
{
    // The dialog stays open beside the picture, so the eyedropper can pick its colour there.
    auto* dialog = new frmSaveGifs(
        [this] { return m_state.SelIndex == 1 ? m_state.BackColor : m_state.ForeColor; }, this);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    connect(dialog, &frmSaveGifs::pickRequested, this, [this] { Cmd_Click(kToolColorPicker); });
    connect(dialog, &frmSaveGifs::saveRequested, this, [this](Color colour) {
        guarded("Export As GIF", [&] {
            frmPaint* form = activeDocument();
            if (!form)
                return;
            int index = 1;
            const QString name =
                ShowSaveDialog(m_services.dialogs, tr("Export As GIF..."), QStringLiteral("GIF"),
                               ExportProposal(form->doc.Caption, QStringLiteral(".gif")), index);
            if (name.isEmpty())
                return;
            int quality = 90;
            const QString target = ExportFileName(name, QStringLiteral(".gif"));
            if (confirmOverwrite(name, target))
                FileSaveAs(target, colour >= 0 ? SaveFormat::GifTransparent : SaveFormat::Gif, colour,
                           quality);
        });
    });
    dialog->show();
}

void frmMain::mnuProperties_Click()
{
    frmPaint* form = activeDocument();
    if (!form)
        return;
    const Document& doc = form->doc;
    QString name = doc.Buffer.Tag;
    const QFileInfo info(name);
    const double size = !name.isEmpty() && info.isFile() ? double(info.size()) : -1;
    QString suffix, shown;
    if (size <= 0) {
        suffix = QStringLiteral(" N/A");
    } else if (size < 1000) {
        suffix = QStringLiteral(" Bytes");
        shown = QString::number(qint64(size));
    } else if (size < 1000000) {
        suffix = QStringLiteral(" Kb");
        shown = QString::number(qint64(size / 1000));
    } else {
        suffix = QStringLiteral(" Mb");
        shown = QString::number(qint64(size / 1000000));
    }
    if (name.size() < 2)
        name = QStringLiteral("Untitled.bmp");
    const QString crlf = QStringLiteral("\r\n");
    const QString text = QStringLiteral("Filename = ") + name + crlf + crlf +
                         (size <= 0 ? QString(QStringLiteral("Filesize = - ") + suffix)
                                    : QString(QStringLiteral("Filesize = ") + shown + suffix)) +
                         crlf + QStringLiteral("Width = ") + QString::number(doc.Buffer.ScaleWidth()) + crlf +
                         QStringLiteral("Height = ") + QString::number(doc.Buffer.ScaleHeight()) + crlf +
                         QStringLiteral("Image type = ") + Trim(name).right(3).toUpper() + crlf;
    m_services.prompt.MsgBox(text, vbInformation, QStringLiteral("Properties: ") + doc.Buffer.Tag);
}

bool frmMain::confirmOverwrite(const QString& chosen, const QString& name)
{
    // The dialog asked about the name the user chose; a name the extension rules made of
    // it is asked about here.
    if (name == chosen || !QFileInfo::exists(name))
        return true;
    return m_services.prompt.MsgBox(tr("%1 already exists.").arg(QDir::toNativeSeparators(name)) +
                                        QStringLiteral("\n\n") + tr("Do you want to replace it?"),
                                    vbWarningYesNo, tr("Save As")) == vbYes;
}

bool frmMain::saveOnClose(frmPaint& form)
{
    Document& doc = form.doc;
    // The window may not be the active one when it is closed from its own frame.
    QMdiSubWindow* sw = qobject_cast<QMdiSubWindow*>(form.parentWidget());
    if (sw && mdiArea()->activeSubWindow() != sw)
        mdiArea()->setActiveSubWindow(sw);
    // A picture from a file of a format we write goes back into it; one that was never
    // saved, or came from a format we don't write (PNG, an icon), is saved as the user
    // says, so its file never gets bytes of another format.
    const int own = FilterIndexOfName(doc.Buffer.Tag, 0, true);
    if (!doc.Buffer.Tag.isEmpty() && own != 0)
        return saveByFilter(doc.Buffer.Tag, own);
    int index = SaveFilterIndex;
    const QString chosen =
        ShowSaveDialog(m_services.dialogs, tr("Save As..."), QString(),
                       doc.Buffer.Tag.isEmpty() ? doc.CaptionName() : doc.Buffer.Tag, index);
    if (chosen.size() <= 1)
        return false;
    // All Files writes nothing; a picture that is being closed is written as a BMP then.
    SaveFilterIndex = index == kFilterAllFiles ? kFilterPictures : index;
    const QString name = SaveAsFileName(chosen, SaveFilterIndex);
    return confirmOverwrite(chosen, name) && saveByFilter(name, SaveFilterIndex);
}

bool frmMain::FormQueryUnload(frmPaint& form)
{
    if (!form.doc.Dirty)
        return true;
    const int answer = m_services.prompt.MsgBox(tr("The image has been changed.") + QStringLiteral("\n\n") +
                                                    tr("Do you wish to save the changes?"),
                                                vbQuestionYesNo, tr("The image has been changed"));
    if (answer != vbYes || saveOnClose(form))
        return true;
    return m_services.prompt.MsgBox(tr("File not saved.") + QStringLiteral("\n\n") +
                                        tr("Close the image anyway?"),
                                    vbWarningYesNo, tr("Save")) == vbYes;
}

bool frmMain::AskAboutChangedPictures()
{
    // Each changed picture in turn, shown while it is asked about: save it, leave it
    // unsaved, or stay in the program.
    for (frmPaint* form : documents()) {
        if (!form->doc.Dirty)
            continue;
        if (auto* sw = qobject_cast<QMdiSubWindow*>(form->parentWidget()))
            mdiArea()->setActiveSubWindow(sw);
        const int answer = m_services.prompt.MsgBox(
            tr("\"%1\" has been changed.").arg(form->doc.CaptionName()) + QStringLiteral("\n\n") +
                tr("Do you wish to save the changes before Velunta closes?"),
            vbQuestionYesNoCancel, tr("Close Velunta"));
        if (answer == vbCancel)
            return false;
        if (answer != vbYes || saveOnClose(*form))
            continue;
        if (m_services.prompt.MsgBox(tr("File not saved.") + QStringLiteral("\n\n") +
                                         tr("Close Velunta anyway?"),
                                     vbWarningYesNo, tr("Save")) != vbYes)
            return false;
    }
    return true;
}

} // namespace velunta
