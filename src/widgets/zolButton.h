#pragma once
// zolButton: the program's own button. One control serves as a command button, a
// check button or an option button, in eight looks (ButtonStyle) and nine shapes
// (ButtonShape), with gradient fills, hover colours that follow the pointer, a
// picture, a caption of several lines, and shapes cut out of a bitmap.
//
// Usage:
//
//     auto* ok = new zolButton(this);
//     ok->setCaption(tr("&Apply||to all"));   // "&" access key, "&&" an ampersand, "||" a new line
//     ok->setPicture(NamedIcon("cmd-02"));     // an icon (drawn crisp at any scale) or a bitmap
//     ok->setPictureSize(1);                   // 0..4: 16, 24, 32, 40, 48 pixels
//     ok->setButtonStyle(4);                   // see the table below
//     ok->setHoverBackColor(RGB(255, 231, 162));
//     connect(ok, &zolButton::Click, this, ...);
//
// Colours are the program's packed colours (R + 256 G + 65536 B). A value with the
// top bit set is a system colour, resolved from the button's palette:
// kSysButtonFace (&H8000000F), kSysButtonText (&H80000012), kSysButtonShadow, ...
//
// ButtonStyle, the look of the frame:
//   0 Standard 3D  raised, sunken when pressed
//   1 Flat         one dark line
//   2 Java         dark line with a white inner line, darker fill when pressed
//   3 Hot track    no frame until the pointer comes; thin raised frame, sunken when pressed
//   4 Office       frame in the highlight colour on hover; hover fill
//   5 Transparent  no fill of its own: the container shows through (or the hover fill)
//   6 Etched       an etched groove, a bump when pressed
//   7 Plastic      a shine over the upper half and a soft dark line
// ButtonShape: 0 rectangle; 1, 2, 3 rectangle with a picture box (raised, sunken,
// split by a line); 4 ellipse; 5 octagon; 6 arrow to the right; 7 and 8 cut from
// the picture (a bitmap): every pixel of the colour of its top-left pixel is cut
// away, 7 drawn with the frame of the style, 8 the picture alone. The button takes
// the picture's size in shapes 7 and 8.
// GradientMode: 0 none; between BackColor and GradientColor 1 left to right,
// 2 top to bottom, 3 diagonally from the top left, 4 from both edges to the middle.
// Mode: 0 command, 1 check (Value flips on each click), 2 option: the option
// buttons of one container form a group, and setting one on sets the others off.
// PictureAlign: 0 left of the caption, 1 right, 2 top centre, 3 bottom centre,
// 4 centre behind the caption. CaptionAlign: 0 left, 1 right, 2 centre.
// CaptionStyle: 0 plain, 1 raised, 2 sunken, 3 with a shadow.
// CustomClick (shapes 7 and 8): how a press shows: 0 the picture moves down a
// pixel, 1 it darkens, 2 both.
//
// Click() is raised for a left click, Space, and the access key, after Value has
// changed; an option button that is already on, clicked again, raises nothing.
// QAbstractButton's clicked() is emitted along with every Click(), so the control
// fits code written for Qt's buttons; isChecked() is Value.
//
// ReadProperties/WriteProperties describe a button as a key-value map with the keys
// of kPropertyKeys ("Caption", "CapAlign", ..., "cBhover"); defaults are left out
// when writing, keys are read without regard to case, and an "Image" may be given
// by the name of a program icon (NamedIcon) or the path of a picture file.

#include "core/Color.h"

#include <QAbstractButton>
#include <QIcon>
#include <QImage>
#include <QPixmap>
#include <QPointer>
#include <QRegion>
#include <QVariantMap>

class QTimer;

namespace velunta {

class Prompt;

// System colours, as the high-bit values of the packed form.
inline constexpr Color kSysHighlight = Color(0x8000000D);
inline constexpr Color kSysButtonFace = Color(0x8000000F);
inline constexpr Color kSysButtonShadow = Color(0x80000010);
inline constexpr Color kSysGrayText = Color(0x80000011);
inline constexpr Color kSysButtonText = Color(0x80000012);
inline constexpr Color kSysButtonHighlight = Color(0x80000014);
// A packed colour as Qt shows it; system colours come from the palette.
QColor ResolveColor(Color c, const QPalette& palette);

class zolButton : public QAbstractButton {
    Q_OBJECT
    Q_PROPERTY(QString Caption READ Caption WRITE setCaption)
    Q_PROPERTY(int CaptionAlign READ CaptionAlign WRITE setCaptionAlign)
    Q_PROPERTY(int CaptionStyle READ CaptionStyle WRITE setCaptionStyle)
    Q_PROPERTY(int ButtonStyle READ ButtonStyle WRITE setButtonStyle)
    Q_PROPERTY(int ButtonShape READ ButtonShape WRITE setButtonShape)
    Q_PROPERTY(int GradientMode READ GradientMode WRITE setGradientMode)
    Q_PROPERTY(int GradientColor READ GradientColor WRITE setGradientColor)
    Q_PROPERTY(int ForeColor READ ForeColor WRITE setForeColor)
    Q_PROPERTY(int BackColor READ BackColor WRITE setBackColor)
    Q_PROPERTY(int HoverForeColor READ HoverForeColor WRITE setHoverForeColor)
    Q_PROPERTY(int HoverBackColor READ HoverBackColor WRITE setHoverBackColor)
    Q_PROPERTY(int HoverColorLocks READ HoverColorLocks WRITE setHoverColorLocks)
    Q_PROPERTY(bool ShowFocusRect READ ShowFocusRect WRITE setShowFocusRect)
    Q_PROPERTY(int Mode READ Mode WRITE setMode)
    Q_PROPERTY(bool Value READ Value WRITE setValue)
    Q_PROPERTY(int CustomClick READ CustomClick WRITE setCustomClick)
    Q_PROPERTY(QVariant Picture READ Picture WRITE setPicture)
    Q_PROPERTY(int PictureSize READ PictureSize WRITE setPictureSize)
    Q_PROPERTY(int PictureAlign READ PictureAlign WRITE setPictureAlign)
    Q_PROPERTY(int MousePointer READ MousePointer WRITE setMousePointer)
    Q_PROPERTY(bool Default READ isDefault WRITE setDefault)

public:
    explicit zolButton(QWidget* parent = nullptr);
    zolButton(const QString& caption, QWidget* parent);
    ~zolButton() override;

