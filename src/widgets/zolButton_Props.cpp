// The button as a key-value map: what a window's description of its buttons holds.
// Reading takes every key (a missing or bad one gives the default), then applies
// the rules that the setters would; writing leaves the defaults out.

#include "widgets/zolButton.h"

#include <QFont>
#include <QHash>

namespace velunta {

namespace {

using Bag = QHash<QString, QVariant>;

QVariant Get(const Bag& bag, const char* key)
{
    return bag.value(QString::fromLatin1(key).toLower());
}

int IntOf(const QVariant& v, int fallback, int lo, int hi)
{
    bool ok = false;
    const int n = v.toInt(&ok);
    return ok && n >= lo && n <= hi ? n : fallback;
}

bool BoolOf(const QVariant& v, bool fallback)
{
    if (!v.isValid())
        return fallback;
    if (v.metaType().id() == QMetaType::QString) {
        const QString t = v.toString().trimmed().toLower();
        if (t == QLatin1String("true") || t == QLatin1String("-1") || t == QLatin1String("1"))
            return true;
        if (t == QLatin1String("false") || t == QLatin1String("0"))
            return false;
        return fallback;
    }
    bool ok = false;
    const int n = v.toInt(&ok);
    return ok ? n != 0 : fallback;
}

// A colour as a number (system colours have the top bit set), "&H8000000F&", or "#RRGGBB".
Color ColorOf(const QVariant& v, Color fallback)
{
    if (!v.isValid())
        return fallback;
    if (v.metaType().id() == QMetaType::QString) {
        QString t = v.toString().trimmed();
        bool ok = false;
        if (t.startsWith(u'#') && t.size() == 7) {
            const uint rgb = t.mid(1).toUInt(&ok, 16);
            return ok ? RGB(int(rgb >> 16), int((rgb >> 8) & 0xFF), int(rgb & 0xFF)) : fallback;
        }
        if (t.startsWith(QLatin1String("&H"), Qt::CaseInsensitive)) {
            if (t.endsWith(u'&'))
                t.chop(1);
            const uint value = t.mid(2).toUInt(&ok, 16);
            return ok ? Color(value) : fallback;
        }
        const qlonglong n = t.toLongLong(&ok);
        return ok && n >= -1 && n <= 0xFFFFFFFFLL ? Color(quint32(n)) : fallback;
    }
    bool ok = false;
    const qlonglong n = v.toLongLong(&ok);
    return ok && n >= INT32_MIN && n <= 0xFFFFFFFFLL ? Color(quint32(n)) : fallback;
}

} // namespace

QVariant zolButton::pictureFromBag(const QVariant& v, QString& source)
{
    source.clear();
    if (v.metaType().id() == QMetaType::QString) {
        source = v.toString();
        return {};
    }
    if (v.metaType().id() == QMetaType::QImage || v.metaType().id() == QMetaType::QIcon)
        return v;
    if (v.metaType().id() == QMetaType::QPixmap)
        return QVariant::fromValue(v.value<QPixmap>().toImage());
    return {};
}

void zolButton::ReadProperties(const QVariantMap& map)
{
    Bag bag;
    for (auto it = map.cbegin(); it != map.cend(); ++it)
        bag.insert(it.key().toLower(), it.value());

    m_caption = Get(bag, "Caption").toString();
    m_captionAlign = IntOf(Get(bag, "CapAlign"), 2, 0, 2);
    m_captionStyle = IntOf(Get(bag, "CapStyle"), 0, 0, 3);
    m_style = IntOf(Get(bag, "BackStyle"), 0, 0, 7);
    m_shape = IntOf(Get(bag, "Shape"), 0, 0, 8);
    m_gradientMode = IntOf(Get(bag, "Gradient"), 0, 0, 4);
    m_gradientColor = ColorOf(Get(bag, "cGradient"), kSysButtonFace);
    m_foreColor = ColorOf(Get(bag, "cFore"), kSysButtonText);
    m_backColor = ColorOf(Get(bag, "cBack"), kNoColor);
    m_hoverForeColor = ColorOf(Get(bag, "cFHover"), kSysButtonText);
    m_hoverBackColor = ColorOf(Get(bag, "cBHover"), kNoColor);
    m_hoverLocks = IntOf(Get(bag, "LockHover"), 0, 0, 3);
    const QVariant font = Get(bag, "Font");
    QFont face;
    if (font.metaType().id() == QMetaType::QFont)
        setFont(font.value<QFont>());
    else if (font.metaType().id() == QMetaType::QString && face.fromString(font.toString()))
        setFont(face);
    else
        setFont(QFont()); // the container's
    m_showFocusRect = BoolOf(Get(bag, "Focus"), true);
    const int mode = IntOf(Get(bag, "Mode"), 0, 0, 2);
    const bool value = BoolOf(Get(bag, "Value"), false);
    m_customClick = IntOf(Get(bag, "CustomClick"), 0, 0, 2);
    QString source;
    QVariant picture = pictureFromBag(Get(bag, "Image"), source);
    m_pictureSize = IntOf(Get(bag, "ImgSize"), 0, 0, 4);
    m_pictureAlign = IntOf(Get(bag, "ImgAlign"), 0, 0, 4);
    const bool enabled = BoolOf(Get(bag, "Enabled"), true);
    m_mousePointer = IntOf(Get(bag, "mPointer"), 0, 0, 99);
    const QVariant icon = Get(bag, "mIcon");
    m_mouseIcon = icon.metaType().id() == QMetaType::QImage    ? icon.value<QImage>()
                  : icon.metaType().id() == QMetaType::QString ? QImage(icon.toString())
                                                               : QImage();

    // The picture goes through its setter, with the shape kept out of the way until
    // it is there: a shape cut from a picture is read before the picture.
    const int shape = m_shape;
    m_shape = 0;
    if (!source.isEmpty())
        setPicture(source);
    else
        setPicture(picture);
    if (shape >= 7 && m_bitmap.isNull())
        refuse(tr("The Picture Property must be assigned first and must be a bitmap or JPEG."));
    else
        m_shape = shape;
    if ((m_pictureAlign == 2 || m_pictureAlign == 3) && m_captionAlign != 2) {
        refuse(tr("When button images are aligned top/bottom center, \r\nbutton captions can only be center "
                  "aligned"));
        m_captionAlign = 2;
    }

    if (m_mode == 2 && mode != 2)
        leaveGroup();
    m_mode = mode;
    setCheckable(mode > 0);
    if (mode == 2)
        joinGroup();
    if (mode > 0)
        setChecked(value);
    setEnabled(enabled);
    setDefault(m_default);
    updateText();
    updateCursor();
    rebuildShape();
    updateGeometry();
    redraw();
}

QVariantMap zolButton::WriteProperties() const
{
    QVariantMap bag;
    auto put = [&](const char* key, const QVariant& value, const QVariant& fallback) {
        if (value != fallback)
            bag.insert(QString::fromLatin1(key), value);
    };
    put("Caption", m_caption, QString());
    put("CapAlign", m_captionAlign, 2);
    put("CapStyle", m_captionStyle, 0);
    put("BackStyle", m_style, 0);
    put("Shape", m_shape, 0);
    put("Gradient", m_gradientMode, 0);
    put("cGradient", m_gradientColor, kSysButtonFace);
    put("cFore", m_foreColor, kSysButtonText);
    put("cBack", m_backColor, kNoColor);
    put("cFHover", m_hoverForeColor, kSysButtonText);
    // Written with a small h, as the program always has; read in any case.
    put("cBhover", m_hoverBackColor, kNoColor);
    put("LockHover", m_hoverLocks, 0);
    if (testAttribute(Qt::WA_SetFont))
        bag.insert(QStringLiteral("Font"), font().toString());
    put("Focus", m_showFocusRect, true);
    put("Mode", m_mode, 0);
    put("Value", isChecked(), false);
    put("CustomClick", m_customClick, 0);
    if (!m_pictureSource.isEmpty())
        bag.insert(QStringLiteral("Image"), m_pictureSource);
    else if (hasPicture())
        bag.insert(QStringLiteral("Image"), Picture());
    put("ImgSize", m_pictureSize, 0);
    put("ImgAlign", m_pictureAlign, 0);
    put("Enabled", !testAttribute(Qt::WA_ForceDisabled), true);
    put("mPointer", m_mousePointer, 0);
    if (!m_mouseIcon.isNull())
        bag.insert(QStringLiteral("mIcon"), m_mouseIcon);
    return bag;
}

} // namespace velunta
