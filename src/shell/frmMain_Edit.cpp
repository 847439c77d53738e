// The Edit menu's undo commands: the ring, the resize undo file and the saved picture.

#include "shell/frmMain.h"

#include "core/Gdi.h"
#include "document/StepHistory.h"
#include "document/UpdateView.h"
#include "document/frmPaint.h"
#include "files/BmpWriter.h"
#include "files/DialogAPI.h"
#include "files/OpenPicture.h"
#include "files/read/PictureLoader.h"
#include "shell/Services.h"
#include "tools/Selection.h"

#include <QFileInfo>
#include <QToolButton>

namespace velunta {

namespace {

// An undo file this small holds no picture.
constexpr qint64 kSmallestUndoFile = 2000;

QString undoFile(const Services& services)
{
    return services.AppFolder + QStringLiteral("temp/undo.bmp");
}

} // namespace

void frmMain::RevertSavedAndRecord()
{
    RevertSaved(QString());
    PrepUndo();
}

void frmMain::Undo_Click()
{
    frmPaint* form = activeDocument();
    if (form && StepUndoOn()) {
        Document& doc = form->doc;
        DropSelection(doc);
        const QSize size(doc.Buffer.Width(), doc.Buffer.Height());
        if (stepHistory(*form).undo(doc)) {
            if (size != QSize(doc.Buffer.Width(), doc.Buffer.Height()))
                PictureResized();
            UpdateView(doc, doc.Buffer, 0, 0, doc.GetZoomFactor());
            form->invalidateView();
        }
        return;
    }
    m_undo.UndoSuppressed = true;
    if (!form)
        return;
    DropSelection(form->doc);
    // A pending resize undo always goes first.
    if (action(MenuId::UndoResize)->isEnabled()) {
        UndoResize_Click();
        return;
    }
    Document& doc = form->doc;
    UndoStep(m_undo, doc, [&] { RevertSaved(doc.Buffer.Tag); });
    UpdateView(doc, doc.Buffer, 0, 0, doc.GetZoomFactor());
    form->invalidateView();
    SetUndoEnabled(m_undoEnabled);
}

bool frmMain::UndoFilePending() const
{
    return m_undoFileWritten && QFileInfo::exists(undoFile(m_services));
}

void frmMain::UndoResize_Click()
{
    const QFileInfo file(undoFile(m_services));
    frmPaint* form = activeDocument();
    if (!form) {
        enable(MenuId::UndoResize, false);
        return;
    }
    const bool pending = UndoFilePending() && file.size() >= kSmallestUndoFile;
    // The file serves one undo; after it, or when it holds no picture, it is spent.
    m_undoFileWritten = false;
    if (!pending) {
        enable(MenuId::UndoResize, false);
        return;
    }
    const QImage picture = LoadPicture(file.filePath());
    if (!picture.isNull()) {
        Document& doc = form->doc;
        doc.Buffer.setScaleSize(picture.width(), picture.height());
        doc.Buffer.setPicture(picture);
        // The picture's file is the one the window is named after again. A page that was
        // never saved keeps no file: its name ("Untitled.bmp") is no place to write to.
        if (QFileInfo(doc.Name).isAbsolute())
            doc.Buffer.Tag = doc.Name;
        PictureResized();
    }
    enable(MenuId::UndoResize, false);
    SetUndoEnabled(m_undoEnabled);
}

void frmMain::RevertSaved(const QString& path)
{
    frmPaint* form = activeDocument();
    if (!form)
        return;
    Document& doc = form->doc;
    if (doc.ZoomFactor != 100)
        form->PreDefZoom(100);
    doc.SetCaption(doc.Name);
    const QString file = path.isEmpty() ? doc.Name : path;
    const QImage picture = FileExists(file) ? OpenPicture(file) : QImage();
    // An unreadable file leaves the picture as it was. The picture keeps its own file
    // name too then, so that a page that was never saved is never written under the
    // window's name behind the user's back.
    if (!picture.isNull()) {
        doc.Buffer.setScaleSize(picture.width(), picture.height());
        doc.Buffer.setPicture(picture);
        doc.Buffer.Tag = doc.Name;
        PictureResized();
    }
    form->invalidateView();
    ValidateMenus();
}

void frmMain::mnuundorevert_Click()
{
    RevertSaved(QString());
}

void frmMain::SaveUndoBitmap()
{
    frmPaint* form = activeDocument();
    if (!form)
        return;
    if (StepUndoOn())
        PrepUndo(); // the history keeps the picture before the change of size too
    if (SaveBMP(form->doc.Buffer.Image(), undoFile(m_services))) {
        m_undoFileWritten = true;
        enable(MenuId::UndoResize, true);
        SetUndoEnabled(true);
    }
}

} // namespace velunta
