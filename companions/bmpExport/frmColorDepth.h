#pragma once
// The converter's window: how many colours the picture keeps and how the missing
// ones are made up, with the result shown before it is written.

#include "bmpExport/ColorDepth.h"

#include <QDialog>
#include <QImage>

#include <array>

class QLabel;
class QRadioButton;

namespace velunta {

class frmColorDepth : public QDialog {
    Q_OBJECT
public:
    // `path` is the file OK writes; `picture` what it holds now.
    frmColorDepth(const QImage& picture, const QString& path, const DepthChoice& initial,
                  QWidget* parent = nullptr);

    DepthChoice choice() const;
    void setChoice(const DepthChoice& choice);
    // The preview as it shows now.
    QImage preview() const { return m_preview; }

    void accept() override;

private:
    void refresh();

    QImage m_picture;
    QImage m_small; // the picture at the preview's size
    QImage m_preview;
    QString m_path;
    std::array<QRadioButton*, 4> m_depths{};
    std::array<QRadioButton*, 3> m_dithers{};
    QLabel* m_view = nullptr;
    QLabel* m_info = nullptr;
};

} // namespace velunta
