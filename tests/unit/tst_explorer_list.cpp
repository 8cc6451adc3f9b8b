// Pictures one to a row: the measures of list and row, what a row shows, and what becomes of a picture's
// thumbnail.

#include "explorer_lists.h"
#include "panel_application.h"

#include <memory>

using namespace Qt::StringLiterals;
using lindenreed::picture_stand::FolderModel;

namespace {

enum ImageStatus { Null, Ready, Loading, Error }; // as QQuickImageBase numbers them

/// Where it lies in its row.
QRectF placeInRow(const RunningExplorer &explorer, int row, const QQuickItem *item)
{
    return {item->mapToItem(explorer.cell(row), QPointF()), item->size()};
}

QQuickItem *image(const RunningExplorer &explorer, int row)
{
    return RunningExplorer::below(explorer.cell(row), "fillMode");
}

QQuickItem *loadingSign(const RunningExplorer &explorer, int row)
{
    return RunningExplorer::below(explorer.cell(row), "bandColor");
}

QQuickItem *checkCircle(const RunningExplorer &explorer, int row)
{
    return RunningExplorer::below(explorer.cell(row), "isSelected");
}

/// The first text of a row in this style.
QQuickItem *text(const RunningExplorer &explorer, int row, const QString &style)
{
    return RunningExplorer::below(explorer.cell(row), "styledFont",
                                  RunningExplorer::valueOf(explorer.list(), u"FontStyles."_s + style));
}

QQuickItem *nameText(const RunningExplorer &explorer, int row)
{
    return text(explorer, row, u"BodyLBold"_s);
}

QQuickItem *kindText(const RunningExplorer &explorer, int row)
{
    return text(explorer, row, u"BodyS"_s);
}

} // namespace

class tst_ExplorerList : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { stored_database::remove(); }
    void init() { m_test = std::make_unique<ExplorerFixture>(); }
    void cleanup() { m_test.reset(); }

    void properties();
    void measures();
    void square();
    void texts();
    void longNames();
    void kinds_data();
    void kinds();
    void dottedLine();
    void sourceIsBound();
    void signWhileLoading_data();
    void signWhileLoading();
    void checkCircles();
    void focusGoesToTheList();
    void noFrameForAFinger();
    void pageKeys();
    void lastRowClearsTheButton();
    void dragIsFast();

private:
    /// Runs the application with these pictures as rows.
    void inAList(const QStringList &pictures, const std::function<void(RunningExplorer &)> &body,
                 FolderModel::FolderModelMode selecting = FolderModel::NormalMode)
    {
        explore([&](RunningExplorer &explorer) {
            explorer.openPlaylist(pictures, selecting, FolderModel::ListViewMode);
            QTRY_VERIFY(explorer.cell(0));
            body(explorer);
        });
    }

    std::unique_ptr<ExplorerFixture> m_test;
};

void tst_ExplorerList::properties()
{
    inAList(m_test->pictures(2), [](RunningExplorer &explorer) {
        QQuickItem *const wrapper = explorer.explorer();
        QCOMPARE(wrapper->property("sideMargin").toInt(), 34); // 48 of 300 dpi
        QCOMPARE(wrapper->property("gridMargin").toInt(), 17); // 24 of 300 dpi
        explorer_lists::compareProperties(explorer);
    });
}

void tst_ExplorerList::measures()
{
    inAList(m_test->pictures(2), [](RunningExplorer &explorer) {
        const QQuickItem *const list = explorer.list();
        QTRY_COMPARE(list->width(), 758. - 2 * 34);
        QCOMPARE(list->position(), QPointF(34, 0));
        QCOMPARE(list->height(), explorer.explorer()->height() - 17);
        QCOMPARE(list->property("cellWidth").toDouble(), list->width());
        QCOMPARE(list->property("cellHeight").toDouble(), 189.); // 268 of 300 dpi
        QCOMPARE(explorer.cell(0)->size(), QSizeF(690, 189));
        QCOMPARE(explorer.cell(1)->position(), QPointF(0, 189)); // one to a row
    });
}

void tst_ExplorerList::square()
{
    inAList(m_test->pictures(1), [](RunningExplorer &explorer) {
        QQuickItem *const picture = image(explorer, 0);
        QQuickItem *const frame = picture->parentItem();
        QCOMPARE(placeInRow(explorer, 0, frame), QRectF(0, 17, 155, 155)); // 24 from both edges, 221
        QCOMPARE(RunningExplorer::valueOf(frame, u"frame.border.width"_s).toInt(), 1);
        QCOMPARE(RunningExplorer::valueOf(frame, u"Qt.colorEqual(frame.border.color, 'black')"_s), true);
        QCOMPARE(placeInRow(explorer, 0, picture), QRectF(1, 18, 153, 153));
        QCOMPARE(picture->property("sourceSize").toSize(), QSize(153, 153));
        QCOMPARE(RunningExplorer::valueOf(picture, u"image.fillMode === Image.PreserveAspectCrop"_s), true);
        QCOMPARE(placeInRow(explorer, 0, loadingSign(explorer, 0)), QRectF(1, 18, 153, 153));
        QCOMPARE(placeInRow(explorer, 0, checkCircle(explorer, 0)), QRectF(1, 18, 153, 153));
    });
}

