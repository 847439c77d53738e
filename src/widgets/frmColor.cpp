#include "widgets/frmColor.h"

#include "widgets/ButtonLooks.h"
#include "widgets/ColorFields.h"
#include "widgets/ColorMath.h"
#include "widgets/Icons.h"
#include "widgets/StripParts.h"
#include "widgets/zolButton.h"

#include <QApplication>
#include <QDialogButtonBox>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMouseEvent>
#include <QSpinBox>
#include <QVBoxLayout>

#include <cmath>

namespace velunta {

namespace {

constexpr int kRecentCount = 12;

// The colours confirmed in this run, shared by every caller of the dialog.
QVector<Color>& RecentStore()
{
    static QVector<Color> recent;
    return recent;
}

const QString kFieldStyle = QStringLiteral("QLineEdit { font-family: monospace; }");
const QString kBadFieldStyle = QStringLiteral(
    "QLineEdit { font-family: monospace; border: 2px solid rgb(200,30,30); background: rgb(255,235,235); }");

} // namespace

frmColor::frmColor(QWidget* parent) : QDialog(parent)
{
    setObjectName(QStringLiteral("frmColor"));
    setWindowTitle(tr("True Color Palette"));
    setStyleSheet(QStringLiteral("#frmColor { background: rgb(220,245,255); }"));

    auto* outer = new QVBoxLayout(this);
    auto* top = new QHBoxLayout;
    top->setSpacing(8);
    m_field = new SatValField(this);
    m_field->setFixedSize(222, 222);
    top->addWidget(m_field);
    m_hue = new HueStrip(this);
    m_hue->setFixedHeight(222);
    top->addWidget(m_hue);
    connect(m_field, &SatValField::changed, this, [this](double s, double v) { setHsv(m_h, s, v); });
    connect(m_hue, &HueStrip::changed, this, [this](double h) { setHsv(h, m_s, m_v); });

    auto* side = new QVBoxLayout;
    side->setSpacing(6);
    auto* samples = new QGridLayout;
    samples->setHorizontalSpacing(0);
    samples->addWidget(new QLabel(tr("Old"), this), 0, 0, Qt::AlignHCenter);
    samples->addWidget(new QLabel(tr("New"), this), 0, 1, Qt::AlignHCenter);
    m_oldSample = new ColorSample(this);
    m_oldSample->setFixedSize(78, 48);
    m_oldSample->setToolTip(tr("The colour you started with: click to go back to it"));
    m_oldSample->setCursor(Qt::PointingHandCursor);
    connect(m_oldSample, &ColorSample::pressed, this, [this](int) { setRgb(m_old); });
    m_newSample = new ColorSample(this);
    m_newSample->setFixedSize(78, 48);
    m_newSample->setToolTip(tr("The colour you are making"));
    samples->addWidget(m_oldSample, 1, 0);
    samples->addWidget(m_newSample, 1, 1);
    side->addLayout(samples);

    auto* numbers = new QGridLayout;
    numbers->setHorizontalSpacing(6);
    const char* const names[6] = {"R:", "G:", "B:", "H:", "S:", "V:"};
    const char* const tips[6] = {
        QT_TR_NOOP("Red, 0 to 255"),          QT_TR_NOOP("Green, 0 to 255"),
        QT_TR_NOOP("Blue, 0 to 255"),         QT_TR_NOOP("Hue, 0 to 359 degrees"),
        QT_TR_NOOP("Saturation, 0 to 100 %"), QT_TR_NOOP("Value (brightness), 0 to 100 %")};
    for (int i = 0; i < 6; ++i) {
        m_spin[i] = new QSpinBox(this);
        m_spin[i]->setObjectName(QString::fromLatin1(names[i]).left(1));
        m_spin[i]->setRange(0, i < 3 ? 255 : (i == 3 ? 359 : 100));
        m_spin[i]->setSuffix(i == 3 ? QStringLiteral("\u00B0") : (i > 3 ? QStringLiteral(" %") : QString()));
        m_spin[i]->setWrapping(i == 3);
        m_spin[i]->setToolTip(tr(tips[i]));
        m_spin[i]->setMinimumWidth(68);
        numbers->addWidget(new QLabel(QString::fromLatin1(names[i]), this), i % 3, i < 3 ? 0 : 2);
        numbers->addWidget(m_spin[i], i % 3, i < 3 ? 1 : 3);
        connect(m_spin[i], &QSpinBox::valueChanged, this, [this, i] {
            if (m_showing)
                return;
            if (i < 3)
                setRgb(RGB(m_spin[0]->value(), m_spin[1]->value(), m_spin[2]->value()));
            else
                setHsv(m_spin[3]->value(), m_spin[4]->value() / 100.0, m_spin[5]->value() / 100.0);
        });
    }
    numbers->addWidget(new QLabel(tr("HTML:"), this), 3, 0);
    m_html = new QLineEdit(this);
    m_html->setObjectName(QStringLiteral("html"));
    m_html->setStyleSheet(kFieldStyle);
    m_html->setToolTip(tr("The colour as # and six hex digits: red, green, blue"));
    m_html->setMaxLength(16);
    m_html->installEventFilter(this);
    connect(m_html, &QLineEdit::textEdited, this, [this](const QString& text) {
        // A complete colour takes effect while typing; anything else waits for Enter.
        const Color c = ParseHTMLColor(text);
        if (c >= 0) {
            const int cursor = m_html->cursorPosition();
            setRgb(c);
            m_html->setText(text);
            m_html->setCursorPosition(cursor);
        }
    });
    numbers->addWidget(m_html, 3, 1, 1, 3);
    side->addLayout(numbers);

    m_dropper = new zolButton(tr("Pick from a window"), this);
    m_dropper->setPicture(NamedIcon(QStringLiteral("eyedropper-small")));
    m_dropper->setToolTip(tr("Then click anywhere in Velunta to take the colour there (Esc to stop)"));
    DialogLook(m_dropper);
    connect(m_dropper, &zolButton::Click, this, &frmColor::startPicking);
    side->addWidget(m_dropper);
    m_message = new QLabel(this);
    m_message->setWordWrap(true);
    m_message->setMinimumHeight(34);
    m_message->setAlignment(Qt::AlignTop | Qt::AlignLeft);
    side->addWidget(m_message);
    side->addStretch(1);
    top->addLayout(side);
    outer->addLayout(top);

    auto* recentRow = new QHBoxLayout;
    recentRow->setSpacing(3);
    recentRow->addWidget(new QLabel(tr("Recent:"), this));
    for (int i = 0; i < kRecentCount; ++i) {
        m_recent[i] = new ColorSample(this);
        m_recent[i]->setFixedSize(20, 20);
        m_recent[i]->setCursor(Qt::PointingHandCursor);
        connect(m_recent[i], &ColorSample::pressed, this, [this, i](int) { setRgb(m_recent[i]->color()); });
        recentRow->addWidget(m_recent[i]);
    }
    m_noRecent = new QLabel(tr("(the colours you choose will show here)"), this);
    m_noRecent->setStyleSheet(QStringLiteral("QLabel { color: rgb(90,110,140); }"));
    recentRow->addWidget(m_noRecent);
    recentRow->addStretch(1);
    outer->addLayout(recentRow);

    auto* buttons = new QDialogButtonBox(this);
    AddDialogButton(buttons, tr("OK"), QDialogButtonBox::AcceptRole);
    AddDialogButton(buttons, tr("Cancel"), QDialogButtonBox::RejectRole);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    outer->addWidget(buttons);

    showRecent();
    setColor(0);
}

void frmColor::setColor(Color c)
{
    m_old = std::max(c, 0) & 0xFFFFFF;
    m_oldSample->setColor(m_old);
    setRgb(m_old);
}

Color frmColor::pick(Color initial, QWidget* parent)
{
    frmColor dialog(parent);
    dialog.setColor(initial);
    return dialog.exec() == QDialog::Accepted ? dialog.color() : kNoColor;
}

QVector<Color> frmColor::recentColors()
{
    return RecentStore();
}

void frmColor::setRgb(Color c)
{
    m_color = c;
    float h = 0, s = 0, v = 0;
    ToQColor(c).getHsvF(&h, &s, &v);
    if (h >= 0)
        m_h = h * 360.0;
    m_s = s;
    m_v = v;
    showState();
}

void frmColor::setHsv(double h, double s, double v)
{
    m_h = h;
    m_s = s;
    m_v = v;
    m_color = FromQRgb(HsvToRgb(h, s, v));
    showState();
}

void frmColor::showState()
{
    m_showing = true;
    m_field->setHue(m_h);
    m_field->setSatVal(m_s, m_v);
    m_hue->setHue(m_h);
    const int values[6] = {ColorRed(m_color),           ColorGreen(m_color),
                           ColorBlue(m_color),          int(std::lround(m_h)) % 360,
                           int(std::lround(m_s * 100)), int(std::lround(m_v * 100))};
    for (int i = 0; i < 6; ++i)
        m_spin[i]->setValue(values[i]);
    m_html->setText(ColorToHTML(m_color));
    m_html->setStyleSheet(kFieldStyle);
    if (!m_picking)
        m_message->clear();
    m_newSample->setColor(m_color);
    m_showing = false;
}

bool frmColor::takeHtml()
{
    const Color c = ParseHTMLColor(m_html->text());
    if (c < 0) {
        m_html->setStyleSheet(kBadFieldStyle);
        m_message->setStyleSheet(QStringLiteral("QLabel { color: rgb(180,0,0); }"));
        m_message->setText(tr("\"%1\" is not a colour. Type # and six hex digits, like #FF8000.")
                               .arg(m_html->text().trimmed()));
        return false;
    }
    setRgb(c);
    return true;
}

bool frmColor::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == m_html) {
        if (event->type() == QEvent::KeyPress) {
            const int key = static_cast<QKeyEvent*>(event)->key();
            // A bad text keeps the dialog open; a good one is taken and Enter goes on to OK.
            if ((key == Qt::Key_Return || key == Qt::Key_Enter) && !takeHtml())
                return true;
        } else if (event->type() == QEvent::FocusOut && m_html->text() != ColorToHTML(m_color)) {
            takeHtml();
        }
    }
    return QDialog::eventFilter(watched, event);
}

