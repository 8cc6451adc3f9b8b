// What a finger is on is black as a whole, to its very edges.

#include "accessible_items.h"
#include "controls_scene.h"
#include "panel_application.h"

using namespace Qt::StringLiterals;

class tst_ControlsPressed : public QObject
{
    Q_OBJECT

private slots:
    void cleanup();
    void comboBox_data();
    void comboBox();
    void rowOfAMenu();

private:
    QImage window() { return m_scene->window().grabWindow().convertToFormat(QImage::Format_Grayscale8); }
    void press(const QPoint &at) { QTest::mousePress(&m_scene->window(), Qt::LeftButton, {}, at); }
    void letGo() { QTest::mouseRelease(&m_scene->window(), Qt::LeftButton, {}, QPoint(599, 799)); }

    std::unique_ptr<QmlScene> m_scene;
};

void tst_ControlsPressed::cleanup()
{
    QCOMPARE(endScene(m_scene), QStringList());
}

void tst_ControlsPressed::comboBox_data()
{
    QTest::addColumn<QByteArray>("properties");
    QTest::addColumn<int>("overhang"); // pixels that the ground reaches beyond the sides

    QTest::newRow("with a line") << QByteArray("show_border: true") << 0;
    QTest::newRow("without a line") << QByteArray("show_border: false") << 8;
}

void tst_ControlsPressed::comboBox()
{
    QFETCH(QByteArray, properties);
    QFETCH(int, overhang);

    m_scene = controlsScene("ListModel { id: rows; ListElement { uid_: 0; text_: 'Seconds' } }\n"
                            "ComboBox { objectName: 'box'; x: 100; y: 100; menuItems: rows; selectedUid: 0; "
                                + properties + " }",
                            {600, 800}, 300);
    QVERIFY(m_scene);
    const QRect target = sceneRectangle(m_scene->item(u"box"_s)).adjusted(-overhang, 0, overhang, 0);
    press(target.center());
    QCOMPARE(ink(window()), target);
    letGo();
}

void tst_ControlsPressed::rowOfAMenu()
{
    m_scene
        = controlsScene("ListModel { id: rows; ListElement { uid_: 0; text_: 'One' }\n"
                        "ListElement { uid_: 1; text_: 'Two' } ListElement { uid_: 2; text_: 'Three' } }\n"
                        "ComboBox { objectName: 'box'; menuItems: rows; selectedUid: 0; focus: true }",
                        {600, 800}, 300);
    QVERIFY(m_scene);
    QVERIFY(QMetaObject::invokeMethod(m_scene->item(u"box"_s), "open"));
    window(); // lays the rows out
    QQuickItem *row = findAccessible(m_scene->window().contentItem(), QAccessible::MenuItem, u"Two"_s);
    QVERIFY(row);
    const QRect target = sceneRectangle(row);
    const auto isDotted = [&](int y) {
        const QImage picture = window();
        bool black = false;
        bool white = false;
        for (int x = target.left() + 32; x < target.right() - 32; ++x) {
            black = black || grey(picture, x, y) == 0;
            white = white || grey(picture, x, y) == 255;
        }
        return black && white;
    };
    QVERIFY(isDotted(target.top() - 1));
    QVERIFY(isDotted(target.bottom()));
    press(target.center());
    for (const int y : {target.top() - 2, target.top() - 1, target.bottom() - 1, target.bottom()})
        QVERIFY2(!isDotted(y), "dots would fray the black edge");
    QCOMPARE(grey(window(), target.left(), target.bottom()), 0);
    QCOMPARE(grey(window(), target.left(), target.top() - 3), 255);
    letGo();
    QVERIFY(isDotted(target.top() - 1));
}

PANEL_TEST_MAIN(tst_ControlsPressed)
#include "tst_controls_pressed.moc"
