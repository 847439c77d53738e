// The Effects Browser on a real main window: previews, extremes, stacking, Undo All,
// writing back as one undo step, closing, its settings and its translated texts.

#include "core/Gdi.h"
#include "core/Prompt.h"
#include "core/SettingsStore.h"
#include "core/WebAddresses.h"
#include "document/ImageCommand.h"
#include "document/frmPaint.h"
#include "effects/EffectView.h"
#include "effects/frmEffectsBrowser.h"
#include "effects/fx/FxOnPicture.h"
#include "support/FakeHost.h"
#include "support/MainWindowFixture.h"
#include "support/TestImages.h"
#include "widgets/zolButton.h"

#include <QAction>
#include <QCheckBox>
#include <QDesktopServices>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QScopeGuard>
#include <QScrollBar>
#include <QSet>
#include <QSlider>
#include <QTranslator>
#include <QXmlStreamReader>
#include <QtTest>

#include <optional>

using namespace velunta;
using namespace velunta::test;

namespace {

// A window with one picture, the command the browser writes back through, and the
// browser on it, shown but not modal: the tests drive it by its handlers.
struct Browser {
    explicit Browser(int w = 40, int h = 30, bool selection = false)
    {
        form = f.newDocument(Pattern(w, h));
        if (selection) {
            ShowFloat(form->doc, {5, 4, 12, 10}, RGB(30, 160, 90));
            UpdateView(form->doc, form->doc.Buffer, 0, 0, 100);
        }
        picture = form->doc.Buffer.Image().copy();
        open();
    }
    void open()
    {
        dialog.reset();
        command.emplace(f.main(), CommandOptions{.name = "test"});
        dialog = std::make_unique<frmEffectsBrowser>(*command, settings(), f.prompt, memory, &f.main());
        dialog->setModal(false);
        dialog->show();
    }
    SettingsStore& settings() { return f.main().services().settings; }
    template <class T> T* child(const QString& name) { return dialog->findChild<T*>(name); }
    QSlider* slider(int i) { return child<QSlider>(QStringLiteral("HScroll1(%1)").arg(i)); }
    QString label(const char* name) { return child<QLabel>(QString::fromLatin1(name))->text(); }
    const QImage& preview() { return dialog->picDest().Image(); }

    MainWindowFixture f;
    frmPaint* form = nullptr;
    QImage picture;
    EffectsBrowserMemory memory;
    std::optional<ImageCommand> command;
    std::unique_ptr<frmEffectsBrowser> dialog;
};

QList<int> menuEffects()
{
    QList<int> ids;
    for (const EffectRow& row : EffectTable())
        if (row.menuCaption)
            ids << row.id;
    return ids;
}

// Stands in for a translation of the effect names and slider captions: each comes back
// in angle brackets, so a text that skipped the translation shows plain.
class MarkingTranslator : public QTranslator {
public:
    QString translate(const char* context, const char* source, const char*, int) const override
    {
        const QByteArrayView c(context);
        return c == "Effects" || c == "EffectSliders" ? u'<' + QString::fromLatin1(source) : QString();
    }
    bool isEmpty() const override { return false; }
};

// The strings of the build's translation template, as "context|source".
QSet<QString> templateStrings(const QString& path)
{
    QSet<QString> strings;
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return strings;
    QXmlStreamReader xml(&file);
    QString context;
    while (!xml.atEnd()) {
        if (xml.readNext() != QXmlStreamReader::StartElement)
            continue;
        if (xml.name() == QLatin1String("name"))
            context = xml.readElementText();
        else if (xml.name() == QLatin1String("source"))
            strings << context + u'|' + xml.readElementText();
    }
    return strings;
}

} // namespace

// Takes the address the desktop would open.
class UrlCatcher : public QObject {
    Q_OBJECT
public Q_SLOTS:
    void open(const QUrl& address) { url = address; }

public:
    QUrl url;
};

