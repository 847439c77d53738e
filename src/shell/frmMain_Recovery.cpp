// Unsaved pictures kept against a crash: the session of this run, the offer at start
// of what an earlier run left behind, and what the close keeps.

#include "shell/frmMain.h"

#include "core/AppFolder.h"
#include "core/Prompt.h"
#include "document/frmPaint.h"
#include "files/RecoveryStore.h"
#include "files/RecoveryWriter.h"
#include "shell/Logging.h"
#include "shell/RecoveryPrompt.h"
#include "shell/Services.h"

#include <QFile>
#include <QSet>
#include <QTimer>

namespace velunta {

namespace {

constexpr int kThumbnailSide = 96;
const char* const kRecoveryId = "recoveryId";

// Documents are told apart by a number of their own: a new window may reuse the
// address of one that closed.
int recoveryIdOf(frmPaint* form)
{
    static int lastId = 0;
    int id = form->property(kRecoveryId).toInt();
    if (id == 0) {
        id = ++lastId;
        form->setProperty(kRecoveryId, id);
    }
    return id;
}

} // namespace

void frmMain::StartRecovery()
{
    if (!m_services.recovery || m_recoveryStore)
        return;
    auto store = std::make_unique<RecoveryStore>(RecoveryFolder(m_services.AppFolder));
    QString reason;
    if (!store->open(&reason)) {
        qCWarning(lcShell, "unsaved pictures won't be kept: %s", qPrintable(reason));
        return;
    }
    m_recoveryStore = std::move(store);
    m_recovery = std::make_unique<RecoveryWriter>(*m_recoveryStore, [this] { return recoverySources(); });
    // Asked once the window shows, after the splash has gone.
    QTimer::singleShot(0, this, [this] { guarded("OfferRecovery", [this] { OfferRecovery(); }); });
}

QList<RecoverySource> frmMain::recoverySources() const
{
    QList<RecoverySource> sources;
    for (frmPaint* form : documents()) {
        Document& doc = form->doc;
        sources << RecoverySource{recoveryIdOf(form), &doc.Buffer.Image(), doc.Dirty, doc.Name,
                                  doc.Buffer.Tag};
    }
    return sources;
}

void frmMain::OfferRecovery()
{
    if (!m_recoveryStore || !m_services.recovery)
        return;
    const QList<FoundPicture> found = m_recoveryStore->claimFound();
    if (found.isEmpty())
        return;
    QList<RecoveryOffer> offers;
    for (const FoundPicture& picture : found) {
        const RecoveryHeader& h = picture.header;
        offers << RecoveryOffer{h.name, h.path, h.written, h.size,
                                RecoveryThumbnail(picture.file, kThumbnailSide)};
    }
    QList<bool> restore(found.size(), true);
    const RecoveryPrompt::Answer answer = m_services.recovery->AskRecovery(offers, restore);
    if (answer == RecoveryPrompt::Later) {
        m_recoveryStore->releaseFound();
        return;
    }
    if (answer == RecoveryPrompt::Discard) {
        m_recoveryStore->discardFound();
        return;
    }
    // A restored picture's file has moved into this run's folder by now; an unticked
    // one goes; one that could not come back stays for the next start.
    for (int i = 0; i < found.size(); ++i) {
        if (i < restore.size() && restore[i])
            guarded("RestoreRecovered", [&] { RestoreRecovered(found[i]); });
        else
            QFile::remove(found[i].file);
    }
    m_recoveryStore->releaseFound();
    ValidateMenus();
}

void frmMain::RestoreRecovered(const FoundPicture& found)
{
    RecoveryHeader header;
    const QImage picture = ReadRecoveryPicture(found.file, &header);
    const QString name = header.name.isEmpty() ? found.header.name : header.name;
    if (picture.isNull()) {
        m_services.prompt.MsgBox(tr("The unsaved picture %1 could not be read back.").arg(name),
                                 vbExclamation, QStringLiteral("Velunta"));
        return;
    }
    m_undo.SkipNextPrepUndo = true;
    frmPaint* form = createDocument();
    try {
        form->doc.Buffer.setPicture(picture);
        form->doc.Buffer.setScaleSize(picture.width(), picture.height());
        form->doc.Buffer.Cls();
    } catch (const AllocationError&) {
        form->closeWithoutQuestion();
        m_undo.SkipNextPrepUndo = false;
        m_services.prompt.MsgBox(tr("There is not enough memory to bring back the picture %1.\n\n"
                                    "It is kept for the next start.")
                                     .arg(name),
                                 vbExclamation, QStringLiteral("Velunta"));
        return;
    }
    // It comes back as it was: the same names, and still not saved.
    const QString shown = name.isEmpty() ? QStringLiteral("Untitled.bmp") : name;
    form->doc.Name = shown;
    form->doc.SetCaption(shown);
    form->doc.Buffer.Tag = header.path;
    showDocument(form, MaximizeOnOpen);
    form->doc.SetDirtyTrue();
    if (!header.path.isEmpty())
        enable(MenuId::mnuundorevert, true);
    PrepUndo();
    // Its file moves into this run's folder, so it is kept from the first moment on.
    if (m_recovery) {
        const int id = recoveryIdOf(form);
        if (m_recoveryStore->adopt(found, m_recovery->serialOf(id)))
            m_recovery->adopted(id, form->doc.Buffer.Image());
    }
}

void frmMain::EndRecovery(bool askedAboutAll)
{
    if (!m_recovery)
        return;
    QSet<int> keep;
    for (frmPaint* form : documents())
        if (form->doc.Dirty && !askedAboutAll)
            keep << recoveryIdOf(form);
    m_recovery->writeNow(keep);
    m_recovery.reset();
    m_recoveryStore->close(!keep.isEmpty());
    m_recoveryStore.reset();
}

} // namespace velunta
