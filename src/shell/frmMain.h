#pragma once
// The main window: the menus, the command toolbar, the tool strip, the tool option
// strip, the colour strip, the status read-outs and the progress strip around the
// documents' area. It owns the draw state and the undo counters, and it is the host
// that documents and tools report to.

#include "document/DocumentHost.h"
#include "document/DrawState.h"
#include "document/ToolContext.h"
#include "document/ToolHost.h"
#include "document/UndoRing.h"
#include "imageops/Blend.h"
#include "imageops/Borders.h"
#include "imageops/Frames.h"
#include "shell/MenuTable.h"
#include "widgets/zolButton.h"

#include <QHash>
#include <QMainWindow>
#include <QPointer>

#include <array>
#include <functional>
#include <memory>
#include <span>
#include <vector>

class QLabel;
class QMdiArea;
class QMimeData;
class QMdiSubWindow;
class QMenu;
class QFrame;
class QCheckBox;
class QGridLayout;

namespace velunta {

class ColorStrip;
class ExternalEffect;
class FrmSymbols;
class UpdateCheck;
class RecoveryStore;
class RecoveryWriter;
struct RecoverySource;
struct FoundPicture;
class frmControls;
struct EffectsBrowserMemory;
struct StepHistories;
class StepHistory;
class frmPaint;
class ProgressStrip;
struct GridSettings;
struct Services;
struct WriteFailure;
enum class SaveFormat;

// The size of the blank page at start: the room beside the bars, or 640 x 480 and its
// frame (642 x 482) when the window is small.
QSize BlankPageSize(int mainWidth, int mainHeight, int leftBarWidth, int rightBarWidth, int topBarHeight);
// What a document's window adds around its contents: the borders and the title bar.
QSize DocumentWindowFrame(QMdiSubWindow* sw);

class frmMain : public QMainWindow, public ToolHost, public DocumentHost {
    Q_OBJECT
public:
    explicit frmMain(Services& services, QWidget* parent = nullptr);
    ~frmMain() override;

    // The load sequence; `status` writes the splash's status line.
    void Load(const QString& commandLine, const std::function<void(const QString&)>& status = {});

    // Documents.
    frmPaint* activeDocument() const;
    QList<frmPaint*> documents() const;
    frmPaint* createDocument();
    // Sizes the view and its window to the picture, shows it and makes it active.
    void showDocument(frmPaint* form, bool maximized);
    QMdiArea* mdiArea() const { return m_mdi; }

    // Commands.
    void NewImage_Click();
    void Open_Click();
    void Close_Click();
    void Exit_Click();
    void StartWithBlankPage();
    void CmdCommands_Click(int index);
    // The toolbar's "undo to last saved": the saved picture comes back as an undo step.
    void RevertSavedAndRecord();
    // Files dropped on the main window: the first one opens.
    bool MDIForm_OLEDragDrop(const QMimeData& data);
    void Cmd_DblClick(int index);
    void KidsMode();

    // Settings: false reads the window, view and tool option keys, true the text font,
    // the two colours and AutoSizePos. Saving with false writes the window and view keys
    // and the recent files; true adds the draw presets.
    void GetSettings(bool drawPart);
    void SaveSettings(bool drawPart);
    void LoadLastDrawSettings();
    void RestoreDefaultSettings();
    // Extra: save the draw presets now, load them back, and remember the window's place.
    void mnuextra1_Click();
    void mnuextra2_Click();
    void mnuWindowAutoSizePosition_Click();

    // Undo that the ring doesn't cover: the resize undo file and the saved picture.
    void UndoResize_Click();
    // temp/undo.bmp holds a picture this program put there and hasn't undone yet.
    bool UndoFilePending() const;
    void RevertSaved(const QString& path);
    void mnuundorevert_Click();

    // Step-by-step undo (frmMain_StepUndo.cpp): Extra > "Step-by-step undo" swaps the
    // ring for a linear history with Redo.
    void mnuStepUndo_Click();
    void Redo_Click();
    bool StepUndoOn() const;

