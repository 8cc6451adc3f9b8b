// What stands in for a picture until its thumbnail is there.

#include "explorer_fixture.h"
#include "held_pictures.h"
#include "panel_application.h"

#include <QColor>
#include <QScopeGuard>
#include <QtPlugin>

#include <functional>
#include <memory>

Q_IMPORT_PLUGIN(HeldPicturePlugin)

using namespace Qt::StringLiterals;

namespace {

enum ImageStatus { Null, Ready, Loading, Error }; // as QQuickImageBase numbers them

QQuickItem *image(const RunningExplorer &explorer, int row)
{
    return RunningExplorer::below(explorer.cell(row)->childItems().first(), "sourceSize");
}

QQuickItem *sign(const RunningExplorer &explorer, int row)
{
    return RunningExplorer::below(explorer.cell(row)->childItems().first(), "bandColor");
}

QQuickItem *band(const RunningExplorer &explorer, int row)
{
    return sign(explorer, row)->childItems().first();
}

QQuickItem *label(const RunningExplorer &explorer, int row)
{
    return RunningExplorer::below(sign(explorer, row), "styledFont");
}

} // namespace

class tst_ExplorerLoading : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { stored_database::remove(); }
    void init()
    {
        HeldPictures::reset();
        m_test = std::make_unique<ExplorerFixture>();
    }
    void cleanup()
    {
        HeldPictures::letAllPass();
        m_test.reset();
    }

    void untilTheThumbnailIsThere();
    void thumbnailThatNeverComes_data();
    void thumbnailThatNeverComes();
    void look();
    void oddNames_data();
    void oddNames();
    void bandHeight_data();
    void bandHeight();
    void highestBand();
    void fourLinesAtMost();
    void twoPairsOfColours();
    void foldersThatGoBeforeTheyWereAsked();

private:
    /// Runs the application with one cell, whose picture is read until the end of `body`.
    void exploreHeld(const QString &name, const std::function<void(RunningExplorer &)> &body) const
    {
        explore([&](RunningExplorer &explorer) {
            const auto opener = qScopeGuard(&HeldPictures::letAllPass); // the end waits for the decoders
            explorer.openPlaylist({writeHeldPicture(m_test->tree.top, name)});
            QTRY_VERIFY(explorer.cell(0) && explorer.cell(0)->width() == 239);
            body(explorer);
        });
    }

    std::unique_ptr<ExplorerFixture> m_test;
};

void tst_ExplorerLoading::untilTheThumbnailIsThere()
{
    exploreHeld(u"slow"_s, [&](RunningExplorer &explorer) {
        QTRY_COMPARE(image(explorer, 0)->property("status").toInt(), int(Loading));
        QVERIFY(sign(explorer, 0)->isVisible());
        QCOMPARE(sign(explorer, 0)->size(), image(explorer, 0)->size());
        QCOMPARE(label(explorer, 0)->property("text").toString(), u"slow.held"_s);
        HeldPictures::letAllPass();
        QTRY_COMPARE(image(explorer, 0)->property("status").toInt(), int(Ready));
        QVERIFY(!sign(explorer, 0)->isVisible());
    });
}

void tst_ExplorerLoading::thumbnailThatNeverComes_data()
{
    QTest::addColumn<QByteArray>("contents");

    QTest::newRow("nothing") << QByteArray();
    QTest::newRow("no picture") << QByteArray("no picture at all");
    QTest::newRow("a picture that ends early") << QByteArray("\x89PNG\r\n\x1a\n\0\0\0\rIHDR", 16);
}

void tst_ExplorerLoading::thumbnailThatNeverComes()
{
    QFETCH(QByteArray, contents);

    QFile file(m_test->path(u"bad.png"_s));
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(contents), contents.size());
    file.close();
    const QString good = m_test->picture(u"good.png"_s);
    explore([&](RunningExplorer &explorer) {
        explorer.openPlaylist({file.fileName(), good});
        QTRY_VERIFY(explorer.cell(1));
        for (const int row : {0, 1})
            QTRY_VERIFY(image(explorer, row)->property("status").toInt() != Loading
                        && image(explorer, row)->property("status").toInt() != Null);
        QVERIFY(sign(explorer, 0)->isVisible());
        QCOMPARE(label(explorer, 0)->property("text").toString(), u"bad.png"_s);
        QVERIFY(!sign(explorer, 1)->isVisible());
    });
}

void tst_ExplorerLoading::look()
{
    exploreHeld(u"slow"_s, [&](RunningExplorer &explorer) {
        QQuickItem *const text = label(explorer, 0);
        QVERIFY(RunningExplorer::valueOf(text, u"styledFont === FontStyles.BodyL"_s).toBool());
        QVERIFY(RunningExplorer::valueOf(text, u"font.bold"_s).toBool());
        QVERIFY(RunningExplorer::valueOf(text, u"wrapMode === Text.WordWrap"_s).toBool());
        QVERIFY(RunningExplorer::valueOf(text, u"elide === Text.ElideRight"_s).toBool());
        QCOMPARE(text->mapToItem(sign(explorer, 0), QPointF()), QPointF(11, 11)); // 16 of 300 dpi
        QCOMPARE(text->width(), sign(explorer, 0)->width() - 2 * 11);
        QCOMPARE(text->property("color").value<QColor>(),
                 sign(explorer, 0)->property("textColor").value<QColor>());
        QCOMPARE(band(explorer, 0)->property("color").value<QColor>(),
                 sign(explorer, 0)->property("bandColor").value<QColor>());
        QCOMPARE(band(explorer, 0)->position(), QPointF());
        QCOMPARE(band(explorer, 0)->width(), sign(explorer, 0)->width());
        QCOMPARE(sign(explorer, 0)->property("color").value<QColor>(), QColor(Qt::white));
        QCOMPARE(sign(explorer, 0)->childItems().size(), 1); // the rest stays plain
    });
}

