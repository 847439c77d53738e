#include "shell/frmMain.h"

#include "core/AppFolder.h"
#include "core/Faults.h"
#include "core/Prompt.h"
#include "document/frmPaint.h"
#include "effects/ExternalEffect.h"
#include "files/RecoveryStore.h"
#include "files/RecoveryWriter.h"
#include "shell/ProgressStrip.h"
#include "shell/Services.h"
#include "shell/frmSplashh.h"
#include "tools/PointerPipeline.h"
#include "tools/frmControls.h"
#include "update/UpdateCheck.h"
#include "widgets/Icons.h"
#include "widgets/PanelLooks.h"

#include <QApplication>
#include <QCheckBox>
#include <QClipboard>
#include <QCloseEvent>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFrame>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenu>
#include <QMenuBar>
#include <QMimeData>
#include <QScreen>
#include <QScrollArea>
#include <QScrollBar>
#include <QThread>
#include <QTimer>
#include <QToolButton>
#include <QUrl>
#include <QVBoxLayout>

namespace velunta {

namespace {

// The tool option strip's holder: as wide as the strip wants (a plain scroll area stops
// far short of that), and narrower only when the window is.
class StripScroll : public QScrollArea {
public:
    using QScrollArea::QScrollArea;
    QSize sizeHint() const override { return widget() ? widget()->sizeHint() : QScrollArea::sizeHint(); }
    QSize minimumSizeHint() const override { return QSize(100, QScrollArea::minimumSizeHint().height()); }
};

} // namespace

// Panel and toolbar colours of the program.
static const QColor kPanelColorDark(185, 214, 249);
static const QColor kPanelColorLight(220, 245, 255);
static const QColor kToolbarColorA(216, 231, 252);
static const QColor kToolbarColorB(195, 218, 249);

frmMain::frmMain(Services& services, QWidget* parent) : QMainWindow(parent), m_services(services)
{
    setObjectName(QStringLiteral("frmMain"));
    setWindowTitle(QStringLiteral("Velunta"));
    setWindowIcon(NamedIcon(QStringLiteral("app")));
    setAcceptDrops(true);
    {
        QPalette bar = menuBar()->palette();
        bar.setColor(QPalette::Window, QColor(216, 235, 255));
        menuBar()->setPalette(bar);
    }

    auto* central = new QWidget(this);
    central->setObjectName(QStringLiteral("Central"));
    auto* outer = new QVBoxLayout(central);
    outer->setContentsMargins(0, 0, 0, 0);
    outer->setSpacing(0);

    auto* topBar = new PanelFill(central);
    topBar->setObjectName(QStringLiteral("TopBar"));
    topBar->setFill(kToolbarColorA, kToolbarColorB);
    topBar->setBorder(kFrameBlue, Qt::BottomEdge);
    auto* topLayout = new QVBoxLayout(topBar);
    topLayout->setContentsMargins(0, 0, 0, 0);
    topLayout->setSpacing(0);
    m_picbuttons = new QWidget(topBar);
    m_picbuttons->setObjectName(QStringLiteral("Picbuttons"));
    topLayout->addWidget(m_picbuttons);

    auto* optionRow = new QWidget(topBar);
    auto* optionLayout = new QHBoxLayout(optionRow);
    optionLayout->setContentsMargins(0, 0, 4, 0);
    optionLayout->setSpacing(0);
    // A panel wider than the window leaves it scrolls sideways under the read-outs'
    // left, so every option stays within reach on a small screen.
    auto* controlsScroll = new StripScroll(optionRow);
    controlsScroll->setObjectName(QStringLiteral("ControlsScroll"));
    controlsScroll->setFrameShape(QFrame::NoFrame);
    controlsScroll->setWidgetResizable(true);
    controlsScroll->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    controlsScroll->setHorizontalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    controlsScroll->viewport()->setAutoFillBackground(false);
    controlsScroll->horizontalScrollBar()->setStyleSheet(QStringLiteral(
        "QScrollBar:horizontal { height: 9px; background: rgb(205,222,246); border: none; margin: 0; }"
        "QScrollBar::handle:horizontal { background: rgb(120,150,200); border-radius: 3px; min-width: 30px; }"
        "QScrollBar::add-line, QScrollBar::sub-line { width: 0; border: none; }"
        "QScrollBar::add-page, QScrollBar::sub-page { background: none; }"));
    m_controls = new frmControls(m_state);
    controlsScroll->setWidget(m_controls);
    // On the bar's gradient.
    m_controls->setAutoFillBackground(false);
    controlsScroll->setFixedHeight(m_controls->height());
    connect(controlsScroll->horizontalScrollBar(), &QScrollBar::rangeChanged, controlsScroll,
            [controlsScroll, this](int, int max) {
                const int bar = max > 0 ? controlsScroll->horizontalScrollBar()->sizeHint().height() : 0;
                controlsScroll->setFixedHeight(m_controls->minimumHeight() + bar);
            });
    optionLayout->addWidget(controlsScroll);
    optionLayout->addStretch(1);
    auto* coords = new QWidget(optionRow);
    coords->setObjectName(QStringLiteral("CoordsInfo"));
    optionLayout->addWidget(coords);
    topLayout->addWidget(optionRow);
    outer->addWidget(topBar);

    auto* middle = new QHBoxLayout;
    middle->setSpacing(0);
    const QColor barEdge(201, 123, 76);
    auto* leftBar = new PanelFill(central);
    leftBar->setObjectName(QStringLiteral("LeftBar"));
    leftBar->setFill(kPanelColorDark);
    leftBar->setBorder(barEdge, Qt::RightEdge);
    m_leftBar = leftBar;
    middle->addWidget(m_leftBar);
    m_mdi = new QMdiArea(central);
    m_mdi->setObjectName(QStringLiteral("MDIArea"));
    m_mdi->setBackground(QColor(150, 170, 200));
    m_mdi->setActivationOrder(QMdiArea::ActivationHistoryOrder);
    middle->addWidget(m_mdi, 1);
    auto* rightBar = new PanelFill(central);
    rightBar->setObjectName(QStringLiteral("RightBar"));
    rightBar->setFill(kToolbarColorB);
    rightBar->setBorder(barEdge, Qt::LeftEdge);
    m_rightBar = rightBar;
    middle->addWidget(m_rightBar);
    outer->addLayout(middle, 1);

    m_progress = new ProgressStrip(*this, m_undo, central);
    outer->addWidget(m_progress);
    setCentralWidget(central);

    buildMenus();
    buildCommandBar();
    buildToolStrip();
    wireColors();

    auto* coordsLayout = new QHBoxLayout(coords);
    coordsLayout->setContentsMargins(6, 2, 6, 2);
    coordsLayout->setSpacing(14);
    auto makeReadout = [&](const QString& name, const QString& tip, const QString& text) {
        auto* label = new BoxLabel(coords);
        label->setText(text);
        label->setObjectName(name);
        label->setToolTip(tip);
        // Room for five-digit sizes ("10000 x 10000"), past the padding and the border.
        label->setMinimumWidth(label->fontMetrics().horizontalAdvance(QStringLiteral("00000 x 00000")) + 12);
        label->setFixedHeight(22);
        label->setBox(kPanelColorLight, kFrameBlue, 4, 1);
        coordsLayout->addWidget(label);
        return label;
    };
    m_lblCoords = makeReadout(QStringLiteral("lblCoords"), tr("Pointer position"), QStringLiteral("0, 0"));
    m_lblArea =
        makeReadout(QStringLiteral("lblArea"), tr("Size of the selection or shape"), QStringLiteral("0 x 0"));
    m_lblImgSize = makeReadout(QStringLiteral("lblImgSize"), tr("Picture size"), QString());

    wireCommandBar();

    connect(m_mdi, &QMdiArea::subWindowActivated, this, &frmMain::documentActivated);
    connect(QApplication::clipboard(), &QClipboard::dataChanged, this, [this] { ValidateMenus(); });
    // The window's first size, within the screen: a small one (a netbook's 1024 x 600)
    // gets the whole of its work area.
    const QRect avail = screen() ? screen()->availableGeometry() : QRect(0, 0, 1280, 800);
    const QSize wanted(1100, 760);
    if (avail.width() >= wanted.width() + 40 && avail.height() >= wanted.height() + 60) {
        resize(wanted);
    } else {
        resize(avail.size() - QSize(8, 40));
        move(avail.topLeft());
        setWindowState(windowState() | Qt::WindowMaximized);
    }
    wireControls();
    wireSelectionOptions();
    wireText();
    ValidateMenus();
}

frmMain::~frmMain()
{
    qApp->removeEventFilter(this);
    // Gone without a close (the end of a test): changed pictures stay for the next start.
    EndRecovery(false);
}

void frmMain::Load(const QString& commandLine, const std::function<void(const QString&)>& status)
{
    auto say = [&](const QString& text) {
        if (status)
            status(text);
    };
    // Esc cancels long work while the progress strip shows.
    qApp->installEventFilter(this);
    guarded("RemoveOldEffects", [&] { RemoveOldEffects(); });
    guarded("FindIrfanView", [&] { FindIrfanView(); });
    guarded("GetSettings", [&] { GetSettings(false); });
    MRUDlist(1);

    // The shell initialiser.
    say(tr("Please wait while initializing Velunta..."));
    if (m_services.splashWaits)
        WaitWithEvents(1.0);
    guarded("ScanEffects", [&] { ScanEffects(); });
    guarded("LoadDrawSettings", [&] { m_controls->LoadDrawSettings(); });
    guarded("SelectTool", [&] { SelectTool(m_state.CurrentTool); });
    QCoreApplication::processEvents();
    // An effect of old versions that the program no longer offers.
    QFile::remove(m_services.AppFolder + QStringLiteral("effects/Special Gray.exe"));

    ValidateMenus();

    // A path on the command line opens at once; five characters or fewer are no path.
    if (!commandLine.isEmpty() && commandLine.size() > 5) {
        QString path = commandLine;
        if (path.startsWith(u'"') && path.endsWith(u'"') && path.size() >= 2)
            path = path.mid(1, path.size() - 2);
        FileToOpen = path;
        guarded("Open_Click", [&] { Open_Click(); });
    }
    m_controls->SetBlendText(QStringLiteral("50"));
    m_state.SelectionBlend = 128;

    if (action(MenuId::mnuKidsMode)->isChecked())
        KidsMode();
    if (StartBlankPage) {
        guarded("StartWithBlankPage", [&] { StartWithBlankPage(); });
        action(MenuId::mnustartblankpage)->setChecked(true);
    }
    // The second read, then a save: a first run writes every key with its default.
    guarded("GetSettings", [&] {
        GetSettings(true);
        m_controls->LoadDrawSettings();
        SaveSettings(true);
    });
    StartRecovery();
    // The update check comes last and after the window shows: it answers in the
    // background, so the start never waits for the network.
    if (action(MenuId::mnuhelp, 7)->isChecked())
        QTimer::singleShot(0, this, [this] { guarded("CheckNewVersion", [&] { CheckForUpdates(false); }); });
}

frmPaint* frmMain::activeDocument() const
{
    QMdiSubWindow* sw = m_mdi->activeSubWindow();
    // While another program has the focus (an outside editor working on the picture),
    // and for a moment after it comes back, the area has no active window; the picture
    // is still the one last active.
    if (!sw) {
        const QList<QMdiSubWindow*> history = m_mdi->subWindowList(QMdiArea::ActivationHistoryOrder);
        if (!history.isEmpty())
            sw = history.last();
    }
    if (!sw || !sw->isVisible() || sw->property("closing").toBool())
        return nullptr;
    return qobject_cast<frmPaint*>(sw->widget());
}

QList<frmPaint*> frmMain::documents() const
{
    QList<frmPaint*> list;
    for (QMdiSubWindow* sw : m_mdi->subWindowList(QMdiArea::CreationOrder))
        if (!sw->property("closing").toBool())
            if (auto* f = qobject_cast<frmPaint*>(sw->widget()))
                list << f;
    return list;
}

frmPaint* frmMain::createDocument()
{
    auto* form = new frmPaint(*this);
    QMdiSubWindow* sw = m_mdi->addSubWindow(form);
    sw->setAttribute(Qt::WA_DeleteOnClose);
    sw->setWindowIcon(NamedIcon(QStringLiteral("app")));
    return form;
}

void frmMain::closeEvent(QCloseEvent* event)
{
    // Exit has asked about the changed pictures already.
    if (!m_exiting) {
        bool cancel = false;
        // The program's own question comes when the active document has changed.
        if (frmPaint* doc = activeDocument()) {
            if (doc->doc.Dirty && m_services.prompt.MsgBox(tr("Are you sure to close Velunta?"), vbYesNo,
                                                           tr("Close Velunta")) == vbNo)
                cancel = true;
        }
        SaveSettings(false);
        // Then every changed picture, the active one and those behind it, so none is lost
        // without a word.
        if (cancel || !AskAboutChangedPictures()) {
            event->ignore();
            return;
        }
    }
    // Exit comes this way too: no working file outlives the program.
    for (const char* name : {"temp/undo.bmp", "temp/ExtraBufferFile.bmp"})
        QFile::remove(m_services.AppFolder + QLatin1String(name));
    // An effect program still awaited stops with the program.
    if (m_external)
        m_external->CancelWait();
    EndRecovery(true);
    m_exiting = true;
    event->accept();
    // The event loop ends; before it runs (under a test) there is none, and asking would
    // make every later dialog return at once.
    if (QThread::currentThread()->loopLevel() > 0)
        QCoreApplication::exit(0);
}

void frmMain::dragEnterEvent(QDragEnterEvent* event)
{
    if (event->mimeData()->hasUrls())
        event->acceptProposedAction();
}

void frmMain::dropEvent(QDropEvent* event)
{
    if (MDIForm_OLEDragDrop(*event->mimeData()))
        event->acceptProposedAction();
}

bool frmMain::MDIForm_OLEDragDrop(const QMimeData& data)
{
    // The first file dropped opens; other data is ignored.
    const QList<QUrl> urls = data.urls();
    if (urls.isEmpty() || !urls.first().isLocalFile())
        return false;
    FileToOpen = urls.first().toLocalFile();
    guarded("Open_Click", [this] { Open_Click(); });
    return true;
}

bool frmMain::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::KeyPress && m_progress->isVisible()) {
        if (static_cast<QKeyEvent*>(event)->key() == Qt::Key_Escape)
            m_undo.CancelRequested = true;
    }
    return QMainWindow::eventFilter(watched, event);
}

void frmMain::TestDoEvents()
{
    QElapsedTimer timer;
    timer.start();
    int n = 0;
    while (timer.elapsed() < 700 && n < 999000) {
        QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
        ++n;
    }
}

QCursor frmMain::PointerCursor(int shape)
{
    if (shape == kPointerArrow)
        return QCursor(Qt::ArrowCursor);
    return ToolCursor(shape);
}

} // namespace velunta
