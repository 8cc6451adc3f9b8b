// Where the dates stand on the picture: each in its corner, one above the other where they share it, equally
// wide.

#include "app_fixture.h"
#include "panel_application.h"
#include "running_app.h"

#include <QFont>

#include <memory>

using namespace Qt::StringLiterals;
using lindenreed::picture_stand::App;

namespace {

enum Corner { TopLeft, TopRight, BottomLeft, BottomRight };

constexpr QSize screen(758, 1024);
constexpr int margin = 34; ///< 48 of the design on this panel
constexpr int gap = 17; ///< 24

/// The overlays are the two with a width of their own; the one that has the clock is of fixed height.
struct Overlays
{
    QQuickItem *created = nullptr;
    QQuickItem *current = nullptr;
};

Overlays overlays(const RunningApp &running)
{
    Overlays found;
    for (QQuickItem *layer : running.screen()->childItems()) {
        for (QQuickItem *child : layer->childItems()) {
            if (child->metaObject()->indexOfProperty("potential_width") >= 0)
                (found.created ? found.current : found.created) = child;
        }
    }
    return found;
}

/// The table of places, for one size of each.
struct Places
{
    QRect created;
    QRect current;
};

Places placesFor(Corner created, Corner current, bool shared, QSize createdSize, QSize currentSize)
{
    const auto left = [](Corner corner, int width) {
        return corner == TopLeft || corner == BottomLeft ? margin : screen.width() - margin - width;
    };
    const auto top = [](Corner corner, int height) {
        return corner == TopLeft || corner == TopRight ? margin : screen.height() - margin - height;
    };
    Places places{{{left(created, createdSize.width()), top(created, createdSize.height())}, createdSize},
                  {{left(current, currentSize.width()), top(current, currentSize.height())}, currentSize}};
    if (shared && (created == TopLeft || created == TopRight))
        places.created.moveTop(margin + currentSize.height() + gap);
    else if (shared)
        places.current.moveTop(places.created.top() - gap - currentSize.height());
    return places;
}

QRect placeOf(const QQuickItem *item)
{
    return QRectF(item->mapToScene(QPointF()), item->size()).toRect();
}

} // namespace

class tst_ShowOverlays : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        stored_database::remove();
        QGuiApplication::setFont(QFont(u"Noto Sans"_s)); // as the program does: points then are the panel's
    }
    void init() { m_test = std::make_unique<AppFixture>(); }
    void cleanup() { m_test.reset(); }

    void corners();
    void cornersChangeWhileShown();
    void unknownPosition_data();
    void unknownPosition();
    void commonWidth();
    void settingsOfTheOverlays();
    void overlaysLetTouchesThrough();

private:
    void inAShow(const std::function<void(RunningApp &)> &body);

    std::unique_ptr<AppFixture> m_test;
};

void tst_ShowOverlays::inAShow(const std::function<void(RunningApp &)> &body)
{
    App app;
    QCOMPARE(runApp(app,
                    [&](RunningApp &running) {
                        running.startShow(m_test->paths);
                        QTRY_COMPARE(running.screen()->size().toSize(), screen);
                        body(running);
                    }),
             0);
}

void tst_ShowOverlays::corners()
{
    // All corners by all corners, each shown or hidden; from every setting to its neighbour, as settings
    // change.
    inAShow([](RunningApp &running) {
        const Overlays found = overlays(running);
        QVERIFY(found.created && found.current);
        for (int i = 0; i < 4 * 4 * 4; ++i) {
            const auto created = Corner(i / 4 % 4);
            const auto current = Corner(i % 4);
            const bool createdShown = (i & 16) == 0;
            const bool currentShown = (i & 32) == 0;
            running.settings()->setProperty("created_date_position", created);
            running.settings()->setProperty("current_date_position", current);
            running.settings()->setProperty("created_date_show", createdShown);
            running.settings()->setProperty("current_date_show", currentShown);
            const QByteArray row = "created " + QByteArray::number(created) + (createdShown ? "" : " hidden")
                + ", current " + QByteArray::number(current) + (currentShown ? "" : " hidden");
            QVERIFY2(found.created->isVisible() == createdShown, row.constData());
            QVERIFY2(found.current->isVisible() == currentShown, row.constData());
            const QRect createdPlace = placeOf(found.created);
            const QRect currentPlace = placeOf(found.current);
            const Places expected
                = placesFor(created, current, createdShown && currentShown && created == current,
                            createdPlace.size(), currentPlace.size());
            if (createdShown)
                QVERIFY2(createdPlace == expected.created, row.constData());
            if (currentShown)
                QVERIFY2(currentPlace == expected.current, row.constData());
            QVERIFY2(createdPlace.width() == currentPlace.width(), row.constData());
        }
    });
}

