// The settings store across runs: a first run writes every key, closing keeps the
// window and view settings but not the draw presets, the Extra menu's commands, and
// values edited by hand with garbage in them.

#include "core/SettingsStore.h"
#include "support/MainWindowFixture.h"
#include "support/TestImages.h"

#include <QCloseEvent>
#include <QSettings>
#include <QStandardPaths>
#include <QToolButton>
#include <QtTest>

using namespace velunta;
using namespace velunta::test;

namespace {

QSettings store()
{
    return QSettings(QStringLiteral("Zolvane"), QStringLiteral("Velunta"));
}

void closeWindow(frmMain& m)
{
    QCloseEvent event;
    QApplication::sendEvent(&m, &event);
}

} // namespace

class tst_Settings : public QObject {
    Q_OBJECT
private Q_SLOTS:
    // Not only that every key is written: each with the value it must have, so a wrong
    // default is caught.
    void firstRunWritesEveryDefault()
    {
        MainWindowFixture f;
        const QRect g = f.main().normalGeometry().isValid() ? f.main().normalGeometry() : f.main().geometry();
        QMap<QString, QString> expected{
            {"MainLeft", QString::number(g.x() * 15)},
            {"MainTop", QString::number(g.y() * 15)},
            {"MainWidth", QString::number(g.width() * 15)},
            {"MainHeight", QString::number(g.height() * 15)},
            {"AutoSizePos", "0"},
            {"KidsMode", "False"},
            {"FitBigImage", "False"},
            {"MaxOnOpen", "0"},
            {"StartBlankPage", "0"},
            {"Version", QStringLiteral(VELUNTA_VERSION)},
            {"SelectedColor", "0"},
            {"FrameColorSheme", "0"},
            {"FormColorSheme", "0"},
            {"CircleThickness", "1"},
            {"LineThickness", "1"},
            {"SelectedBackColor", "16777215"},
            {"UseGuideLines", "-1"},
            {"GuideLinesColor", QString::number(RGB(128, 128, 128))},
            {"GridColor", QString::number(RGB(240, 240, 240))},
            {"GuideLineStyle", "2"},
            {"MRUD0", " "},
            {"MRUD1", " "},
            {"MRUD2", " "},
            {"MRUD3", " "},
            {"NewImageSize", "640x480"},
            {"LastFolder", ""},
            {"TextFont", "Arial"},
            {"TextStyle", "Normal"},
            {"Blend", "50"},
            {"SquareCorner", "10"},
            {"ArrowSize", "6"},
            {"DrawForeColor", "0"},
            {"DrawBackColor", "16777215"},
            {"GridX", "10"},
            {"GridY", "10"},
            {"SnapToGrid", "False"},
            {"NoURLupdate", ""},
            {"StepUndo", "False"},
            {"UseCounter", "2"},
        };
        const int options[16] = {50, 75, 6, 10, 2, 1, 1, 12, 6, 1, 10, 75, 6, 3, 10, 6};
        for (int i = 0; i < 16; ++i)
            expected.insert(QStringLiteral("LastOptionValue%1").arg(i), QString::number(options[i]));
        QSettings s = store();
        QStringList keys = s.allKeys();
        for (auto it = expected.cbegin(); it != expected.cend(); ++it) {
            QVERIFY2(keys.removeOne(it.key()), qPrintable(it.key()));
            QCOMPARE(s.value(it.key()).toString(), it.value());
        }
        QVERIFY2(keys.isEmpty(), qPrintable(keys.join(u' '))); // and nothing else
    }

    void closingKeepsViewButNotDrawPresets()
    {
        {
            MainWindowFixture f;
            f.main().state().SelectorValues[4].Value = 20;
            f.newDocument(10, 10);
            f.main().action(QStringLiteral("mnuGuideLineStyles(4)"))->trigger();
            f.main().action(QStringLiteral("mnuKidsMode"))->trigger();
            closeWindow(f.main());
        }
        MainWindowFixture next(false);
        QCOMPARE(next.main().state().SelectorValues[4].Value, 2.0);
        QCOMPARE(next.main().GuideLineStyle, 4);
        QVERIFY(next.main().action(QStringLiteral("mnuKidsMode"))->isChecked());
        QVERIFY(!next.main().Cmd(17)->isVisible());
    }

