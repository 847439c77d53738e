#include "imageops/DialogParts.h"

#include "widgets/ButtonLooks.h"
#include "widgets/frmColor.h"
#include "widgets/zolButton.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QLineEdit>
#include <QMouseEvent>
#include <QRegularExpressionValidator>

#include <algorithm>

namespace velunta {

QPixmap Thumbnail(const QImage& picture, QSize box)
{
    if (picture.isNull() || box.isEmpty())
        return QPixmap();
    const QSize limit = box.boundedTo(picture.size() * 2);
    return QPixmap::fromImage(picture.scaled(limit, Qt::KeepAspectRatio, Qt::SmoothTransformation));
}

QLabel* PictureBox(QWidget* parent, const QString& name, QSize box)
{
    auto* label = new QLabel(parent);
    label->setObjectName(name);
    label->setFixedSize(box + QSize(4, 4));
    label->setAlignment(Qt::AlignCenter);
    label->setFrameShape(QFrame::StyledPanel);
    label->setFrameShadow(QFrame::Sunken);
    return label;
}

QDialogButtonBox* OkCancel(QWidget* parent)
{
    auto* buttons = new QDialogButtonBox(parent);
    AddDialogButton(buttons, QDialogButtonBox::tr("OK"), QDialogButtonBox::AcceptRole,
                    QStringLiteral("Command1"));
    AddDialogButton(buttons, QDialogButtonBox::tr("Cancel"), QDialogButtonBox::RejectRole,
                    QStringLiteral("Command2"));
    return buttons;
}

namespace {

zolButton* key(QWidget* parent, const QString& name, const QString& caption, const QString& tip)
{
    auto* b = new zolButton(caption, parent);
    b->setObjectName(name);
    b->setToolTip(tip);
    return b;
}

} // namespace

zolButton* OptionKey(QWidget* group, const QString& name, const QString& caption, const QString& tip)
{
    zolButton* b = key(group, name, caption, tip);
    OptionLook(b);
    b->setMode(2);
    return b;
}

zolButton* CommandKey(QWidget* parent, const QString& name, const QString& caption, const QString& tip)
{
    zolButton* b = key(parent, name, caption, tip);
    DialogLook(b);
    b->setMinimumWidth(80);
    return b;
}

QComboBox* NumberList(QWidget* parent, const QString& name, const QString& tip,
                      std::initializer_list<int> values, int digits)
{
    auto* list = new QComboBox(parent);
    list->setObjectName(name);
    list->setToolTip(tip);
    list->setEditable(true);
    list->setInsertPolicy(QComboBox::NoInsert);
    for (int v : values)
        list->addItem(QString::number(v));
    list->setValidator(
        new QRegularExpressionValidator(QRegularExpression(QStringLiteral("\\d{0,%1}").arg(digits)), list));
    list->setMinimumWidth(70);
    return list;
}

ColorSampleLabel::ColorSampleLabel(const QString& name, const QString& tip, QWidget* parent) : QLabel(parent)
{
    setObjectName(name);
    setToolTip(tip);
    setFixedSize(44, 22);
    setCursor(Qt::PointingHandCursor);
    setColor(0);
}

void ColorSampleLabel::setColor(Color c)
{
    m_color = c;
    setStyleSheet(QStringLiteral("QLabel { background: %1; border: 1px solid rgb(60, 60, 60); }")
                      .arg(ToQColor(c).name()));
}

void ColorSampleLabel::mousePressEvent(QMouseEvent* e)
{
    if (e->button() != Qt::LeftButton)
        return QLabel::mousePressEvent(e);
    const Color c = frmColor::pick(m_color, this);
    if (c >= 0 && c != m_color) {
        setColor(c);
        Q_EMIT changed(c);
    }
}

} // namespace velunta
