// The File menu: new pictures, a blank page at start, closing and leaving.

#include "shell/frmMain.h"

#include "core/Prompt.h"
#include "core/Surface.h"
#include "document/ImageCommand.h"
#include "document/frmPaint.h"
#include "files/DialogAPI.h"
#include "files/OpenPicture.h"
#include "imageops/frmNew.h"
#include "shell/Services.h"
#include "tools/frmControls.h"

#include <QCoreApplication>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenuBar>
#include <QScreen>
#include <QScrollBar>
#include <QStyle>
#include <QStyleOptionTitleBar>

#include <algorithm>
#include <optional>

namespace velunta {

namespace {

// A new document window as large as its picture needs, within the documents' area, and
// wholly inside it: one step right of and below the window opened before it.
void placeDocumentWindow(QMdiArea* mdi, frmPaint* form)
{
    QMdiSubWindow* sw = qobject_cast<QMdiSubWindow*>(form->parentWidget());
    if (!sw)
        return;
    const QSize frame = DocumentWindowFrame(sw);
    const int bars = form->VScroll1()->sizeHint().width();
    const QSize want(form->doc.Buffer.Width() + bars + 8, form->doc.Buffer.Height() + bars + 8);
    const QSize room = mdi->viewport()->size();
    const QSize size(
        std::max(std::min(want.width() + frame.width(), room.width()), std::min(room.width(), 200)),
        std::max(std::min(want.height() + frame.height(), room.height()), std::min(room.height(), 150)));
    QPoint at(0, 0);
    const QList<QMdiSubWindow*> windows = mdi->subWindowList(QMdiArea::CreationOrder);
    for (qsizetype i = windows.indexOf(sw) - 1; i >= 0; --i) {
        QMdiSubWindow* before = windows[i];
        if (before->isVisible() && !before->isMinimized() && !before->isMaximized()) {
            const int step = frame.height() - frame.width() / 2;
            at = before->pos() + QPoint(step, step);
            break;
        }
    }
    // Past the area's edge the window gives up what lies beyond, as long as it keeps two
    // thirds of the area to work in; a smaller one starts again at the top left.
    const QSize fit(std::min(size.width(), room.width() - at.x()),
                    std::min(size.height(), room.height() - at.y()));
    const bool keepsRoom = fit.width() >= std::min(size.width(), room.width() * 2 / 3) &&
                           fit.height() >= std::min(size.height(), room.height() * 2 / 3);
    sw->setGeometry(at.x() >= 0 && at.y() >= 0 && keepsRoom ? QRect(at, fit) : QRect(QPoint(0, 0), size));
}

} // namespace

QSize DocumentWindowFrame(QMdiSubWindow* sw)
{
    QStyleOptionTitleBar option;
    option.initFrom(sw);
    const int border = sw->style()->pixelMetric(QStyle::PM_MdiSubWindowFrameWidth, nullptr, sw);
    const int title = sw->style()->pixelMetric(QStyle::PM_TitleBarHeight, &option, sw);
    return QSize(2 * border, 2 * border + title);
}

void frmMain::showDocument(frmPaint* form, bool maximized)
{
    form->SizePaintArea();
    placeDocumentWindow(m_mdi, form);
    auto* sw = qobject_cast<QMdiSubWindow*>(form->parentWidget());
    if (maximized)
        sw->showMaximized();
    else
        sw->show();
    m_mdi->setActiveSubWindow(sw);
    form->Form_Resize();
    ValidateMenus();
}

void frmMain::NewImage_Click()
{
    frmNew dialog(LastNewWidth, LastNewHeight, m_services.prompt, this, NewImageWidth, NewImageHeight);
    if (dialog.exec() != QDialog::Accepted)
        return;
    const NewImageChoice choice = dialog.choice();
    frmPaint* form = createDocument();
    try {
        form->doc.CreatePicture(choice.width + 2, choice.height + 2, choice.background);
    } catch (const AllocationError&) {
        form->closeWithoutQuestion();
        m_services.prompt.MsgBox(tr("There is not enough memory for a picture of %1 x %2 pixels.\n\n"
                                    "Please choose a smaller size.")
                                     .arg(choice.width)
                                     .arg(choice.height),
                                 vbExclamation, tr("New Image"));
        ValidateMenus();
        return;
    }
    form->doc.Name = choice.name;
    form->doc.SetCaption(choice.name);
    LastNewWidth = choice.width;
    LastNewHeight = choice.height;
    showDocument(form, false);
    form->setFocus();
}

QSize BlankPageSize(int mainWidth, int mainHeight, int leftBarWidth, int rightBarWidth, int topBarHeight)
{
    int w = mainWidth - leftBarWidth - rightBarWidth - 170;
    int h = mainHeight - topBarHeight - 100;
    if (w < 400)
        w = 642;
    if (h < 300)
        h = 482;
    return QSize(w, h);
}

void frmMain::StartWithBlankPage()
{
    const QSize size = BlankPageSize(width(), height(), m_leftBar->width(), m_rightBar->width(),
                                     m_picbuttons->parentWidget()->height() + menuBar()->height());
    frmPaint* form = createDocument();
    form->doc.CreatePicture(size.width(), size.height(), 0xFFFFFF);
    form->doc.Name = QStringLiteral("Untitled.bmp");
    form->doc.SetCaption(QStringLiteral("Untitled.bmp"));
    showDocument(form, MaximizeOnOpen);
}

void frmMain::Close_Click()
{
    if (frmPaint* form = activeDocument())
        form->parentWidget()->close();
    ValidateMenus();
}

void frmMain::Exit_Click()
{
    // The short way out: no "Are you sure" and no settings kept. Changed pictures are
    // still asked about, one by one, so Exit loses none without a word.
    if (!AskAboutChangedPictures())
        return;
    m_exiting = true;
    close(); // which ends the program
}

QImage frmMain::openPictureFile(const QString& path, QString& error, int& errorNumber)
{
    // Only a drawing's converter takes long enough for the progress strip.
    std::optional<BusyScope> busy;
    return OpenPicture(path, &error, &errorNumber, [&](double gone) {
        if (!busy)
            busy.emplace(*this, true);
        return !busy->progress(gone);
    });
}

void frmMain::showLoadError(const QString& name, int errorNumber, const QString& reason)
{
    m_services.prompt.MsgBox(tr("Error loading ") + name + tr(". Err nr:") + QString::number(errorNumber) +
                                 (reason.isEmpty() ? QString() : QString(QStringLiteral("\n\n") + reason)),
                             vbOKOnly, QStringLiteral("Velunta"));
}

bool frmMain::loadIntoDocument(frmPaint& form, const QString& path, const QString& shownName)
{
    QMdiSubWindow* sw = qobject_cast<QMdiSubWindow*>(form.parentWidget());
    QString error;
    int errorNumber = 0;
    const QImage picture = openPictureFile(path, error, errorNumber);
    if (picture.isNull()) {
        // The empty window stays, as the load left it.
        placeDocumentWindow(m_mdi, &form);
        sw->show();
        showLoadError(shownName, errorNumber, error);
        return false;
    }
    try {
        // The decoded rows become the drawing layer, and the persistent layer shares them
        // until the first change: a picture the size of its file shows exactly its pixels,
        // so nothing needs clearing or copying.
        form.doc.Buffer.setImage(picture);
        form.doc.Buffer.keepImageAsPicture();
        form.doc.Buffer.CurrentX = 0;
        form.doc.Buffer.CurrentY = 0;
    } catch (const AllocationError&) {
        sw->show();
        showLoadError(shownName, 7, tr("There is not enough memory for this picture."));
        return false;
    }
    return true;
}

void frmMain::Open_Click()
{
    QString name = FileToOpen;
    FileToOpen.clear();
    if (name.isEmpty())
        name = ShowOpenDialog(m_services.dialogs, tr("Open..."));
    if (name.trimmed().isEmpty())
        return;
    if (!FileExists(name)) {
        m_services.prompt.MsgBox(name + tr("- doesn't exist anymore, or has been renamed."), vbExclamation,
                                 tr("Open file"));
        return;
    }
    // A name that begins with a blank passes the existence test and then opens nothing.
    if (name.startsWith(u' '))
        return;

    m_undo.SkipNextPrepUndo = true;
    frmPaint* form = createDocument();
    form->doc.Name = name;
    form->doc.SetCaption(name);
    if (!loadIntoDocument(*form, name, name))
        return;
    form->doc.Buffer.Tag = name;
    showDocument(form, MaximizeOnOpen);
    enable(MenuId::mnuundorevert, true);
    PrepUndo();
    if (m_state.CurrentTool == kToolZoom)
        SelectTool(kToolZoom);
    MRUDlist(2, name);
    // A picture larger than the screen opens at 25% with the zoom tool, when asked to.
    // The picture's own size counts, not its frame: one exactly as large as the screen stays.
    const QSize screen = this->screen() ? this->screen()->size() : QSize(1 << 30, 1 << 30);
    if (FitBigImages && (form->doc.Buffer.ScaleWidth() > screen.width() ||
                         form->doc.Buffer.ScaleHeight() > screen.height())) {
        QCoreApplication::processEvents();
        SelectTool(kToolZoom);
        form->PreDefZoom(25);
        m_controls->SetZoomOption(25);
    }
}

} // namespace velunta
