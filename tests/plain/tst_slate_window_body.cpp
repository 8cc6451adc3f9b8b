// The device on the desk: measures, drawing, and the panel as it is shown.

#include "slate_window_body.h"

#include <QGuiApplication>
#include <QPainter>
#include <QTest>

#include <cstring>

using namespace Qt::StringLiterals;
using namespace lindenreed::remote;

namespace {

constexpr QSize panelSize(300, 400);

} // namespace

class tst_SlateWindowBody : public QObject
{
    Q_OBJECT

private slots:
    void measures();
    void measuresAtAFraction();
    void keysInTheChin();
    void panelPixels_data();
    void panelPixels();
    void outlineIsRound();
    void paintedBody();
    void pressedSign();
    void panelIsShownAsItIs();
    void panelAtAFraction();
    void lightOnPaper_data();
    void lightOnPaper();
    void lightLeavesInk();
    void lightIsWarmOrCold();
};

void tst_SlateWindowBody::measures()
{
    const DeviceBody body({758, 1024});
    QCOMPARE(body.size(), QSize(758 + 2 * 56, 1024 + 56 + 132));
    QCOMPARE(body.panel(), QRect(56, 56, 758, 1024));
}

void tst_SlateWindowBody::measuresAtAFraction()
{
    const DeviceBody body({1405, 1873}, 2);
    QCOMPARE(body.panel(), QRect(28, 28, 702, 936)); // never more than a panel pixel has to show
    QCOMPARE(body.size(), QSize(702 + 56, 936 + 28 + 66));
    QCOMPARE(DeviceBody({1405, 1873}, 1.25).panel(), QRect(45, 45, 1124, 1498));
    QCOMPARE(DeviceBody({1404, 1872}, 3).panel().size(), QSize(468, 624));
}

void tst_SlateWindowBody::keysInTheChin()
{
    const DeviceBody body({758, 1024});
    QCOMPARE(body.keyRectangle(u"menu"_s), QRect(56 + 379 - 66, 56 + 1024 + 66 - 48, 132, 96));
    QCOMPARE(body.keyRectangle(u"prev"_s), body.keyRectangle(u"menu"_s).translated(-132, 0));
    QCOMPARE(body.keyRectangle(u"next"_s), body.keyRectangle(u"menu"_s).translated(132, 0));
    for (const QString &key : {u"prev"_s, u"menu"_s, u"next"_s})
        QCOMPARE(body.keyAt(body.keyRectangle(key).center()).value_or(QString()), key);
    QVERIFY(!body.keyAt(body.keyRectangle(u"prev"_s).topLeft() - QPoint(1, 0)));
    QVERIFY(!body.keyAt(body.panel().center()));
}

void tst_SlateWindowBody::panelPixels_data()
{
    QTest::addColumn<double>("divisor");
    QTest::addColumn<QPoint>("point");
    QTest::addColumn<QPoint>("pixel");

    QTest::newRow("first") << 1.0 << QPoint(56, 56) << QPoint(0, 0);
    QTest::newRow("last") << 1.0 << QPoint(56 + 299, 56 + 399) << QPoint(299, 399);
    QTest::newRow("left of the panel") << 1.0 << QPoint(0, 100) << QPoint(0, 44);
    QTest::newRow("in the chin") << 1.0 << QPoint(156, 500) << QPoint(100, 399);
    QTest::newRow("middle of the pixels at one half") << 2.0 << QPoint(28 + 10, 28 + 20) << QPoint(21, 41);
    QTest::newRow("last at one half") << 2.0 << QPoint(28 + 149, 28 + 199) << QPoint(299, 399);
    QTest::newRow("last at two thirds") << 1.5 << QPoint(37 + 199, 37 + 265) << QPoint(299, 398);
}

void tst_SlateWindowBody::panelPixels()
{
    QFETCH(double, divisor);
    QFETCH(QPoint, point);
    QFETCH(QPoint, pixel);

    QCOMPARE(DeviceBody(panelSize, divisor).panelPixel(point), pixel);
}

void tst_SlateWindowBody::outlineIsRound()
{
    const DeviceBody body(panelSize);
    const QRegion outline = body.outline();
    QCOMPARE(outline.boundingRect(), QRect(QPoint(0, 0), body.size()));
    const int right = body.size().width() - 1;
    const int bottom = body.size().height() - 1;
    for (const QPoint corner : {QPoint(0, 0), QPoint(right, 0), QPoint(0, bottom), QPoint(right, bottom)})
        QVERIFY(!outline.contains(corner));
    for (const QPoint inside : {QPoint(36, 0), QPoint(0, 36), QPoint(12, 12), QPoint(right - 36, bottom)})
        QVERIFY(outline.contains(inside));

    // Nothing of the body is cut off.
    QImage picture(body.size(), QImage::Format_ARGB32_Premultiplied);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    body.paint(&painter, {});
    painter.end();
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x)
            QVERIFY(outline.contains(QPoint(x, y)) || qAlpha(picture.pixel(x, y)) < 16);
    }
}

