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
    void firstRunWritesEveryKey()
    {
        MainWindowFixture f;
        QSettings s = store();
        const QStringList keys = s.allKeys();
        const QString all = QStringLiteral(
            "MainLeft MainTop MainWidth MainHeight AutoSizePos KidsMode FitBigImage MaxOnOpen StartBlankPage "
            "Version "
            "SelectedColor FrameColorSheme FormColorSheme CircleThickness LineThickness SelectedBackColor "
            "UseGuideLines GuideLinesColor GridColor GuideLineStyle MRUD0 MRUD3 NewImageSize "
            "LastOptionValue0 "
            "LastOptionValue15 TextFont TextStyle Blend SquareCorner ArrowSize DrawForeColor DrawBackColor "
            "GridX "
            "GridY SnapToGrid");
        for (const QString& key : all.split(u' '))
            QVERIFY2(keys.contains(key), qPrintable(key));
        QCOMPARE(s.value(QStringLiteral("KidsMode")).toString(), QStringLiteral("False"));
        QCOMPARE(s.value(QStringLiteral("AutoSizePos")).toString(), QStringLiteral("0"));
        QCOMPARE(s.value(QStringLiteral("UseGuideLines")).toString(), QStringLiteral("-1"));
        QCOMPARE(s.value(QStringLiteral("GuideLinesColor")).toString(), QString::number(RGB(128, 128, 128)));
        QCOMPARE(s.value(QStringLiteral("NewImageSize")).toString(), QStringLiteral("640x480"));
        QCOMPARE(s.value(QStringLiteral("LastOptionValue7")).toString(), QStringLiteral("12"));
        QCOMPARE(s.value(QStringLiteral("DrawBackColor")).toString(), QStringLiteral("16777215"));
        QCOMPARE(s.value(QStringLiteral("TextFont")).toString(), QStringLiteral("Arial"));
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
