#pragma once
// The services the main window is given: message boxes, file dialogs, the settings
// store and the program's folder. Tests hand in doubles.

#include <QString>

#include <functional>

class QUrl;

namespace velunta {

class FileDialogs;
class Prompt;
class RecoveryPrompt;
class SettingsStore;

struct Services {
    Prompt& prompt;
    FileDialogs& dialogs;
    SettingsStore& settings;
    QString AppFolder; // with a trailing "/"
    // Waits of the start-up (splash) are skipped when false, for tests.
    bool splashWaits = true;
    // The offer of unsaved pictures that an earlier run left behind. Without it (the
    // tests that don't ask for it) no picture is kept against a crash.
    RecoveryPrompt* recovery = nullptr;
    // Opens a web or mail address or a local page in the desktop's program for it. Empty:
    // the desktop's own choice (QDesktopServices). Tests keep what would have opened.
    std::function<void(const QUrl&)> openUrl = {};
};

} // namespace velunta
