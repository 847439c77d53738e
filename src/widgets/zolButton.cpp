// The button's state: the setters and their rules, the drawing delay and the option
// group kept in the container.

#include "widgets/zolButton.h"

#include "core/Prompt.h"
#include "widgets/Icons.h"
#include "widgets/Logging.h"

#include <QApplication>
#include <QFileInfo>
#include <QImageReader>
#include <QTimer>

namespace velunta {

namespace {

// The hover timer polls where the pointer is; 50 ms is quick enough that leaving a
// button looks immediate, and costs nothing while no button is hovered.
constexpr int kHoverInterval = 50;

const char* const kOptCount = "zb_OptCount";

QByteArray ObjKey(int n)
{
    return "zb_Obj" + QByteArray::number(n);
}

} // namespace

QColor ResolveColor(Color c, const QPalette& pal)
{
    if (c == kNoColor)
        return {};
    if (c >= 0)
        return ToQColor(c & 0xFFFFFF);
    if ((quint32(c) & 0xFFFFFF00u) != 0x80000000u)
        return {};
    switch (quint32(c) & 0xFFu) {
    case 0x05:
        return pal.color(QPalette::Base);
    case 0x08:
        return pal.color(QPalette::WindowText);
    case 0x0D:
        return pal.color(QPalette::Highlight);
    case 0x0E:
        return pal.color(QPalette::HighlightedText);
    case 0x10:
        return pal.color(QPalette::Dark);
    case 0x11:
        return pal.color(QPalette::Disabled, QPalette::WindowText);
    case 0x12:
        return pal.color(QPalette::ButtonText);
    case 0x14:
        return pal.color(QPalette::Light);
    case 0x15:
        return pal.color(QPalette::Shadow);
    case 0x16:
        return pal.color(QPalette::Midlight);
    case 0x17:
        return pal.color(QPalette::ToolTipText);
    case 0x18:
        return pal.color(QPalette::ToolTipBase);
    default:
        return pal.color(QPalette::Button);
    }
}

zolButton::zolButton(QWidget* parent) : QAbstractButton(parent)
{
    init();
}

zolButton::zolButton(const QString& caption, QWidget* parent) : QAbstractButton(parent)
{
    init();
    setCaption(caption);
}

zolButton::~zolButton()
{
    if (m_inGroup)
        leaveGroup();
}

void zolButton::init()
{
    setMouseTracking(true);
    setFocusPolicy(Qt::StrongFocus);
    setSizePolicy(QSizePolicy::Minimum, QSizePolicy::Fixed);
    m_hoverTimer = new QTimer(this);
    m_hoverTimer->setInterval(kHoverInterval);
    connect(m_hoverTimer, &QTimer::timeout, this, &zolButton::hoverTick);
}

const QStringList& zolButton::PropertyKeys()
{
    static const QStringList keys = {
        QStringLiteral("Caption"),   QStringLiteral("CapAlign"),    QStringLiteral("CapStyle"),
        QStringLiteral("BackStyle"), QStringLiteral("Shape"),       QStringLiteral("Gradient"),
        QStringLiteral("cGradient"), QStringLiteral("cFore"),       QStringLiteral("cBack"),
        QStringLiteral("cFHover"),   QStringLiteral("cBhover"),     QStringLiteral("LockHover"),
        QStringLiteral("Font"),      QStringLiteral("Focus"),       QStringLiteral("Mode"),
        QStringLiteral("Value"),     QStringLiteral("CustomClick"), QStringLiteral("Image"),
        QStringLiteral("ImgSize"),   QStringLiteral("ImgAlign"),    QStringLiteral("Enabled"),
        QStringLiteral("mPointer"),  QStringLiteral("mIcon")};
    return keys;
}

// Setters -------------------------------------------------------------------------

void zolButton::redraw()
{
    if (m_delayFlag)
        return;
    m_dirty = true;
    update();
}

void zolButton::propertyChanged(const char* key)
{
    Q_EMIT PropertyChanged(QString::fromLatin1(key));
}

void zolButton::store(int& field, int value, int lo, int hi, const char* key)
{
    if (value < lo || value > hi)
        return;
    field = value;
    redraw();
    propertyChanged(key);
}

void zolButton::refuse(const QString& message)
{
    qCInfo(lcWidgets) << objectName() << "refused:" << message;
    if (m_prompt)
        m_prompt->MsgBox(message, vbExclamation);
    Q_EMIT Refused(message);
}

void zolButton::setCaption(const QString& caption)
{
    m_caption = caption;
    updateText();
    updateGeometry();
    redraw();
    propertyChanged("Caption");
}

void zolButton::updateText()
{
    // Qt's text carries the access key (its mnemonic becomes the shortcut) and gives
    // screen readers the name; without a caption the tooltip names the button.
    QString text = m_caption;
    text.replace(QLatin1String("||"), QLatin1String("\n"));
    setText(text);
    setAccessibleName(m_caption.isEmpty() ? toolTip() : QString());
}

void zolButton::setCaptionAlign(int align)
{
    if (align < 0 || align > 2)
        return;
    if ((m_pictureAlign == 2 || m_pictureAlign == 3) && align != 2) {
        refuse(tr("When button images are aligned top/bottom center, \r\nbutton captions can only be center "
                  "aligned"));
        return;
    }
    m_captionAlign = align;
    redraw();
    propertyChanged("CapAlign");
}

void zolButton::setCaptionStyle(int style)
{
    store(m_captionStyle, style, 0, 3, "CapStyle");
}

void zolButton::setButtonStyle(int style)
{
    if (style < 0 || style > 7)
        return;
    const bool transparentChanged = (style == 5) != (m_style == 5);
    m_style = style;
    // The transparent look lets the container show, so the outline is cut anew.
    if (transparentChanged && m_shape < 7)
        rebuildShape();
    redraw();
    propertyChanged("BackStyle");
}

void zolButton::setButtonShape(int shape)
{
    if (shape < 0 || shape > 8)
        return;
    if (shape >= 7 && m_bitmap.isNull()) {
        refuse(tr("The Picture Property must be assigned first and must be a bitmap or JPEG."));
        return;
    }
    m_shape = shape;
    rebuildShape();
    updateGeometry();
    redraw();
    propertyChanged("Shape");
}

void zolButton::setGradientMode(int mode)
{
    store(m_gradientMode, mode, 0, 4, "Gradient");
}

void zolButton::setGradientColor(Color c)
{
    store(m_gradientColor, c, INT32_MIN, INT32_MAX, "cGradient");
}

void zolButton::setForeColor(Color c)
{
    store(m_foreColor, c, INT32_MIN, INT32_MAX, "cFore");
}

Color zolButton::BackColor() const
{
    return m_backColor == kNoColor ? containerColor() : m_backColor;
}

void zolButton::setBackColor(Color c)
{
    store(m_backColor, c, INT32_MIN, INT32_MAX, "cBack");
}

void zolButton::setHoverForeColor(Color c)
{
    store(m_hoverForeColor, c, INT32_MIN, INT32_MAX, "cFHover");
}

Color zolButton::HoverBackColor() const
{
    return m_hoverBackColor == kNoColor ? BackColor() : m_hoverBackColor;
}

void zolButton::setHoverBackColor(Color c)
{
    store(m_hoverBackColor, c, INT32_MIN, INT32_MAX, "cBhover");
}

void zolButton::setHoverColorLocks(int locks)
{
    store(m_hoverLocks, locks, 0, 3, "LockHover");
}

void zolButton::setShowFocusRect(bool show)
{
    m_showFocusRect = show;
    setDefault(m_default);
    redraw();
    propertyChanged("Focus");
}

void zolButton::setMode(int mode)
{
    if (mode < 0 || mode > 2)
        return;
    if (m_mode == 2 && mode != 2)
        leaveGroup();
    const bool joining = mode == 2 && m_mode != 2;
    m_mode = mode;
    // Qt's checked state is the Value; a command button has none.
    setCheckable(mode > 0);
    if (joining)
        joinGroup();
    redraw();
    propertyChanged("Mode");
}

void zolButton::setValue(bool on)
{
    // A command button has no value to set.
    if (m_mode == 0)
        return;
    setChecked(on);
}

void zolButton::checkStateSet()
{
    applyValue(isChecked());
}

void zolButton::applyValue(bool on)
{
    if (on && m_mode == 2)
        selectInGroup();
    redraw();
    propertyChanged("Value");
}

void zolButton::setCustomClick(int how)
{
    store(m_customClick, how, 0, 2, "CustomClick");
}

QVariant zolButton::Picture() const
{
    if (!m_bitmap.isNull())
        return QVariant::fromValue(m_bitmap);
    if (!m_icon.isNull())
        return QVariant::fromValue(m_icon);
    return {};
}

void zolButton::setPicture(const QVariant& picture)
{
    QIcon icon;
    QImage bitmap;
    if (picture.canConvert<QImage>() && picture.metaType().id() != QMetaType::QString)
        bitmap = picture.value<QImage>();
    if (bitmap.isNull() && picture.metaType().id() == QMetaType::QPixmap)
        bitmap = picture.value<QPixmap>().toImage();
    if (picture.metaType().id() == QMetaType::QIcon)
        icon = picture.value<QIcon>();
    if (picture.metaType().id() == QMetaType::QString) {
        setPicture(picture.toString());
        return;
    }
    m_pictureSource.clear();
    if (!icon.isNull() && m_shape >= 7) {
        refuse(tr("Icons cannot be used for custom buttons. Only use bitmaps\r\nButton was changed to "
                  "Rectangular shaped."));
        m_shape = 0;
    }
    m_icon = bitmap.isNull() ? icon : QIcon();
    m_bitmap = bitmap;
    // A shaped button has nothing to be cut from without its picture.
    if (m_shape >= 7 && m_bitmap.isNull())
        m_shape = 0;
    rebuildShape();
    updateGeometry();
    redraw();
    propertyChanged("Image");
}

void zolButton::setPicture(const QString& nameOrPath)
{
    QVariant picture;
    if (!nameOrPath.isEmpty()) {
        const QIcon named = NamedIcon(nameOrPath);
        if (!named.isNull()) {
            picture = QVariant::fromValue(named);
        } else if (QFileInfo::exists(nameOrPath)) {
            QImageReader reader(nameOrPath);
            const QByteArray format = reader.format();
            if (format == "ico" || format == "svg" || format == "cur")
                picture = QVariant::fromValue(QIcon(nameOrPath));
            else
                picture = QVariant::fromValue(reader.read());
        }
        if (!picture.isValid())
            qCWarning(lcWidgets) << "no picture" << nameOrPath;
    }
    setPicture(picture);
    if (picture.isValid())
        m_pictureSource = nameOrPath;
}

void zolButton::setPictureSize(int step)
{
    if (step < 0 || step > 4)
        return;
    if (m_shape >= 7) {
        refuse(tr("The picture size cannot be changed for Shaped buttons"));
        return;
    }
    m_pictureSize = step;
    updateGeometry();
    redraw();
    propertyChanged("ImgSize");
}

int zolButton::picturePixels() const
{
    return 16 + 8 * m_pictureSize;
}

void zolButton::setPictureAlign(int align)
{
    if (align < 0 || align > 4)
        return;
    m_pictureAlign = align;
    updateGeometry();
    redraw();
    propertyChanged("ImgAlign");
}

void zolButton::setMousePointer(int pointer)
{
    m_mousePointer = pointer;
    updateCursor();
    propertyChanged("mPointer");
}

void zolButton::setMouseIcon(const QImage& icon)
{
    m_mouseIcon = icon;
    updateCursor();
    propertyChanged("mIcon");
}

void zolButton::updateCursor()
{
    static const Qt::CursorShape kShapes[16] = {
        Qt::ArrowCursor,     Qt::ArrowCursor,   Qt::CrossCursor,     Qt::IBeamCursor,
        Qt::ArrowCursor,     Qt::SizeAllCursor, Qt::SizeBDiagCursor, Qt::SizeVerCursor,
        Qt::SizeFDiagCursor, Qt::SizeHorCursor, Qt::UpArrowCursor,   Qt::WaitCursor,
        Qt::ForbiddenCursor, Qt::BusyCursor,    Qt::WhatsThisCursor, Qt::SizeAllCursor};
    if (m_mousePointer == 99 && !m_mouseIcon.isNull())
        setCursor(QCursor(QPixmap::fromImage(m_mouseIcon)));
    else if (m_mousePointer > 0 && m_mousePointer < 16)
        setCursor(kShapes[m_mousePointer]);
    else
        unsetCursor();
}

void zolButton::setDefault(bool on)
{
    const bool was = m_stateFlags & kDefaultBit;
    // Shown as the default only with its focus rectangle allowed.
    if (on && m_showFocusRect)
        m_stateFlags |= kDefaultBit;
    else
        m_stateFlags &= ~kDefaultBit;
    m_default = on;
    // The default button shows its focus rectangle only while no other button has the focus.
    if (on && !m_focusWatch)
        m_focusWatch = connect(qApp, &QApplication::focusChanged, this, [this] { redraw(); });
    else if (!on && m_focusWatch)
        disconnect(m_focusWatch), m_focusWatch = {};
    if (QWidget* w = window(); w && w != this) {
        w->removeEventFilter(this);
        if (on)
            w->installEventFilter(this);
    }
    if (was != bool(m_stateFlags & kDefaultBit))
        redraw();
}

void zolButton::Refresh()
{
    m_delayFlag = false;
    m_dirty = true;
    repaint();
}

void zolButton::ResetDefaultColors()
{
    m_gradientColor = kSysButtonFace;
    m_foreColor = kSysButtonText;
    m_backColor = kNoColor;
    m_hoverForeColor = kSysButtonText;
    m_hoverBackColor = kNoColor;
    redraw();
}

void zolButton::DelayDrawing(bool delay)
{
    if (delay) {
        m_delayFlag = true;
        return;
    }
    Refresh();
}

Color zolButton::containerColor() const
{
    const QWidget* c = parentWidget();
    return FromQColor(c ? c->palette().color(c->backgroundRole()) : palette().color(QPalette::Button));
}

// The option group ------------------------------------------------------------------

QList<zolButton*> zolButton::OptionGroup(const QWidget* container)
{
    QList<zolButton*> group;
    if (!container)
        return group;
    const int count = container->property(kOptCount).toInt();
    for (int n = 1; n <= count; ++n)
        group.append(static_cast<zolButton*>(container->property(ObjKey(n)).value<QObject*>()));
    return group;
}

bool zolButton::OptionGroupHasValue(const QWidget* container)
{
    for (zolButton* b : OptionGroup(container))
        if (b && b->Value())
            return true;
    return false;
}

void zolButton::joinGroup()
{
    QWidget* container = parentWidget();
    if (m_inGroup || !container)
        return;
    const int count = container->property(kOptCount).toInt() + 1;
    container->setProperty(kOptCount, count);
    container->setProperty(ObjKey(count), QVariant::fromValue<QObject*>(this));
    m_inGroup = true;
    m_groupContainer = container;
}

void zolButton::leaveGroup()
{
    if (!m_inGroup)
        return;
    m_inGroup = false;
    QWidget* container = m_groupContainer;
    m_groupContainer = nullptr;
    if (!container)
        return;
    const int count = container->property(kOptCount).toInt();
    int n = 1;
    while (n <= count && container->property(ObjKey(n)).value<QObject*>() != this)
        ++n;
    if (n > count)
        return;
    for (; n < count; ++n)
        container->setProperty(ObjKey(n), container->property(ObjKey(n + 1)));
    container->setProperty(ObjKey(count), QVariant());
    container->setProperty(kOptCount, count == 1 ? QVariant() : QVariant(count - 1));
}

void zolButton::selectInGroup()
{
    if (!m_inGroup)
        return;
    for (zolButton* other : OptionGroup(m_groupContainer))
        if (other && other != this)
            other->setValue(false);
}

} // namespace velunta
