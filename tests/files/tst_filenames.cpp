// The name rules of Save As and the exports: the filter decides the format, and the
// typed extension loses its last four characters by count.

#include "files/FileNames.h"

#include <QtTest>

using namespace velunta;

class tst_FileNames : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void saveAsName_data();
    void saveAsName();
    void filterOfName_data();
    void filterOfName();
    void exportNames_data();
    void exportNames();
};

void tst_FileNames::saveAsName_data()
{
    QTest::addColumn<QString>("typed");
    QTest::addColumn<int>("filter");
    QTest::addColumn<QString>("written");
    QTest::newRow("no dot gets the filter's extension") << "picture" << 3 << "picture.jpg";
    QTest::newRow("Picture Files makes x.jpg a BMP") << "x.jpg" << 1 << "x.bmp";
    QTest::newRow("case counts: X.JPG") << "X.JPG" << 3 << "X.jpg";
    QTest::newRow(".jpeg loses four characters") << "a.jpeg" << 3 << "a..jpg";
    QTest::newRow("report.v2 by count") << "report.v2" << 1 << "repor.bmp";
    QTest::newRow("the right one stays") << "dog.gif" << 4 << "dog.gif";
    QTest::newRow("All Files adds nothing") << "notes" << 5 << "notes";
}

void tst_FileNames::saveAsName()
{
    QFETCH(QString, typed);
    QFETCH(int, filter);
    QFETCH(QString, written);
    QCOMPARE(SaveAsFileName(typed, filter), written);
}

void tst_FileNames::filterOfName_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("knowsJpeg");
    QTest::addColumn<int>("filter");
    QTest::newRow("gif") << "/a/B.GIF" << false << 4;
    QTest::newRow("jpg") << "b.jpg" << false << 3;
    QTest::newRow("jpeg unknown to Save") << "photo.jpeg" << false << 9;
    QTest::newRow("jpeg known to Save As") << "photo.jpeg" << true << 3;
    QTest::newRow("bmp") << "c.bmp" << false << 1;
    QTest::newRow("png keeps the last") << "d.png" << true << 9;
}

void tst_FileNames::filterOfName()
{
    QFETCH(QString, name);
    QFETCH(bool, knowsJpeg);
    QFETCH(int, filter);
    QCOMPARE(FilterIndexOfName(name, 9, knowsJpeg), filter);
}

void tst_FileNames::exportNames_data()
{
    QTest::addColumn<QString>("caption");
    QTest::addColumn<QString>("chosen");
    QTest::addColumn<QString>("proposal");
    QTest::addColumn<QString>("written");
    QTest::newRow("a bmp becomes jpg") << "/p/photo.bmp - 100%" << "/p/out" << "/p/photo.jpg" << "/p/out.jpg";
    QTest::newRow("new picture: the name is cut") << "Untitled - 100%" << "x.jpeg" << "Unti.jpg" << "x..jpg";
    QTest::newRow("other zooms cut differently") << "/p/dog.jpg - 25%" << "a.jpg" << "/p/do.jpg" << "a.jpg";
}

void tst_FileNames::exportNames()
{
    QFETCH(QString, caption);
    QFETCH(QString, chosen);
    QFETCH(QString, proposal);
    QFETCH(QString, written);
    QCOMPARE(ExportProposal(caption, QStringLiteral(".jpg")), proposal);
    QCOMPARE(ExportFileName(chosen, QStringLiteral(".jpg")), written);
}

QTEST_GUILESS_MAIN(tst_FileNames)
#include "tst_filenames.moc"