void frmColor::done(int result)
{
    if (m_picking)
        stopPicking();
    if (result == QDialog::Accepted) {
        QVector<Color>& recent = RecentStore();
        recent.removeAll(m_color);
        recent.prepend(m_color);
        if (recent.size() > kRecentCount)
            recent.resize(kRecentCount);
    }
    QDialog::done(result);
}

void frmColor::showRecent()
{
    const QVector<Color>& recent = RecentStore();
    m_noRecent->setVisible(recent.isEmpty());
    for (int i = 0; i < kRecentCount; ++i) {
        m_recent[i]->setVisible(i < recent.size());
        if (i < recent.size()) {
            m_recent[i]->setColor(recent[i]);
            m_recent[i]->setToolTip(ColorToHTML(recent[i]));
        }
    }
}

// --- The eyedropper

Color frmColor::ProgramColorAt(const QPoint& globalPos)
{
    QWidget* top = QApplication::topLevelAt(globalPos);
    if (!top)
        return kNoColor;
    const QPixmap shot = top->grab(QRect(top->mapFromGlobal(globalPos), QSize(1, 1)));
    const QImage pixel = shot.toImage().convertToFormat(QImage::Format_RGB32);
    if (pixel.isNull())
        return kNoColor;
    return FromQRgb(reinterpret_cast<const QRgb*>(pixel.constScanLine(0))[0]);
}

