#include "print/frmPrint.h"

#include "core/Prompt.h"
#include "print/SheetView.h"
#include "widgets/ButtonLooks.h"
#include "widgets/zolButton.h"

#include <QApplication>
#include <QButtonGroup>
#include <QComboBox>
#include <QDesktopServices>
#include <QDir>
#include <QFile>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QMenuBar>
#include <QPainter>
#include <QPrinter>
#include <QPrinterInfo>
#include <QProcess>
#include <QRadioButton>
#include <QScreen>
#include <QScrollArea>
#include <QScrollBar>
#include <QStandardPaths>
#include <QUrl>
#include <QVBoxLayout>

#include <algorithm>
#include <cmath>

namespace velunta {

namespace {

// The preview measures in twips: 1440 to the inch, 15 to a screen pixel.
constexpr double kTwipsPerInch = 1440.0;
constexpr double kTwipsPerPixel = 15.0;
// The margins' scroll bars reach about two and three quarter inches.
constexpr int kMaxMargin = 4000;
// More copies than anyone prints of one picture; the box is set back to this.
constexpr int kMaxCopies = 999;
// The number a refused print run reports in its box's title.
constexpr int kPrinterError = 482;
// The window is applied only from these sizes up, so a damaged file can't shrink it
// to nothing.
constexpr int kMinWinWidth = 11920, kMinWinHeight = 4000;

// "###000": at least three digits.
QString marginText(int v)
{
    return v < 0 ? QString::number(v) : QStringLiteral("%1").arg(v, 3, 10, QLatin1Char('0'));
}

QRadioButton* option(const QString& caption, const QString& name, QButtonGroup* group, int id,
                     QWidget* parent)
{
    auto* b = new QRadioButton(caption, parent);
    b->setObjectName(name);
    group->addButton(b, id);
    return b;
}

int checkedIndex(const auto& buttons, int fallback)
{
    for (size_t i = 0; i < buttons.size(); ++i)
        if (buttons[i]->isChecked())
            return int(i);
    return fallback;
}

} // namespace

frmPrint::frmPrint(const QImage& picture, const QString& appFolder, Prompt& prompt, FileDialogs& dialogs,
                   QWidget* parent)
    : QDialog(parent), m_appFolder(appFolder), m_prompt(prompt), m_dialogs(dialogs)
{
    setObjectName(QStringLiteral("frmPrint"));
    setWindowTitle(tr("Print Preview"));
    buildControls();
    GetPrintSettings();
    SetPrintSettings(false);
    m_picture = picture;
    LoadItForPrint();
    ReDrawScalePic();
}

frmPrint::~frmPrint()
{
    QFile::remove(tempPicturePath());
}

QString frmPrint::settingsPath() const
{
    return m_appFolder + QStringLiteral("VeluntaPrint.ini");
}

QString frmPrint::tempPicturePath() const
{
    return m_appFolder + QStringLiteral("temp/tempbufprint1.bmp");
}

void frmPrint::buildControls()
{
    auto* menuBar = new QMenuBar(this);
    QMenu* file = menuBar->addMenu(tr("&File"));
    file->setObjectName(QStringLiteral("mnuFile"));
    auto add = [this](QMenu* menu, const QString& caption, const QString& name, auto&& fn) {
        QAction* a = menu->addAction(caption, this, fn);
        a->setObjectName(name);
        return a;
    };
    add(file, tr("&Print"), QStringLiteral("mnuPrintit"), [this] {
        printPic();
    })->setShortcut(QKeySequence::Print);
    add(file, tr("Printers..."), QStringLiteral("mnuprintSetup"), [this] { mnuprintSetup_Click(); });
    file->addSeparator();
    add(file, tr("&Save settings"), QStringLiteral("mnusavesettings"), [this] { mnusavesettings_Click(); });
    add(file, tr("&Restore"), QStringLiteral("mnurestore"), [this] { mnurestore_Click(); });
    file->addSeparator();
    add(file, tr("&Close"), QStringLiteral("mnuClose"), [this] { close(); });
    QMenu* zoom = menuBar->addMenu(tr("&Zoom"));
    zoom->setObjectName(QStringLiteral("mnuZoom"));
    for (int i = 0; i < int(ZoomMenuList().size()); ++i)
        add(zoom, QStringLiteral("%1%").arg(ZoomMenuList()[i]), QStringLiteral("mnuZoompercent(%1)").arg(i),
            [this, i] { mnuZoompercent_Click(i); });

    auto* layout = new QHBoxLayout(this);
    layout->setMenuBar(menuBar);
    auto* side = new QVBoxLayout;
    layout->addLayout(side);

    auto group = [this, side](const QString& title) {
        auto* box = new QGroupBox(title, this);
        auto* inner = new QVBoxLayout(box);
        inner->setContentsMargins(6, 2, 6, 4);
        inner->setSpacing(1);
        side->addWidget(box);
        auto* buttons = new QButtonGroup(box);
        return std::pair{inner, buttons};
    };
    auto redraw = [this] {
        if (!m_applying)
            ReDrawScalePic();
    };
    {
        auto [inner, g] = group(tr("Paper"));
        for (int i = 0; i < int(PaperTable().size()); ++i)
            inner->addWidget(m_paper[i] = option(QString::fromLatin1(PaperTable()[i].caption),
                                                 QStringLiteral("OptPaper(%1)").arg(i), g, i, this));
        connect(g, &QButtonGroup::idClicked, this, redraw);
    }
    {
        auto [inner, g] = group(tr("Orientation"));
        const QStringList captions{tr("Portrait"), tr("Landscape")};
        for (int i = 0; i < 2; ++i)
            inner->addWidget(m_orient[i] =
                                 option(captions[i], QStringLiteral("OptOrient(%1)").arg(i), g, i, this));
        connect(g, &QButtonGroup::idClicked, this, redraw);
    }
    {
        auto [inner, g] = group(tr("Color"));
        const QStringList captions{tr("Color"), tr("Monochrome")};
        for (int i = 0; i < 2; ++i)
            inner->addWidget(m_color[i] =
                                 option(captions[i], QStringLiteral("OptColor(%1)").arg(i), g, i, this));
        connect(g, &QButtonGroup::idClicked, this, redraw);
    }
    {
        auto [inner, g] = group(tr("Quality"));
        const QStringList captions{tr("Draft"), tr("Normal"), tr("High")};
        for (int i = 0; i < 3; ++i)
            inner->addWidget(m_quality[i] =
                                 option(captions[i], QStringLiteral("OptQuality(%1)").arg(i), g, i, this));
    }
    auto* grid = new QGridLayout;
    const QStringList marginCaptions{tr("Left margin:"), tr("Top margin:")};
    for (int i = 0; i < 2; ++i) {
        grid->addWidget(new QLabel(marginCaptions[i], this), 2 * i, 0);
        m_marginText[i] = new QLabel(this);
        m_marginText[i]->setObjectName(QStringLiteral("lblMargin(%1)").arg(i));
        m_marginText[i]->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
        grid->addWidget(m_marginText[i], 2 * i, 1);
        m_margin[i] = new QScrollBar(Qt::Horizontal, this);
        m_margin[i]->setObjectName(QStringLiteral("HScroll1(%1)").arg(i));
        m_margin[i]->setRange(0, kMaxMargin);
        m_margin[i]->setSingleStep(20);
        m_margin[i]->setPageStep(200);
        grid->addWidget(m_margin[i], 2 * i + 1, 0, 1, 2);
        connect(m_margin[i], &QScrollBar::valueChanged, this, [this, i] { marginChanged(i); });
    }
    grid->addWidget(new QLabel(tr("Zoom:"), this), 4, 0);
    m_zoom = new QComboBox(this);
    m_zoom->setObjectName(QStringLiteral("Cmbzoom"));
    for (int z : ZoomList())
        m_zoom->addItem(QStringLiteral("%1%").arg(z));
    connect(m_zoom, &QComboBox::currentIndexChanged, this, [this](int i) {
        if (i < 0)
            return;
        m_zoomPercent = ZoomList()[i];
        if (!m_applying)
            ReDrawScalePic();
    });
    grid->addWidget(m_zoom, 4, 1);
    grid->addWidget(new QLabel(tr("Copies:"), this), 5, 0);
    m_copies = new QLineEdit(QStringLiteral("1"), this);
    m_copies->setObjectName(QStringLiteral("txtCopies"));
    m_copies->setMaxLength(6);
    grid->addWidget(m_copies, 5, 1);
    side->addLayout(grid);
    side->addWidget(new QLabel(tr("Printer:"), this));
    m_printer = new QComboBox(this);
    m_printer->setObjectName(QStringLiteral("cmbPrinter"));
    const QString defaultPrinter = QPrinterInfo::defaultPrinterName();
    for (const QString& name : QPrinterInfo::availablePrinterNames())
        m_printer->addItem(name, name);
    m_printer->addItem(tr(kPdfPrinterCaption), QString());
    const int preferred = m_printer->findData(defaultPrinter);
    m_printer->setCurrentIndex(preferred >= 0 && !defaultPrinter.isEmpty() ? preferred : 0);
    side->addWidget(m_printer);
    if (m_printer->count() == 1) {
        auto* none = new QLabel(tr("No printer is set up: the picture goes to a PDF file."), this);
        none->setObjectName(QStringLiteral("lblNoPrinter"));
        none->setWordWrap(true);
        side->addWidget(none);
    }

    m_cmdFit = new zolButton(tr("Best fit"), this);
    m_cmdFit->setObjectName(QStringLiteral("Command1"));
    m_cmdFit->setToolTip(tr("Try to fit the image best way to the paper size"));
    DialogLook(m_cmdFit);
    connect(m_cmdFit, &zolButton::Click, this, &frmPrint::Command1_Click);
    side->addWidget(m_cmdFit);
    m_cmdPrint = new zolButton(tr("Print"), this);
    m_cmdPrint->setObjectName(QStringLiteral("CmdPrint"));
    DialogLook(m_cmdPrint);
    connect(m_cmdPrint, &zolButton::Click, this, [this] { printPic(); });
    side->addWidget(m_cmdPrint);
    auto* close = new zolButton(tr("Close"), this);
    close->setObjectName(QStringLiteral("CmdClose"));
    DialogLook(close);
    connect(close, &zolButton::Click, this, &QDialog::close);
    side->addWidget(close);
    side->addStretch(1);

    m_holder = new QScrollArea(this);
    m_holder->setObjectName(QStringLiteral("picHolder"));
    m_holder->horizontalScrollBar()->setObjectName(QStringLiteral("hbarScroller"));
    m_holder->verticalScrollBar()->setObjectName(QStringLiteral("vbarScroller"));
    m_holder->setAlignment(Qt::AlignCenter);
    m_holder->setBackgroundRole(QPalette::Dark);
    m_sheet = new SheetView(m_holder);
    m_holder->setWidget(m_sheet);
    layout->addWidget(m_holder, 1);
}

void frmPrint::GetPrintSettings()
{
    // A missing or damaged file gives the defaults, without a word.
    m_settings = PrintDefaults();
    ReadPrintSettings(settingsPath(), m_settings);
}

void frmPrint::SetPrintSettings(bool write)
{
    m_applying = true;
    const PrintSettings s = m_settings;
    m_zoom->setCurrentIndex(std::clamp<int>(s.ZoomIndex, 0, m_zoom->count() - 1));
    m_quality[std::clamp<int>(s.Quality, 0, 2)]->setChecked(true);
    m_paper[std::clamp<int>(s.Paper, 0, int(m_paper.size()) - 1)]->setChecked(true);
    m_color[std::clamp<int>(s.ColorMode, 0, 1)]->setChecked(true);
    m_orient[std::clamp<int>(s.Orientation, 0, 1)]->setChecked(true);
    m_margin[0]->setValue(s.MarginLeft);
    m_margin[1]->setValue(s.MarginTop);
    marginChanged(0);
    marginChanged(1);
    m_zoomPercent = ZoomList()[m_zoom->currentIndex()];
    m_applying = false;
    applyWindowPlace();
    if (write)
        writeSettings();
    ReDrawScalePic();
}

void frmPrint::applyWindowPlace()
{
    const PrintSettings& s = m_settings;
    QRect place = geometry();
    if (s.WinWidth >= kMinWinWidth)
        place.setWidth(int(std::min<double>(s.WinWidth / kTwipsPerPixel, 1e5)));
    if (s.WinHeight >= kMinWinHeight)
        place.setHeight(int(std::min<double>(s.WinHeight / kTwipsPerPixel, 1e5)));
    place.moveTo(int(std::clamp<double>(s.WinLeft / kTwipsPerPixel, -1e5, 1e5)),
                 int(std::clamp<double>(s.WinTop / kTwipsPerPixel, -1e5, 1e5)));
    // Whatever the file says, the window lands on a screen a user can see.
    if (const QScreen* screen = QGuiApplication::screenAt(place.topLeft())
                                    ? QGuiApplication::screenAt(place.topLeft())
                                    : QGuiApplication::primaryScreen()) {
        const QRect room = screen->availableGeometry();
        place.setSize(place.size().boundedTo(room.size()));
        place.moveLeft(std::clamp(place.left(), room.left(), room.right() - place.width() + 1));
        place.moveTop(std::clamp(place.top(), room.top(), room.bottom() - place.height() + 1));
    }
    resize(place.size());
    move(place.topLeft());
}

void frmPrint::rememberWindowPlace()
{
    const QRect g = geometry();
    m_settings.WinLeft = std::int32_t(pos().x() * kTwipsPerPixel);
    m_settings.WinTop = std::int32_t(pos().y() * kTwipsPerPixel);
    m_settings.WinWidth = std::int32_t(g.width() * kTwipsPerPixel);
    m_settings.WinHeight = std::int32_t(g.height() * kTwipsPerPixel);
}

PrintSettings frmPrint::currentSettings() const
{
    PrintSettings s = m_settings;
    s.Quality = std::int16_t(checkedIndex(m_quality, 1));
    s.Paper = std::int16_t(checkedIndex(m_paper, 1));
    s.ColorMode = std::int16_t(checkedIndex(m_color, 0));
    s.Orientation = std::int16_t(checkedIndex(m_orient, 0));
    s.MarginLeft = std::int16_t(m_margin[0]->value());
    s.MarginTop = std::int16_t(m_margin[1]->value());
    if (m_zoom->currentIndex() >= 0)
        s.ZoomIndex = std::int16_t(m_zoom->currentIndex());
    const QRect g = geometry();
    s.WinLeft = std::int32_t(pos().x() * kTwipsPerPixel);
    s.WinTop = std::int32_t(pos().y() * kTwipsPerPixel);
    s.WinWidth = std::int32_t(g.width() * kTwipsPerPixel);
    s.WinHeight = std::int32_t(g.height() * kTwipsPerPixel);
    return s;
}

void frmPrint::LoadItForPrint()
{
    // The working copy on disk lives as long as the preview; the preview itself prints
    // from the picture in memory, which is the same pixels.
    QDir().mkpath(m_appFolder + QStringLiteral("temp"));
    if (!m_picture.isNull())
        m_picture.save(tempPicturePath(), "BMP");
    m_printSize = QSizeF(m_picture.width() * kTwipsPerPixel, m_picture.height() * kTwipsPerPixel);
}

QSizeF frmPrint::sheetTwips() const
{
    const PaperRow& row = PaperTable()[checkedIndex(m_paper, 1)];
    const bool landscape = checkedIndex(m_orient, 0) == 1;
    return landscape ? QSizeF(row.height, row.width) : QSizeF(row.width, row.height);
}

QRectF frmPrint::pictureTwips() const
{
    return {QPointF(m_margin[0]->value(), m_margin[1]->value()), m_printSize};
}

void frmPrint::ReDrawScalePic()
{
    const double f = m_zoomPercent / 100.0 / kTwipsPerPixel;
    const QSizeF sheet = sheetTwips();
    const QRectF pic = pictureTwips();
    const QSize paper(std::max(1, int(std::lround(sheet.width() * f))),
                      std::max(1, int(std::lround(sheet.height() * f))));
    const QRect shown(int(std::lround(pic.x() * f)), int(std::lround(pic.y() * f)),
                      std::max(1, int(std::lround(pic.width() * f))),
                      std::max(1, int(std::lround(pic.height() * f))));
    // A monochrome print shows grey on the sheet too.
    if (checkedIndex(m_color, 0) == 1) {
        if (m_grey.isNull() && !m_picture.isNull())
            m_grey = m_picture.convertToFormat(QImage::Format_Grayscale8);
        m_sheet->setSheet(paper, shown, m_grey);
    } else {
        m_sheet->setSheet(paper, shown, m_picture);
    }
}

void frmPrint::marginChanged(int i)
{
    m_marginText[i]->setText(marginText(m_margin[i]->value()));
    if (!m_applying)
        ReDrawScalePic();
}

void frmPrint::Command1_Click()
{
    // The picture may take the sheet up to half a margin from the far edges, keeping
    // its proportions.
    const QSizeF sheet = sheetTwips();
    const double left = m_margin[0]->value(), top = m_margin[1]->value();
    const double freeWidth = sheet.width() - left - left / 2, freeHeight = sheet.height() - top - top / 2;
    if (freeWidth <= 0 || freeHeight <= 0 || m_printSize.isEmpty())
        return;
    const double ratio = std::min(freeWidth / m_printSize.width(), freeHeight / m_printSize.height());
    m_printSize *= ratio;
    ReDrawScalePic();
}

void frmPrint::mnuZoompercent_Click(int index)
{
    m_zoomPercent = ZoomMenuList().at(index);
    const auto& list = ZoomList();
    const auto at = std::find(list.begin(), list.end(), m_zoomPercent);
    m_applying = true;
    // A factor the list doesn't hold shows as the list's text all the same.
    m_zoom->setPlaceholderText(QStringLiteral("%1%").arg(m_zoomPercent));
    m_zoom->setCurrentIndex(at == list.end() ? -1 : int(at - list.begin()));
    m_applying = false;
    ReDrawScalePic();
}

bool frmPrint::writeSettings()
{
    QString reason;
    if (WritePrintSettings(settingsPath(), m_settings, QStringLiteral(VELUNTA_VERSION), &reason))
        return true;
    m_prompt.MsgBox(tr("Could not save the print settings.") + u'\n' + reason, vbExclamation,
                    tr("Print Settings"));
    return false;
}

void frmPrint::mnusavesettings_Click()
{
    m_settings = currentSettings();
    if (writeSettings())
        m_prompt.MsgBox(tr("Print Settings Saved."), vbOKOnly, tr("Print Settings"));
}

void frmPrint::mnurestore_Click()
{
    m_settings = PrintDefaults();
    SetPrintSettings(false);
    m_prompt.MsgBox(tr("Print Settings restored back to default."), vbOKOnly,
                    tr("Restore to Default Print Settings"));
}

void frmPrint::mnuprintSetup_Click()
{
    // The desktop's printer settings, or CUPS's own pages where that tool is missing.
    const QString tool = QStandardPaths::findExecutable(QStringLiteral("system-config-printer"));
    if (!tool.isEmpty() && QProcess::startDetached(tool, {}))
        return;
    if (!QDesktopServices::openUrl(QUrl(QStringLiteral("http://localhost:631/printers"))))
        m_prompt.MsgBox(tr("Could not open the printer settings."), vbExclamation, tr("Printers"));
}

bool frmPrint::choosePrinter(const QString& name)
{
    const int i = m_printer->findText(name);
    if (i >= 0)
        m_printer->setCurrentIndex(i);
    return i >= 0;
}

int frmPrint::copiesToPrint()
{
    // The leading digits count, as a number typed by hand is read; anything below one
    // prints once and says so in the box.
    const QString text = m_copies->text().trimmed();
    qsizetype digits = 0;
    while (digits < text.size() && digits < 9 && text[digits].isDigit())
        ++digits;
    int copies = text.left(digits).toInt();
    if (copies < 1) {
        copies = 1;
        m_copies->setText(QStringLiteral("1"));
    } else if (copies > kMaxCopies) {
        copies = kMaxCopies;
        m_copies->setText(QString::number(kMaxCopies));
    }
    return copies;
}

bool frmPrint::preparePrinter(QPrinter& printer)
{
    const QString name = m_printer->currentData().toString();
    if (!name.isEmpty()) {
        printer.setPrinterName(name);
        return true;
    }
    QString path = m_pdfFile;
    if (path.isEmpty()) {
        int filter = 1;
        path = m_dialogs.getSaveFileName(tr("Print to PDF file"), tr("PDF Files (*.pdf)"),
                                         QStringLiteral("picture.pdf"), filter);
        if (path.isEmpty())
            return false;
        if (!path.endsWith(QStringLiteral(".pdf"), Qt::CaseInsensitive))
            path += QStringLiteral(".pdf");
    }
    printer.setOutputFormat(QPrinter::PdfFormat);
    printer.setOutputFileName(path);
    return true;
}

bool frmPrint::printPic()
{
    const int copies = copiesToPrint();
    const PrintSettings s = currentSettings();
    QPrinter printer(QPrinter::HighResolution);
    if (!preparePrinter(printer))
        return false;
    printer.setPageOrientation(s.Orientation == 1 ? QPageLayout::Landscape : QPageLayout::Portrait);
    printer.setColorMode(s.ColorMode == 1 ? QPrinter::GrayScale : QPrinter::Color);
    printer.setCopyCount(copies);
    printer.setResolution(QualityResolution(s.Quality));
    printer.setPageSize(QPageSize(PaperTable()[s.Paper].page));
    printer.setFullPage(true);
    printer.setDocName(tr("Velunta picture"));

    const bool wasVisible = isVisible();
    QApplication::setOverrideCursor(Qt::WaitCursor);
    bool ok = false;
    {
        QPainter painter;
        if (printer.isValid() && painter.begin(&printer)) {
            // Twips to the printer's dots; the sheet's origin is the paper's corner.
            const double dots = printer.resolution() / kTwipsPerInch;
            const QRectF pic = pictureTwips();
            const QRectF target(pic.x() * dots, pic.y() * dots, pic.width() * dots, pic.height() * dots);
            // A picture with more pixels than the printer has dots there is cut down to
            // them first: the page looks the same and the job stays small.
            QImage ink = m_picture;
            const QSize dotsThere = target.size().toSize().expandedTo(QSize(1, 1));
            if (ink.width() > dotsThere.width() && ink.height() > dotsThere.height())
                ink = ink.scaled(dotsThere, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
            if (s.ColorMode == 1)
                ink = ink.convertToFormat(QImage::Format_Grayscale8);
            painter.setRenderHint(QPainter::SmoothPixmapTransform);
            // A printer's queue makes the copies itself; a PDF file gets one page a copy.
            const int pages = printer.supportsMultipleCopies() ? 1 : copies;
            bool more = true;
            for (int page = 0; page < pages && more; ++page) {
                if (page > 0)
                    more = printer.newPage();
                painter.drawImage(target, ink);
            }
            ok = painter.end();
        }
    }
    QApplication::restoreOverrideCursor();
    QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
    setVisible(wasVisible);
    if (!ok || printer.printerState() == QPrinter::Error) {
        m_prompt.MsgBox(tr("Could not print the picture."), vbExclamation,
                        QStringLiteral("Print error nr") + QString::number(kPrinterError));
        return false;
    }
    return true;
}

void frmPrint::done(int result)
{
    // The window's place goes into the record only; the file keeps what was saved.
    rememberWindowPlace();
    QFile::remove(tempPicturePath());
    QDialog::done(result);
}

} // namespace velunta
