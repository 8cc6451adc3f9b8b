// Giving a playlist its title: the dialog for a new one and for another name, and titles of every kind on the
// screens.

#include "panel_application.h"
#include "workflow_fixture.h"

#include <QInputMethod>
#include <QQmlExpression>
#include <QQmlProperty>

using namespace Qt::StringLiterals;

class tst_PlaylistTitles : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { stored_database::remove(); }
    void init() { m_test = std::make_unique<WorkflowFixture>(); }
    void cleanup() { m_test.reset(); }

    void newDialog();
    void renameDialog();
    void bordersOfTheField();
    void emptyTitle_data();
    void emptyTitle();
    void cancelled_data();
    void cancelled();
    void closedOutside_data();
    void closedOutside();
    void renamed_data();
    void renamed();
    void keyboardAfterARename();
    void createdByReturn();
    void sameTitleTwice();
    void failingStore();
    void titlesAsTyped_data();
    void titlesAsTyped();
    void titleThatIsAKey();

private:
    static bool press(const RunningApp &running, const QString &name)
    {
        return WorkflowFixture::press(running, name);
    }
    static QQuickItem *field(const RunningApp &running) { return WorkflowFixture::titleField(running); }
    static QQuickItem *dialog(const RunningApp &running)
    {
        return findAccessible(running.window->contentItem(), QAccessible::Dialog);
    }
    static QString typed(const RunningApp &running) { return field(running)->property("text").toString(); }
    static double measure(const RunningApp &running, const QString &expression)
    {
        return QQmlExpression(qmlContext(running.screen()), running.screen(), expression)
            .evaluate()
            .toDouble();
    }
    /// Until the field has its text, selected.
    static bool openNew(const RunningApp &running)
    {
        return press(running, textOf("@New_playlist")) && WorkflowFixture::titleDialogIsReady(running);
    }
    static bool openRename(const RunningApp &running, const QString &row)
    {
        return WorkflowFixture::choose(running, row, textOf("@Rename"))
            && WorkflowFixture::titleDialogIsReady(running);
    }
    static QStringList titles()
    {
        return stored_database::rows(u"SELECT title FROM playlists ORDER BY id"_s);
    }
    /// Either dialog, with "Mine" there already.
    void runDialog(bool isNew, const std::function<void(RunningApp &)> &body)
    {
        m_test->run([&](RunningApp &running) {
            m_mine = WorkflowFixture::add(running, u"Mine"_s, m_test->paths);
            QVERIFY(isNew ? openNew(running) : openRename(running, u"Mine. 4"_s));
            body(running);
        });
    }
    static void eitherDialog()
    {
        QTest::addColumn<bool>("isNew");

        QTest::newRow("new playlist") << true;
        QTest::newRow("rename") << false;
    }

    qlonglong m_mine = -1;
    std::unique_ptr<WorkflowFixture> m_test;
};

void tst_PlaylistTitles::newDialog()
{
    runDialog(true, [&](RunningApp &running) {
        QCOMPARE(accessibleName(dialog(running)), textOf("@New_playlist"));
        QCOMPARE(typed(running), textOf("@New_playlist"));
        QCOMPARE(accessibleName(field(running)), textOf("@New_playlist"));
        QCOMPARE(field(running)->property("selectedText").toString(), typed(running));
        QVERIFY(field(running)->clip());
        QCOMPARE(field(running)->property("styledFont").toDouble(), measure(running, u"FontStyles.BodyL"_s));
        QVERIFY(WorkflowFixture::button(running, textOf("@Continue"))
                && WorkflowFixture::button(running, textOf("@Cancel")));
        const auto *footer = WorkflowFixture::button(running, textOf("@Continue"))->parentItem();
        QCOMPARE(footer->property("isUppercase").toBool(), true);
        QCOMPARE(sceneRectangle(dialog(running)).top(), int(measure(running, u"Global.dp(120 * 0.53)"_s)));
        QTRY_VERIFY(QGuiApplication::inputMethod()->isVisible());
        // The keyboard covers neither the field nor the buttons.
        const double keyboard = QGuiApplication::inputMethod()->keyboardRectangle().top();
        QVERIFY(keyboard > 0 && sceneRectangle(dialog(running)).bottom() < keyboard);
    });
}

void tst_PlaylistTitles::renameDialog()
{
    runDialog(false, [&](RunningApp &running) {
        QCOMPARE(accessibleName(dialog(running)), textOf("@Rename"));
        QCOMPARE(typed(running), u"Mine"_s);
        QCOMPARE(field(running)->property("selectedText").toString(), u"Mine"_s);
        QVERIFY(WorkflowFixture::button(running, textOf("@OK")));
        QCOMPARE(running.playlists()->activeId(), m_mine);

        // The same dialog serves a new playlist afterwards.
        QVERIFY(press(running, textOf("@Cancel")));
        QVERIFY(openNew(running));
        QCOMPARE(accessibleName(dialog(running)), textOf("@New_playlist"));
        QCOMPARE(typed(running), textOf("@New_playlist"));
    });
}