    // Selection and clipboard.
    void Copy_Click();
    void Cut_Click();
    void Paste_Click();
    void PasteSpecial_Click();
    void SelectAll_Click();
    void ClearSelection_Click();
    // Grab Selection/mask: the pointer tool, which drags the selection.
    void mnugrabmask_Click();
    // The floating selection's options: the key colour made transparent and the blend
    // over what lies under it (ratio 0..255), previewed over the float's own pixels.
    bool PreviewSelectionOptions(bool transparent, Color key, bool blend, int ratio);
    void ApplyToSelection();
    void CancelSelectionOptions();
    void RemoveSelection();
    // The picture on the clipboard, or a null image.
    QImage clipboardPicture() const;
    // The colour replacer's panel buttons: "Replace colors" swaps the picked source
    // colour for the new one in the picture or the floating selection, with an undo
    // step; "Cancel" forgets both colours.
    void Replacecolors();
    void CancelReplace();
    // Blending, borders and picture frames: Image > Blend Selection..., Blend Image
    // From..., Picture Frames..., Borders... (also in the Tools menu and on the
    // toolbar), and the reverse blends of the Effects menu.
    void mnuBlendIt_Click();
    void mnuPasteBlend_Click();
    // Blends into the selection as blendState says: what lies under it (reflected with
    // the selection tool), or `picTexture`, a picture from a file, for kBlendFromFile.
    void BlendThePic(const QImage& picTexture = QImage());
    // The toolbar's "Blend": the selection over what lies under it, at a quarter.
    void CmdBlend_Click();
    void mnuReverseBlendH1_Click(int index);
    void mnuReverseBlendV1_Click(int index);
    void mnuPicFrames_Click();
    void mnuBorders_Click();
    // The choices of the Blend, Picture Frames and Borders dialogs, kept for the run.
    BlendState blendState;
    FrameSettings frameSettings;
    BorderSettings borderSettings;

    // The operations this window has built that the tool panels may call by name.
    QStringList builtOperations() const { return m_operations.keys(); }
    // Makes an operation available to the panels' buttons of that name.
    void registerOperation(const QString& name, const std::function<void()>& handler);

    // Textures and stamps: Texture Fill tiles the picture or the selection with a
    // texture chosen in FrmTextures; Symbols & Stamps (index 0) opens the stamp palette,
    // which stays open beside the main window.
    void mnuTexturefill_Click();
    void mnusymbols_Click(int index);
    FrmSymbols* symbols() const;

    // Canvas: size, rotation, flips, erase, invert, brightness and contrast. On the
    // floating selection while one shows, except Image Size and Erase Image, which drop
    // it and work on the whole picture.
    void ImageSize_Click();
    // The resize behind Image Size's OK, undone by Undo Resize. A size the memory can't
    // hold is refused with a message and the picture stays as it was. True when resized.
    bool ResizeImage(qint64 width, qint64 height);
    // 0, 1, 2: 45, 90 and 180 degrees; 4: "Define angle..." (frmRotate).
    void mnurotates_Click(int index);
    void FlipHorizontal_Click();
    void FlipVertical_Click();
    // 0 white, 1 black, 2 the background colour.
    void EraseImage_Click(int index);
    void InvertImage_Click();
    // The brightness and contrast dialog: 0 brightness, 1 contrast.
    void mnuImgeffects_Click(int index);
    void mnuBright_Click() { mnuImgeffects_Click(0); }
    void mnuDark_Click() { mnuImgeffects_Click(1); }
    // The divisor of frmRotate's last angle (-1 after Cancel), kept while the program runs.
    int RotateDivisor = 0;

