// The two dialogs before the first show: what they say, what they write, and where one can turn back.

#include "panel_application.h"
#include "workflow_fixture.h"

#include <QQmlExpression>

#include <algorithm>

using namespace Qt::StringLiterals;

class tst_PlaylistFirstRun : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { stored_database::remove(); }
    void init() { m_test = std::make_unique<WorkflowFixture>(); }
    void cleanup() { m_test.reset(); }

    void firstDialog();
    void secondDialog();
    void closed_data();
    void closed();
    void completed_data();
    void completed();
    void nothingChosen();
    void emptyPlaylist();

private:
    /// Runs with one playlist on a device that has never shown anything.
    void runFirst(const std::function<void(RunningApp &)> &body)
    {
        m_test->run([&](RunningApp &running) {
            m_mine = WorkflowFixture::add(running, u"Mine"_s, m_test->paths);
            running.settings()->setProperty("isFirstRun", true);
            running.settings()->setProperty("change_picture_time", 77);
            running.settings()->setProperty("change_picture_time_index", 0);
            for (const char *key : {"is_first_run", "change_picture_time", "change_picture_time_index"})
                running.settings()->saveConfig(QString::fromLatin1(key));
            QTRY_VERIFY(WorkflowFixture::button(running, textOf("@StartPlayback")));
            m_steps = std::make_unique<WorkflowSteps>(running);
            body(running);
            m_steps.reset();
        });
    }
    static bool press(const RunningApp &running, const QString &name)
    {
        return WorkflowFixture::press(running, name);
    }
    /// The dialog's button; the row behind it has one of the same name.
    static bool start(const RunningApp &running)
    {
        return pressByAccessibility(
            findAccessible(dialog(running), QAccessible::Button, textOf("@StartPlayback")));
    }
    static QQuickItem *dialog(const RunningApp &running)
    {
        return findAccessible(running.window->contentItem(), QAccessible::Dialog, textOf("@picture_stand"));
    }
    /// The part of the frame that the dialog's own content has.
    static double bodyHeight(const RunningApp &running)
    {
        const QQuickItem *const column = dialog(running)->childItems().constLast();
        return column->childItems().constFirst()->height();
    }
    /// Where a dialog that stands at the top begins.
    static int upperEdge(const RunningApp &running)
    {
        return int(measure(running, u"Global.pixelsFromDesign(240)"_s));
    }
    static double measure(const RunningApp &running, const QString &expression)
    {
        return QQmlExpression(qmlContext(running.screen()), running.screen(), expression)
            .evaluate()
            .toDouble();
    }
    /// A visible item of the dialog that has this value.
    static QQuickItem *withValue(QQuickItem *item, const char *property, const QString &value)
    {
        if (!item->isVisible())
            return nullptr;
        if (item->property(property).toString() == value)
            return item;
        for (QQuickItem *child : item->childItems()) {
            if (QQuickItem *found = withValue(child, property, value))
                return found;
        }
        return nullptr;
    }
    /// "name|value|playlist" of the settings that the dialogs may write.
    static QStringList stored()
    {
        return stored_database::rows(u"SELECT name, value, playlist FROM settings WHERE name IN "
                                     u"('is_first_run', 'change_picture_time', "
                                     "'change_picture_time_index') ORDER BY name, playlist"_s);
    }

    qlonglong m_mine = -1;
    std::unique_ptr<WorkflowSteps> m_steps;
    std::unique_ptr<WorkflowFixture> m_test;
};

