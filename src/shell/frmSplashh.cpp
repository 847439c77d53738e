#include "shell/frmSplashh.h"

#include "widgets/Icons.h"
#include "widgets/PanelLooks.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QLabel>
#include <QPainter>
#include <QScreen>
#include <QThread>

namespace velunta {

frmSplashh::frmSplashh(QWidget* parent) : QWidget(parent, Qt::SplashScreen | Qt::FramelessWindowHint)
{
    setObjectName(QStringLiteral("frmSplashh"));
    setFixedSize(440, 250);
    // The splash is a little see-through: alpha 220 of 255.
    setWindowOpacity(220.0 / 255.0);

    auto* title = new QLabel(QStringLiteral("Velunta"), this);
    QFont big = title->font();
    big.setPointSize(30);
    big.setBold(true);
    title->setFont(big);
    InkLook(title, QColor(30, 60, 120));
    title->setGeometry(150, 40, 270, 56);

    auto* subtitle = new QLabel(tr("Paint for everyone"), this);
    InkLook(subtitle, QColor(60, 90, 150));
    subtitle->setGeometry(152, 96, 260, 20);

    m_version = new QLabel(QStringLiteral("v" VELUNTA_VERSION), this);
    m_version->setObjectName(QStringLiteral("lblversion"));
    InkLook(m_version, QColor(60, 90, 150));
    m_version->setGeometry(152, 118, 200, 20);

    m_shadow = new QLabel(this);
    m_shadow->setObjectName(QStringLiteral("LblShadow"));
    InkLook(m_shadow, QColor(255, 255, 255, 200));
    m_shadow->setGeometry(25, 206, 400, 22);
    m_status = new QLabel(this);
    m_status->setObjectName(QStringLiteral("lblStatus"));
    InkLook(m_status, QColor(20, 40, 90));
    m_status->setGeometry(24, 205, 400, 22);
    setStatus(tr("Loading..."));

    if (QScreen* screen = QGuiApplication::primaryScreen())
        move(screen->geometry().center() - rect().center());
}

void frmSplashh::setStatus(const QString& text)
{
    m_status->setText(text);
    m_shadow->setText(text);
    repaint();
}

QString frmSplashh::status() const
{
    return m_status->text();
}

void frmSplashh::paintEvent(QPaintEvent*)
{
    QPainter p(this);
    QLinearGradient g(0, 0, 0, height());
    g.setColorAt(0, QColor(220, 245, 255));
    g.setColorAt(1, QColor(185, 214, 249));
    p.fillRect(rect(), g);
    p.setPen(kFrameBlue);
    p.drawRect(rect().adjusted(0, 0, -1, -1));
    p.drawPixmap(20, 40, IconPixmap(QStringLiteral("app"), 112, devicePixelRatioF()));
}

void WaitWithEvents(double seconds)
{
    QElapsedTimer timer;
    timer.start();
    while (timer.elapsed() < seconds * 1000.0) {
        QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
        QThread::msleep(10);
    }
}

} // namespace velunta
