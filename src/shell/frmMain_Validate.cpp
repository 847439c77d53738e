// Which commands are available, and Easy Mode.

#include "shell/frmMain.h"

#include "document/frmPaint.h"
#include "shell/Services.h"
#include "tools/frmControls.h"
#include "widgets/ColorStrip.h"

#include <QApplication>
#include <QCheckBox>
#include <QClipboard>
#include <QFileInfo>
#include <QLabel>
#include <QMenu>
#include <QMimeData>
#include <QToolButton>

namespace velunta {

void frmMain::ValidateMenus()
{
    static const QStringList kDocumentCommands = {QStringLiteral("Save"),
                                                  QStringLiteral("SaveAs"),
                                                  QStringLiteral("Close"),
                                                  QStringLiteral("mnuClose"),
                                                  QStringLiteral("mnuExportGif"),
                                                  QStringLiteral("mnuPrint"),
                                                  QStringLiteral("mnuExportJPG"),
                                                  QStringLiteral("mnuProperties"),
                                                  QStringLiteral("SelectAll"),
                                                  QStringLiteral("Paste"),
                                                  QStringLiteral("mnuPasteFrom"),
                                                  QStringLiteral("Image"),
                                                  QStringLiteral("mnuTools"),
                                                  QStringLiteral("Filters"),
                                                  QStringLiteral("mnuextra2"),
                                                  QStringLiteral("mnuextra1"),
                                                  QStringLiteral("mnuExportBMPOptions"),
                                                  QStringLiteral("mnucolordepth"),
                                                  QStringLiteral("mnudetailedit"),
                                                  QStringLiteral("mnuExportPNG"),
                                                  QStringLiteral("mnuView"),
                                                  QStringLiteral("mnuextraplugin")};
    static const QStringList kSelectionCommands = {
        QStringLiteral("Copy"),      QStringLiteral("Cut"),        QStringLiteral("ClearSelection"),
        QStringLiteral("mnuCopyTo"), QStringLiteral("mnuImgCopy"), QStringLiteral("mnuImgCut"),
        QStringLiteral("mnuBlendIt")};
    static const QStringList kClipboardCommands = {QStringLiteral("Paste"), QStringLiteral("PasteSpecial"),
                                                   QStringLiteral("mnuImgPaste")};

    frmPaint* form = activeDocument();
    if (form) {
        for (const QString& name : kDocumentCommands)
            enable(name, true);
        // The menus of a document: every entry that is built is there to use.
        for (const QString& name : {QStringLiteral("Image"), QStringLiteral("mnuTools"),
                                    QStringLiteral("Filters"), QStringLiteral("mnuView")}) {
            for (QAction* a : menu(name)->findChildren<QAction*>())
                if (!a->isSeparator() && !a->objectName().isEmpty())
                    enable(a->objectName(), true);
        }
        for (const QString& name : {QStringLiteral("mnuExport"), QStringLiteral("mnuImport")})
            enable(name, true);
        for (int i = 0; i < 23; ++i)
            enableCommand(i, true);

        const bool selection = form->doc.SelectArea.Visible;
        for (const QString& name : kSelectionCommands)
            enable(name, selection);
        showEntry(QStringLiteral("mnugrabmask"), selection);
        enable(QStringLiteral("mnugrabmask"), selection);
        enableCommand(3, selection);
        enableCommand(4, selection);

        const QMimeData* clip = QApplication::clipboard()->mimeData();
        const bool picture = clip && clip->hasImage();
        for (const QString& name : kClipboardCommands)
            enable(name, picture);
        enableCommand(6, picture);

        enable(QStringLiteral("UndoResize"),
               QFileInfo::exists(m_services.AppFolder + QStringLiteral("temp/undo.bmp")));
        enable(QStringLiteral("Undo"), m_undoEnabled);
        enable(QStringLiteral("mnuImgUndo"), m_undoEnabled);
    } else {
        for (const QString& name : kDocumentCommands + kSelectionCommands + kClipboardCommands)
            enable(name, false);
        for (const QString& name :
             {QStringLiteral("Undo"), QStringLiteral("UndoResize"), QStringLiteral("mnuImgUndo"),
              QStringLiteral("mnuundorevert"), QStringLiteral("mnuExport"), QStringLiteral("mnuImport")})
            enable(name, false);
        showEntry(QStringLiteral("mnugrabmask"), false);
        for (int i = 0; i < 23; ++i)
            enableCommand(i, false);
        m_undoEnabled = false;
        m_undo.reset();
    }
    if (m_colorStrip)
        m_colorStrip->setPaletteEnabled(form != nullptr);
    // New, Open and leaving stand ready with or without a document.
    enableCommand(0, true);
    enableCommand(1, true);
    for (const QString& name : {QStringLiteral("NewImage"), QStringLiteral("Open"), QStringLiteral("Exit")})
        enable(name, true);
}

void frmMain::SetUndoEnabled(bool enabled)
{
    m_undoEnabled = enabled;
    enable(QStringLiteral("Undo"), enabled);
    enable(QStringLiteral("mnuImgUndo"), enabled);
    enableCommand(7, enabled || activeDocument());
}

bool frmMain::UndoEnabled() const
{
    const QAction* undo = action(QStringLiteral("Undo"));
    return undo && undo->isEnabled();
}

void frmMain::KidsMode()
{
    const bool kids = action(QStringLiteral("mnuKidsMode"))->isChecked();
    for (int i = 8; i <= 22; ++i)
        if (i != 17)
            m_commands[i]->setVisible(!kids);
    m_separators[3]->setVisible(!kids);
    for (int i = 5; i <= 11; ++i)
        m_separators[i]->setVisible(!kids);
    static const QStringList kHidden = {QStringLiteral("mnuExport"),
                                        QStringLiteral("mnuImport"),
                                        QStringLiteral("split022"),
                                        QStringLiteral("mnuSelTwain"),
                                        QStringLiteral("mnuAcquire"),
                                        QStringLiteral("split033"),
                                        QStringLiteral("mnuBezier"),
                                        QStringLiteral("mnuPolygons"),
                                        QStringLiteral("niks002"),
                                        QStringLiteral("mnuCopyTo"),
                                        QStringLiteral("mnuPasteFrom"),
                                        QStringLiteral("split023"),
                                        QStringLiteral("PasteSpecial"),
                                        QStringLiteral("mnuPasteBlend"),
                                        QStringLiteral("mnuBlendIt"),
                                        QStringLiteral("split052"),
                                        QStringLiteral("split003"),
                                        QStringLiteral("mnuWindowAutoSizePosition"),
                                        QStringLiteral("ArrHorizontal"),
                                        QStringLiteral("ArrVertival"),
                                        QStringLiteral("Cascade"),
                                        QStringLiteral("split045"),
                                        QStringLiteral("mnufitbigimages"),
                                        QStringLiteral("mnustartblankpage"),
                                        QStringLiteral("mnumaximizeonopen"),
                                        QStringLiteral("mnuextra1"),
                                        QStringLiteral("mnuextra2"),
                                        QStringLiteral("mnuextra3"),
                                        QStringLiteral("niks052"),
                                        QStringLiteral("niks036"),
                                        QStringLiteral("mnucolordepth"),
                                        QStringLiteral("menuExGridSetup"),
                                        QStringLiteral("niks12"),
                                        QStringLiteral("niks7")};
    for (const QString& name : kHidden)
        showEntry(name, !kids);
    placeToolButtons();
    m_chkDetailEdit->setVisible(!kids);
    m_chkSnapGrid->setVisible(!kids);
    if (m_colorStrip)
        m_colorStrip->setKidsMode(kids);
    action(QStringLiteral("menuExGridSnap"))->setChecked(m_state.SnapToGrid);
}

void frmMain::mnuHideToolbar_Click()
{
    QAction* mark = action(QStringLiteral("mnuHideToolbar"));
    // The entry's own toggle has already flipped the mark.
    m_picbuttons->setVisible(!mark->isChecked());
}

} // namespace velunta
