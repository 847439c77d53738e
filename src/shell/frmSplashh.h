#pragma once
// The splash window shown while the program starts.

#include <QWidget>

class QLabel;

namespace velunta {

class frmSplashh : public QWidget {
    Q_OBJECT
public:
    explicit frmSplashh(QWidget* parent = nullptr);
    // lblStatus; the shadow label behind it follows.
    void setStatus(const QString& text);
    QString status() const;
    QLabel* lblversion() const { return m_version; }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QLabel* m_version = nullptr;
    QLabel* m_status = nullptr;
    QLabel* m_shadow = nullptr;
};

// Lets events run until `seconds` have passed.
void WaitWithEvents(double seconds);

} // namespace velunta