class tst_EffectsBrowser : public QObject {
    Q_OBJECT
private Q_SLOTS:
    // Every effect previews without touching the document and survives the ends of every
    // slider and scroll bar, on odd picture sizes.
    void everyEffectPreviewsAndSurvivesItsExtremes_data()
    {
        QTest::addColumn<QSize>("size");
        QTest::newRow("1 x 1") << QSize(1, 1);
        QTest::newRow("200 x 150") << QSize(200, 150); // room below the corner for large letters
        QTest::newRow("20000 x 100") << QSize(20000, 100);
    }
    void everyEffectPreviewsAndSurvivesItsExtremes()
    {
        QFETCH(QSize, size);
        Browser b(size.width(), size.height());
        b.child<QLineEdit>("Text1")->setText(QStringLiteral("Hello"));
        QList<QAbstractSlider*> bars;
        for (int i = 0; i < 6; ++i)
            bars << b.slider(i);
        for (const char* name : {"HScrollT", "VScrollT", "HScroll2", "VScroll2"})
            bars << b.child<QScrollBar>(QString::fromLatin1(name));
        for (int id : menuEffects()) {
            b.dialog->mnuFx_Click(1000); // Anti Aliasing keeps the slider of the effect before
            b.dialog->mnuFx_Click(id);
            for (QAbstractSlider* s : bars.mid(0, 6))
                if (s->isEnabled() && !s->isHidden())
                    s->setValue(s->minimum() +
                                (s->maximum() - s->minimum()) * 13 / 25); // just off the middle
            b.dialog->RenderPreview();
            QVERIFY(b.dialog->EffectPending());
            // Scroll has no effect of its own: it shows the applied picture.
            if (size.width() == 200)
                QVERIFY2((DifferingPixels(b.preview(), b.picture) > 0) == (id != 1230),
                         FindEffect(id)->menuCaption);
            for (QAbstractSlider* s : bars) {
                if (!s->isEnabled() || s->isHidden())
                    continue;
                const int standing = s->value();
                for (int v : {s->minimum(), s->maximum(), standing}) {
                    s->setValue(v);
                    b.dialog->RenderPreview();
                    QCOMPARE(b.preview().size(), size);
                }
            }
        }
        for (int id = 1300; id <= 1340; id += 10)
            b.dialog->Flip_Click(id);
        QCOMPARE(DifferingPixels(b.form->doc.Buffer.Image(), b.picture), 0);
        QVERIFY(!b.form->doc.Dirty);
    }

    void applyStacksAndUndoAllRestoresTheOriginal()
    {
        Browser b;
        QVERIFY(b.child<zolButton>("Chkzoom")->Value()); // a small picture shows at actual size
        b.dialog->mnuFx_Click(1120);                     // Invert
        b.dialog->Command2_Click();
        QVERIFY(b.dialog->EffectApplied());
        b.dialog->mnuFx_Click(1120); // inverted again from the applied picture
        QCOMPARE(DifferingPixels(b.preview(), b.picture), 0);
        b.dialog->mnuFx_Click(1020); // Blur on top
        b.dialog->Command2_Click();
        QVERIFY(DifferingPixels(b.dialog->PicSource().Image(), b.picture) > 0);
        b.dialog->Command3_Click();
        QCOMPARE(b.preview(), b.picture);
        QCOMPARE(b.dialog->PicSource().Image(), b.picture);
        QVERIFY(!b.dialog->EffectApplied() && !b.dialog->EffectPending());
    }

    void updatePictureAndExitIsOneUndoStep_data()
    {
        QTest::addColumn<bool>("selection");
        QTest::newRow("picture") << false;
        QTest::newRow("selection") << true;
    }
    void updatePictureAndExitIsOneUndoStep()
    {
        QFETCH(bool, selection);
        Browser b(40, 30, selection);
        Document& doc = b.form->doc;
        const QImage floating = doc.BufferSelected.Image().copy();
        QCOMPARE(b.dialog->pictureSize(), selection ? QSize(12, 10) : QSize(40, 30));
        const int slot = b.f.main().undo().UndoWriteSlot;
        b.dialog->mnuFx_Click(1120);
        b.dialog->Command1_Click();
        QCOMPARE(b.f.main().undo().UndoWriteSlot, slot + 1);
        QVERIFY(doc.Dirty);
        QCOMPARE(GetPixel(selection ? doc.BufferSelected : doc.Buffer, 2, 3) ^ 0xFFFFFF,
                 FromQRgb((selection ? floating : b.picture).pixel(2, 3)));
        if (selection) // outside the selection the picture is as it was
            QCOMPARE(GetPixel(doc.Buffer, 30, 25), FromQRgb(b.picture.pixel(30, 25)));
        b.f.main().Undo_Click();
        QCOMPARE(DifferingPixels(doc.Buffer.Image(), b.picture), 0);
    }

