#pragma once
// A real main window over test doubles, in a temporary program folder, for the
// offscreen GUI tests.

#include "core/SettingsStore.h"
#include "shell/Services.h"
#include "shell/frmMain.h"
#include "support/FakeServices.h"

#include <QApplication>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <QUrl>

#include <functional>
#include <memory>

namespace velunta {
class frmPaint;
}

namespace velunta::test {

// The window takes input again: menus and panels enabled, no progress strip and no
// wait cursor.
bool WindowUsable(frmMain& m);

// Answers the next modal dialog of type D once it shows: the command that opens it runs
// the dialog's own event loop, so the answer waits on a timer. A dialog the answer leaves
// open is cancelled, so that a failed check inside it cannot hang the test.
template <class D> void WhenShown(std::function<void(D&)> answer)
{
    auto* timer = new QTimer;
    timer->setInterval(5);
    auto tries = std::make_shared<int>(400); // two seconds
    QObject::connect(timer, &QTimer::timeout, [timer, answer, tries] {
        auto* dialog = qobject_cast<D*>(QApplication::activeModalWidget());
        if ((!dialog || !dialog->isVisible()) && --*tries > 0)
            return;
        timer->stop();
        timer->deleteLater();
        if (!dialog)
            QFAIL("the dialog never showed");
        answer(*dialog);
        if (dialog->isVisible() && QApplication::activeModalWidget() == dialog)
            dialog->reject();
    });
    timer->start();
}

class MainWindowFixture {
public:
    // fresh: start from an empty settings store, as on a first run. With `recovery` the
    // window keeps unsaved pictures against a crash, in `folder` when one is given.
    explicit MainWindowFixture(bool fresh = true, RecoveryPrompt* recovery = nullptr,
                               const QString& folder = QString());
    ~MainWindowFixture();

    frmMain& main() { return *m_main; }
    ScriptedPrompt prompt;
    ScriptedDialogs dialogs;
    // The addresses the window would have opened in the desktop's browser or mail program.
    QList<QUrl> openedUrls;
    QString appFolder() const { return m_services->AppFolder; }

    // A new white document of w x h pixels, active.
    frmPaint* newDocument(int w = 64, int h = 48, Color background = 0xFFFFFF);
    // A new document showing `picture` as an opened file shows it, active, with no undo
    // step taken yet.
    frmPaint* newDocument(const QImage& picture);
    // A press, `moves` moves along the way and a release through the window's pointer
    // events, in view pixels.
    void drag(frmPaint& form, QPointF from, QPointF to, int moves = 1);
    // Lets pending events and deferred calls run.
    static void settle();
    // The main window goes with its pictures still open and nothing asked, as when the
    // program is ended from outside.
    void endWithoutClose();

private:
    QTemporaryDir m_home;
    std::unique_ptr<SettingsStore> m_settings;
    std::unique_ptr<Services> m_services;
    std::unique_ptr<frmMain> m_main;
};

} // namespace velunta::test
