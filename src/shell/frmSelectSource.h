#pragma once
// "Select TWAIN Source...": the scanners SANE found, to choose the one that "Acquire
// Image..." scans from.

#include "files/outside/Scanner.h"

#include <QDialog>

class QListWidget;

namespace velunta {

class frmSelectSource : public QDialog {
    Q_OBJECT
public:
    // `current` is the device chosen before; it starts selected when it is still there.
    frmSelectSource(const std::vector<ScannerDevice>& devices, const QString& current,
                    QWidget* parent = nullptr);
    // The chosen device's name.
    QString device() const;

private:
    std::vector<ScannerDevice> m_devices;
    QListWidget* m_list = nullptr;
};

} // namespace velunta