void tst_ExplorerLoading::oddNames_data()
{
    QTest::addColumn<QString>("name");

    QTest::newRow("markup") << u"<b>bold< b> &amp; <img src='x'>"_s;
    QTest::newRow("percents") << u"100%1 %2 %%25"_s;
    QTest::newRow("a text key") << u"@Delete"_s;
}

void tst_ExplorerLoading::oddNames()
{
    QFETCH(QString, name);

    exploreHeld(name, [&](RunningExplorer &explorer) {
        QCOMPARE(label(explorer, 0)->property("text").toString(), name + u".held"_s);
        QVERIFY(RunningExplorer::valueOf(label(explorer, 0), u"textFormat === Text.PlainText"_s).toBool());
    });
}

void tst_ExplorerLoading::bandHeight_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("lines");
    QTest::addColumn<bool>("lowest");

    QTest::newRow("one line") << u"a"_s << 1 << true;
    QTest::newRow("two lines") << u"first second"_s << 2 << false;
    QTest::newRow("three lines") << u"first second thirds"_s << 3 << false;
    QTest::newRow("more lines than there is room for")
        << u"first second thirds fourth fifths sixths"_s << 3 << false;
}

void tst_ExplorerLoading::bandHeight()
{
    QFETCH(QString, name);
    QFETCH(int, lines);
    QFETCH(bool, lowest);

    exploreHeld(name, [&](RunningExplorer &explorer) {
        QCOMPARE(label(explorer, 0)->property("lineCount").toInt(), lines);
        const double height = sign(explorer, 0)->height();
        const double wanted = label(explorer, 0)->property("contentHeight").toDouble() + 8; // 12 of 300 dpi
        QCOMPARE(band(explorer, 0)->height(), lowest ? 0.45 * height : wanted);
        QVERIFY(lowest ? wanted < 0.45 * height : wanted >= 0.45 * height && wanted <= 0.8 * height);
    });
}

void tst_ExplorerLoading::highestBand()
{
    exploreHeld(u"a"_s, [&](RunningExplorer &explorer) {
        explorer.explorer()->setProperty("cellSize", 80);
        QTRY_COMPARE(explorer.cell(0)->height(), 80.);
        const double height = sign(explorer, 0)->height();
        QVERIFY(label(explorer, 0)->property("contentHeight").toDouble() > 0.8 * height);
        QCOMPARE(band(explorer, 0)->height(), 0.8 * height);
    });
}

void tst_ExplorerLoading::fourLinesAtMost()
{
    exploreHeld(u"first second thirds fourth fifths sixths seventh eighths ninths"_s,
                [&](RunningExplorer &explorer) {
                    explorer.explorer()->setProperty("cellSize", 300);
                    QTRY_COMPARE(explorer.cell(0)->height(), 300.);
                    QTRY_COMPARE(label(explorer, 0)->property("lineCount").toInt(), 4);
                    QVERIFY(label(explorer, 0)->property("truncated").toBool());
                });
}

void tst_ExplorerLoading::twoPairsOfColours()
{
    const QStringList paths = m_test->pictures(12);
    explore([&](RunningExplorer &explorer) {
        explorer.openPlaylist(paths);
        QTRY_VERIFY(explorer.cell(11));
        int black = 0;
        int grey = 0;
        while (black + grey < 400) {
            explorer.folders()->loadFromList(paths); // new cells
            QMetaObject::invokeMethod(explorer.list(), "forceLayout");
            for (int row = 0; row < 12; ++row) {
                const QColor ground = sign(explorer, row)->property("bandColor").value<QColor>();
                const QColor ink = sign(explorer, row)->property("textColor").value<QColor>();
                if (ground == QColor(Qt::black) && ink == QColor(Qt::white))
                    ++black;
                else if (ground == QColor(u"#CCCCCC"_s) && ink == QColor(Qt::black))
                    ++grey;
                else
                    QFAIL(qPrintable(ground.name() + u' ' + ink.name()));
            }
        }
        QVERIFY2(black > 120 && grey > 120, qPrintable(QString::number(black)));
    });
}

void tst_ExplorerLoading::foldersThatGoBeforeTheyWereAsked()
{
    m_test->pictures(9);
    m_test->tree.make({u"sub/"_s});
    explore([&](RunningExplorer &explorer) {
        explorer.openPicker(m_test->tree.top);
        QTRY_VERIFY(explorer.cell(11));
        // Cells that are gone again in the very turn in which they came.
        for (const QString &folder : {m_test->tree.top, m_test->path(u"sub"_s), m_test->tree.top}) {
            explorer.folders()->changeFolder(folder);
            QMetaObject::invokeMethod(explorer.list(), "forceLayout");
        }
        QTRY_COMPARE(image(explorer, 11)->property("status").toInt(), int(Ready));
    });
}

PANEL_TEST_MAIN(tst_ExplorerLoading)
#include "tst_explorer_loading.moc"