    void closingAsksOnlyAboutAPendingChange_data()
    {
        QTest::addColumn<bool>("apply");
        QTest::addColumn<int>("answer");
        QTest::addColumn<bool>("asked");
        QTest::addColumn<bool>("written");
        QTest::addColumn<bool>("open");
        QTest::newRow("slider moved, No") << false << int(vbNo) << true << false << false;
        QTest::newRow("slider moved, Yes") << false << int(vbYes) << true << true << false;
        QTest::newRow("slider moved, Cancel") << false << int(vbCancel) << true << false << true;
        QTest::newRow("applied") << true << int(vbYes) << false << false << false;
    }
    void closingAsksOnlyAboutAPendingChange()
    {
        QFETCH(bool, apply);
        QFETCH(int, answer);
        QFETCH(bool, asked);
        QFETCH(bool, written);
        QFETCH(bool, open);
        Browser b;
        b.dialog->mnuFx_Click(1030); // Brightness
        b.slider(0)->setValue(90);
        if (apply)
            b.dialog->Command2_Click();
        b.f.prompt.answers.enqueue(answer);
        b.dialog->reject();
        QCOMPARE(b.f.prompt.shown.size(), asked ? 1 : 0);
        if (asked)
            QCOMPARE(b.f.prompt.shown[0].title, QStringLiteral("Quit before effect applied"));
        QCOMPARE(DifferingPixels(b.form->doc.Buffer.Image(), b.picture) > 0, written);
        QCOMPARE(b.dialog->isVisible(), open);
        if (open) { // a second close doesn't ask again
            b.dialog->reject();
            QCOMPARE(b.f.prompt.shown.size(), 1);
            QVERIFY(!b.dialog->isVisible());
        }
    }

    void menuEntryOpensTheBrowserModally()
    {
        Browser b;
        b.dialog.reset();
        QTimer::singleShot(0, [&] {
            auto* d = qobject_cast<frmEffectsBrowser*>(QApplication::activeModalWidget());
            QVERIFY(d);
            d->menuAction(QStringLiteral("mnuFx(1080)"))->trigger(); // Grayscale
            d->menuAction(QStringLiteral("mnusave"))->trigger();
        });
        b.f.main().action(MenuId::mnuEffectBrowser)->trigger();
        const QImage after = b.form->doc.Buffer.Image();
        QCOMPARE(qRed(after.pixel(7, 9)), qBlue(after.pixel(7, 9)));
        QVERIFY(b.form->doc.Dirty);
    }

    void settingsComeBackAtTheNextOpening()
    {
        Browser b(600, 450);
        b.settings().SaveSetting(QStringLiteral("EffectBrowser_OptionZoom"), 1);
        b.settings().SaveSetting(QStringLiteral("EffectBrowser_LastOption"), 7);
        b.open();
        auto* zoom = b.child<zolButton>("Chkzoom");
        QVERIFY(zoom->Value()); // the saved choice of actual size
        zoom->click();
        QVERIFY(!b.dialog->view()->actualSize());
        QCOMPARE(zoom->Caption(), QStringLiteral("Fit Image"));
        b.dialog->Command1_Click();
        QCOMPARE(b.settings().GetSetting(QStringLiteral("EffectBrowser_OptionZoom")), QStringLiteral("0"));
        QCOMPARE(b.settings().GetSetting(QStringLiteral("EffectBrowser_LastOption")), QStringLiteral("7"));
        b.open();
        QVERIFY(!b.child<zolButton>("Chkzoom")->Value());
        QVERIFY(!b.dialog->view()->actualSize());
    }