void tst_PlaylistFirstRun::firstDialog()
{
    runFirst([&](RunningApp &running) {
        QVERIFY(press(running, textOf("@StartPlayback")));
        QCOMPARE(m_steps->taken(), QStringList{u"active Mine"_s});
        QVERIFY(dialog(running));
        QCOMPARE(dialog(running)->width(), measure(running, u"GlobalValues.confirmationDialogWidth"_s));
        QCOMPARE(bodyHeight(running), measure(running, u"Global.dp(700 * 0.53)"_s));
        QCOMPARE(sceneRectangle(dialog(running)).top(), upperEdge(running));
        const auto *sign = withValue(dialog(running), "source", u"image://resource/ci_device_email"_s);
        auto *play = withValue(dialog(running), "source", u"image://resource/audio_book_play"_s);
        QVERIFY(sign && play);
        QCOMPARE(sign->size(), QSizeF(1, 1) * measure(running, u"Global.dp(134 * 0.53)"_s));
        QCOMPARE(play->size(), QSizeF(1, 1) * measure(running, u"Global.dp(38 * 0.53)"_s));
        QCOMPARE(sign->parentItem()->size(), QSizeF(1, 1) * measure(running, u"Global.dp(190 * 0.53)"_s));
        QCOMPARE(sceneRectangle(sign).center(), sceneRectangle(play).center());
        const auto *message
            = withValue(dialog(running), "text", textOf("@DeviceWontTurnOffUntilYouStopPlayback"));
        const auto *note = withValue(dialog(running), "text",
                                     textOf("@WhenPlaybackIsActiveTheDeviceWillNotAutomaticallyBeTurnedOff"));
        QVERIFY(message && note);
        QCOMPARE(message->property("styledFont").toDouble(), measure(running, u"FontStyles.Heading3"_s));
        QTRY_VERIFY(sceneRectangle(note).top() >= sceneRectangle(message).bottom());
        QVERIFY(sceneRectangle(note).bottom()
                < sceneRectangle(WorkflowFixture::button(running, textOf("@Continue"))).top());
    });
}

void tst_PlaylistFirstRun::secondDialog()
{
    runFirst([&](RunningApp &running) {
        QVERIFY(press(running, textOf("@StartPlayback")));
        QVERIFY(press(running, textOf("@Continue")));
        QVERIFY(!WorkflowFixture::button(running, textOf("@Continue")));
        QVERIFY(dialog(running));
        QCOMPARE(dialog(running)->width(), measure(running, u"GlobalValues.confirmationDialogWidth"_s));
        QCOMPARE(bodyHeight(running), measure(running, u"Global.dp(420 * 0.53)"_s));
        QCOMPARE(sceneRectangle(dialog(running)).top(), upperEdge(running));
        QVERIFY(withValue(dialog(running), "source", u"image://resource/validity_date"_s));
        QVERIFY(WorkflowFixture::shows(running, textOf("@ChangePictureEvery")));

        QQuickItem *const interval = findAccessible(dialog(running), QAccessible::ComboBox);
        QVERIFY(interval);
        QCOMPARE(interval->state(), u"RadioTextButton"_s);
        QCOMPARE(interval->property("selectedUid").toInt(), 3); // whatever is stored
        QCOMPARE(accessibleName(interval), u"30 "_s + textOf("@Second_2"));
        QVERIFY(pressByAccessibility(interval));
        QStringList choices;
        const std::function<void(QQuickItem *)> collect = [&](QQuickItem *item) {
            if (accessible(item) && accessible(item)->role() == QAccessible::RadioButton)
                choices.append(accessibleName(item));
            const QList<QQuickItem *> children = item->childItems();
            for (QQuickItem *child : children)
                collect(child);
        };
        QVERIFY(QTest::qWaitFor([&] {
            choices.clear();
            collect(running.window->contentItem());
            return choices.size() == 7;
        }));
        std::ranges::sort(choices, {}, [&](const QString &name) { // as they stand on the screen
            return sceneRectangle(
                       findAccessible(running.window->contentItem(), QAccessible::RadioButton, name))
                .top();
        });
        const QString seconds = u' ' + textOf("@Second_2");
        QCOMPARE(choices,
                 (QStringList{u"2"_s + seconds, u"5"_s + seconds, u"10"_s + seconds, u"30"_s + seconds,
                              textOf("@1min"), textOf("@2min"), textOf("@5min")}));
        QCOMPARE(m_steps->taken(), QStringList{u"active Mine"_s});
    });
}

void tst_PlaylistFirstRun::closed_data()
{
    QTest::addColumn<int>("dialogs");
    QTest::addColumn<bool>("chosen");

    QTest::newRow("at the first") << 1 << false;
    QTest::newRow("at the second") << 2 << false;
    QTest::newRow("at the second, with an interval") << 2 << true;
}

void tst_PlaylistFirstRun::closed()
{
    QFETCH(int, dialogs);
    QFETCH(bool, chosen);

    runFirst([&](RunningApp &running) {
        const QStringList before = stored();
        QVERIFY(press(running, textOf("@StartPlayback")));
        if (dialogs > 1)
            QVERIFY(press(running, textOf("@Continue")));
        if (chosen)
            QVERIFY(QMetaObject::invokeMethod(findAccessible(dialog(running), QAccessible::ComboBox),
                                              "choose", Q_ARG(int, 0)));
        QTest::mouseClick(running.window, Qt::LeftButton, {}, {5, 5});
        QTRY_VERIFY(!dialog(running));
        QCOMPARE(m_steps->taken().last(), chosen ? u"interval 2"_s : u"active Mine"_s);
        QVERIFY(running.settings()->property("isFirstRun").toBool());
        QCOMPARE(running.playlists()->activeId(), m_mine);
        QVERIFY(running.app.currentView().isEmpty());
        if (!chosen)
            QCOMPARE(stored(), before);

        // The next start begins at the first dialog again.
        QVERIFY(press(running, textOf("@StartPlayback")));
        QVERIFY(WorkflowFixture::button(running, textOf("@Continue")));
    });
}

