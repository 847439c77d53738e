#pragma once
// Test doubles for the message boxes and file dialogs: answers are queued in
// advance, and every box shown is recorded.

#include "core/Prompt.h"
#include "shell/RecoveryPrompt.h"

#include <QQueue>
#include <QString>
#include <QStringList>

namespace velunta::test {

struct ShownBox {
    QString text;
    int style = 0;
    QString title;
};

class ScriptedPrompt : public Prompt {
public:
    int MsgBox(const QString& text, int style, const QString& title) override
    {
        shown.append({text, style, title});
        if (!answers.isEmpty())
            return answers.dequeue();
        // Without a queued answer: OK for plain boxes, No for questions.
        const int buttons = style & 0x7;
        return buttons == vbYesNo || buttons == vbYesNoCancel ? vbNo : vbOK;
    }
    QQueue<int> answers;
    QList<ShownBox> shown;
};

class ScriptedDialogs : public FileDialogs {
public:
    QString getOpenFileName(const QString&, const QString&, const QString&) override { return next(); }
    QString getSaveFileName(const QString&, const QString&, const QString&, int& filterIndex) override
    {
        if (!filterIndexes.isEmpty())
            filterIndex = filterIndexes.dequeue();
        return next();
    }
    QString next() { return paths.isEmpty() ? QString() : paths.dequeue(); }
    QQueue<QString> paths;
    QQueue<int> filterIndexes;
};

// Answers the offer of pictures found at start, and keeps what was offered.
class ScriptedRecovery : public RecoveryPrompt {
public:
    Answer AskRecovery(const QList<RecoveryOffer>& found, QList<bool>& restore) override
    {
        offered = found;
        ++asked;
        if (!ticks.isEmpty())
            restore = ticks;
        return answer;
    }
    Answer answer = Later;
    QList<bool> ticks;
    QList<RecoveryOffer> offered;
    int asked = 0;
};

} // namespace velunta::test
