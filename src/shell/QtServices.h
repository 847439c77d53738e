#pragma once
// The real message boxes and file dialogs.

#include "core/Prompt.h"

class QWidget;

namespace velunta {

class QtPrompt : public Prompt {
public:
    explicit QtPrompt(QWidget* parent = nullptr) : m_parent(parent) {}
    void setParent(QWidget* parent) { m_parent = parent; }
    int MsgBox(const QString& text, int style, const QString& title) override;

private:
    QWidget* m_parent;
};

class QtFileDialogs : public FileDialogs {
public:
    explicit QtFileDialogs(QWidget* parent = nullptr) : m_parent(parent) {}
    void setParent(QWidget* parent) { m_parent = parent; }
    QString getOpenFileName(const QString& title, const QString& filter, const QString& defaultName) override;
    QString getSaveFileName(const QString& title, const QString& filter, const QString& defaultName,
                            int& filterIndex) override;

private:
    // StartFolder while it exists, else the user's pictures folder, else home.
    QString startFolder() const;
    QWidget* m_parent;
};

} // namespace velunta
