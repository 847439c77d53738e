#pragma once
// The progress strip of long operations (ProcessBg with the track Process and the
// bar ProcessBar). While it shows, the rest of the window takes no input and Esc
// sets CancelRequested.

#include <QFrame>
#include <QList>
#include <QPointer>

class QMainWindow;

namespace velunta {

struct UndoState;

class ProgressStrip : public QFrame {
    Q_OBJECT
public:
    ProgressStrip(QMainWindow& window, UndoState& undo, QWidget* parent);

    // Shows the strip at width 1 and disables the window around it. Started and
    // stopped only by the main window's busy state (ImageCommand, BusyScope).
    void begin();
    // Sets the bar to fraction of the track and lets pending events run once.
    // Returns CancelRequested.
    bool step(double fraction);
    // Hides the strip and enables the window.
    void end();
    bool running() const { return m_running; }
    double fraction() const { return m_fraction; }

    QFrame* Process() const { return m_process; }
    QFrame* ProcessBar() const { return m_bar; }

private:
    QMainWindow& m_window;
    UndoState& m_undo;
    QFrame* m_process = nullptr;
    QFrame* m_bar = nullptr;
    QList<QPointer<QWidget>> m_disabled;
    bool m_running = false;
    double m_fraction = 0;
};

} // namespace velunta
