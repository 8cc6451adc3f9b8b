// What the cells of grid and list show, looked at pixel by pixel.

#include "explorer_fixture.h"
#include "panel_application.h"

#include <QQuickWindow>

#include <memory>

using namespace Qt::StringLiterals;
using lindenreed::picture_stand::FolderModel;

namespace {

/// What shows of an item.
QImage shown(const QQuickItem *item)
{
    const QRectF place(item->mapToScene({}), item->size());
    return item->window()->grabWindow().copy(place.toRect()).convertToFormat(QImage::Format_Grayscale8);
}

} // namespace

class tst_ExplorerPixels : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { stored_database::remove(); }
    void init() { m_test = std::make_unique<ExplorerFixture>(); }
    void cleanup() { m_test.reset(); }

    void kindInCapitals();
    void middleOfAPicture_data();
    void middleOfAPicture();

private:
    std::unique_ptr<ExplorerFixture> m_test;
};

void tst_ExplorerPixels::kindInCapitals()
{
    const QString path = m_test->picture(u"a.b.jpg"_s);
    explore([&](RunningExplorer &explorer) {
        explorer.openPlaylist({path}, FolderModel::NormalMode, FolderModel::ListViewMode);
        QTRY_VERIFY(explorer.cell(0));
        QQuickItem *const kind = RunningExplorer::below(explorer.cell(0), "text", u"b.jpg"_s);
        QVERIFY(kind);
        const QImage found = shown(kind);
        // The same place with letters that nothing changes.
        RunningExplorer::valueOf(kind, u"font.capitalization = Font.MixedCase"_s);
        QVERIFY(kind->setProperty("text", u"b.jpg"_s));
        QVERIFY(shown(kind) != found);
        QVERIFY(kind->setProperty("text", u"B.JPG"_s));
        QCOMPARE(shown(kind), found);
    });
}

void tst_ExplorerPixels::middleOfAPicture_data()
{
    QTest::addColumn<FolderModel::FolderModelViewMode>("view");
    QTest::addColumn<bool>("wide");

    QTest::newRow("wide, in the grid") << FolderModel::GridViewMode << true;
    QTest::newRow("high, in the grid") << FolderModel::GridViewMode << false;
    QTest::newRow("wide, in the list") << FolderModel::ListViewMode << true;
    QTest::newRow("high, in the list") << FolderModel::ListViewMode << false;
}

void tst_ExplorerPixels::middleOfAPicture()
{
    QFETCH(FolderModel::FolderModelViewMode, view);
    QFETCH(bool, wide);

    // Three squares in a row, and a little of the black ones at both ends is light as well, for soft edges.
    QImage picture(wide ? QSize(300, 100) : QSize(100, 300), QImage::Format_Grayscale8);
    picture.fill(Qt::black);
    for (int y = wide ? 0 : 90; y < (wide ? 100 : 210); ++y) {
        for (int x = wide ? 90 : 0; x < (wide ? 210 : 100); ++x)
            picture.setPixel(x, y, qRgb(255, 255, 255));
    }
    const QString path = m_test->path(u"%1 %2.png"_s.arg(int(view)).arg(wide));
    QVERIFY(picture.save(path));

    explore([&](RunningExplorer &explorer) {
        explorer.openPlaylist({path}, FolderModel::NormalMode, view);
        QTRY_VERIFY(explorer.cell(0));
        QQuickItem *const image = RunningExplorer::below(explorer.cell(0), "fillMode");
        QTRY_VERIFY(image->implicitWidth() > 0);
        const QImage found = shown(image);
        const QPoint last(found.width() - 1, found.height() - 1);
        for (const QPoint corner : {QPoint(), QPoint(last.x(), 0), QPoint(0, last.y()), last})
            QVERIFY2(qGray(found.pixel(corner)) > 0xe0,
                     qPrintable(u"%1 %2"_s.arg(corner.x()).arg(corner.y())));

        // The ends are there where the whole picture shows.
        RunningExplorer::valueOf(image, u"fillMode = Image.Stretch"_s);
        QTRY_COMPARE(image->property("status").toInt(), 1); // it is asked for anew
        const QImage whole = shown(image);
        QCOMPARE(qGray(whole.pixel(0, 0)), 0);
        QCOMPARE(qGray(whole.pixel(last)), 0);
    });
}

PANEL_TEST_MAIN(tst_ExplorerPixels)
#include "tst_explorer_pixels.moc"