void frmColor::startPicking()
{
    m_picking = true;
    setMouseTracking(true);
    grabMouse(Qt::CrossCursor);
    grabKeyboard();
    m_message->setStyleSheet(QStringLiteral("QLabel { color: rgb(20,50,110); }"));
    m_message->setText(tr("Click anywhere in Velunta to take the colour there. Esc stops."));
}

void frmColor::stopPicking()
{
    m_picking = false;
    releaseMouse();
    releaseKeyboard();
    setMouseTracking(false);
    m_message->clear();
}

void frmColor::mouseMoveEvent(QMouseEvent* e)
{
    if (!m_picking)
        return QDialog::mouseMoveEvent(e);
    // The new sample previews what a click would take.
    const Color c = ProgramColorAt(e->globalPosition().toPoint());
    m_newSample->setColor(c >= 0 ? c : m_color);
}

void frmColor::mousePressEvent(QMouseEvent* e)
{
    if (!m_picking)
        return QDialog::mousePressEvent(e);
    const Color c = e->button() == Qt::LeftButton ? ProgramColorAt(e->globalPosition().toPoint()) : kNoColor;
    stopPicking();
    if (c >= 0)
        setRgb(c);
    else
        showState();
}

void frmColor::keyPressEvent(QKeyEvent* e)
{
    if (m_picking && e->key() == Qt::Key_Escape) {
        stopPicking();
        showState();
        return;
    }
    QDialog::keyPressEvent(e);
}

} // namespace velunta
