#pragma once
// The offer at start of the pictures an earlier run left unsaved: a list with a
// thumbnail, the name and the time of each, ticked to come back.

#include "shell/RecoveryPrompt.h"

#include <QDialog>

class QListWidget;
class QPushButton;

namespace velunta {

class frmRecovery : public QDialog {
    Q_OBJECT
public:
    frmRecovery(const QList<RecoveryOffer>& found, QWidget* parent = nullptr);

    RecoveryPrompt::Answer answer() const { return m_answer; }
    // One tick per picture, in the order given.
    QList<bool> ticks() const;
    QListWidget* list() const { return m_list; }
    QPushButton* restoreButton() const { return m_restore; }

private:
    void ticksChanged();
    void discardAll();
    void finish(RecoveryPrompt::Answer answer);

    QListWidget* m_list = nullptr;
    QPushButton* m_restore = nullptr;
    RecoveryPrompt::Answer m_answer = RecoveryPrompt::Later;
};

// The real question, as a modal frmRecovery over the main window.
class QtRecoveryPrompt : public RecoveryPrompt {
public:
    explicit QtRecoveryPrompt(QWidget* parent = nullptr) : m_parent(parent) {}
    void setParent(QWidget* parent) { m_parent = parent; }
    Answer AskRecovery(const QList<RecoveryOffer>& found, QList<bool>& restore) override;

private:
    QWidget* m_parent;
};

} // namespace velunta