    // Files.
    void Save_Click();
    void SaveAs_Click();
    // The one way pictures are written. Quality 0 or less means 90. True when the file
    // was written.
    bool FileSaveAs(const QString& fileName, SaveFormat format, Color transparentColor, int& quality);
    void mnuExportBMP_Click();
    void mnuExportJPG_Click();
    void mnuExportGif_Click();
    void mnuProperties_Click();
    // The recent files: mode 1 loads the list from the settings, mode 2 adds a path.
    void MRUDlist(int mode, const QString& path = QString());
    void mnuMrud_Click(int index);
    QString recentFile(int index) const { return m_recent[index]; }
    // Writes the recent files to the settings store.
    void SaveRecentFiles();
    void mnuHideToolbar_Click();
    void mnuZooms_Click(int index);
    void mnuView_Click();
    void mnuShowGrid_Click();
    void menuExGridSnap_Click();
    void mnuGuideLines_Click();
    void mnuGuideLinecolor_Click();
    void mnuGuideLineStyles_Click(int index);
    void menuExGridSetup_Click();
    // The marks of the View menu's options, kept in their fields.
    void mnufitbigimages_Click();
    void mnumaximizeonopen_Click();
    void mnustartblankpage_Click();
    // The Window menu: tile the pictures one above the other, side by side, or cascade them.
    void ArrHorizontal_Click();
    void ArrVertival_Click();
    void Cascade_Click();
    // Help (frmMain_Help.cpp): mnuhelp(0) the manual, (1) a mail to the makers, (3) the
    // update check the user asks for, (4) the support group, (7) the automatic check at
    // start-up on or off, (9) About.
    void mnuhelp_Click(int index);
    // The new-version check; `verbose` when the user asked for it.
    void CheckForUpdates(bool verbose);
    UpdateCheck* updateCheck() const { return m_updateCheck.get(); }
    // Opens an address (web, mailto: or a local page) through the desktop.
    void OpenAddress(const QUrl& url);
    void ApplyGridSettings(const GridSettings& settings);
    void TestDoEvents();

    // External effect programs and plug-ins: the programs of the effects folder in the
    // Effects menu, the Plugin_* programs in Extra > Plugin, and the companion tools.
    // Each takes the picture through temp/effect.bmp and gives it back as one undo step.
    void RemoveOldEffects();
    void ScanEffects();
    // fullPath false: fileName lies in the effects folder; true: it is used as it stands
    // (a name without a folder lies in the program's folder).
    void RunEffect(const QString& fileName, bool fullPath);
    void Filter_Click(int index);
    void mnuextraplugins_Click(int index);
    void mnuBezier_Click();
    void mnuPolygons_Click();
    void mnucolordepth_Click();
    // The Effects menu's program entries Filter(0..n), each with its file name as data.
    const QList<QAction*>& Filter() const { return m_filters; }
    // mnuextraplugins(i) for i from 4 on, each with its stored name as data; null past the last.
    QAction* PluginEntry(int index) const;
    ExternalEffect& externalEffect();
    // Import, export and the outside tools: the desktop's picture viewer, scanning and
    // the wallpaper (frmMain_Import.cpp, frmMain_Outside.cpp).
    void Imports_Click(int index);
    void mnuExportPNG_Click();
    void mnuExportBMPOptions_Click();
    void mnuCopyTo_Click();
    void mnuPasteFrom_Click();
    // Looks for the desktop's picture viewer; its entry in the Edit menu shows, with the
    // viewer's name, once one is found.
    void FindIrfanView();
    void mnucopyIrfanview_Click();
    void mnuSelTwain_Click();
    void mnuAcquire_Click();
    void mnuwallpaper_Click();
    // Places a picture on the active document as a floating selection, as Paste does.
    // With `stamp`, the picture is that stamp on a plain ground, and the stamp with its
    // own transparency floats instead (tools/Selection.h, LetStampShowThrough).
    void PastePicture(const QImage& picture, const QImage& stamp = QImage());
    // The desktop viewer's command (its Exec line; known when longer than 5 characters),
    // its name, icon and .desktop file.
    QString IrfanViewPath;
    QString IrfanViewName;
    QString IrfanViewIcon;
    QString IrfanViewFile;
    // The last name "Copy To" wrote to.
    QString CopyToName;
    // Effects: the one-click filters of the Image and Effects menus and the Effects
    // Browser (frmMain_Effects.cpp).
    void Greyscale_Click(int index);
    void mnugrayscale_Click();
    void mnuDoBright_Click();
    void mnuDoDark_Click();
    void Filters_Click();
    // Opens the Effects Browser on the picture or the floating selection.
    void mnuEffectBrowser_Click();

