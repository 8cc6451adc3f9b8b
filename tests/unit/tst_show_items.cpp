// The items of the show's screen: under which names they are known, and what of them no picture tells.

#include "accessible_items.h"
#include "app_fixture.h"
#include "panel_application.h"
#include "running_app.h"

#include <device.h>

#include <QAbstractItemModel>
#include <QMetaProperty>
#include <QQmlContext>
#include <QQmlEngine>
#include <QQmlExpression>

#include <functional>
#include <memory>

using namespace Qt::StringLiterals;
using lindenreed::device::Device;
using lindenreed::picture_stand::App;

namespace {

/// What the file that declares `item` calls so.
QQuickItem *named(QQuickItem *item, const char *id)
{
    return qobject_cast<QQuickItem *>(qmlContext(item)->objectForName(QString::fromLatin1(id)));
}

/// Whether this is true in the file that declares `item`.
bool holds(QObject *item, const char *expression)
{
    QQmlExpression question(qmlContext(item), item, QString::fromLatin1(expression));
    const bool answer = question.evaluate().toBool();
    return answer && !question.hasError();
}

bool isOf(const QObject *object, const char *type)
{
    return object && QByteArray(object->metaObject()->className()).startsWith(type);
}

QQuickItem *childOf(QQuickItem *item, const char *type)
{
    for (QQuickItem *child : item->childItems()) {
        if (isOf(child, type))
            return child;
    }
    return nullptr;
}

/// As its own file knows it: the first item below it is declared there.
QQuickItem *within(QQuickItem *item, const char *id)
{
    return !item || item->childItems().isEmpty() ? nullptr : named(item->childItems().constFirst(), id);
}

} // namespace

class tst_ShowItems : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { stored_database::remove(); }
    void init() { m_test = std::make_unique<AppFixture>(); }
    void cleanup() { m_test.reset(); }

    void rootHasNoRole();
    void itemsOfTheScreen();
    void touchMembers();
    void dates();
    void menuRows();
    void menuEntries();
    void lightPanel();

private:
    void inAShow(const std::function<void(RunningApp &)> &body);

    std::unique_ptr<AppFixture> m_test;
};

void tst_ShowItems::inAShow(const std::function<void(RunningApp &)> &body)
{
    App app;
    QCOMPARE(runApp(app,
                    [&](RunningApp &running) {
                        running.startShow(m_test->paths);
                        QTRY_COMPARE(running.screen()->size().toSize(), QSize(758, 1024));
                        body(running);
                    }),
             0);
}

void tst_ShowItems::rootHasNoRole()
{
    inAShow([](RunningApp &running) {
        QQuickItem *below = running.screen()->childItems().value(0);
        QVERIFY(holds(below, "wrapper.Accessible.role === Accessible.NoRole"));
    });
}

void tst_ShowItems::itemsOfTheScreen()
{
    inAShow([](RunningApp &running) {
        QQuickItem *screen = running.screen();
        QCOMPARE(within(screen, "wrapper"), screen);
        QQuickItem *image = within(screen, "image");
        QCOMPARE(screen->childItems().value(1), image);
        QVERIFY(isOf(image, "AutoReloadImage"));
        QCOMPARE(image->childItems().value(0), within(screen, "area"));
        QVERIFY(isOf(within(screen, "area"), "QQuickMouseArea"));
        QCOMPARE(image->childItems().value(1), within(screen, "created_date_rect"));
        QVERIFY(isOf(within(screen, "created_date_rect"), "RectangleCreatedDate"));
        QCOMPARE(image->childItems().value(2), within(screen, "current_date_rect"));
        QVERIFY(isOf(within(screen, "current_date_rect"), "RectangleCurrentDate"));
        QCOMPARE(screen->childItems().value(2), within(screen, "settings_frontlight"));
        QVERIFY(isOf(within(screen, "settings_frontlight"), "SettingsFrontlight"));

        QVERIFY(holds(image, "anchors.fill = undefined, width = 700"));
        QCOMPARE(screen->property("test_w").toReal(), 700.0);
    });
}

void tst_ShowItems::touchMembers()
{
    inAShow([](RunningApp &running) {
        QQuickItem *area = within(running.screen(), "area");
        QVERIFY(area);
        const auto members = [area] {
            return QVariantList{area->property("pressed_x"), area->property("pressed_y"),
                                area->property("is_moved")};
        };
        QCOMPARE(members(), QVariantList({0, 0, false}));
        QTest::mousePress(running.window, Qt::LeftButton, {}, QPoint(400, 600));
        QCOMPARE(members(), QVariantList({400, 600, false}));
        QTest::mouseMove(running.window, QPoint(400, 618)); // 18 squared is less than 212 * 1.6
        QCOMPARE(members(), QVariantList({400, 600, false}));
        QTest::mouseMove(running.window, QPoint(400, 619));
        QCOMPARE(members(), QVariantList({400, 600, true}));
        QTest::mouseMove(running.window, QPoint(400, 600));
        QTest::mouseRelease(running.window, Qt::LeftButton, {}, QPoint(400, 600));
        QCOMPARE(members(), QVariantList({400, 600, true})); // until the next touch
        QTest::mousePress(running.window, Qt::LeftButton, {}, QPoint(10, 500));
        QCOMPARE(members(), QVariantList({10, 500, false}));
        QTest::mouseRelease(running.window, Qt::LeftButton, {}, QPoint(10, 500));
    });
}