void tst_ExplorerList::texts()
{
    inAList({m_test->picture(u"Lake.png"_s)}, [](RunningExplorer &explorer) {
        QQuickItem *const name = nameText(explorer, 0);
        QVERIFY(name);
        QCOMPARE(name->property("text").toString(), u"Lake.png"_s);
        QCOMPARE(placeInRow(explorer, 0, name).topLeft(), QPointF(155 + 7, 17)); // 10 beside the square
        QCOMPARE(name->width(), 690. - 155 - 2 * 7);
        QCOMPARE(name->property("lineHeight").toDouble(),
                 explorer.measure(u"GlobalValues.fontLargeBodyLineHeight"_s));
        QCOMPARE(RunningExplorer::valueOf(name, u"name_text.lineHeightMode === Text.FixedHeight"_s), true);
        QCOMPARE(RunningExplorer::valueOf(name, u"name_text.elide === Text.ElideRight"_s), true);
        QCOMPARE(name->property("truncated").toBool(), false);

        QQuickItem *const kind = kindText(explorer, 0);
        QVERIFY(kind);
        QCOMPARE(kind->property("text").toString(), u"png"_s);
        QCOMPARE(kind->property("font").value<QFont>().capitalization(), QFont::AllUppercase);
        QCOMPARE(placeInRow(explorer, 0, kind).left(), 155. + 7);
        QCOMPARE(placeInRow(explorer, 0, kind).bottom(), 189. - 17);
        QVERIFY(placeInRow(explorer, 0, name).bottom() <= placeInRow(explorer, 0, kind).top());
    });
}

void tst_ExplorerList::longNames()
{
    const QString words = u"A long evening by the lake with everyone from the village"_s;
    inAList({m_test->picture(u"1 "_s + words + u".png"_s), m_test->picture(u"2 a."_s + words + u".png"_s),
             m_test->picture(u"3 two\nlines.two\nlines.png"_s)},
            [](RunningExplorer &explorer) {
                QTRY_VERIFY(explorer.cell(2));
                QVERIFY(nameText(explorer, 0)->property("truncated").toBool());
                QVERIFY(!kindText(explorer, 0)->property("truncated").toBool());
                QVERIFY(kindText(explorer, 1)->property("truncated").toBool()); // all behind the first dot
                for (int row = 0; row < 3; ++row) {
                    QCOMPARE(nameText(explorer, row)->property("lineCount").toInt(), 1);
                    QCOMPARE(kindText(explorer, row)->property("lineCount").toInt(), 1);
                    QCOMPARE(nameText(explorer, row)->height(), nameText(explorer, 0)->height());
                    QVERIFY(placeInRow(explorer, row, kindText(explorer, row)).right() <= 690.);
                }
            });
}

void tst_ExplorerList::kinds_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("kind");

    QTest::newRow("one dot") << u"a.jpg"_s << u"jpg"_s;
    QTest::newRow("two dots") << u"a.b.jpg"_s << u"b.jpg"_s;
    QTest::newRow("capitals") << u"a.JPG"_s << u"JPG"_s;
    QTest::newRow("none") << u"a"_s << u""_s;
    QTest::newRow("a folder with a dot") << u"2023.01/a"_s << u""_s;
}

void tst_ExplorerList::kinds()
{
    QFETCH(QString, name);
    QFETCH(QString, kind);

    inAList({m_test->picture(name)}, [&](RunningExplorer &explorer) {
        QCOMPARE(kindText(explorer, 0)->property("text").toString(), kind);
    });
}

void tst_ExplorerList::dottedLine()
{
    inAList(m_test->pictures(2), [](RunningExplorer &explorer) {
        const QQuickItem *const line = RunningExplorer::below(explorer.cell(0), "vertical");
        QVERIFY(line);
        QVERIFY(line->isVisible() && !line->property("vertical").toBool());
        QCOMPARE(placeInRow(explorer, 0, line).bottom(), 189.);
        QCOMPARE(line->width(), 690.);
    });
}