    // Detailed editing and the thumbnail open dialog (frmMain_Detail.cpp).
    // Tools > Detailed Editing and the zoom panel's button: the floating selection when
    // one shows, otherwise the "Detail" check arms the picker for a click on the picture.
    void PrepEditDetail();
    // The magnified editor on the area around an image point of the active document
    // (a point of the floating selection's surface while it shows).
    void EditDetailAt(QPoint point);
    void DetailPicked(Document& doc, double x, double y) override;
    // File > Open in thumbnail-view: the chosen picture opens as Open does.
    void OpenThumbnailview_Click();
    // Printing: the print preview, which prints (frmMain_Print.cpp).
    void mnuPrint_Click();

    // Unsaved pictures kept against a crash: the session starts with the load, offers
    // what an earlier run left, and ends with the close. Null while nothing is kept.
    RecoveryWriter* recoveryWriter() const { return m_recovery.get(); }
    void OfferRecovery();

    // Colours (the strip in the right bar).
    void SetColorBars();
    QString ColorToHTML(Color c) const { return velunta::ColorToHTML(c); }
    // Kept for its callers: the gradient preview follows the colours by itself.
    void DrawGradients() {}
    void SelColor_MouseDown(int index, int button);
    int GetSelectedColor() const;
    // Reduces the picture, or the floating selection, to the strip's colours.
    void ChangePalette();
    // The active document's pen and its text box take the working colours.
    void ApplyColors();
    ColorStrip* colorStrip() const { return m_colorStrip; }
    // The text tool's two panel operations, on the active document: "Apply Text" draws
    // the box's text on the picture, "Cancel Text" drops it.
    void ApplyText();
    void CancelText();

    // Fields of the window.
    bool StartBlankPage = false;
    bool MaximizeOnOpen = false;
    bool FitBigImages = false;
    QString FileToOpen;
    int LastNewWidth = 0;
    int LastNewHeight = 0;
    int GuideLinesColor = 0x808080;
    int GuideLineStyle = 2;
    int GridColor = 0xF0F0F0;
    bool GridConstrain = false;
    bool AutoSizePos = false;
    QString NoURLupdate;
    int NewImageWidth = 640;
    int NewImageHeight = 480;
    int FrameColorSheme = 0;
    int FormColorSheme = 0;
    // The save dialog's filter index (SaveFilter), which is the format of Save too.
    int SaveFilterIndex = 0;
    // The JPEG quality last used in this run, if any.
    int LastJpegQuality = 0;

    DrawState& state() { return m_state; }
    UndoState& undo() { return m_undo; }
    Services& services() { return m_services; }
    ToolContext& toolContext() { return m_ctx; }
    frmControls* controls() const { return m_controls; }
    ProgressStrip* progress() const { return m_progress; }

    // The rows of the menus and of the toolbar (shell/MenuTable.h).
    static std::span<const MenuRow> MenuRows();
    static std::span<const ToolbarRow> ToolbarRows();

    // Named parts, as the program refers to them. A menu entry by its id and its index
    // in a control array (mnuZooms(100) is action(MenuId::mnuZooms, 100)); by its
    // object name for the panels' named operations and for tests.
    QAction* action(MenuId id, int index = -1) const;
    QMenu* menu(MenuId id) const;
    bool isBuilt(MenuId id, int index = -1) const;
    QAction* action(const QString& name) const;
    QMenu* menu(const QString& name) const;
    zolButton* CmdCommands(int index) const { return m_commands.at(index); }
    zolButton* Cmd(int index) const { return m_tools.at(index); }
    QLabel* lblCoords() const { return m_lblCoords; }
    QLabel* lblArea() const { return m_lblArea; }
    QLabel* lblImgSize() const { return m_lblImgSize; }
    QWidget* Picbuttons() const { return m_picbuttons; }
    QCheckBox* chkSnapGrid() const { return m_chkSnapGrid; }
    bool isBuilt(const QString& objectName) const;

