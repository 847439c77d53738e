// Detailed Editing (the magnified pixel editor on a small area) and File > Open in
// thumbnail-view.

#include "shell/frmMain.h"

#include "document/ImageCommand.h"
#include "document/frmPaint.h"
#include "files/frmOpenThumbnail.h"
#include "imageops/frmEditDetail.h"

#include <QCheckBox>
#include <QDir>
#include <QFileInfo>
#include <QTimer>

#include <cmath>
#include <cstring>

namespace velunta {

void frmMain::PrepEditDetail()
{
    frmPaint* form = activeDocument();
    if (!form)
        return;
    if (form->doc.SelectArea.Visible) {
        const Surface& sel = form->doc.BufferSelected;
        EditDetailAt(QPoint(sel.ScaleWidth() / 2, sel.ScaleHeight() / 2));
        return;
    }
    // No selection: the next click on the picture says where.
    m_state.DetailPickerArmed = true;
    m_chkDetailEdit->setChecked(true);
}

void frmMain::DetailPicked(Document& doc, double x, double y)
{
    m_chkDetailEdit->setChecked(false);
    QPoint point(int(std::floor(x)), int(std::floor(y)));
    if (doc.SelectArea.Visible)
        point -= QPoint(int(doc.BufferSelected.Left), int(doc.BufferSelected.Top));
    // After the release has run its course: the editor is a window of its own.
    QTimer::singleShot(0, this, [this, point] { guarded("frmEditDetail", [&] { EditDetailAt(point); }); });
}

void frmMain::EditDetailAt(QPoint point)
{
    ImageCommand command(*this, {.name = "frmEditDetail"});
    if (!command)
        return;
    const QImage& picture = command.target().Image();
    const QRect area = DetailArea(picture.size(), point);
    if (area.isEmpty())
        return;
    frmEditDetail dialog(picture.copy(area), m_state.ForeColor, m_state.BackColor, this);
    if (dialog.exec() != QDialog::Accepted)
        return;
    const QImage edited = dialog.result();
    if (dialog.foreColor() != m_state.ForeColor || dialog.backColor() != m_state.BackColor) {
        m_state.ForeColor = dialog.foreColor();
        m_state.BackColor = dialog.backColor();
        ColorsChanged();
    }
    command.run([&](ImageCommand& c) {
        QImage& target = c.target().Image();
        if (edited.size() != area.size() || target.copy(area) == edited)
            return false; // nothing painted: no undo step, the picture stays clean
        const qsizetype rowBytes = qsizetype(area.width()) * 4;
        for (int y = 0; y < area.height(); ++y)
            std::memcpy(reinterpret_cast<QRgb*>(target.scanLine(area.top() + y)) + area.left(),
                        edited.constScanLine(y), size_t(rowBytes));
        c.target().touch(area);
        return true;
    });
}

void frmMain::OpenThumbnailview_Click()
{
    // The folder of the last picture opened, else the pictures folder.
    static QString folder;
    if (folder.isEmpty() || !QFileInfo(folder).isDir()) {
        const QFileInfo recent(m_recent[0]);
        folder = recent.exists() ? recent.absolutePath() : QString();
    }
    if (folder.isEmpty()) {
        const QString pictures = QDir::home().filePath(QStringLiteral("Pictures"));
        folder = QFileInfo(pictures).isDir() ? pictures : QDir::homePath();
    }
    frmOpenThumbnail dialog(folder, this);
    const int answer = dialog.exec();
    folder = dialog.folder();
    if (answer != QDialog::Accepted || dialog.selectedFile().isEmpty())
        return;
    FileToOpen = dialog.selectedFile();
    Open_Click();
}

} // namespace velunta
