// Dotted lines.

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

private:
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

PANEL_TEST_MAIN(tst_ControlsSeparators)
#include "tst_controls_separators.moc"
