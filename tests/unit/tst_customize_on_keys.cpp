// Trying out how a date looks on a device without touch: where the keys go, and that one frame tells it.

#include "customize_screen.h"
#include "panel_application.h"

#include <memory>

using namespace customize_screen;

class tst_CustomizeOnKeys : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { stored_database::remove(); }
    void init()
    {
        m_test = std::make_unique<SettingsScreens>(u"keys-6"_s);
        m_test->device.setFonts(fonts);
    }
    void cleanup() { m_test.reset(); }

    void alongTheBar();
    void frameOfThePosition();
    void picker();

private:
    void run(const std::function<void(RunningApp &)> &body) { m_test->run(dates.at(0).view, body); }

    std::unique_ptr<SettingsScreens> m_test;
};

namespace {

/// The visible frames of the focus below an item.
QList<QQuickItem *> frames(QQuickItem *item)
{
    QList<QQuickItem *> found;
    if (!item->isVisible())
        return found;
    QQmlContext *const context = qmlContext(item);
    if (context && item->metaObject()->indexOfProperty("border") >= 0
        && QQmlExpression(context, item, u"border.width"_s).evaluate().toInt() == 4)
        return {item}; // one that consists of another is one
    for (QQuickItem *child : item->childItems())
        found.append(frames(child));
    return found;
}

/// Around this item, and nowhere else.
bool framed(const RunningApp &running, const QQuickItem *item)
{
    const QList<QQuickItem *> all = frames(running.window->contentItem());
    return all.size() == 1 && item->isAncestorOf(all.constFirst());
}

} // namespace

void tst_CustomizeOnKeys::alongTheBar()
{
    run([](RunningApp &running) {
        QVERIFY(choose(running, "font", u"Serif"_s));
        const QList<const char *> order{"font", "font_style", "position", "done_button", "back_button"};
        for (const char *id : order) {
            QVERIFY2(framed(running, item(running, id)), id);
            SettingsScreens::key(running, Qt::Key_Right);
        }
        for (int i = int(order.size()); i > 0; --i) {
            QVERIFY2(framed(running, item(running, order.at(i % order.size()))), order.at(i % order.size()));
            SettingsScreens::key(running, Qt::Key_Left);
        }
        QVERIFY(framed(running, item(running, "font")));
    });
}

void tst_CustomizeOnKeys::frameOfThePosition()
{
    const QString name = u"A rather long name of a font"_s; // so that the bar is full
    m_test->device.setFonts({{name.toUtf8(), 0, "R"}, {name.toUtf8(), 2, "B"}});
    run([&](RunningApp &running) {
        QVERIFY(choose(running, "font", name));
        QTRY_COMPARE(item(running, "font")->width(), item(running, "font")->property("max_width").toReal());
        item(running, "position")->forceActiveFocus();
        const QRect frame = sceneRectangle(item(running, "position_frame"));
        QVERIFY(item(running, "position_frame")->isVisible());
        // Clear of the lines at its right and below.
        QVERIFY(frame.right() + 1 < sceneRectangle(item(running, "line")).left());
        QVERIFY(frame.bottom() + 1 < sceneRectangle(item(running, "header_line")).top());
    });
}

void tst_CustomizeOnKeys::picker()
{
    run([](RunningApp &running) {
        item(running, "position")->forceActiveFocus();
        SettingsScreens::key(running, Qt::Key_Return);
        const auto corner = [&](const QString &name) {
            return findAccessible(running.window->contentItem(), QAccessible::ListItem, name);
        };
        QTRY_VERIFY(corner(u"Bottom right"_s));
        QVERIFY(framed(running, corner(u"Bottom left"_s))); // which is in force
        SettingsScreens::key(running, Qt::Key_Right);
        QVERIFY(framed(running, corner(u"Bottom right"_s)));
        for (const Qt::Key key : {Qt::Key_Right, Qt::Key_Up, Qt::Key_Down}) { // nothing is there
            SettingsScreens::key(running, key);
            QVERIFY(framed(running, corner(u"Bottom right"_s)));
        }
        for (int i = 0; i < 4; ++i) // one more than there are
            SettingsScreens::key(running, Qt::Key_Left);
        QVERIFY(framed(running, corner(u"Top left"_s)));
        SettingsScreens::key(running, Qt::Key_Return);
        QCOMPARE(running.settings()->property("created_date_position").toInt(), 0);
        QVERIFY(framed(running, item(running, "position")));
    });
}

PANEL_TEST_MAIN_WITH_RECORD(tst_CustomizeOnKeys, R"({"profile":"keys-6"})")
#include "tst_customize_on_keys.moc"
