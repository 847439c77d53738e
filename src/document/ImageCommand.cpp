#include "document/ImageCommand.h"

#include "core/Faults.h"
#include "document/Document.h"
#include "document/DocumentView.h"
#include "document/UpdateView.h"

namespace velunta {

BusyScope::BusyScope(CommandHost& host, bool progress) : m_host(host), m_progress(progress)
{
    m_host.BeginBusy(progress);
}

BusyScope::~BusyScope()
{
    end();
}

void BusyScope::end()
{
    if (m_active) {
        m_active = false;
        m_host.EndBusy();
    }
}

bool BusyScope::progress(double fraction)
{
    return m_active && m_progress && m_host.StepProgress(fraction);
}

ProgressFn BusyScope::progressFn()
{
    return [this](double fraction) { return progress(fraction); };
}

ImageCommand::ImageCommand(CommandHost& host, CommandOptions options)
    : m_host(host), m_options(options), m_doc(host.ActiveDocument())
{
    if (m_options.resizes)
        m_options.wholePicture = true;
    if (!m_doc)
        return;
    m_onSelection = !m_options.wholePicture && m_doc->SelectArea.Visible;
    m_target = m_onSelection ? &m_doc->BufferSelected : &m_doc->Buffer;
}

bool ImageCommand::progress(double fraction)
{
    return m_busy && m_busy->progress(fraction);
}

ProgressFn ImageCommand::progressFn()
{
    return [this](double fraction) { return progress(fraction); };
}

namespace {

// What the work may change besides its target, kept so a fault can put it back.
struct Before {
    explicit Before(Document& doc, const Surface& target)
        : target(target), selectArea(doc.SelectArea), lifted(doc.SelectionLifted),
          floatOriginal(doc.FloatOriginal), width(doc.Buffer.Width()), height(doc.Buffer.Height())
    {
    }
    // A copy of a surface shares its pixels until either side writes, so keeping the
    // target costs one copy of what the work actually changes.
    Surface target;
    RectOverlay selectArea;
    bool lifted;
    QImage floatOriginal;
    int width, height;
};

} // namespace

bool ImageCommand::runWork(const std::function<bool(ImageCommand&)>& work)
{
    if (!m_doc)
        return false;
    Document& doc = *m_doc;
    BusyScope busy(m_host, m_options.progress);
    m_busy = &busy;
    bool changed = false;
    Guarded(m_options.name, [&] {
        if (m_options.undo) {
            if (m_options.resizes)
                m_host.SaveUndoBitmap();
            else
                m_host.PrepUndo();
        }
        if (m_onSelection)
            m_host.SetSelBak();
        const Before before(doc, *m_target);
        try {
            changed = work(*this);
        } catch (const std::exception&) {
            // The picture goes back to what the undo step holds, then the guard reports.
            *m_target = before.target;
            m_target->touchAll();
            doc.SelectArea = before.selectArea;
            doc.SelectionLifted = before.lifted;
            doc.FloatOriginal = before.floatOriginal;
            doc.invalidateView();
            UpdateView(doc, doc.Buffer, 0, 0, doc.GetZoomFactor());
            if (doc.Buffer.Width() != before.width || doc.Buffer.Height() != before.height)
                m_host.PictureResized();
            throw;
        }
        if (changed) {
            m_target->touchAll();
            doc.SetDirtyTrue();
            if (m_options.undo)
                m_host.UndoRecorded();
        }
        UpdateView(doc, doc.Buffer, 0, 0, doc.GetZoomFactor());
        if (doc.Buffer.Width() != before.width || doc.Buffer.Height() != before.height)
            m_host.PictureResized();
        // A command from the keyboard leaves the pointer where it rests over the picture,
        // ready to draw: the copy the next stroke would make begins now.
        if (changed && m_options.undo && doc.viewWindow && doc.viewWindow->pointerOverPicture())
            doc.UndoKeep.prepare(doc.Buffer);
    });
    m_busy = nullptr;
    return changed;
}

} // namespace velunta