void tst_ExplorerList::sourceIsBound()
{
    const QStringList paths = m_test->pictures(2);
    inAList(paths, [&](RunningExplorer &explorer) {
        explorer.folders()->loadFromList({paths.at(1)});
        // Before anything that waits for a turn of the event loop.
        QVERIFY(QMetaObject::invokeMethod(explorer.list(), "forceLayout"));
        QCOMPARE(image(explorer, 0)->property("source").toUrl(),
                 QUrl(u"image://cover_provider/"_s + paths.at(1)));
    });
}

void tst_ExplorerList::signWhileLoading_data()
{
    QTest::addColumn<QByteArray>("contents");
    QTest::addColumn<bool>("stays");

    QTest::newRow("a picture") << QByteArray() << false;
    QTest::newRow("no picture") << QByteArray("not a picture") << true;
}

void tst_ExplorerList::signWhileLoading()
{
    QFETCH(QByteArray, contents);
    QFETCH(bool, stays);

    // A name of its own: what has been shown once is there at once.
    const QString name = u"%1.png"_s.arg(QString::fromLatin1(QTest::currentDataTag()));
    const QString path = m_test->picture(name);
    if (!contents.isEmpty()) {
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write(contents) == contents.size());
    }
    inAList(m_test->pictures(1), [&](RunningExplorer &explorer) {
        explorer.folders()->loadFromList({path});
        QVERIFY(QMetaObject::invokeMethod(explorer.list(), "forceLayout"));
        QCOMPARE(image(explorer, 0)->property("status").toInt(), int(Loading));
        QVERIFY(loadingSign(explorer, 0)->isVisible());
        QCOMPARE(text(explorer, 0, u"BodyL"_s)->property("text").toString(), name);
        QTRY_COMPARE(image(explorer, 0)->property("status").toInt(), int(Ready));
        QCOMPARE(loadingSign(explorer, 0)->isVisible(), stays);
    });
}

void tst_ExplorerList::checkCircles()
{
    const QStringList paths = m_test->pictures(3);
    inAList(paths, [&](RunningExplorer &explorer) {
        QTRY_VERIFY(explorer.cell(2));
        const auto shown = [&](int row) { return checkCircle(explorer, row)->isVisible(); };
        QVERIFY(!shown(0) && !shown(1) && !shown(2));
        explorer.folders()->setMode(FolderModel::SelectionMode);
        QVERIFY(shown(0) && shown(1) && shown(2));
        explorer.folders()->selectFile(paths.at(1), true);
        for (int row = 0; row < 3; ++row)
            QCOMPARE(checkCircle(explorer, row)->property("isSelected").toBool(), row == 1);
        explorer.folders()->setMode(FolderModel::NormalMode);
        QVERIFY(!shown(0) && !shown(1) && !shown(2));
    });
}

void tst_ExplorerList::focusGoesToTheList()
{
    inAList(m_test->pictures(2), explorer_lists::focusIsPassedOn);
}

void tst_ExplorerList::noFrameForAFinger()
{
    inAList(m_test->pictures(1), [](RunningExplorer &explorer) {
        QCOMPARE(explorer.list()->property("currentIndex").toInt(), 0);
        for (const QQuickItem *child : explorer.cell(0)->childItems())
            QVERIFY(child->metaObject()->indexOfProperty("border") < 0 || !child->isVisible());
    });
}

void tst_ExplorerList::pageKeys()
{
    inAList(m_test->pictures(20), [](RunningExplorer &explorer) {
        const auto top = [&] { return explorer.list()->property("contentY").toDouble(); };
        QTRY_VERIFY(explorer.list()->hasActiveFocus());
        explorer.key(Qt::Key_PageDown);
        QCOMPARE(top(), 3. * 189); // four whole rows are in sight, and one of them stays
        explorer.key(Qt::Key_PageDown);
        QCOMPARE(top(), 6. * 189);
        explorer.key(Qt::Key_PageUp);
        QCOMPARE(top(), 3. * 189);
    });
}

void tst_ExplorerList::lastRowClearsTheButton()
{
    inAList(m_test->pictures(20), [](RunningExplorer &explorer) {
        for (int page = 0; page < 10; ++page)
            QVERIFY(QMetaObject::invokeMethod(explorer.list(), "positionViewAtEnd"));
        QTRY_VERIFY(explorer.cell(19));
        const QQuickItem *const button = RunningExplorer::below(explorer.footer(), "visibleBorders");
        QVERIFY(explorer.cell(19)->mapToScene({0, 189}).y() <= button->mapToScene({}).y());
    });
}

void tst_ExplorerList::dragIsFast()
{
    inAList(m_test->pictures(20),
            [](RunningExplorer &explorer) { explorer_lists::dragIsFast(explorer.window, explorer.list()); });
}

PANEL_TEST_MAIN(tst_ExplorerList)
#include "tst_explorer_list.moc"