void tst_ShowOverlays::cornersChangeWhileShown()
{
    // From any arrangement to any other, without a state in between that stays.
    inAShow([](RunningApp &running) {
        const Overlays found = overlays(running);
        running.settings()->setProperty("created_date_show", true);
        running.settings()->setProperty("current_date_show", true);
        for (int from = 0; from < 16; ++from) {
            for (int to = 0; to < 16; ++to) {
                for (const int arrangement : {from, to}) {
                    running.settings()->setProperty("created_date_position", arrangement / 4);
                    running.settings()->setProperty("current_date_position", arrangement % 4);
                }
                const Places expected
                    = placesFor(Corner(to / 4), Corner(to % 4), to / 4 == to % 4,
                                found.created->size().toSize(), found.current->size().toSize());
                QCOMPARE(placeOf(found.created), expected.created);
                QCOMPARE(placeOf(found.current), expected.current);
            }
        }
    });
}

void tst_ShowOverlays::unknownPosition_data()
{
    QTest::addColumn<int>("position");
    QTest::addColumn<QString>("state");

    QTest::newRow("top left") << 0 << u"top_left"_s;
    QTest::newRow("top right") << 1 << u"top_right"_s;
    QTest::newRow("bottom left") << 2 << u"bottom_left"_s;
    QTest::newRow("bottom right") << 3 << u"bottom_right"_s;
    QTest::newRow("beyond") << 4 << u"top_left"_s;
    QTest::newRow("before") << -1 << u"top_left"_s;
}

void tst_ShowOverlays::unknownPosition()
{
    QFETCH(int, position);
    QFETCH(QString, state);

    inAShow([&](RunningApp &running) {
        running.settings()->setProperty("created_date_position", position);
        running.settings()->setProperty("current_date_position", position);
        QCOMPARE(overlays(running).created->state(), state);
        QCOMPARE(overlays(running).current->state(), state);
    });
}

void tst_ShowOverlays::commonWidth()
{
    inAShow([](RunningApp &running) {
        const Overlays found = overlays(running);
        const auto widths = [&] {
            return QList<int>{found.created->property("potential_width").toInt(),
                              found.current->property("potential_width").toInt()};
        };
        const auto expectTheWider = [&] {
            QCOMPARE(int(found.created->width()), std::max(widths().at(0), widths().at(1)));
            QCOMPARE(found.current->width(), found.created->width());
        };
        expectTheWider();
        const int before = int(found.created->width());
        // Bold letters need more room, in either of them; hidden ones count as well.
        running.settings()->setProperty("created_date_font_is_bold", true);
        expectTheWider();
        QVERIFY(int(found.created->width()) > before);
        running.settings()->setProperty("created_date_font_is_bold", false);
        QCOMPARE(int(found.created->width()), before);
        QQuickItem *clock = found.current->findChild<QQuickItem *>(); // and its text, were it longer
        while (clock->metaObject()->indexOfProperty("styledFont") < 0)
            clock = clock->childItems().first();
        QVERIFY(clock->setProperty("text", u"00:00:00:00"_s));
        QVERIFY(widths().at(1) > widths().at(0));
        expectTheWider();
    });
}

void tst_ShowOverlays::settingsOfTheOverlays()
{
    inAShow([](RunningApp &running) {
        const Overlays found = overlays(running);
        const auto expect = [&](QQuickItem *overlay, const QByteArray &prefix) {
            for (const bool on : {true, false}) {
                running.settings()->setProperty(prefix + "font_is_bold", on);
                running.settings()->setProperty(prefix + "font_is_italic", !on);
                QCOMPARE(overlay->property("bold").toBool(), on);
                QCOMPARE(overlay->property("italic").toBool(), !on);
            }
            running.settings()->setProperty(prefix + "font", u"Noto Serif"_s);
            QCOMPARE(overlay->property("font_family").toString(), u"Noto Serif"_s);
            running.settings()->setProperty(prefix + "font", u"default"_s);
            QCOMPARE(overlay->property("font_family").toString(), u"Noto Sans"_s);
        };
        expect(found.created, "created_date_");
        expect(found.current, "current_date_");
    });
}

void tst_ShowOverlays::overlaysLetTouchesThrough()
{
    inAShow([this](RunningApp &running) {
        running.settings()->setProperty("created_date_show", true);
        running.settings()->setProperty("created_date_position", BottomRight);
        const QPoint at = placeOf(overlays(running).created).center();
        QVERIFY(at.x() >= screen.width() * 3 / 4);
        QTest::mouseClick(running.window, Qt::LeftButton, {}, at);
        QCOMPARE(running.slideshow()->currentImage(), m_test->paths.at(1));
    });
}

PANEL_TEST_MAIN(tst_ShowOverlays)
#include "tst_show_overlays.moc"
