// The Image menu's canvas commands: Image Size, Rotate, the flips, Erase Image,
// Invert, and the brightness and contrast dialog.

#include "shell/frmMain.h"

#include "core/Prompt.h"
#include "document/ImageCommand.h"
#include "document/UpdateView.h"
#include "document/frmPaint.h"
#include "imageops/CanvasOps.h"
#include "imageops/frmBrightContrast.h"
#include "imageops/frmRotate.h"
#include "imageops/frmSize.h"
#include "shell/Services.h"
#include "tools/Selection.h"

#include <memory>

namespace velunta {

namespace {

// The surface takes a picture a function made; a picture the memory refused ends the
// command, which then leaves the surface as it was.
void replaceImage(Surface& s, const QImage& image)
{
    if (image.isNull() && !s.Image().isNull())
        throw AllocationError("not enough memory for the changed picture");
    s.setImage(image);
}

QString noMemoryText(qint64 width, qint64 height)
{
    return QObject::tr("There is not enough memory for a picture of %1 x %2 pixels.\n\n"
                       "Please choose a smaller size.")
        .arg(width)
        .arg(height);
}

// The floating selection lands in the picture and the marquee goes, for the commands
// that work on the whole picture.
void dropSelection(Document& doc)
{
    if (!doc.SelectArea.Visible)
        return;
    UpdateView(doc, doc.Buffer, 0, 0, doc.GetZoomFactor());
    DropSelection(doc);
}

} // namespace

void frmMain::ImageSize_Click()
{
    frmPaint* form = activeDocument();
    if (!form)
        return;
    Document& doc = form->doc;
    if (doc.ZoomFactor != 100)
        form->PreDefZoom(100);
    dropSelection(doc);
    ValidateMenus();
    frmSize dialog(doc.Buffer.ScaleWidth(), doc.Buffer.ScaleHeight(), this);
    if (dialog.exec() != QDialog::Accepted)
        return;
    ResizeImage(dialog.chosenWidth(), dialog.chosenHeight());
}

bool frmMain::ResizeImage(qint64 width, qint64 height)
{
    Document* doc = ActiveDocument();
    if (!doc || width < 1 || height < 1)
        return false;
    // The new picture is had before anything changes: a size the memory refuses leaves
    // the picture, its undo file and the menus as they were.
    QImage next = PictureFitsInMemory(width, height) ? NewPicture(int(width), int(height)) : QImage();
    if (next.isNull()) {
        m_services.prompt.MsgBox(noMemoryText(width, height), vbExclamation, tr("Image Size"));
        return false;
    }
    // Through temp/undo.bmp, so that Undo Resize and the toolbar's undo bring the old
    // picture back exactly.
    return RunImageCommand(*this, {.name = "ImageSize", .resizes = true}, [&](ImageCommand& c) {
        Surface& buffer = c.target();
        StretchPicture(buffer.Image(), next);
        // The persistent layer held the old size; the stretched picture is all there is now.
        buffer.clearPicture();
        buffer.setImage(next);
    });
}

void frmMain::mnurotates_Click(int index)
{
    if (!activeDocument())
        return;
    float angle = MenuRotationAngle(index);
    if (index == 4) {
        frmRotate dialog(RotateDivisor, m_services.prompt, this);
        dialog.exec();
        RotateDivisor = dialog.RotateDivisor();
        // Cancelled; or 0 from 360 degrees, which would divide 3.14 by 0:
        // nothing turns, the picture stays as it is.
        if (RotateDivisor <= 0)
            return;
        angle = DivisorAngle(RotateDivisor);
    }
    RunImageCommand(*this, {.name = "mnurotates", .progress = true}, [&](ImageCommand& c) {
        // The turn reads and writes across the rows; in memory of large pages it doesn't
        // miss the page table on nearly every pixel. The target is not cleared: it
        // starts as the picture.
        const QImage picOrig = CopyPicture(c.target().Image());
        QImage turned = CopyPicture(picOrig);
        if (turned.isNull())
            throw AllocationError("not enough memory to turn the picture");
        // Stopped by Esc, the rows done so far stay turned.
        RotatePicture(turned, picOrig, angle, c.progressFn());
        replaceImage(c.target(), turned);
    });
}

void frmMain::FlipHorizontal_Click()
{
    RunImageCommand(*this, {.name = "FlipHorizontal"}, [](ImageCommand& c) {
        replaceImage(c.target(), FlippedHorizontally(c.target().Image()));
    });
}

void frmMain::FlipVertical_Click()
{
    RunImageCommand(*this, {.name = "FlipVertical"},
                    [](ImageCommand& c) { replaceImage(c.target(), FlippedVertically(c.target().Image())); });
}

void frmMain::EraseImage_Click(int index)
{
    Document* doc = ActiveDocument();
    if (!doc)
        return;
    const Color colour = index == 0 ? RGB(255, 255, 255) : index == 1 ? RGB(0, 0, 0) : m_state.BackColor;
    dropSelection(*doc);
    RunImageCommand(*this, {.name = "EraseImage", .wholePicture = true}, [&](ImageCommand& c) {
        Surface& buffer = c.target();
        buffer.clearPicture();
        buffer.BackColor = colour;
        // A fresh picture in the colour: the old one is kept by the undo step, not copied.
        QImage blank = NewPicture(buffer.ScaleWidth(), buffer.ScaleHeight());
        blank.fill(ToQRgb(colour));
        replaceImage(buffer, blank);
        buffer.CurrentX = 0;
        buffer.CurrentY = 0;
    });
    ValidateMenus();
}

void frmMain::InvertImage_Click()
{
    RunImageCommand(*this, {.name = "InvertImage"},
                    [](ImageCommand& c) { replaceImage(c.target(), Inverted(c.target().Image())); });
}

void frmMain::mnuImgeffects_Click(int index)
{
    ImageCommand command(*this, {.name = index == 0 ? "Brightness" : "Contrast"});
    if (!command)
        return;
    std::unique_ptr<frmBrightContrast> dialog;
    try {
        dialog = std::make_unique<frmBrightContrast>(command.target().Image(), index == 0, this);
    } catch (const AllocationError&) {
        const Surface& s = command.target();
        m_services.prompt.MsgBox(noMemoryText(s.ScaleWidth(), s.ScaleHeight()), vbExclamation,
                                 index == 0 ? tr("Adjust Brightness") : tr("Adjust Contrast"));
        return;
    }
    if (dialog->exec() != QDialog::Accepted)
        return;
    command.run([&](ImageCommand& c) {
        if (!dialog->changed())
            return false;
        c.target().setImage(dialog->adjustedPicture());
        return true;
    });
}

} // namespace velunta
