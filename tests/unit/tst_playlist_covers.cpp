// A cover cell: the picture through a hole with round corners, and a thin outline.

#include "panel_application.h"

#include <QImage>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickItem>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QTemporaryDir>

#include <memory>

using namespace Qt::StringLiterals;

namespace {

constexpr int side = 60;
constexpr int radius = 12;
constexpr int darkest
    = 48; ///< where two lines of the outline meet without a curve, black is not quite reached

} // namespace

class tst_PlaylistCovers : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init() { QTest::failOnWarning(QRegularExpression(u".?"_s)); }
    void cleanup()
    {
        m_item.reset();
        m_window.reset();
    }

    void corners_data();
    void corners();
    void wholeWithoutRadii();
    void otherPaper();
    void withoutPicture();
    void pictureIsCropped();

private:
    /// What shows of a cell on a grey window.
    QImage shown(const QVariantMap &properties);

    QTemporaryDir m_folder;
    QString m_black;
    QQmlEngine m_engine;
    std::unique_ptr<QQuickWindow> m_window;
    std::unique_ptr<QQuickItem> m_item;
};

void tst_PlaylistCovers::initTestCase()
{
    m_black = m_folder.filePath(u"black.png"_s);
    QImage picture(200, 120, QImage::Format_Grayscale8);
    picture.fill(Qt::black);
    QVERIFY(picture.save(m_black));
}

QImage tst_PlaylistCovers::shown(const QVariantMap &properties)
{
    QQmlComponent component(&m_engine,
                            QUrl(u"qrc:/qt/qml/com/lindenreed/picture_stand/qml/RoundedImage.qml"_s));
    m_item.reset(qobject_cast<QQuickItem *>(component.createWithInitialProperties(properties)));
    if (!m_item) {
        qWarning("%s", qPrintable(component.errorString()));
        return {};
    }
    m_window = std::make_unique<QQuickWindow>();
    m_window->setColor(QColor(128, 128, 128));
    m_window->resize(side, side);
    m_item->setParentItem(m_window->contentItem());
    m_item->setSize({side, side});
    QQuickItem *const picture = m_item->childItems().constFirst();
    const bool wanted = properties.contains(u"source"_s);
    QSignalSpy painted(m_item->childItems().constLast(), SIGNAL(painted()));
    m_window->show();
    if (!QTest::qWaitForWindowExposed(m_window.get())
        || !QTest::qWaitFor([&] { return !wanted || picture->property("status").toInt() == 1; })
        || !QTest::qWaitFor([&] { return !painted.isEmpty(); }))
        return {};
    return m_window->grabWindow().convertToFormat(QImage::Format_Grayscale8);
}

void tst_PlaylistCovers::corners_data()
{
    QTest::addColumn<QString>("rounded");
    QTest::addColumn<int>("corner");

    QTest::newRow("top left") << u"radius_top_left"_s << 0;
    QTest::newRow("top right") << u"radius_top_right"_s << 1;
    QTest::newRow("bottom left") << u"radius_bottom_left"_s << 2;
    QTest::newRow("bottom right") << u"radius_bottom_right"_s << 3;
}

void tst_PlaylistCovers::corners()
{
    QFETCH(QString, rounded);
    QFETCH(int, corner);

    const QImage image = shown({{u"source"_s, QUrl::fromLocalFile(m_black)}, {rounded, radius}});
    QVERIFY(!image.isNull());
    for (int i = 0; i < 4; ++i) {
        const auto at = [&](int distance) {
            return qGray(image.pixel(i % 2 == 0 ? distance : side - 1 - distance,
                                     i / 2 == 0 ? distance : side - 1 - distance));
        };
        // Paper in the round corner alone, as far as the curve, which crosses the diagonal at a quarter of
        // the radius; the picture is black as the outline is.
        for (int distance : {0, 1})
            QVERIFY(i == corner ? at(distance) == 255 : at(distance) <= darkest);
        QCOMPARE(at(radius / 4 + 2), 0);
    }
    QCOMPARE(qGray(image.pixel(side / 2, side / 2)), 0);
}

void tst_PlaylistCovers::wholeWithoutRadii()
{
    const QImage image = shown({{u"source"_s, QUrl::fromLocalFile(m_black)}});
    QVERIFY(!image.isNull());
    for (int y = 0; y < side; ++y) {
        for (int x = 0; x < side; ++x)
            QVERIFY(qGray(image.pixel(x, y)) <= darkest);
    }
}

void tst_PlaylistCovers::otherPaper()
{
    const QImage image = shown({{u"source"_s, QUrl::fromLocalFile(m_black)},
                                {u"radius_top_left"_s, radius},
                                {u"bgColor"_s, QColor(200, 200, 200)}});
    QVERIFY(!image.isNull());
    QCOMPARE(qGray(image.pixel(0, 0)), 200);
}

void tst_PlaylistCovers::withoutPicture()
{
    // The outline alone, and through the hole what lies behind.
    const QImage image = shown({{u"radius_top_left"_s, radius}});
    QVERIFY(!image.isNull());
    QCOMPARE(qGray(image.pixel(0, 0)), 255);
    QCOMPARE(qGray(image.pixel(side / 2, side / 2)), 128);
    for (const QPoint &edge :
         {QPoint(side / 2, 0), QPoint(side - 1, side / 2), QPoint(side / 2, side - 1), QPoint(0, side / 2)})
        QVERIFY(qGray(image.pixel(edge)) <= darkest);
    QCOMPARE(qGray(image.pixel(side / 2, 2)), 128); // one pixel thick
}

void tst_PlaylistCovers::pictureIsCropped()
{
    const QString path = m_folder.filePath(u"bands.png"_s);
    QImage picture(300, 100, QImage::Format_Grayscale8); // black bands at both ends are cut off
    picture.fill(Qt::black);
    for (int y = 0; y < 100; ++y) {
        for (int x = 95; x < 205; ++x)
            picture.setPixel(x, y, qRgb(220, 220, 220));
    }
    QVERIFY(picture.save(path));
    const QImage image = shown({{u"source"_s, QUrl::fromLocalFile(path)}});
    QVERIFY(!image.isNull());
    QCOMPARE(qGray(image.pixel(3, side / 2)), 220);
    QCOMPARE(qGray(image.pixel(side - 4, side / 2)), 220);
    QCOMPARE(qGray(image.pixel(side / 2, side - 4)), 220);
    const QQuickItem *const cell = m_item->childItems().constFirst();
    QCOMPARE(cell->property("sourceSize").toSize(), QSize(side, side));
    QVERIFY(cell->property("asynchronous").toBool());
    QCOMPARE(cell->size(), QSizeF(side, side));
}

PANEL_TEST_MAIN(tst_PlaylistCovers)
#include "tst_playlist_covers.moc"