void tst_PlaylistTitles::bordersOfTheField()
{
    runDialog(true, [&](RunningApp &running) {
        const auto border
            = [&] { return QQmlProperty::read(field(running)->parentItem(), u"border.width"_s).toDouble(); };
        QCOMPARE(QQmlProperty::read(field(running)->parentItem(), u"border.color"_s).value<QColor>(),
                 QColor(Qt::black));
        QCOMPARE(border(), measure(running, u"GlobalValues.inputElementActiveBorder"_s));
        WorkflowFixture::button(running, textOf("@Cancel"))->forceActiveFocus();
        QCOMPARE(border(), measure(running, u"GlobalValues.inputElementBorder"_s));
    });
}

void tst_PlaylistTitles::emptyTitle_data()
{
    eitherDialog();
}

void tst_PlaylistTitles::emptyTitle()
{
    QFETCH(bool, isNew);

    runDialog(isNew, [&](RunningApp &running) {
        QTRY_VERIFY(QGuiApplication::inputMethod()->isVisible());
        field(running)->setProperty("text", QString());
        WorkflowSteps steps(running);
        QVERIFY(press(running, textOf(isNew ? "@Continue" : "@OK")));
        QVERIFY(!dialog(running));
        QTRY_VERIFY(!QGuiApplication::inputMethod()->isVisible());
        QCOMPARE(steps.taken(), QStringList());
        QCOMPARE(titles(), QStringList{u"Mine"_s});
    });
}

void tst_PlaylistTitles::cancelled_data()
{
    eitherDialog();
}

void tst_PlaylistTitles::cancelled()
{
    QFETCH(bool, isNew);

    runDialog(isNew, [&](RunningApp &running) {
        QTRY_VERIFY(QGuiApplication::inputMethod()->isVisible());
        WorkflowSteps steps(running);
        QVERIFY(press(running, textOf("@Cancel")));
        QVERIFY(!dialog(running));
        QTRY_VERIFY(!QGuiApplication::inputMethod()->isVisible());
        QCOMPARE(steps.taken(), QStringList());
        QCOMPARE(running.playlists()->activeId(), isNew ? -1 : m_mine);
        QCOMPARE(titles(), QStringList{u"Mine"_s});
    });
}

void tst_PlaylistTitles::closedOutside_data()
{
    eitherDialog();
}

void tst_PlaylistTitles::closedOutside()
{
    QFETCH(bool, isNew);

    runDialog(isNew, [&](RunningApp &running) {
        running.playlists()->setActiveId(m_mine);
        WorkflowSteps steps(running);
        QTest::mouseClick(running.window, Qt::LeftButton, {}, {5, 5});
        QTRY_VERIFY(!dialog(running));
        QTRY_VERIFY(!QGuiApplication::inputMethod()->isVisible());
        QCOMPARE(steps.taken(), QStringList{u"active -1"_s});
        QCOMPARE(titles(), QStringList{u"Mine"_s});
    });
}

void tst_PlaylistTitles::renamed_data()
{
    QTest::addColumn<bool>("byReturn");

    QTest::newRow("button") << false;
    QTest::newRow("Return") << true;
}

void tst_PlaylistTitles::renamed()
{
    QFETCH(bool, byReturn);

    runDialog(false, [&](RunningApp &running) {
        field(running)->setProperty("text", u"Ours"_s);
        WorkflowSteps steps(running);
        if (byReturn)
            QTest::keyClick(running.window, Qt::Key_Return);
        else
            QVERIFY(press(running, textOf("@OK")));
        QVERIFY(!dialog(running));
        QCOMPARE(steps.taken(), QStringList{u"stored Ours 4"_s});
        QCOMPARE(running.playlists()->activeId(), m_mine); // stays
        QCOMPARE(titles(), QStringList{u"Ours"_s});
        QTRY_VERIFY(WorkflowFixture::button(running, u"Ours. 4"_s));
    });
}

void tst_PlaylistTitles::keyboardAfterARename()
{
    runDialog(false, [&](RunningApp &running) {
        QTRY_VERIFY(QGuiApplication::inputMethod()->isVisible());
        QVERIFY(press(running, textOf("@OK")));
        QTRY_VERIFY(!QGuiApplication::inputMethod()->isVisible());
        QVERIFY(running.itemWith("cellHeight")->hasActiveFocus());
        QVERIFY(openNew(running));
        QTRY_VERIFY(QGuiApplication::inputMethod()->isVisible());
    });
}

void tst_PlaylistTitles::createdByReturn()
{
    runDialog(true, [&](RunningApp &running) {
        field(running)->setProperty("text", u"Garden"_s);
        QTest::keyClick(running.window, Qt::Key_Return);
        QCOMPARE(running.app.currentView(), u"select_photos"_s);
        QCOMPARE(running.playlists()->mode(), PlaylistModel::CreateMode);
        QCOMPARE(titles(), (QStringList{u"Mine"_s, u"Garden"_s}));
        QVERIFY(!dialog(running));
    });
}