void tst_SlateWindowBody::paintedBody()
{
    const DeviceBody body(panelSize);
    QImage picture(body.size(), QImage::Format_ARGB32_Premultiplied);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    body.paint(&painter, {});
    painter.end();
    QCOMPARE(picture.pixel(0, 0), 0u);
    QCOMPARE(picture.pixel(20, 200), 0xff2e2f31u);
    QCOMPARE(picture.pixel(53, 200), 0xff2e2f31u);
    QCOMPARE(picture.pixel(54, 200), 0xff111111u); // a line of two pixels
    QCOMPARE(picture.pixel(55, 200), 0xff111111u);
    QCOMPARE(picture.pixel(356, 200), 0xff111111u);
    QCOMPARE(picture.pixel(357, 200), 0xff111111u);
    QCOMPARE(picture.pixel(358, 200), 0xff2e2f31u);
    // No sign is brighter than the colour of the signs.
    for (int y = 460; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x)
            QVERIFY(qRed(picture.pixel(x, y)) <= 0x8a);
    }
}

void tst_SlateWindowBody::pressedSign()
{
    const DeviceBody body(panelSize);
    const auto brightest = [&](const QString &key, const QString &pressed) {
        QImage picture(body.size(), QImage::Format_ARGB32_Premultiplied);
        picture.fill(Qt::transparent);
        QPainter painter(&picture);
        body.paint(&painter, pressed);
        painter.end();
        int level = 0;
        const QRect target = body.keyRectangle(key);
        for (int y = target.top(); y <= target.bottom(); ++y) {
            for (int x = target.left(); x <= target.right(); ++x)
                level = std::max(level, qRed(picture.pixel(x, y)));
        }
        return level;
    };
    for (const QString &key : {u"prev"_s, u"menu"_s, u"next"_s}) {
        QCOMPARE(brightest(key, {}), 0x8a);
        QCOMPARE(brightest(key, key), 0xff);
    }
    QCOMPARE(brightest(u"next"_s, u"prev"_s), 0x8a);
}

void tst_SlateWindowBody::panelIsShownAsItIs()
{
    QImage grey(3, 1, QImage::Format_Grayscale8);
    std::memcpy(grey.scanLine(0), "\x00\x77\xff", 3);
    const QImage shown = shownPanel(grey, grey.size(), false, 100, 100);
    QCOMPARE(shown.size(), QSize(3, 1));
    QCOMPARE(shown.pixel(0, 0), 0xff000000u);
    QCOMPARE(shown.pixel(1, 0), 0xff777777u);
    QCOMPARE(shown.pixel(2, 0), 0xffffffffu);
    QCOMPARE(shownPanel(grey, grey.size(), true, 0, 100), shown); // a light that is on at nothing
}

void tst_SlateWindowBody::panelAtAFraction()
{
    QImage grey(5, 4, QImage::Format_Grayscale8);
    grey.fill(255);
    std::memset(grey.scanLine(0), 0, 2);
    std::memset(grey.scanLine(1), 0, 2);
    const QImage shown = shownPanel(grey, QSize(2, 2), false, 0, 0);
    QCOMPARE(shown.size(), QSize(2, 2));
    QVERIFY(qGray(shown.pixel(0, 0)) < 60);
    QVERIFY(qGray(shown.pixel(1, 1)) > 250);
    QCOMPARE(shownPanel(grey, QSize(10, 8), false, 0, 0).size(), grey.size()); // never upwards
}

void tst_SlateWindowBody::lightOnPaper_data()
{
    QTest::addColumn<int>("brightness");
    QTest::addColumn<int>("colour");

    for (const int brightness : {1, 40, 100, 200}) {
        for (const int colour : {-5, 0, 50, 100, 300})
            QTest::addRow("brightness %d, colour %d", brightness, colour) << brightness << colour;
    }
}

void tst_SlateWindowBody::lightOnPaper()
{
    QFETCH(int, brightness);
    QFETCH(int, colour);

    QImage grey(256, 1, QImage::Format_Grayscale8);
    for (int x = 0; x < 256; ++x)
        grey.scanLine(0)[x] = uchar(x);
    const QImage lit = shownPanel(grey, grey.size(), true, brightness, colour);
    for (int x = 0; x < 256; ++x) {
        const QRgb pixel = lit.pixel(x, 0);
        for (const int channel : {qRed(pixel), qGreen(pixel), qBlue(pixel)})
            QVERIFY2(qAbs(channel - x) <= 255 * 8 / 100, qPrintable(QString::number(x)));
    }
}

void tst_SlateWindowBody::lightLeavesInk()
{
    QImage colours(2, 1, QImage::Format_RGB888);
    colours.fill(Qt::black);
    colours.setPixel(1, 0, qRgb(255, 255, 255));
    const QImage lit = shownPanel(colours, colours.size(), true, 100, 100);
    QCOMPARE(lit.pixel(0, 0), 0xff000000u);
    QVERIFY(lit.pixel(1, 0) != 0xffffffffu);
}

void tst_SlateWindowBody::lightIsWarmOrCold()
{
    QImage paper(1, 1, QImage::Format_Grayscale8);
    paper.fill(255);
    const QRgb cold = shownPanel(paper, paper.size(), true, 100, 0).pixel(0, 0);
    const QRgb warm = shownPanel(paper, paper.size(), true, 100, 100).pixel(0, 0);
    QVERIFY(qBlue(cold) > qRed(cold));
    QVERIFY(qRed(warm) > qBlue(warm));
    const QRgb weak = shownPanel(paper, paper.size(), true, 20, 100).pixel(0, 0);
    QVERIFY(qBlue(weak) > qBlue(warm));
}

int main(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication application(argc, argv);
    tst_SlateWindowBody test;
    return QTest::qExec(&test, argc, argv);
}
#include "tst_slate_window_body.moc"
