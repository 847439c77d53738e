// The command toolbar and the tool strip of the main window.

#include "shell/frmMain.h"

#include "core/InputCodes.h"
#include "document/frmPaint.h"
#include "tools/frmControls.h"
#include "widgets/ButtonLooks.h"
#include "widgets/Icons.h"
#include "widgets/PanelLooks.h"

#include <QCheckBox>
#include <QFrame>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QVBoxLayout>

#include <algorithm>
#include <numeric>
#include <utility>

namespace velunta {

namespace {

// The toolbar's tooltips by index; the cut button has none of its own.
const char* const kCommandTips[23] = {
    QT_TRANSLATE_NOOP("velunta::frmMain", "New image"),
    QT_TRANSLATE_NOOP("velunta::frmMain", "Open"),
    QT_TRANSLATE_NOOP("velunta::frmMain", "Save"),
    QT_TRANSLATE_NOOP("velunta::frmMain", "copy"),
    QT_TRANSLATE_NOOP("velunta::frmMain", ""),
    QT_TRANSLATE_NOOP("velunta::frmMain", "Print"),
    QT_TRANSLATE_NOOP("velunta::frmMain", "paste"),
    QT_TRANSLATE_NOOP("velunta::frmMain", "undo/redo"),
    QT_TRANSLATE_NOOP("velunta::frmMain", "picture frames"),
    QT_TRANSLATE_NOOP("velunta::frmMain", "Effects Browser"),
    QT_TRANSLATE_NOOP("velunta::frmMain", "Gray scale image"),
    QT_TRANSLATE_NOOP("velunta::frmMain", "Size image"),
    QT_TRANSLATE_NOOP("velunta::frmMain", "flip horizontal"),
    QT_TRANSLATE_NOOP("velunta::frmMain", "flip vertical"),
    QT_TRANSLATE_NOOP("velunta::frmMain", "brighten image 10%"),
    QT_TRANSLATE_NOOP("velunta::frmMain", "darken image 10%"),
    QT_TRANSLATE_NOOP("velunta::frmMain", "Invert image"),
    QT_TRANSLATE_NOOP("velunta::frmMain", "undo to last saved"),
    QT_TRANSLATE_NOOP("velunta::frmMain", "Fill image or selection with textures"),
    QT_TRANSLATE_NOOP("velunta::frmMain", "Blend"),
    QT_TRANSLATE_NOOP("velunta::frmMain", "Borders"),
    QT_TRANSLATE_NOOP("velunta::frmMain", "Draw Advanced Bezier Curves"),
    QT_TRANSLATE_NOOP("velunta::frmMain", "Draw Advanced Polygons")};

// The order of the toolbar: command indexes, with -1 - n for separator Image1(n).
const int kCommandOrder[] = {0,  1,  2,  -1, 5,  -2, 3,  4,  6,  -3, 7,  17, -5,  -4, 8,  -6,  9,  18,
                             19, -7, 10, 14, 15, 16, -8, 11, 12, 13, -9, 20, -10, 21, 22, -11, -12};

// Names of the tools as the tool strip shows them.
const char* const kToolTips[20] = {QT_TRANSLATE_NOOP("velunta::frmMain", "Cursor/pointer (C)"),
                                   QT_TRANSLATE_NOOP("velunta::frmMain", "Pencil/Eraser (P)"),
                                   QT_TRANSLATE_NOOP("velunta::frmMain", "Zoom (Z)"),
                                   QT_TRANSLATE_NOOP("velunta::frmMain", "Fill (F)"),
                                   QT_TRANSLATE_NOOP("velunta::frmMain", "Gradients (G)"),
                                   QT_TRANSLATE_NOOP("velunta::frmMain", "Select Area (M)"),
                                   QT_TRANSLATE_NOOP("velunta::frmMain", "Airbrush (A)"),
                                   QT_TRANSLATE_NOOP("velunta::frmMain", "Crop (O)"),
                                   QT_TRANSLATE_NOOP("velunta::frmMain", "Color picker (Y)"),
                                   QT_TRANSLATE_NOOP("velunta::frmMain", "Rectangles (B)"),
                                   QT_TRANSLATE_NOOP("velunta::frmMain", "Circles/Bezier (E)"),
                                   QT_TRANSLATE_NOOP("velunta::frmMain", "Brighten (+)"),
                                   QT_TRANSLATE_NOOP("velunta::frmMain", "Text (T)"),
                                   QT_TRANSLATE_NOOP("velunta::frmMain", "Blur/Soften (S)"),
                                   QT_TRANSLATE_NOOP("velunta::frmMain", "Lines/Polygons (L)"),
                                   QT_TRANSLATE_NOOP("velunta::frmMain", "Darken (-)"),
                                   QT_TRANSLATE_NOOP("velunta::frmMain", "3D rectangles (3)"),
                                   QT_TRANSLATE_NOOP("velunta::frmMain", "Color replacer"),
                                   QT_TRANSLATE_NOOP("velunta::frmMain", "Dissolve Colors (D)"),
                                   QT_TRANSLATE_NOOP("velunta::frmMain", "Enhance Colors")};

// Where each tool stands in the two columns of the strip (row, column).
const int kToolPlace[kToolCount][2] = {{0, 0}, {2, 0}, {4, 1}, {3, 0}, {3, 1}, {0, 1}, {2, 1},
                                       {1, 0}, {1, 1}, {5, 1}, {6, 0}, {7, 1}, {4, 0}, {7, 0},
                                       {5, 0}, {8, 0}, {6, 1}, {9, 1}, {8, 1}, {9, 0}};

} // namespace

void frmMain::buildCommandBar()
{
    auto* layout = new QHBoxLayout(m_picbuttons);
    layout->setContentsMargins(4, 2, 4, 2);
    layout->setSpacing(1);
    for (int i = 0; i < 12; ++i) {
        auto* sep = new QFrame(m_picbuttons);
        sep->setObjectName(QStringLiteral("Image1(%1)").arg(i));
        sep->setFrameShape(QFrame::VLine);
        InkLook(sep, kFrameBlue);
        sep->setFixedWidth(6);
        m_separators[i] = sep;
    }
    for (int i = 0; i < 23; ++i) {
        auto* b = new zolButton(m_picbuttons);
        b->setObjectName(QStringLiteral("CmdCommands(%1)").arg(i));
        // No frame on the bar's gradient until the pointer comes.
        BarLook(b, 5, RGB(216, 231, 252), RGB(255, 236, 181));
        b->setPicture(CommandIcon(i));
        b->setPictureSize(1);
        b->setPictureAlign(4);
        b->setFixedSize(32, 32);
        b->setToolTip(QString::fromLatin1(kCommandTips[i]).isEmpty() ? tr("cut") : tr(kCommandTips[i]));
        b->setEnabled(false);
        m_commands[i] = b;
    }
    for (int entry : kCommandOrder)
        layout->addWidget(entry >= 0 ? static_cast<QWidget*>(m_commands[entry]) : m_separators[-1 - entry]);
    layout->addStretch(1);
    m_chkDetailEdit = new QCheckBox(tr("Detail"), m_picbuttons);
    m_chkDetailEdit->setObjectName(QStringLiteral("chkDetailEdit"));
    m_chkDetailEdit->setToolTip(tr("Pick a small area to edit pixel by pixel"));
    // Arms the picker: the next click on a picture opens Detailed Editing there.
    connect(m_chkDetailEdit, &QCheckBox::clicked, this, [this](bool on) {
        m_state.DetailPickerArmed = on && activeDocument();
        m_chkDetailEdit->setChecked(m_state.DetailPickerArmed);
    });
    layout->addWidget(m_chkDetailEdit);
    m_chkSnapGrid = new QCheckBox(tr("Snap"), m_picbuttons);
    m_chkSnapGrid->setObjectName(QStringLiteral("chkSnapGrid"));
    m_chkSnapGrid->setToolTip(tr("Snap to grid while drawing (Space)"));
    connect(m_chkSnapGrid, &QCheckBox::clicked, this, [this](bool on) {
        m_state.SnapToGrid = on;
        action(MenuId::menuExGridSnap)->setChecked(on);
    });
    layout->addWidget(m_chkSnapGrid);
    auto* logo = new QLabel(m_picbuttons);
    logo->setObjectName(QStringLiteral("ImgVelunta"));
    logo->setPixmap(IconPixmap(QStringLiteral("logo"), 96, devicePixelRatioF()));
    // The logo gives way first when the window is narrow (a netbook's 1024 pixels).
    logo->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    logo->setMinimumWidth(0);
    layout->addSpacing(10);
    layout->addWidget(logo);
}

void frmMain::wireCommand(int index, const std::function<void()>& handler)
{
    m_commandBuilt[index] = true;
    m_commands[index]->setProperty("command", QVariant::fromValue(true));
    connect(m_commands[index], &zolButton::Click, this, [this, handler, index] {
        guarded("CmdCommands_Click", [&] {
            // A pending text entry closes before a command runs.
            if (frmPaint* doc = activeDocument())
                doc->setFocus();
            handler();
        });
    });
}

void frmMain::CmdCommands_Click(int index)
{
    if (index < 0 || index > 22 || !m_commandBuilt[index])
        return;
    m_commands[index]->click();
}

void frmMain::enableCommand(int index, bool on)
{
    m_commands[index]->setEnabled(on && m_commandBuilt[index]);
}

void frmMain::buildToolStrip()
{
    auto* outer = new QVBoxLayout(m_leftBar);
    outer->setContentsMargins(4, 6, 4, 6);
    m_toolGrid = new QGridLayout;
    m_toolGrid->setSpacing(2);
    outer->addLayout(m_toolGrid);
    outer->addStretch(1);
    for (int i = 0; i < kToolCount; ++i) {
        auto* b = new zolButton(m_leftBar);
        b->setObjectName(QStringLiteral("Cmd(%1)").arg(i));
        // Raised under the pointer, sunk and lighter while it is the tool in use.
        BarLook(b, 3, RGB(185, 214, 249), RGB(220, 245, 255));
        b->setPicture(ToolIcon(i));
        b->setPictureSize(1);
        b->setPictureAlign(4);
        b->setFixedSize(36, 36);
        b->setMode(1);
        b->setToolTip(tr(kToolTips[i]));
        // The button shows pressed only through SelectTool.
        connect(b, &zolButton::Click, this, [this, b, i] {
            b->setValue(m_state.CurrentTool == i);
            guarded("Cmd_Click", [&] { Cmd_Click(i); });
        });
        connect(b, &zolButton::MouseDown, this, [this, i](int button) {
            // The right button on the curve and line tools leads to their advanced editors
            // while a picture is open (the editors draw into it).
            const MenuId editor = i == kToolCircle ? MenuId::mnuBezier
                                  : i == kToolLine ? MenuId::mnuPolygons
                                                   : MenuId::None;
            if (button == kRightButton && editor != MenuId::None && activeDocument() && isBuilt(editor))
                action(editor)->trigger();
        });
        connect(b, &zolButton::DoubleClick, this, [this, i](int button) {
            if (button == kLeftButton)
                guarded("Cmd_DblClick", [&] { Cmd_DblClick(i); });
        });
        m_tools[i] = b;
    }
    placeToolButtons();
}

void frmMain::placeToolButtons()
{
    const bool kids = action(MenuId::mnuKidsMode)->isChecked();
    for (int i = 0; i < kToolCount; ++i)
        m_toolGrid->removeWidget(m_tools[i]);
    // The tools go into the two columns in the order of their places, row by row, so a
    // tool hidden in Easy Mode (the colour replacer) leaves no hole: the rest close up.
    std::array<int, kToolCount> order;
    std::iota(order.begin(), order.end(), 0);
    std::sort(order.begin(), order.end(), [](int a, int b) {
        return std::pair(kToolPlace[a][0], kToolPlace[a][1]) < std::pair(kToolPlace[b][0], kToolPlace[b][1]);
    });
    int slot = 0;
    for (int tool : order) {
        const bool shown = !(kids && tool == kToolColorReplacer);
        m_tools[tool]->setVisible(shown);
        if (!shown)
            continue;
        m_toolGrid->addWidget(m_tools[tool], slot / 2, slot % 2);
        ++slot;
    }
}

} // namespace velunta
