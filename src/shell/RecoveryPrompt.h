#pragma once
// The question at start when unsaved pictures of an earlier run were found: which of
// them come back. Tests answer it with a double; the real one is frmRecovery.

#include <QDateTime>
#include <QImage>
#include <QList>
#include <QSize>
#include <QString>

namespace velunta {

struct RecoveryOffer {
    QString name; // the document's name, as its window showed it
    QString path; // the file it belongs to; empty when it was never saved
    QDateTime written;
    QSize size;
    QImage thumbnail;
};

class RecoveryPrompt {
public:
    enum Answer { Restore, Discard, Later };
    virtual ~RecoveryPrompt() = default;
    // `restore` comes in with one true per picture and goes out with the user's ticks:
    // with Restore the ticked pictures come back and the others are deleted; Discard
    // deletes them all; Later keeps them all for the next start.
    virtual Answer AskRecovery(const QList<RecoveryOffer>& found, QList<bool>& restore) = 0;
};

} // namespace velunta
