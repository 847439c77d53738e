#pragma once
// The small window that stands while an update check the user asked for runs. Cancel
// (or closing it) drops the check.

#include <QDialog>

namespace velunta {

class frmUpdateWait : public QDialog {
    Q_OBJECT
public:
    explicit frmUpdateWait(QWidget* parent = nullptr);
};

} // namespace velunta