    // CommandHost
    Document* ActiveDocument() override;
    void PrepUndo() override;
    void SetSelBak() override;
    void SaveUndoBitmap() override;
    void ValidateMenus() override;
    void UndoRecorded() override { SetUndoEnabled(true); }
    void PictureResized() override;
    void BeginBusy(bool progress) override;
    bool StepProgress(double fraction) override;
    void EndBusy() override;

    // ToolHost
    void StrokeEnded() override { m_undo.UndoSuppressed = false; }
    void SetUndoEnabled(bool enabled) override;
    // Undo has somewhere to go in the active way of undoing (the ring or the history).
    bool undoAvailable(frmPaint& form, bool resizePending);
    bool UndoEnabled() const override;
    void Undo_Click() override;
    void SelectTool(int tool) override;
    void Cmd_Click(int index) override;
    void ShowImageContextMenu(Document& doc) override;
    void SetCoordsText(const QString& text) override;
    void SetAreaText(const QString& text) override;
    void SetZoomText(const QString& text) override;
    void ClearZoomOptions() override;
    void ShowCursorPanel(bool visible) override;
    void SetBlendText(const QString& text) override;
    bool ToggleSnapGrid() override;
    void ShowPickedColor(Color c) override;
    void SetAngleText(const QString& text, int alignment) override;
    void ColorsChanged() override;
    void ShowTransparencyColor(Color c) override;
    void ShowReplaceColor(int index, Color c) override;

