// Parts of the screens as they begin, before anybody has set anything.

#include "panel_application.h"
#include "workflow_fixture.h"

#include <QQmlComponent>

using namespace Qt::StringLiterals;

class tst_ScreenParts : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { stored_database::remove(); }
    void init() { m_test = std::make_unique<WorkflowFixture>(); }
    void cleanup() { m_test.reset(); }

    void checkCircleIsSelected();
    void footerPlays();

private:
    std::unique_ptr<WorkflowFixture> m_test;
};

void tst_ScreenParts::checkCircleIsSelected()
{
    m_test->run([](RunningApp &running) {
        QQmlComponent component(running.context->engine());
        component.setData("import com.lindenreed.picture_stand 1.0\nCheckBoxTransparent {}",
                          QUrl(u"qrc:/test.qml"_s));
        const std::unique_ptr<QObject> circle(component.create(running.context));
        QVERIFY2(circle, qPrintable(component.errorString()));
        QCOMPARE(circle->property("isSelected"), QVariant(true));
    });
}

void tst_ScreenParts::footerPlays()
{
    // On the overview, where a complete one has another text at once.
    m_test->run([](RunningApp &running) {
        QCOMPARE(running.playlists()->mode(), PlaylistModel::AllViewMode);
        QQmlComponent component(running.context->engine());
        component.setData("import com.lindenreed.picture_stand 1.0\n"
                          "ExplorerFooter { property var texts: []\n"
                          "onTextButtonChanged: texts.push(textButton) }",
                          QUrl(u"qrc:/test.qml"_s));
        const std::unique_ptr<QObject> footer(component.beginCreate(running.context));
        QVERIFY2(footer, qPrintable(component.errorString()));
        const QString icon = footer->property("imageSource").toString();
        component.completeCreate();
        QCOMPARE(icon, u"audio_book_play"_s);
        QCOMPARE(footer->property("imageSource").toString(), u"plus_add"_s);
        QCOMPARE(footer->property("texts").toStringList(),
                 (QStringList{textOf("@PlayItem"), textOf("@New_playlist")}));
    });
}

PANEL_TEST_MAIN(tst_ScreenParts)
#include "tst_screen_parts.moc"