void tst_ShowItems::dates()
{
    inAShow([](RunningApp &running) {
        QQuickItem *created = within(running.screen(), "created_date_rect");
        QQuickItem *current = within(running.screen(), "current_date_rect");
        for (QQuickItem *overlay : {created, current}) {
            QVERIFY(overlay);
            const QMetaObject *type = overlay->metaObject();
            const QMetaProperty width = type->property(type->indexOfProperty("potential_width"));
            QVERIFY(width.isValid() && !width.isWritable());
            QCOMPARE(width.metaType().id(), int(QMetaType::Int));
        }
        QQuickItem *content = within(created, "content");
        QVERIFY(content);
        QCOMPARE(created->childItems().value(0), content);
        QCOMPARE(content->height(), created->height());
        QVERIFY(isOf(within(created, "img"), "QQuickImage"));
        QVERIFY(isOf(within(created, "txt"), "StyledText"));
        QCOMPARE(within(created, "img")->parentItem(), content);
        QCOMPARE(within(created, "txt")->parentItem(), content);

        QVERIFY(within(current, "main_txt"));
        QQuickItem *column = within(current, "main_txt")->parentItem();
        QVERIFY(isOf(column, "QQuickColumn"));
        QCOMPARE(column->childItems(),
                 QList<QQuickItem *>(
                     {within(current, "main_txt"), within(current, "subtext"), within(current, "subtext2")}));
    });
}

void tst_ShowItems::menuRows()
{
    inAShow([](RunningApp &running) {
        QQuickItem *menu = childOf(within(running.screen(), "image"), "SlideshowMenu");
        QVERIFY(menu);
        QQuickItem *column = childOf(menu, "QQuickColumn");
        QVERIFY(column);
        QVERIFY(column->clip());
        QQuickItem *repeater = childOf(column, "QQuickRepeater");
        QVERIFY(repeater);
        const auto *rows = qobject_cast<QAbstractItemModel *>(repeater->property("model").value<QObject *>());
        QVERIFY(rows);
        QByteArrayList lines;
        for (int row = 0; row < rows->rowCount(); ++row) {
            QByteArray line;
            for (const char *role : {"uid_", "image_", "pressedImage_", "view_", "text_"})
                line += rows->data(rows->index(row, 0), rows->roleNames().key(role)).toByteArray() + ' ';
            lines.append(line);
        }
        QCOMPARE(lines,
                 QByteArrayList({"0 slideshow_stop slideshow_stop_inv stop_slideshow Stop slideshow ",
                                 "1 slideshow_settings slideshow_settings_inv settings_slideshow "
                                 "Slideshow settings ",
                                 "2 slideshow_brightness slideshow_brightness_inv frontlight Frontlight "}));
    });
}

void tst_ShowItems::menuEntries()
{
    inAShow([](RunningApp &running) {
        pressByAccessibility(running.screen());
        for (const QString &text : {u"Stop slideshow"_s, u"Slideshow settings"_s, u"Frontlight"_s}) {
            QQuickItem *entry = findAccessible(running.screen(), QAccessible::Button, text);
            QVERIFY(entry);
            QQuickItem *btn = within(entry, "btn");
            QVERIFY(isOf(btn, "QQuickImage"));
            QCOMPARE(btn->parentItem(), entry);
            QVERIFY(holds(childOf(entry, "StyledText"), "styledFont === FontStyles.Heading4"));
            QVERIFY(holds(childOf(entry, "StyledText"), "lineHeightMode === Text.FixedHeight"));
            QObject *metrics = nullptr;
            for (QObject *part : entry->children()) {
                if (part->metaObject()->indexOfProperty("elideWidth") >= 0)
                    metrics = part;
            }
            QVERIFY(metrics);
            QVERIFY(holds(metrics, "elide === Text.ElideRight"));
            QCOMPARE(metrics->property("elideWidth").toReal(), 758 - (btn->width() + 11 * 2));
        }
    });
}

void tst_ShowItems::lightPanel()
{
    inAShow([](RunningApp &running) {
        Device::instance()->light.setEnabled(true);
        QQuickItem *panel = within(running.screen(), "settings_frontlight");
        running.screen()->setProperty("frontlight_opened", true);
        QQuickItem *content = within(panel, "settings_content");
        QVERIFY(content);
        QCOMPARE(content->parentItem(), panel);
        QCOMPARE(content->property("color").value<QColor>(), QColor(Qt::white));
        QQuickItem *frontlight = within(panel, "frontlight");
        QVERIFY(isOf(frontlight, "Frontlight"));
        QCOMPARE(frontlight->parentItem(), content);
        QQuickItem *footer = within(panel, "footer");
        QVERIFY(footer);
        QCOMPARE(footer->parentItem(), content);
        QVERIFY(footer->isVisible());
        QQuickItem *note = findAccessible(footer, QAccessible::StaticText);
        QVERIFY(isOf(note, "StyledText"));
        QVERIFY(holds(note, "styledFont === FontStyles.BodyS"));
        QVERIFY(holds(note, "elide === Text.ElideRight"));
        QVERIFY(holds(note, "wrapMode === Text.WordWrap"));
    });
}

PANEL_TEST_MAIN(tst_ShowItems)
#include "tst_show_items.moc"