    // DocumentHost
    void PaintAreaMouseDown(frmPaint& form, int button, int shift, float x, float y) override;
    void PaintAreaMouseMove(frmPaint& form, int button, int shift, float x, float y) override;
    void PaintAreaMouseUp(frmPaint& form, int button, int shift, float x, float y) override;
    void PaintAreaWheelZoom(frmPaint& form, bool in, float x, float y) override;
    void FormKeyDown(frmPaint& form, int keyCode, int shift) override;
    void FormKeyUp(frmPaint& form, int keyCode, int shift) override;
    bool FormQueryUnload(frmPaint& form) override;
    void FormTerminated(frmPaint& form) override;
    void SetImageSizeText(const QString& text) override;
    void ZoomChanged(frmPaint& form) override;
    QCursor PointerCursor(int shape) override;

protected:
    void closeEvent(QCloseEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dropEvent(QDropEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    // Building the window.
    void buildMenus();
    void buildCommandBar();
    void buildToolStrip();
    void wireColors();
    void buildStatus();
    void wireCommandBar();
    void applyGuideLines();
    // Writes by a save filter index: 1 and 2 BMP, 3 JPEG at 90, 4 GIF; false for the others.
    bool saveByFilter(const QString& name, int filterIndex);
    // Before writing to `name`, which the extension rules made of the `chosen` one: a file
    // of that name the user didn't choose is replaced only after a question.
    bool confirmOverwrite(const QString& chosen, const QString& name);
    // Yes to "save the changes" of a picture being closed: back into its file, or through
    // the save dialog. True when it was written.
    bool saveOnClose(frmPaint& form);
    // Asks about each changed picture before the program ends: save, leave unsaved, or
    // stay (false).
    bool AskAboutChangedPictures();
    void placeToolButtons();
    // Connects the tool option strip to the documents and the commands.
    void wireControls();
    void wireSelectionOptions();
    void wireText();
    // The float's preview with the options the panel shows now.
    void refreshSelectionPreview();
    void refreshWindowList();
    void documentActivated(QMdiSubWindow* window);

    // Loads `path` into a new document's Buffer (a drawing through its converter, with
    // the progress strip and Esc). On failure the empty window stays and a message names
    // `shownName`; false.
    bool loadIntoDocument(frmPaint& form, const QString& path, const QString& shownName);
    // A picture file as OpenPicture reads it, with the progress strip and Esc while a
    // drawing converts.
    QImage openPictureFile(const QString& path, QString& error, int& errorNumber);
    // "Error loading <name>. Err nr:<n>" and the reason; "Error saving file: <n> - <reason>".
    void showLoadError(const QString& name, int errorNumber, const QString& reason);
    void showSaveError(const WriteFailure& failure);
    // The outside tools' entries: the viewer's shows when one is known, scanning is
    // there when the scanner companion is.
    void validateOutsideTools();

    // Menu plumbing: a command is enabled only when it is built and its rule allows it.
    void runHandler(const MenuHandler& handler, int index);
    int rowOf(MenuId id, int index) const;
    void enable(MenuId id, bool on, int index = -1);
    void enableRow(size_t row, bool on);
    void showEntry(MenuId id, bool visible, int index = -1);
    void wireCommand(int index, const std::function<void()>& handler);
    void enableCommand(int index, bool on);
    // Runs a command inside the guard: a fault ends it and the program runs on.
    void guarded(const char* step, const std::function<void()>& fn);
    void StartRecovery();
    // Keeps the files of the changed pictures for the next start, unless the user was
    // asked about each of them (`askedAboutAll`) and chose to leave them unsaved.
    void EndRecovery(bool askedAboutAll);
    QList<RecoverySource> recoverySources() const;
    void RestoreRecovered(const FoundPicture& found);

    Services& m_services;
    DrawState m_state;
    UndoState m_undo;
    std::shared_ptr<StepHistories> m_stepHistories; // per document, while step-by-step undo is on
    StepHistory& stepHistory(frmPaint& form);
    ToolContext m_ctx{m_state, *this};

    QMdiArea* m_mdi = nullptr;
    QWidget* m_picbuttons = nullptr;
    QWidget* m_leftBar = nullptr;
    QGridLayout* m_toolGrid = nullptr;
    QWidget* m_rightBar = nullptr;
    ColorStrip* m_colorStrip = nullptr;
    frmControls* m_controls = nullptr;
    ProgressStrip* m_progress = nullptr;
    QLabel* m_lblCoords = nullptr;
    QLabel* m_lblArea = nullptr;
    QLabel* m_lblImgSize = nullptr;
    QCheckBox* m_chkSnapGrid = nullptr;
    QCheckBox* m_chkDetailEdit = nullptr;
    std::array<zolButton*, 23> m_commands{};
    std::array<bool, 23> m_commandBuilt{};
    std::array<QWidget*, 12> m_separators{}; // Image1(0..11) between the toolbar's groups
    std::array<zolButton*, kToolCount> m_tools{};
    std::vector<QAction*> m_rowActions; // by row of MenuRows()
    QHash<quint32, int> m_rowOf;        // row by id and index
    QHash<QString, QAction*> m_actions;
    QHash<QString, QMenu*> m_menus;
    bool m_undoEnabled = false;
    // This program wrote temp/undo.bmp. The temp folder outlives a program that was
    // killed and is shared by every Velunta started from the same folder, so a file
    // found there is no undo of this program's until it writes one.
    bool m_undoFileWritten = false;
    std::array<QString, 4> m_recent;
    int MRUNext = 0;
    Color m_previewKey = kNoColor;
    QHash<QString, std::function<void()>> m_operations;
    QPointer<FrmSymbols> m_symbols;
    bool m_exiting = false;
    std::unique_ptr<RecoveryStore> m_recoveryStore;
    std::unique_ptr<RecoveryWriter> m_recovery;
    // The scanner companion is there: 1 yes, 0 no, -1 not looked for yet.
    int m_scannerThere = -1;
    // Busy states open now, and the one that started the progress strip (0: none).
    int m_busyDepth = 0;
    int m_progressDepth = 0;

    // External effect programs and plug-ins.
    void runExternal(const QString& program, const QString& name, const QStringList& arguments = {});
    void enableExternalEffects(bool document);
    ExternalEffect* m_external = nullptr; // a child of the window, made on first use
    QList<QAction*> m_filters;
    QList<QAction*> m_plugins; // mnuextraplugins(5) on; (4) is a row of the table
    // Effects: what the Effects Browser keeps between two openings.
    std::shared_ptr<EffectsBrowserMemory> m_effectsBrowser;
    // Help: the update check, made on its first use.
    std::unique_ptr<UpdateCheck> m_updateCheck;
};

} // namespace velunta
