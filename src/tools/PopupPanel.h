#pragma once
// The base of the small pop-ups of the option strip (the slider and the font lists):
// a borderless panel that floats over the main window as a child of it, so it never
// takes the activation from the main window, and closes when asked by its opener.

#include <QFrame>

class QListWidget;
class QListWidgetItem;

namespace velunta {

class PopupPanel : public QFrame {
    Q_OBJECT
public:
    explicit PopupPanel(const QString& name, QWidget* parent);

    // Shows the panel with its top left under `anchor` (left edges aligned), kept
    // inside the parent.
    void popUpUnder(const QWidget* anchor);
};

// A pop-up list of texts, each row shown in its own font; a click picks the row.
class PickList : public PopupPanel {
    Q_OBJECT
public:
    PickList(const QString& name, QWidget* parent);

    QListWidget* list() const { return m_list; }
    void addRow(const QString& text, const QFont& font);
    // Marks the row of `text` as current and scrolls it into view.
    void setCurrentText(const QString& text);
    QStringList rows() const;
    // Picks a row by its text as a click on it does; false when no row has it.
    bool pick(const QString& text);

Q_SIGNALS:
    void picked(const QString& text);

private:
    QListWidget* m_list = nullptr;
};

} // namespace velunta
