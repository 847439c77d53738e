#include "drawing/frmShapeEditor.h"

#include "drawing/PointCanvas.h"
#include "exchange/ExchangeFile.h"
#include "widgets/ButtonLooks.h"
#include "widgets/Icons.h"
#include "widgets/zolButton.h"

#include <QApplication>
#include <QColorDialog>
#include <QFileInfo>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QMessageBox>
#include <QRadioButton>
#include <QScreen>
#include <QShortcut>
#include <QSpinBox>
#include <QVBoxLayout>

#include <algorithm>
#include <cstdio>

namespace velunta {

namespace {

zolButton* commandKey(QWidget* parent, const QString& caption, const QString& name, const QString& tip)
{
    auto* b = new zolButton(caption, parent);
    b->setObjectName(name);
    b->setToolTip(tip);
    DialogLook(b);
    b->setMinimumSize(84, 30);
    return b;
}

// A key that shows a colour as its face.
void showColor(zolButton* b, Color c)
{
    b->setBackColor(c);
    b->setHoverBackColor(c);
    // Dark colours get a light caption.
    const int luma = (ColorRed(c) * 299 + ColorGreen(c) * 587 + ColorBlue(c) * 114) / 1000;
    b->setForeColor(luma < 128 ? RGB(255, 255, 255) : RGB(0, 0, 0));
    b->setHoverForeColor(b->ForeColor());
}

} // namespace

frmShapeEditor::frmShapeEditor(ShapeKind kind, const QImage& picture, const QString& path,
                               const CompanionSettings& settings, QWidget* parent)
    : QDialog(parent), m_kind(kind), m_picture(picture), m_path(path)
{
    const bool bezier = kind == ShapeKind::Bezier;
    setObjectName(bezier ? QStringLiteral("frmBezier") : QStringLiteral("frmPolygon"));
    setWindowTitle(bezier ? tr("Advanced Bezier Curves") : tr("Advanced Polygons"));
    setWindowIcon(CommandIcon(bezier ? 21 : 22));
    setSizeGripEnabled(true);

    auto* layout = new QVBoxLayout(this);
    auto* bar = new QHBoxLayout;
    m_undo = commandKey(this, bezier ? tr("&Undo Point") : tr("&Undo Corner"), QStringLiteral("cmdUndo"),
                        tr("Takes back the last point (right click or Ctrl+Z does too)"));
    m_clear = commandKey(this, tr("C&lear"), QStringLiteral("cmdClear"), tr("Removes everything drawn here"));
    m_new = commandKey(this, bezier ? tr("&New Curve") : tr("&New Shape"), QStringLiteral("cmdNew"),
                       bezier ? tr("Keeps this curve and starts another")
                              : tr("Keeps this shape and starts another"));
    bar->addWidget(m_undo);
    bar->addWidget(m_clear);
    bar->addWidget(m_new);
    bar->addSpacing(16);
    m_color = commandKey(this, bezier ? tr("&Color...") : tr("&Line..."), QStringLiteral("cmdColor"),
                         tr("The colour of the line"));
    bar->addWidget(m_color);
    if (!bezier) {
        m_fill =
            commandKey(this, tr("&Fill..."), QStringLiteral("cmdFill"), tr("The colour inside the shape"));
        bar->addWidget(m_fill);
    }
    bar->addSpacing(8);
    auto* thicknessLabel = new QLabel(tr("&Thickness:"), this);
    m_thickness = new QSpinBox(this);
    m_thickness->setObjectName(QStringLiteral("txtThickness"));
    m_thickness->setRange(1, kMaxThickness);
    m_thickness->setSuffix(tr(" px"));
    thicknessLabel->setBuddy(m_thickness);
    bar->addWidget(thicknessLabel);
    bar->addWidget(m_thickness);
    if (!bezier) {
        bar->addSpacing(8);
        const QStringList names = {tr("Outline"), tr("Filled"), tr("Both")};
        for (size_t i = 0; i < m_styles.size(); ++i) {
            m_styles[i] = new QRadioButton(names[int(i)], this);
            m_styles[i]->setObjectName(QStringLiteral("OptStyle(%1)").arg(i));
            bar->addWidget(m_styles[i]);
            connect(m_styles[i], &QRadioButton::toggled, this, [this, i](bool on) {
                if (!on)
                    return;
                m_canvas->current.style = PolygonStyle(i);
                m_canvas->refresh();
            });
        }
    }
    bar->addStretch(1);
    layout->addLayout(bar);

    m_hint = new QLabel(this);
    m_hint->setObjectName(QStringLiteral("lblHint"));
    m_hint->setWordWrap(true);
    m_hint->setText(
        bezier ? tr("Click to place points. The curve runs from the first point to the last, and the "
                    "points in between pull it like magnets. Drag a point to move it.")
               : tr("Click to place the corners of your shape. Drag a corner to move it."));
    layout->addWidget(m_hint);

    m_canvas = new PointCanvas(picture, this);
    Shape& shape = m_canvas->current;
    shape.kind = kind;
    shape.line = settings.SelectedColor;
    shape.fill = settings.SelectedBackColor;
    shape.thickness = bezier ? settings.CircleThickness : settings.LineThickness;
    layout->addWidget(m_canvas, 1);

    layout->addWidget(OkCancelButtons(this));

    m_thickness->setValue(shape.thickness);
    if (!bezier)
        m_styles[0]->setChecked(true);
    connect(m_thickness, &QSpinBox::valueChanged, this, [this](int value) {
        m_canvas->current.thickness = value;
        m_canvas->refresh();
    });
    connect(m_undo, &zolButton::Click, m_canvas, &PointCanvas::undoPoint);
    connect(m_clear, &zolButton::Click, m_canvas, &PointCanvas::clearAll);
    connect(m_new, &zolButton::Click, m_canvas, &PointCanvas::newShape);
    connect(m_color, &zolButton::Click, this, [this] { chooseColor(false); });
    if (m_fill)
        connect(m_fill, &zolButton::Click, this, [this] { chooseColor(true); });
    connect(m_canvas, &PointCanvas::changed, this, &frmShapeEditor::shapeChanged);
    new QShortcut(QKeySequence::Undo, this, [this] { m_canvas->undoPoint(); });
    showColors();
    shapeChanged();

    // The picture as large as fits on the screen, up to its own size.
    const QRect screen = QGuiApplication::primaryScreen()
                             ? QGuiApplication::primaryScreen()->availableGeometry()
                             : QRect(0, 0, 1280, 800);
    const QSize chrome = sizeHint() - m_canvas->sizeHint();
    QSize canvas = picture.size().expandedTo(QSize(560, 400));
    canvas.scale(canvas.boundedTo(screen.size() * 0.85 - chrome), Qt::KeepAspectRatio);
    resize(canvas + chrome);
}

void frmShapeEditor::showColors()
{
    showColor(m_color, m_canvas->current.line);
    if (m_fill)
        showColor(m_fill, m_canvas->current.fill);
}

void frmShapeEditor::chooseColor(bool fill)
{
    Color& c = fill ? m_canvas->current.fill : m_canvas->current.line;
    const QColor chosen =
        QColorDialog::getColor(ToQColor(c), this, fill ? tr("Fill Color") : tr("Line Color"));
    if (!chosen.isValid())
        return;
    c = FromQColor(chosen);
    showColors();
    m_canvas->refresh();
}

void frmShapeEditor::shapeChanged()
{
    const bool anything = !m_canvas->current.points.isEmpty() || !m_canvas->done.isEmpty();
    m_undo->setEnabled(anything);
    m_clear->setEnabled(anything);
    m_new->setEnabled(!m_canvas->current.points.isEmpty());
}

QImage frmShapeEditor::result() const
{
    QVector<Shape> shapes = m_canvas->done;
    if (!m_canvas->current.points.isEmpty())
        shapes << m_canvas->current;
    QImage picture = m_picture;
    DrawShapes(picture, shapes);
    return picture;
}

void frmShapeEditor::accept()
{
    // Nothing drawn: the file stays as it was, as after Cancel.
    if (m_canvas->current.points.isEmpty() && m_canvas->done.isEmpty()) {
        QDialog::accept();
        return;
    }
    QString error;
    if (!WriteExchangePicture(result(), m_path, &error)) {
        QMessageBox::warning(this, windowTitle(),
                             tr("The picture could not be written to %1:\n%2").arg(m_path, error));
        return;
    }
    QDialog::accept();
}

int RunShapeEditor(int argc, char** argv, ShapeKind kind)
{
    QApplication app(argc, argv);
    const QStringList args = QApplication::arguments();
    const QString name = QFileInfo(args.value(0)).fileName();
    if (args.size() < 2) {
        std::fprintf(stderr, "usage: %s <picture.bmp>\n", qPrintable(name));
        return 1;
    }
    QString error;
    const QImage picture = ReadExchangePicture(args[1], &error);
    if (picture.isNull()) {
        std::fprintf(stderr, "%s: %s: %s\n", qPrintable(name), qPrintable(args[1]), qPrintable(error));
        QMessageBox::warning(nullptr, name,
                             frmShapeEditor::tr("The picture %1 can't be read:\n%2").arg(args[1], error));
        return 2;
    }
    frmShapeEditor window(kind, picture, args[1], ReadCompanionSettings());
    window.exec();
    return 0;
}

} // namespace velunta