    void savedDrawPresetsComeBack()
    {
        {
            MainWindowFixture f;
            f.newDocument(10, 10); // the draw presets' entries are there with a picture
            f.main().state().SelectorValues[9].Value = 7;
            f.main().state().ForeColor = RGB(1, 2, 3);
            f.main().action(QStringLiteral("mnuextra1"))->trigger();
            QCOMPARE(f.prompt.shown.last().text, QStringLiteral("Settings of your draw-tools are saved"));
            f.main().state().SelectorValues[9].Value = 30;
            f.main().action(QStringLiteral("mnuextra2"))->trigger();
            QCOMPARE(f.main().state().SelectorValues[9].Value, 7.0);
            QCOMPARE(f.prompt.shown.last().title, QStringLiteral("Load Draw Settings"));
        }
        MainWindowFixture next(false);
        QCOMPARE(next.main().state().SelectorValues[9].Value, 7.0);
        QCOMPARE(next.main().state().ForeColor, RGB(1, 2, 3));
    }

    void restoreDefaults_data()
    {
        QTest::addColumn<int>("answer");
        QTest::addColumn<bool>("restored");
        QTest::newRow("No changes nothing") << int(vbNo) << false;
        QTest::newRow("Cancel changes nothing") << int(vbCancel) << false;
        QTest::newRow("Yes restores") << int(vbYes) << true;
    }
    void restoreDefaults()
    {
        QFETCH(int, answer);
        QFETCH(bool, restored);
        MainWindowFixture f;
        frmMain& m = f.main();
        m.state().SelectorValues[2].Value = 40;
        m.state().ArrowSizeText = QStringLiteral("20");
        m.SaveSettings(true);
        m.MRUDlist(2, QStringLiteral("/pictures/one.bmp"));
        m.SaveSettings(false);
        f.prompt.answers.enqueue(answer);
        m.action(QStringLiteral("mnuextra3"))->trigger();
        QCOMPARE(f.prompt.shown.last().title, QStringLiteral("Restore Velunta Default Settings"));
        QCOMPARE(m.state().SelectorValues[2].Value, restored ? 6.0 : 40.0);
        QCOMPARE(store().value(QStringLiteral("ArrowSize")).toString(),
                 restored ? QStringLiteral("6") : QStringLiteral("20"));
        QCOMPARE(m.recentFile(0).isEmpty(), restored);
        QCOMPARE(m.action(QStringLiteral("mnuMrud(0)"))->isVisible(), !restored);
    }

    void garbageValuesAreTolerated()
    {
        {
            QSettings s = store();
            s.clear();
            for (const auto& [key, value] : {std::pair{"LastOptionValue4", "abc"},
                                             {"LastOptionValue5", "99999"},
                                             {"DrawForeColor", ""},
                                             {"GridX", "99999999999"},
                                             {"NewImageSize", "axb"},
                                             {"GuideLineStyle", "9"},
                                             {"AutoSizePos", "-1"},
                                             {"MainLeft", "-3000"},
                                             {"MainWidth", "lots"},
                                             {"KidsMode", "maybe"}})
                s.setValue(QString::fromLatin1(key), QString::fromLatin1(value));
        }
        MainWindowFixture f(false);
        frmMain& m = f.main();
        QCOMPARE(m.state().SelectorValues[4].Value, 2.0);
        QCOMPARE(m.state().SelectorValues[5].Value, 1.0);
        QCOMPARE(m.state().ForeColor, Color(0));
        QCOMPARE(m.state().GridX, 10);
        QCOMPARE(m.NewImageWidth, 640);
        QCOMPARE(m.GuideLineStyle, 2);
        QVERIFY(!m.action(QStringLiteral("mnuKidsMode"))->isChecked());
        QVERIFY(m.geometry().x() >= 0); // a negative position is taken as 0
    }

    void unwritableStoreDoesNotStopTheProgram()
    {
        QTemporaryDir dir;
        QVERIFY(WriteFile(dir.filePath(QStringLiteral("Zolvane")), {})); // where the store's folder should be
        QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, dir.path());
        SettingsStore unwritable;
        unwritable.SaveSetting(QStringLiteral("Test"), QStringLiteral("x"));
        QVERIFY(!unwritable.sync());
        {
            MainWindowFixture f(false);
            QVERIFY(f.main().isVisible());
            f.main().SaveSettings(true);
        }
        QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope,
                           QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation));
    }
};

QTEST_MAIN(tst_Settings)
#include "tst_settings.moc"