    // A slider drag folds into one preview; with the automatic preview off none comes
    // until it is switched on again.
    void sliderDragFoldsIntoOnePreview()
    {
        Browser b;
        b.dialog->mnuFx_Click(1030);
        const int previews = b.dialog->previewCount();
        for (int v = 1; v <= 60; ++v)
            b.slider(0)->setValue(v);
        QVERIFY(b.dialog->previewPending());
        QTRY_VERIFY(!b.dialog->previewPending());
        QCOMPARE(b.dialog->previewCount(), previews + 1);
        QCOMPARE(qRed(b.preview().pixel(0, 0)), std::min(255, qRed(b.picture.pixel(0, 0)) + 60));
        auto* automatic = b.child<QCheckBox>("ChkPreview");
        automatic->setChecked(false);
        const QImage shown = b.preview().copy();
        b.slider(0)->setValue(-200);
        QTest::qWait(5);
        QCOMPARE(b.preview(), shown);
        automatic->setChecked(true);
        QTRY_VERIFY(b.preview() != shown);
    }

    void captionsFollowTheEffect()
    {
        Browser b;
        b.dialog->mnuFx_Click(1170); // Render
        b.slider(1)->setValue(150);
        QCOMPARE(b.label("Label3"), QStringLiteral("Zoom: 1.5"));
        QVERIFY(b.child<QWidget>("transparencyGroup")->isVisibleTo(b.dialog.get()));
        b.dialog->mnuFx_Click(1040); // Transparent Text
        QCOMPARE(b.child<QCheckBox>("chkText3d")->text(), QStringLiteral("Soften"));
        b.slider(5)->setValue(-15);
        QCOMPARE(b.label("Label12"), QStringLiteral("Rotate: -1"));
        QCOMPARE(b.label("Label3"), QStringLiteral("Font:"));
        b.dialog->mnuFx_Click(1020); // Blur
        QCOMPARE(b.child<QCheckBox>("chkText3d")->text(), QStringLiteral("3D-Shadow"));
        QCOMPARE(b.label("Label2"), QStringLiteral("N/A Blur"));
        QCOMPARE(b.label("Label3"), QStringLiteral("N/a"));
        QVERIFY(!b.slider(0)->isEnabled());
        b.dialog->mnuFx_Click(1220); // Scanlines: the value is 128 at once
        QCOMPARE(b.slider(0)->value(), 128);
        QVERIFY(b.dialog->menuAction(QStringLiteral("mnuFx(1220)"))->isChecked());
    }

    void effectNamesAndSliderCaptionsShowTranslated()
    {
        MarkingTranslator marking;
        QCoreApplication::installTranslator(&marking);
        const auto remove = qScopeGuard([&] { QCoreApplication::removeTranslator(&marking); });
        Browser b;
        QStringList plain;
        const auto check = [&](const QString& text) {
            if (!text.startsWith(u'<'))
                plain << text;
        };
        for (zolButton* button : b.child<QWidget>("cmdEffects")->findChildren<zolButton*>())
            check(button->Caption());
        for (QAction* entry : b.child<QMenu>("mnuAmbient")->actions())
            if (!entry->isSeparator())
                check(entry->text());
        for (int id : menuEffects()) {
            QAction* entry = b.dialog->menuAction(QStringLiteral("mnuFx(%1)").arg(id));
            check(entry->text());
            // The effect is still found by its own name, whatever the entry reads.
            entry->trigger();
            QCOMPARE(b.dialog->state().EffectId, id);
            for (const char* name : {"Label1", "Label2", "Label3", "Label4", "Label10", "Label11", "Label12"})
                check(b.label(name));
        }
        QVERIFY2(plain.isEmpty(), qPrintable(plain.join(QStringLiteral(" | "))));
    }

    void everyEffectNameAndCaptionIsInTheTranslationTemplate()
    {
        // The build gathers the template beside the tests' working folder.
        const QString path = QStringLiteral("translations/velunta.ts");
        if (!QFile::exists(path))
            QSKIP("this build has no translation template (no lupdate)");
        const QSet<QString> strings = templateStrings(path);
        QStringList missing;
        auto need = [&](const char* context, const char* text) {
            if (text && !strings.contains(QLatin1String(context) + u'|' + QString::fromLatin1(text)))
                missing << QLatin1String(context) + u'|' + QString::fromLatin1(text);
        };
        for (const EffectRow& row : EffectTable()) {
            need("Effects", row.menuCaption);
            need("Effects", row.buttonCaption);
            for (const SliderRow& slider : row.sliders)
                need("EffectSliders", slider.label);
        }
        for (const AmbientPreset& preset : AmbientPresets())
            need("Effects", preset.browserCaption);
        QVERIFY2(missing.isEmpty(), qPrintable(missing.join(QStringLiteral(", "))));
    }

