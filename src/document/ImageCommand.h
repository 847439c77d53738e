#pragma once
// The one way a command changes the picture. An ImageCommand picks its target
// (BufferSelected while SelectArea shows, else Buffer), and run() does the rest around
// the command's own pixel work: the undo step (PrepUndo, or temp/undo.bmp for a
// change of size) and SetSelBak first; the wait cursor, and for long work the progress
// strip with Esc and the window disabled; then the redraw at GetZoomFactor and
// SetDirtyTrue. A fault inside the work (OverflowError, bad_alloc, any std::exception)
// puts the target back as it was before the work, is reported and ends the command;
// cursor, strip and window come back on every path. run() never throws.
//
// A new command is its pixel work in a lambda. It returns nothing when it changes the
// picture, or a bool when it may change nothing (false: the document stays clean; work
// that Esc stopped half way has changed something). Ask a dialog's questions before
// run(): a command that is never run takes no undo step.
//
//     void frmMain::mnuDoBright_Click()
//     {
//         RunImageCommand(*this, {.name = "mnuDoBright", .progress = true},
//                         [](ImageCommand& c) { FxOnPicture(c.target(), 1, 0, 0, c.progressFn()); });
//     }
//
//     // After a dialog that shows the target as it stands (`host` is the CommandHost
//     // a dialog of imageops or effects is given):
//     ImageCommand command(host, {.name = "Brightness"});
//     if (!command)
//         return;
//     frmBrightContrast dialog(command.target().Image(), true, parent);
//     if (dialog.exec() != QDialog::Accepted)
//         return; // no undo step, nothing changed
//     command.run([&](ImageCommand& c) { c.target().setImage(dialog.adjustedPicture()); });

#include "core/Progress.h"
#include "core/Surface.h"
#include "document/CommandHost.h"

#include <functional>
#include <type_traits>

namespace velunta {

class Document;

struct CommandOptions {
    // Names the command where a fault is reported.
    const char* name = "image command";
    // Buffer even while a selection shows.
    bool wholePicture = false;
    // The work changes the picture's size (resize, crop, a rotation that grows it): the
    // undo step is temp/undo.bmp (Undo Resize) instead of the ring. Implies wholePicture.
    bool resizes = false;
    // Long work: the progress strip shows and Esc can stop it (progress() says so).
    bool progress = false;
    // False for a preview that takes no undo step of its own.
    bool undo = true;
};

// Keeps the window busy while it lives: the wait cursor, and with `progress` the
// progress strip with the window disabled. For work that is no picture command (a
// save, say); ImageCommand::run() uses one itself.
class BusyScope {
public:
    BusyScope(CommandHost& host, bool progress);
    ~BusyScope();
    BusyScope(const BusyScope&) = delete;
    BusyScope& operator=(const BusyScope&) = delete;

    // The fraction done (0..1); true when the user pressed Esc. Without the strip it
    // only says no.
    bool progress(double fraction);
    ProgressFn progressFn();
    // Ends the busy state before the scope does (before a message box, say).
    void end();

private:
    CommandHost& m_host;
    bool m_progress;
    bool m_active = true;
};

class ImageCommand {
public:
    // On the active document; without one the command is empty and run() does nothing.
    explicit ImageCommand(CommandHost& host, CommandOptions options = {});

    explicit operator bool() const { return m_doc != nullptr; }
    Document& doc() const { return *m_doc; }
    // BufferSelected or Buffer: what the work changes.
    Surface& target() const { return *m_target; }
    bool onSelection() const { return m_onSelection; }

    // During run(): the fraction done (0..1); true when the user pressed Esc. The work
    // stops then and keeps what it has done.
    bool progress(double fraction);
    ProgressFn progressFn();

    // Runs `work` as one step of the picture. True when the picture changed: a work
    // returning void always changes it; a work returning false changed nothing (the
    // document stays clean). False too after a fault or without a document.
    template <class Work> bool run(Work&& work)
    {
        using Result = std::invoke_result_t<Work&, ImageCommand&>;
        return runWork([&](ImageCommand& c) {
            if constexpr (std::is_void_v<Result>) {
                work(c);
                return true;
            } else {
                return bool(work(c));
            }
        });
    }

private:
    bool runWork(const std::function<bool(ImageCommand&)>& work);

    CommandHost& m_host;
    CommandOptions m_options;
    Document* m_doc = nullptr;
    Surface* m_target = nullptr;
    bool m_onSelection = false;
    BusyScope* m_busy = nullptr;
};

// An ImageCommand on the active document, run at once.
template <class Work> bool RunImageCommand(CommandHost& host, CommandOptions options, Work&& work)
{
    ImageCommand command(host, options);
    return command.run(std::forward<Work>(work));
}

} // namespace velunta