void tst_PlaylistFirstRun::completed_data()
{
    QTest::addColumn<int>("uid");
    QTest::addColumn<int>("seconds");
    QTest::addColumn<int>("unit");

    QTest::newRow("2 seconds") << 0 << 2 << 0;
    QTest::newRow("5 seconds") << 1 << 5 << 0;
    QTest::newRow("10 seconds") << 2 << 10 << 0;
    QTest::newRow("30 seconds") << 3 << 30 << 0;
    QTest::newRow("1 minute") << 4 << 60 << 1;
    QTest::newRow("2 minutes") << 5 << 120 << 1;
    QTest::newRow("5 minutes") << 6 << 300 << 1;
}

void tst_PlaylistFirstRun::completed()
{
    QFETCH(int, uid);
    QFETCH(int, seconds);
    QFETCH(int, unit);

    runFirst([&](RunningApp &running) {
        QVERIFY(press(running, textOf("@StartPlayback")));
        QVERIFY(press(running, textOf("@Continue")));
        QVERIFY(QMetaObject::invokeMethod(findAccessible(dialog(running), QAccessible::ComboBox), "choose",
                                          Q_ARG(int, uid)));
        // Written at once, for the playlist.
        const QString scope = QString::number(m_mine);
        QVERIFY(stored().contains(u"change_picture_time|%1|%2"_s.arg(seconds).arg(scope)));
        QVERIFY(stored().contains(u"change_picture_time_index|%1|%2"_s.arg(unit).arg(scope)));
        QVERIFY(stored().contains(u"is_first_run|1|-1"_s));
        m_test->device.forgetCalls();
        QVERIFY(start(running));
        QStringList expected{u"active Mine"_s};
        if (unit != 0)
            expected.append(u"unit 1"_s);
        expected += QStringList{u"interval %1"_s.arg(seconds), u"no first run"_s, u"show of 4"_s,
                                u"view slideshow"_s};
        QCOMPARE(m_steps->taken(), expected);
        QVERIFY(stored().contains(u"is_first_run|0|-1"_s));
        QCOMPARE(m_test->device.calls({"SetHardTimerEx"}).constFirst().arguments.constLast(),
                 QByteArray::number(seconds * 1000));
        QVERIFY(!dialog(running));
    });
}

void tst_PlaylistFirstRun::nothingChosen()
{
    // What the dialog shows is not written; the show runs by the setting.
    runFirst([&](RunningApp &running) {
        QVERIFY(press(running, textOf("@StartPlayback")));
        QVERIFY(press(running, textOf("@Continue")));
        m_test->device.forgetCalls();
        QVERIFY(start(running));
        QCOMPARE(m_steps->taken(),
                 (QStringList{u"active Mine"_s, u"no first run"_s, u"show of 4"_s, u"view slideshow"_s}));
        QVERIFY(stored().contains(u"change_picture_time|77|-1"_s));
        QCOMPARE(m_test->device.calls({"SetHardTimerEx"}).constFirst().arguments.constLast(),
                 QByteArray("77000"));
    });
}

void tst_PlaylistFirstRun::emptyPlaylist()
{
    // There is nothing to start after the dialogs, which nothing says; they do not stay.
    runFirst([&](RunningApp &running) {
        running.playlists()->deleteImages(m_mine, m_test->paths);
        QVERIFY(WorkflowFixture::pressSoon(running, u"Mine. 0"_s));
        QVERIFY(press(running, textOf("@PlayItem")));
        QVERIFY(press(running, textOf("@Continue")));
        m_steps->taken();
        QVERIFY(start(running));
        QCOMPARE(m_steps->taken(), QStringList{u"no first run"_s});
        QVERIFY(!dialog(running));
        QCOMPARE(running.app.currentView(), u"playlist"_s);
    });
}

PANEL_TEST_MAIN(tst_PlaylistFirstRun)
#include "tst_playlist_first_run.moc"
