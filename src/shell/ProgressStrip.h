#pragma once
// The progress strip of long operations (ProcessBg with the track Process and the
// bar ProcessBar). While it shows, the rest of the window takes no input and Esc
// sets CancelRequested.

#include "core/Progress.h"

#include <QFrame>

class QMainWindow;

namespace velunta {

struct UndoState;

class ProgressStrip : public QFrame {
    Q_OBJECT
public:
    ProgressStrip(QMainWindow& window, UndoState& undo, QWidget* parent);

    // Shows the strip at width 1 and disables the window around it.
    void begin();
    // Sets the bar to fraction of the track and lets pending events run once.
    // Returns CancelRequested.
    bool step(double fraction);
    // Hides the strip and enables the window.
    void end();
    bool running() const { return m_running; }
    double fraction() const { return m_fraction; }
    // A progress callback for the pixel loops.
    ProgressFn callback();

    QFrame* Process() const { return m_process; }
    QFrame* ProcessBar() const { return m_bar; }

private:
    QMainWindow& m_window;
    UndoState& m_undo;
    QFrame* m_process = nullptr;
    QFrame* m_bar = nullptr;
    bool m_running = false;
    double m_fraction = 0;
};

} // namespace velunta