void tst_PlaylistTitles::sameTitleTwice()
{
    runDialog(true, [&](RunningApp &running) {
        field(running)->setProperty("text", u"Mine"_s);
        QVERIFY(press(running, textOf("@Continue")));
        QCOMPARE(titles(), (QStringList{u"Mine"_s, u"Mine"_s}));
        QVERIFY(running.playlists()->activeId() != m_mine);
    });
}

void tst_PlaylistTitles::failingStore()
{
    // The picker opens all the same, for no playlist.
    runDialog(true, [&](RunningApp &running) {
        QVERIFY(stored_database::execute({u"CREATE TRIGGER refuse BEFORE INSERT ON playlists BEGIN "
                                          "SELECT RAISE(ABORT, 'refused'); END"_s}));
        WorkflowSteps steps(running);
        QVERIFY(press(running, textOf("@Continue")));
        QVERIFY(stored_database::execute({u"DROP TRIGGER refuse"_s}));
        QCOMPARE(steps.taken(),
                 (QStringList{u"CreateMode"_s, u"folder "_s + m_test->folder.path(), u"4 of 4 rows"_s,
                              u"view select_photos"_s}));
        QCOMPARE(running.playlists()->activeId(), -1);
        QVERIFY(press(running, textOf("@Cancel"))); // nothing to throw away
        QCOMPARE(titles(), QStringList{u"Mine"_s});
    });
}

void tst_PlaylistTitles::titlesAsTyped_data()
{
    QTest::addColumn<QString>("title");

    QTest::newRow("500 characters") << u"Sommer am See "_s.repeated(36).first(500);
    QTest::newRow("500 characters without a blank") << QString(500, u'W');
    QTest::newRow("right to left") << u"\u05d7\u05d5\u05e4\u05e9\u05d4 2024"_s;
    QTest::newRow("emoji") << u"\U0001F3D4\U0001F468\u200D\U0001F469\u200D\U0001F467"_s;
    QTest::newRow("quotes") << u"\"'`'; DROP TABLE playlists; --"_s;
    QTest::newRow("markup") << u"<b>x</b> &amp;"_s;
    QTest::newRow("leading blanks") << u"   x "_s;
    QTest::newRow("format of C") << u"%s %d %n"_s;
    QTest::newRow("places of Qt") << u"%1 %2 %L1"_s;
    QTest::newRow("at sign alone") << u"@"_s;
    QTest::newRow("a key that has no text") << u"@NoSuchText"_s;
}

void tst_PlaylistTitles::titlesAsTyped()
{
    QFETCH(QString, title);

    runDialog(true, [&](RunningApp &running) {
        field(running)->setProperty("text", title);
        QVERIFY(press(running, textOf("@Continue")));
        QCOMPARE(titles(), (QStringList{u"Mine"_s, title}));
        QVERIFY(press(running, textOf("@Cancel")));
        // Straight into the store: the message about an added picture would lie over the rows.
        WorkflowFixture::add(running, title, m_test->paths.first(1));
        QVERIFY(WorkflowFixture::pressSoon(running, title + u". 1"_s));
        QVERIFY(findAccessible(running.screen(), QAccessible::Heading, title));
        QVERIFY(press(running, textOf("@Back")));
        QTRY_VERIFY(WorkflowFixture::button(running, title + u". 1"_s));
        const auto *shown = WorkflowFixture::button(running, title + u". 1"_s)->childItems().constFirst();
        QCOMPARE(shown->property("text").toString(), title);
        QCOMPARE(shown->property("textFormat").toInt(), int(Qt::PlainText));
        QCOMPARE(shown->property("lineCount").toInt(), 1);
        QVERIFY(shown->property("paintedWidth").toDouble() <= shown->width());
        QVERIFY(openRename(running, title + u". 1"_s));
        QCOMPARE(typed(running), title);
        QCOMPARE(field(running)->property("selectedText").toString(), title);
    });
}

void tst_PlaylistTitles::titleThatIsAKey()
{
    runDialog(true, [&](RunningApp &running) {
        field(running)->setProperty("text", u"@DefaultPlaylist"_s);
        QVERIFY(press(running, textOf("@Continue")));
        QCOMPARE(titles().constLast(), u"@DefaultPlaylist"_s);
        WorkflowFixture::folders(running)->selectFile(m_test->paths.first(), true);
        QVERIFY(press(running, textOf("@CreatePlaylist")));
        const QString text = textOf("@DefaultPlaylist");
        QTRY_VERIFY(WorkflowFixture::shows(running, u"1 picture was added to "_s + text));
        QVERIFY(findAccessible(running.screen(), QAccessible::Heading, text));
        QVERIFY(press(running, textOf("@Back")));
        QVERIFY(openRename(running, text + u". 1"_s));
        QCOMPARE(typed(running), text);
    });
}

PANEL_TEST_MAIN(tst_PlaylistTitles)
#include "tst_playlist_titles.moc"