    // The keys of the property map, in the order they are read.
    static const QStringList& PropertyKeys();

    QString Caption() const { return m_caption; }
    void setCaption(const QString& caption);
    int CaptionAlign() const { return m_captionAlign; }
    void setCaptionAlign(int align);
    int CaptionStyle() const { return m_captionStyle; }
    void setCaptionStyle(int style);
    int ButtonStyle() const { return m_style; }
    void setButtonStyle(int style);
    int ButtonShape() const { return m_shape; }
    void setButtonShape(int shape);
    int GradientMode() const { return m_gradientMode; }
    void setGradientMode(int mode);
    Color GradientColor() const { return m_gradientColor; }
    void setGradientColor(Color c);
    Color ForeColor() const { return m_foreColor; }
    void setForeColor(Color c);
    // Until it is set, BackColor is the container's colour and follows it.
    Color BackColor() const;
    void setBackColor(Color c);
    Color HoverForeColor() const { return m_hoverForeColor; }
    void setHoverForeColor(Color c);
    // Until it is set, the hover back colour is BackColor.
    Color HoverBackColor() const;
    void setHoverBackColor(Color c);
    // Bit 0 keeps the back colour, bit 1 the fore colour, while the pointer is over.
    int HoverColorLocks() const { return m_hoverLocks; }
    void setHoverColorLocks(int locks);
    bool ShowFocusRect() const { return m_showFocusRect; }
    void setShowFocusRect(bool show);
    int Mode() const { return m_mode; }
    void setMode(int mode);
    bool Value() const { return isChecked(); }
    void setValue(bool on);
    int CustomClick() const { return m_customClick; }
    void setCustomClick(int how);

    // A QIcon, a QImage, a QPixmap or nothing.
    QVariant Picture() const;
    void setPicture(const QVariant& picture);
    void setPicture(const QIcon& icon) { setPicture(QVariant::fromValue(icon)); }
    void setPicture(const QImage& bitmap) { setPicture(QVariant::fromValue(bitmap)); }
    void setPicture(const QPixmap& bitmap) { setPicture(QVariant::fromValue(bitmap.toImage())); }
    // An icon of the program by name, or the path of a picture file.
    void setPicture(const QString& nameOrPath);
    bool hasPicture() const { return !m_icon.isNull() || !m_bitmap.isNull(); }
    // The step 0..4 and the pixels it stands for.
    int PictureSize() const { return m_pictureSize; }
    void setPictureSize(int step);
    int picturePixels() const;
    int PictureAlign() const { return m_pictureAlign; }
    void setPictureAlign(int align);
    // 0 default, 1 arrow, 2 cross, 3 I-beam, 5 size all, 6..9 the sizing arrows,
    // 10 up arrow, 11 hourglass, 12 no drop, 13 arrow and hourglass, 14 what's this,
    // 15 size all, 99 the picture of MouseIcon.
    int MousePointer() const { return m_mousePointer; }
    void setMousePointer(int pointer);
    QImage MouseIcon() const { return m_mouseIcon; }
    void setMouseIcon(const QImage& icon);

    // The default button of its window: Enter clicks it, and it shows the focus
    // rectangle (ShowFocusRect on).
    bool isDefault() const { return m_default; }
    void setDefault(bool on);

    // Redraws now, also while drawing is delayed (and ends the delay).
    void Refresh();
    // GradientColor, ForeColor, BackColor and the hover colours back to their defaults.
    void ResetDefaultColors();
    // While on, changes don't redraw; turning it off redraws at once.
    void DelayDrawing(bool delay);

    // The button's outline, as the window shows it; an empty region for a picture that
    // is all transparent colour. Shapes 0 to 3 give the whole rectangle.
    QRegion WindowRegion() const { return m_outer; }

