// Dotted lines.

#include "accessible_items.h"
#include "controls_scene.h"
#include "panel_application.h"

using namespace Qt::StringLiterals;

class tst_ControlsSeparators : public QObject
{
    Q_OBJECT

private slots:
    void cleanup();
    void dots_data();
    void dots();
    void followsItsColour();
    void betweenTheRowsInSight();

private:
    /// Whether there is a dotted line below the row of a menu.
    bool isDotted(const QString &row);

    std::unique_ptr<QmlScene> m_scene;
};

void tst_ControlsSeparators::cleanup()
{
    QCOMPARE(endScene(m_scene), QStringList());
}

void tst_ControlsSeparators::dots_data()
{
    QTest::addColumn<int>("dpi");
    QTest::addColumn<QByteArray>("properties");
    QTest::addColumn<QSize>("size");
    QTest::addColumn<int>("dot");
    QTest::addColumn<int>("pitch");

    QTest::newRow("across, 300 dpi") << 300 << QByteArray("width: 101") << QSize(101, 2) << 2 << 8;
    QTest::newRow("down, 300 dpi") << 300 << QByteArray("vertical: true; height: 101") << QSize(2, 101) << 2
                                   << 8;
    QTest::newRow("across, 212 dpi") << 212 << QByteArray("width: 50") << QSize(50, 1) << 1 << 6;
    QTest::newRow("down, 212 dpi") << 212 << QByteArray("vertical: true; height: 50") << QSize(1, 50) << 1
                                   << 6;
    QTest::newRow("between pixels") << 300 << QByteArray("width: 50; x: 0.4; y: 3.4") << QSize(50, 2) << 2
                                    << 8;
    QTest::newRow("thick") << 300 << QByteArray("width: 50; height: 6") << QSize(50, 6) << 6 << 12;
}

void tst_ControlsSeparators::dots()
{
    QFETCH(int, dpi);
    QFETCH(QByteArray, properties);
    QFETCH(QSize, size);
    QFETCH(int, dot);
    QFETCH(int, pitch);

    m_scene = controlsScene("DottedSeparator { objectName: 'line'; " + properties + " }", {600, 800}, dpi);
    QCOMPARE(m_scene->item(u"line"_s)->size(), QSizeF(size));
    const QImage picture = m_scene->picture(u"line"_s);
    QCOMPARE(picture.size(), size);
    const bool across = size.width() > size.height();
    for (int y = 0; y < size.height(); ++y) {
        for (int x = 0; x < size.width(); ++x) {
            const bool black = (across ? x : y) % pitch < dot;
            QCOMPARE(picture.pixelColor(x, y), QColor(black ? Qt::black : Qt::white));
        }
    }
}

void tst_ControlsSeparators::followsItsColour()
{
    m_scene = controlsScene(
        "DottedSeparator { objectName: 'line'; width: 50; color: GlobalValues.defaultSolidseparatorColor }");
    QCOMPARE(m_scene->picture(u"line"_s).pixelColor(0, 0), QColor(0x55, 0x55, 0x55));
    m_scene->item(u"line"_s)->setProperty("color", QColor(Qt::black));
    QCOMPARE(m_scene->picture(u"line"_s).pixelColor(0, 0), QColor(Qt::black));
    m_scene->item(u"line"_s)->setProperty("vertical", true);
    QCOMPARE(m_scene->item(u"line"_s)->implicitWidth(), 1.0);
    QCOMPARE(m_scene->item(u"line"_s)->implicitHeight(), 0.0);
}

bool tst_ControlsSeparators::isDotted(const QString &row)
{
    QQuickItem *item = findAccessible(m_scene->window().contentItem(), QAccessible::MenuItem, row);
    if (!item)
        return false;
    const QRect place = sceneRectangle(item);
    const QImage picture = m_scene->window().grabWindow().convertToFormat(QImage::Format_Grayscale8);
    return !ink(picture.copy(place.left(), place.bottom(), place.width(), 1)).isEmpty();
}

void tst_ControlsSeparators::betweenTheRowsInSight()
{
    m_scene = controlsScene("ListModel { id: rows; Component.onCompleted: { for (let i = 0; i < 12; ++i)\n"
                            "append({uid_: i, text_: 'Row ' + i}) } }\n"
                            "ComboBox { objectName: 'box'; menuItems: rows; selectedUid: 6; focus: true }");
    QVERIFY(QMetaObject::invokeMethod(m_scene->item(u"box"_s), "open"));
    m_scene->window().grabWindow(); // lays the rows out
    QVERIFY(isDotted(u"Row 0"_s));
    QVERIFY(isDotted(u"Row 5"_s));
    QVERIFY2(!isDotted(u"Row 6"_s), "the last of seven, above the menu's own line");
    m_scene->key(Qt::Key_Down);
    QVERIFY(isDotted(u"Row 6"_s));
    QVERIFY(!isDotted(u"Row 7"_s));
    for (int row = 7; row < 11; ++row)
        m_scene->key(Qt::Key_Down);
    QVERIFY(isDotted(u"Row 10"_s));
    QVERIFY2(!isDotted(u"Row 11"_s), "the last of all");
}

PANEL_TEST_MAIN(tst_ControlsSeparators)
#include "tst_controls_separators.moc"
