// The controls of the twenty option panels. Every panel is a row of columns of at
// most two rows each, a caption right-aligned before its control, so the rows line
// up from panel to panel; a column of one row stands in the middle of the strip.

#include "document/DrawState.h"
#include "tools/PanelWidgets.h"
#include "tools/frmControls.h"
#include "widgets/ButtonLooks.h"
#include "widgets/Icons.h"

#include <QCheckBox>
#include <QCoreApplication>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QRegularExpressionValidator>

namespace velunta {

namespace {

// What each selector sets, for its tooltip.
const char* const kSelectorTips[16] = {QT_TRANSLATE_NOOP("velunta::frmControls", "Airbrush pressure"),
                                       QT_TRANSLATE_NOOP("velunta::frmControls", "Brighten pressure"),
                                       QT_TRANSLATE_NOOP("velunta::frmControls", "Airbrush size"),
                                       QT_TRANSLATE_NOOP("velunta::frmControls", "Brighten brush size"),
                                       QT_TRANSLATE_NOOP("velunta::frmControls", "Pencil size"),
                                       QT_TRANSLATE_NOOP("velunta::frmControls", "Border size of rectangles"),
                                       QT_TRANSLATE_NOOP("velunta::frmControls", "Border size of circles"),
                                       QT_TRANSLATE_NOOP("velunta::frmControls", "Text size"),
                                       QT_TRANSLATE_NOOP("velunta::frmControls", "Blur brush size"),
                                       QT_TRANSLATE_NOOP("velunta::frmControls", "Line width"),
                                       QT_TRANSLATE_NOOP("velunta::frmControls", "Darken brush size"),
                                       QT_TRANSLATE_NOOP("velunta::frmControls", "Darken pressure"),
                                       QT_TRANSLATE_NOOP("velunta::frmControls", "Dissolve brush size"),
                                       QT_TRANSLATE_NOOP("velunta::frmControls", "Dissolve intensity"),
                                       QT_TRANSLATE_NOOP("velunta::frmControls", "Enhance intensity"),
                                       QT_TRANSLATE_NOOP("velunta::frmControls", "Enhance brush size")};

const char* const kPencilTips[11] = {
    QT_TRANSLATE_NOOP("velunta::frmControls", "Freehand one color"),
    QT_TRANSLATE_NOOP("velunta::frmControls", "Freehand deep red colormix"),
    QT_TRANSLATE_NOOP("velunta::frmControls", "Freehand deep green colormix"),
    QT_TRANSLATE_NOOP("velunta::frmControls", "Freehand deept blue colormix"),
    QT_TRANSLATE_NOOP("velunta::frmControls", "Freehand rainbow colormix"),
    QT_TRANSLATE_NOOP("velunta::frmControls", "Freehand blue pastel colormix"),
    QT_TRANSLATE_NOOP("velunta::frmControls", "Freehand pink pastel colormix"),
    QT_TRANSLATE_NOOP("velunta::frmControls", "Freehand yellow pastel colormix"),
    QT_TRANSLATE_NOOP("velunta::frmControls", "Freehand gray colormix"),
    QT_TRANSLATE_NOOP("velunta::frmControls", "Freehand user selected colormix"),
    QT_TRANSLATE_NOOP("velunta::frmControls", "Freehand dots donuts")};
const char* const kRectTips[6] = {QT_TRANSLATE_NOOP("velunta::frmControls", "Border Only"),
                                  QT_TRANSLATE_NOOP("velunta::frmControls", "Border and Fill"),
                                  QT_TRANSLATE_NOOP("velunta::frmControls", "Fill Only"),
                                  QT_TRANSLATE_NOOP("velunta::frmControls", "Border Only, round corners"),
                                  QT_TRANSLATE_NOOP("velunta::frmControls", "Border and Fill, round corners"),
                                  QT_TRANSLATE_NOOP("velunta::frmControls", "Fill Only, round corners")};
const char* const kEdgeTips[4] = {QT_TRANSLATE_NOOP("velunta::frmControls", "3D Raised"),
                                  QT_TRANSLATE_NOOP("velunta::frmControls", "3D Inset"),
                                  QT_TRANSLATE_NOOP("velunta::frmControls", "3D Bump"),
                                  QT_TRANSLATE_NOOP("velunta::frmControls", "3D Etched")};
const char* const kBrightTips[4] = {QT_TRANSLATE_NOOP("velunta::frmControls", "Soft brush"),
                                    QT_TRANSLATE_NOOP("velunta::frmControls", "Hard brush"),
                                    QT_TRANSLATE_NOOP("velunta::frmControls", "Soft brush"),
                                    QT_TRANSLATE_NOOP("velunta::frmControls", "Hard brush")};
const char* const kDissolveTips[4] = {QT_TRANSLATE_NOOP("velunta::frmControls", "Dissolve reds"),
                                      QT_TRANSLATE_NOOP("velunta::frmControls", "Dissolve greens"),
                                      QT_TRANSLATE_NOOP("velunta::frmControls", "Dissolve blues"),
                                      QT_TRANSLATE_NOOP("velunta::frmControls", "All colors")};
const char* const kArrowTips[2] = {QT_TRANSLATE_NOOP("velunta::frmControls", "Straight Line"),
                                   QT_TRANSLATE_NOOP("velunta::frmControls", "Straight Arrow Line")};
const char* const kEnhanceTips[3] = {QT_TRANSLATE_NOOP("velunta::frmControls", "Enhance reds"),
                                     QT_TRANSLATE_NOOP("velunta::frmControls", "Enhance greens"),
                                     QT_TRANSLATE_NOOP("velunta::frmControls", "Enhance blues")};

QString Translated(const char* text)
{
    return QCoreApplication::translate("velunta::frmControls", text);
}

// The picture and tooltip of style button i of a group.
struct StyleLook {
    QIcon icon;
    QString tip;
    bool usable = true;
};

StyleLook LookOf(const QString& group, int i)
{
    // The circle has no round corners: its last three styles draw with the pen and
    // fill the last shape left.
    if (group == QLatin1String("Cmd2") && i >= 3)
        return {LastPenCircleIcon(i), Translated("Same pen and fill as the last shape drawn")};
    // The 3D frame knows four edges; the last two styles draw none (they are the round
    // rectangle styles of the shared style choice).
    if (group == QLatin1String("Cmd5") && i >= 4)
        return {NoEdgeIcon(), Translated("No edge: the 3D frame draws nothing")};
    struct Set {
        const char* group;
        const char* pictures;
        const char* const* tips;
    };
    static const Set kSets[] = {{"Cmd3", "pencil-style", kPencilTips}, {"Cmd", "rect-style", kRectTips},
                                {"Cmd2", "circle-style", kRectTips},   {"Cmd5", "edge3d-style", kEdgeTips},
                                {"Cmd4", "bright-style", kBrightTips}, {"Cmd6", "dissolve", kDissolveTips},
                                {"Cmd7", "arrow-style", kArrowTips},   {"Cmd8", "enhance", kEnhanceTips}};
    for (const Set& set : kSets)
        if (group == QLatin1String(set.group))
            return {StyleIcon(QString::fromLatin1(set.pictures), i), Translated(set.tips[i])};
    return {};
}

QFrame* Separator(QWidget* parent)
{
    auto* line = new QFrame(parent);
    line->setFrameShape(QFrame::VLine);
    InkLook(line, QColor(150, 180, 225));
    line->setFixedHeight(2 * kStyleButtonSize);
    return line;
}

} // namespace

void frmControls::ensurePanel(int tool)
{
    if (tool < 0 || tool >= kToolCount || m_built[tool])
        return;
    m_built[tool] = true;
    buildPanel(tool);
    refreshWidgets();
}

void frmControls::buildAll()
{
    for (int tool = 0; tool < kToolCount; ++tool)
        ensurePanel(tool);
}

QGridLayout* frmControls::newColumn(int tool)
{
    QHBoxLayout* target = m_options[tool];
    if (target->count() > 0)
        target->addWidget(Separator(target->parentWidget()));
    auto* grid = new QGridLayout;
    grid->setContentsMargins(0, 0, 0, 0);
    grid->setHorizontalSpacing(5);
    grid->setVerticalSpacing(2);
    grid->setRowMinimumHeight(0, kStyleButtonSize);
    grid->setRowMinimumHeight(1, kStyleButtonSize);
    target->addLayout(grid);
    return grid;
}

void frmControls::addColumn(int tool, std::initializer_list<Row> rows)
{
    QGridLayout* grid = newColumn(tool);
    const int span = rows.size() == 1 ? 2 : 1;
    int r = 0;
    for (const Row& row : rows) {
        if (!row.caption.isEmpty()) {
            auto* label = new QLabel(row.caption, grid->parentWidget());
            // A caption with a wide gap in it stands on two lines, one word under the other.
            if (row.caption.contains(QLatin1String("   "))) {
                int widest = 0;
                for (const QString& word : row.caption.split(u' ', Qt::SkipEmptyParts))
                    widest = std::max(widest, label->fontMetrics().horizontalAdvance(word));
                label->setWordWrap(true);
                label->setFixedWidth(widest + 2);
                label->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
            }
            grid->addWidget(label, r, 0, span, 1, Qt::AlignRight | Qt::AlignVCenter);
        }
        grid->addWidget(row.control, r, 1, span, 1, Qt::AlignLeft | Qt::AlignVCenter);
        ++r;
    }
}

void frmControls::addStacked(int tool, const QString& caption, QWidget* control)
{
    QGridLayout* grid = newColumn(tool);
    grid->addWidget(new QLabel(caption, grid->parentWidget()), 0, 0, Qt::AlignLeft | Qt::AlignBottom);
    grid->addWidget(control, 1, 0, Qt::AlignLeft | Qt::AlignVCenter);
}

QWidget* frmControls::selectorBox(int tool, int index)
{
    auto* box = new QWidget(m_panels[tool]);
    auto* row = RowLayout(box, 1);
    const QString tip = tr(kSelectorTips[index]);
    // Wide enough for the longest caption, "200 pixel ", on every selector alike.
    const int width = fontMetrics().horizontalAdvance(QStringLiteral("200 pixel ")) + 12;
    auto* label = new ReadoutLabel(QStringLiteral("lblSelector(%1)").arg(index), tip, width, box);
    label->setCursor(Qt::PointingHandCursor);
    auto* drop = new StyleButton(QStringLiteral("CmdDropDown(%1)").arg(index),
                                 NamedIcon(QStringLiteral("dropdown")), tip, box, 1);
    drop->setFixedSize(20, kPanelRowHeight);
    row->addWidget(label);
    row->addWidget(drop);
    connect(drop, &QAbstractButton::clicked, this, [this, index] { ClickDropDown(index); });
    connect(label, &ReadoutLabel::clicked, this, [this, index] { ClickDropDown(index); });
    m_lblSelector[index] = label;
    m_dropDown[index] = drop;
    return box;
}

QWidget* frmControls::styleRow(int tool, GroupId group, int from, int to)
{
    auto* box = new QWidget(m_panels[tool]);
    auto* row = RowLayout(box, 1);
    StyleGroup& g = m_groups[group];
    for (int i = from; i <= to; ++i) {
        const StyleLook look = LookOf(g.name, i);
        auto* b = new StyleButton(QStringLiteral("%1(%2)").arg(g.name).arg(i), look.icon, look.tip, box);
        b->setEnabled(look.usable);
        row->addWidget(b);
        g.buttons[i] = b;
        connect(b, &QAbstractButton::clicked, this, [this, setter = g.setter, i] { (this->*setter)(i); });
    }
    return box;
}

QCheckBox* frmControls::checkBox(int tool, const QString& name, const QString& caption, const QString& tip,
                                 bool DrawState::*field)
{
    auto* box = new QCheckBox(caption, m_panels[tool]);
    box->setObjectName(name);
    box->setToolTip(tip);
    connect(box, &QCheckBox::toggled, this, [this, field](bool on) { m_state.*field = on; });
    m_loaders.push_back([this, box, field] {
        const QSignalBlocker block(box);
        box->setChecked(m_state.*field);
    });
    return box;
}

void frmControls::optionPair(int tool, const QString& name, const std::array<QString, 2>& captions,
                             const std::array<QString, 2>& tips, bool DrawState::*field,
                             std::array<zolButton*, 2>& options)
{
    // The two are the only option buttons of their panel, so they make one group.
    for (int k = 0; k < 2; ++k) {
        options[k] = new zolButton(captions[k], m_panels[tool]);
        options[k]->setObjectName(QStringLiteral("%1(%2)").arg(name).arg(k));
        options[k]->setToolTip(tips[k]);
        OptionLook(options[k]);
        options[k]->setFixedHeight(kPanelRowHeight);
        options[k]->setMode(2);
    }
    connect(options[1], &zolButton::toggled, this, [this, field](bool on) { m_state.*field = on; });
    m_loaders.push_back([this, field, &options] { options[m_state.*field ? 1 : 0]->setChecked(true); });
}

QLineEdit* frmControls::textBox(int tool, const QString& name, const QString& tip, QString DrawState::*field)
{
    auto* edit = new QLineEdit(m_panels[tool]);
    edit->setObjectName(name);
    edit->setToolTip(tip);
    edit->setFixedSize(44, kPanelRowHeight);
    edit->setAlignment(Qt::AlignRight);
    // Whole numbers only; empty reads as 0 where the tool uses it.
    edit->setValidator(new QRegularExpressionValidator(QRegularExpression(QStringLiteral("\\d{0,3}")), edit));
    connect(edit, &QLineEdit::textChanged, this,
            [this, field](const QString& text) { m_state.*field = text; });
    m_loaders.push_back([this, edit, field] { edit->setText(m_state.*field); });
    return edit;
}

QAbstractButton* frmControls::operationButton(int tool, const QString& name, const QString& caption,
                                              const QString& tip, const QString& operation,
                                              const QString& icon)
{
    auto* button = new zolButton(caption, m_panels[tool]);
    if (icon.isEmpty()) {
        DialogLook(button);
    } else {
        // A picture and its caption, plain on the strip until the pointer comes.
        PanelBarLook(button);
        button->setPicture(NamedIcon(icon));
        button->setCaptionAlign(0);
    }
    button->setFixedHeight(kPanelRowHeight);
    button->setObjectName(name);
    button->setToolTip(tip);
    connect(button, &QAbstractButton::clicked, this,
            [this, operation] { Q_EMIT operationRequested(operation); });
    needsOperation(button, operation);
    return button;
}

} // namespace velunta