    void colourPanelDropsOutOfRangeValuesAndPicksFromItsPicture()
    {
        Browser b;
        b.dialog->mnuFx_Click(1250); // Tone
        auto* red = b.child<QLineEdit>("RGBValues(0)");
        auto* redSlider = b.child<QSlider>("HScrollc2(0)");
        const Color before = b.dialog->state().EffectColor;
        red->setText(QStringLiteral("256"));
        Q_EMIT red->textEdited(red->text());
        QCOMPARE(b.dialog->state().EffectColor, before);
        red->setText(QStringLiteral("12"));
        Q_EMIT red->textEdited(red->text());
        QCOMPARE(redSlider->value(), 12);
        QCOMPARE(ColorRed(b.dialog->state().EffectColor), 12);
        const QPixmap picture = b.child<QLabel>("ColorSel")->pixmap();
        const QImage colours = picture.toImage();
        b.dialog->ColorSel_MouseDown(1, 50, 10);
        QCOMPARE(redSlider->value(), qRed(colours.pixel(50, 10)));
        QCOMPARE(b.dialog->state().EffectColor, FromQRgb(colours.pixel(50, 50))); // along the diagonal
        b.dialog->ColorSel_MouseDown(2, 20, 60);
        QCOMPARE(b.dialog->state().ShadowColor, FromQRgb(colours.pixel(20, 20)));
    }

    void transparencyColourIsPickedFromThePreview()
    {
        Browser b;
        b.dialog->mnuFx_Click(1200); // Rotate
        b.dialog->imgTransparency_Click();
        QVERIFY(b.dialog->view()->picking());
        Q_EMIT b.dialog->view()->picked(QPointF(6.5, 4.2), Qt::LeftButton);
        QCOMPARE(b.dialog->state().TransparentColor, FromQRgb(b.picture.pixel(6, 4)));
        QVERIFY(!b.dialog->view()->picking());
    }

    void draggingThePictureMovesTheSpotLight()
    {
        Browser b;
        b.dialog->resize(900, 600);
        b.dialog->mnuFx_Click(1130);
        QWidget* area = b.dialog->view()->viewport();
        QTest::mousePress(area, Qt::LeftButton, {}, QPoint(100, 100));
        QTest::mouseMove(area, QPoint(70, 80));
        QTest::mouseRelease(area, Qt::LeftButton, {}, QPoint(70, 80));
        b.dialog->RenderPreview();
        QCOMPARE(b.dialog->state().PointerX, 282);
        QCOMPARE(b.dialog->state().PointerY, 213);
    }

    void imageMenuMirrorsAndAmbientPresetsPreview()
    {
        Browser b;
        b.dialog->menuAction(QStringLiteral("mnufliphor"))->trigger();
        QCOMPARE(b.preview().pixel(40 - 3, 5), b.picture.pixel(3, 5));     // the left half reflected
        b.dialog->menuAction(QStringLiteral("mnuAmbients(3)"))->trigger(); // Red Dark
        Surface expected;
        expected.setImage(b.picture);
        PaintAmbientPreset(expected, WholeOf(expected), *AmbientPresetAt(3));
        QCOMPARE(b.preview(), expected.Image());
        QCOMPARE(DifferingPixels(b.form->doc.Buffer.Image(), b.picture), 0);
    }

    void moreEffectsOpensTheProjectPage()
    {
        Browser b;
        UrlCatcher catcher;
        QDesktopServices::setUrlHandler(QStringLiteral("https"), &catcher, "open");
        b.dialog->menuAction(QStringLiteral("menuhelpeff"))->trigger();
        QDesktopServices::unsetUrlHandler(QStringLiteral("https"));
        QCOMPARE(catcher.url, QUrl(QString::fromLatin1(kMoreEffectsAddress)));
    }
};

QTEST_MAIN(tst_EffectsBrowser)
#include "tst_effectsbrowser.moc"