    // The property map: read (unknown keys are ignored, bad values keep the default)
    // and written (defaults left out).
    void ReadProperties(const QVariantMap& bag);
    QVariantMap WriteProperties() const;

    // Refusals of the setters also go to this message box, when one is given.
    void setPrompt(Prompt* prompt) { m_prompt = prompt; }

    // The option buttons of a container, in the order they joined, and whether any is on.
    static QList<zolButton*> OptionGroup(const QWidget* container);
    static bool OptionGroupHasValue(const QWidget* container);

    // Run-time state: bit 0 default button, bit 1 held down, bit 2 pointer over it.
    int StateFlags() const { return m_stateFlags; }
    int LastButton() const { return m_lastButton; }
    bool HoverActive() const { return m_hoverActive; }
    bool MouseHeld() const { return m_mouseHeld; }

    // Runs the click as the access key does: Value by the rules of the mode, then Click.
    void click();

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

Q_SIGNALS:
    // Button: 1 left, 2 right, 4 middle; Shift: 1 shift, 2 control, 4 alt.
    void MouseDown(int Button, int Shift, float X, float Y);
    void MouseUp(int Button, int Shift, float X, float Y);
    void MouseMove(int Button, int Shift, float X, float Y);
    void KeyDown(int KeyCode, int Shift);
    void KeyPress(int KeyAscii);
    void KeyUp(int KeyCode, int Shift);
    void MouseOnButton(bool Inside);
    void Click();
    void DoubleClick(int Button);
    // A setter refused a value; the message says why.
    void Refused(const QString& message);
    // A property changed, by its key in the property map.
    void PropertyChanged(const QString& key);

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void keyReleaseEvent(QKeyEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void enterEvent(QEnterEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void changeEvent(QEvent* event) override;
    bool event(QEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;
    bool hitButton(const QPoint& pos) const override;
    void nextCheckState() override;
    void checkStateSet() override;

private:
    static constexpr int kDefaultBit = 1, kDownBit = 2, kInsideBit = 4;

    // zolButton.cpp: state, the option group, the hover timer.
    void init();
    void redraw();
    void propertyChanged(const char* key);
    void refuse(const QString& message);
    void runClick();
    void applyValue(bool on);
    // Keeps a value of lo..hi (others are ignored), redraws and tells the property bag.
    void store(int& field, int value, int lo, int hi, const char* key);
    void joinGroup();
    void leaveGroup();
    void selectInGroup();
    void startHover();
    void hoverTick();
    void endHover();
    bool pointerInside() const;
    void pressCycle(const QPointF& pos, Qt::KeyboardModifiers mods);
    void updateText();
    void updateCursor();
    Color containerColor() const;

    // zolButton_Paint.cpp: the shapes, the pictures and the drawing.
    void rebuildShape();
    void render(QImage& target) const;
    void paintFace(QPainter& p) const;
    void paintFrame(QPainter& p) const;
    void paintContent(QPainter& p) const;
    void paintCaption(QPainter& p, const QRect& area) const;
    void paintPicture(QPainter& p, const QRect& box) const;
    void paintFocus(QPainter& p) const;
    QRect contentRect() const;
    QColor color(Color c) const;
    bool pressedLook() const;
    bool focusShown() const;

    // zolButton_Props.cpp: the property map.
    static QVariant pictureFromBag(const QVariant& v, QString& source);

    QString m_caption;
    int m_captionAlign = 2;
    int m_captionStyle = 0;
    int m_style = 0;
    int m_shape = 0;
    int m_gradientMode = 0;
    Color m_gradientColor = kSysButtonFace;
    Color m_foreColor = kSysButtonText;
    Color m_backColor = kNoColor; // kNoColor: the container's
    Color m_hoverForeColor = kSysButtonText;
    Color m_hoverBackColor = kNoColor; // kNoColor: BackColor
    int m_hoverLocks = 0;
    bool m_showFocusRect = true;
    int m_mode = 0;
    int m_customClick = 0;
    QIcon m_icon;
    QImage m_bitmap;
    QString m_pictureSource; // the name or path the picture came from, for the map
    int m_pictureSize = 0;
    int m_pictureAlign = 0;
    int m_mousePointer = 0;
    QImage m_mouseIcon;

    int m_stateFlags = 0;
    int m_lastButton = 0;
    bool m_hoverActive = false;
    bool m_mouseHeld = false;
    bool m_delayFlag = false;
    bool m_default = false;
    bool m_inGroup = false;
    QPointer<QWidget> m_groupContainer;
    QTimer* m_hoverTimer = nullptr;
    Prompt* m_prompt = nullptr;

    // The outline (the window's region), and the rings inside it for the frame.
    QRegion m_outer, m_middle, m_inner;
    // The bitmap of shapes 7 and 8 with its edge filled in, drawn as the face.
    QImage m_shapedFace;
    // What was drawn last, reused while drawing is delayed.
    QImage m_drawn;
    bool m_dirty = true;
    // Shapes 7 and 8 size the button to the picture; the sizes before are kept here.
    bool m_sizedByPicture = false;
    QSize m_savedMinimum, m_savedMaximum;
    QMetaObject::Connection m_focusWatch;
};

} // namespace velunta
