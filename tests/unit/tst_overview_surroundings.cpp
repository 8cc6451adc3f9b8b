// What stands around the rows of the overview: the header's buttons, the text in place of the list, and a
// row's menu.

#include "panel_application.h"
#include "workflow_fixture.h"

#include <QQmlExpression>

using namespace Qt::StringLiterals;

namespace {

double measure(const RunningApp &running, const QString &expression)
{
    return QQmlExpression(qmlContext(running.screen()), running.screen(), expression).evaluate().toDouble();
}

/// The first item below `root` with this value; it need not be visible.
QQuickItem *withValue(QQuickItem *root, const char *property, const QVariant &value)
{
    if (root->property(property) == value)
        return root;
    const QList<QQuickItem *> children = root->childItems();
    for (QQuickItem *child : children) {
        if (QQuickItem *found = withValue(child, property, value))
            return found;
    }
    return nullptr;
}

/// What holds the menu of a row: of the screen by birth, wherever it stands.
QQuickItem *menuLoader(const RunningApp &running)
{
    const QObjectList members = running.screen()->children();
    for (QObject *member : members) {
        auto *const item = qobject_cast<QQuickItem *>(member);
        if (item && item->metaObject()->indexOfProperty("sourceComponent") >= 0)
            return item;
    }
    return nullptr;
}

/// Null where none was opened yet.
QQuickItem *menu(const RunningApp &running)
{
    return menuLoader(running)->property("item").value<QQuickItem *>();
}

QRectF globalRectangle(const QQuickItem *item)
{
    return {item->mapToGlobal(QPointF()), item->size()};
}

} // namespace

class tst_OverviewSurroundings : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { stored_database::remove(); }
    void init() { m_test = std::make_unique<WorkflowFixture>(); }
    void cleanup() { m_test.reset(); }

    void settingsButton();
    void textWithoutPlaylists();
    void menuBelongsToTheRow();

private:
    std::unique_ptr<WorkflowFixture> m_test;
};

void tst_OverviewSurroundings::settingsButton()
{
    m_test->run([](RunningApp &running) {
        QQuickItem *const button = WorkflowFixture::button(running, textOf("@SlideshowSettings"));
        QVERIFY(button);
        QCOMPARE(button->property("icon").toString(), u"image://resource/desktop_app_settings"_s);
        QCOMPARE(button->property("pressedIcon").toString(), u"image://resource/desktop_app_settings_f"_s);
        const int offset = int(measure(running, u"Global.dp(20 * 0.53)"_s));
        QCOMPARE(running.itemWith("rightButtonsOffset")->property("rightButtonsOffset").toInt(), offset);
        QCOMPARE(sceneRectangle(button).right() + 1, ScreenWidth() - offset);

        WorkflowSteps steps(running);
        QVERIFY(pressByAccessibility(button));
        QCOMPARE(steps.taken(), (QStringList{u"back to playlists"_s, u"view settings_slideshow"_s}));
    });
}

void tst_OverviewSurroundings::textWithoutPlaylists()
{
    m_test->run([](RunningApp &running) {
        QQuickItem *const text = withValue(running.screen(), "text", textOf("@ThereAreNoPlaylistsYet"));
        QVERIFY(text && text->isVisible());
        const int margin = int(measure(running, u"Global.dp(115 * 0.53)"_s));
        const int header = int(measure(running, u"GlobalValues.defaultAppHeaderHeight"_s));
        const QSize screen = running.screen()->size().toSize();
        QVERIFY(margin > 0 && screen.height() == ScreenHeight() - PanelHeight());
        QCOMPARE(sceneRectangle(text->parentItem()),
                 QRect(margin, header + margin, screen.width() - 2 * margin,
                       screen.height() - header - 2 * margin));
        QCOMPARE(sceneRectangle(text), sceneRectangle(text->parentItem()));
        QCOMPARE(text->property("verticalAlignment").toInt(), int(Qt::AlignVCenter));
        QVERIFY(QQmlExpression(qmlContext(text), text, u"wrapMode === Text.WordWrap"_s).evaluate().toBool());
        QVERIFY(text->property("lineCount").toInt() > 1);
        QVERIFY(text->property("paintedWidth").toDouble() <= text->width());
    });
}

void tst_OverviewSurroundings::menuBelongsToTheRow()
{
    m_test->run([](RunningApp &running) {
        const QStringList titles{u"First. 0"_s, u"Second. 0"_s};
        for (const QString &title : titles)
            running.playlists()->addItem(title.section(u'.', 0, 0));
        // Over everything in the window, whatever screen opens it.
        QVERIFY(menuLoader(running));
        QCOMPARE(menuLoader(running)->parentItem(), running.window->contentItem());
        QCOMPARE(menuLoader(running)->size(), QSizeF(running.window->size()));
        QVERIFY(!menu(running)); // until it is wanted
        for (const QString &title : titles) {
            QVERIFY(WorkflowFixture::hold(running, title));
            const QQuickItem *const row = WorkflowFixture::button(running, title)->parentItem();
            QVERIFY(menu(running) && menu(running)->isVisible());
            QCOMPARE(menu(running)->property("globalArea").toRectF(), globalRectangle(row));
            QTest::mouseClick(running.window, Qt::LeftButton, {}, {ScreenWidth() - 1, 1});
            QTRY_VERIFY(!menu(running)->isVisible());
        }
    });
}

PANEL_TEST_MAIN(tst_OverviewSurroundings)
#include "tst_overview_surroundings.moc"
