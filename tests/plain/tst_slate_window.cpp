#include "control_server.h"
#include "panel_file.h"
#include "slate_window_body.h"
#include "slate_window_link.h"
#include "slate_window_view.h"

#include <QGuiApplication>
#include <QPainter>
#include <QProcess>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <cstring>

using namespace Qt::StringLiterals;
using namespace lindenreed::remote;

namespace {

constexpr QSize panelSize(300, 400);

} // namespace

class tst_SlateWindow : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void measures();
    void measuresAtAFraction();
    void divisor_data();
    void divisor();
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

    void showsThePanelUpright();
    void followsTheTurn();
    void followsTheLight();
    void tap();
    void hold();
    void wobblingTap();
    void drag();
    void dragThatLeavesThePanel();
    void rightButtonIsNoFinger();
    void keysOfTheKeyboard_data();
    void keysOfTheKeyboard();
    void otherKeysOfTheKeyboard();
    void signIsAKey_data();
    void signIsAKey();
    void signLeftBeforeRelease();
    void size();
    void closingIsAsked();

    void linkWaitsForTheDevice();
    void linkGivesUp();
    void linkHearsAndSends();
    void linkOfADeviceThatGoes();
    void linkDropsWhatAHangingDeviceCannotTake();

    void programEndsWithTheDevice();
    void programUsage_data();
    void programUsage();

private:
    QString path(const QString &name) const { return m_folder->filePath(name); }
    QString program() const { return QCoreApplication::applicationDirPath() + u"/../../bin/slate-window"_s; }
    void show();
    QPoint onWindow(QPoint panelPixel) const
    {
        return m_view->body().panel().topLeft() + panelPixel / m_view->body().divisor();
    }

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<PanelWriter> m_writer;
    std::unique_ptr<DeviceView> m_view;
    std::unique_ptr<QSignalSpy> m_asked;
};

void tst_SlateWindow::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    m_writer = PanelWriter::create({.size = panelSize}, path(u"panel"_s), nullptr);
    QVERIFY(m_writer);
}

void tst_SlateWindow::cleanup()
{
    m_asked.reset();
    m_view.reset();
    m_writer.reset();
    m_folder.reset();
}

void tst_SlateWindow::show()
{
    m_view = std::make_unique<DeviceView>(path(u"panel"_s));
    m_asked = std::make_unique<QSignalSpy>(m_view.get(), &DeviceView::asked);
    QSignalSpy ready(m_view.get(), &DeviceView::ready);
    m_view->readSoon();
    QVERIFY(ready.wait());
    QCOMPARE(m_view->body().divisor(), 1);
    m_view->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_view.get()));
}

void tst_SlateWindow::measures()
{
    const DeviceBody body({758, 1024});
    QCOMPARE(body.size(), QSize(758 + 2 * 56, 1024 + 56 + 132));
    QCOMPARE(body.panel(), QRect(56, 56, 758, 1024));
}

void tst_SlateWindow::measuresAtAFraction()
{
    const DeviceBody body({1405, 1873}, 2);
    QCOMPARE(body.panel(), QRect(28, 28, 702, 936)); // never more than a panel pixel has to show
    QCOMPARE(body.size(), QSize(702 + 56, 936 + 28 + 66));
    QCOMPARE(DeviceBody({1404, 1872}, 3).panel().size(), QSize(468, 624));
}

void tst_SlateWindow::divisor_data()
{
    QTest::addColumn<QSize>("panel");
    QTest::addColumn<QSize>("room");
    QTest::addColumn<int>("expected");

    QTest::newRow("all the room") << QSize(758, 1024) << QSize(4000, 4000) << 1;
    QTest::newRow("exactly the room") << QSize(758, 1024) << QSize(870, 1212) << 1;
    QTest::newRow("one row too little") << QSize(758, 1024) << QSize(870, 1211) << 2;
    QTest::newRow("one column too little") << QSize(758, 1024) << QSize(869, 1212) << 2;
    QTest::newRow("eight inches on a desktop screen") << QSize(1404, 1872) << QSize(1920, 1040) << 2;
    QTest::newRow("eight inches on a small screen") << QSize(1404, 1872) << QSize(1366, 728) << 3;
    QTest::newRow("no room at all") << QSize(1404, 1872) << QSize(0, 0) << 8;
}

void tst_SlateWindow::divisor()
{
    QFETCH(QSize, panel);
    QFETCH(QSize, room);
    QFETCH(int, expected);

    QCOMPARE(DeviceBody::divisorFor(panel, room), expected);
}

void tst_SlateWindow::keysInTheChin()
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

void tst_SlateWindow::panelPixels_data()
{
    QTest::addColumn<int>("divisor");
    QTest::addColumn<QPoint>("point");
    QTest::addColumn<QPoint>("pixel");

    QTest::newRow("first") << 1 << QPoint(56, 56) << QPoint(0, 0);
    QTest::newRow("last") << 1 << QPoint(56 + 299, 56 + 399) << QPoint(299, 399);
    QTest::newRow("left of the panel") << 1 << QPoint(0, 100) << QPoint(0, 44);
    QTest::newRow("in the chin") << 1 << QPoint(156, 500) << QPoint(100, 399);
    QTest::newRow("middle of the pixels at one half") << 2 << QPoint(28 + 10, 28 + 20) << QPoint(21, 41);
    QTest::newRow("last at one half") << 2 << QPoint(28 + 149, 28 + 199) << QPoint(299, 399);
}

void tst_SlateWindow::panelPixels()
{
    QFETCH(int, divisor);
    QFETCH(QPoint, point);
    QFETCH(QPoint, pixel);

    QCOMPARE(DeviceBody(panelSize, divisor).panelPixel(point), pixel);
}

void tst_SlateWindow::outlineIsRound()
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

void tst_SlateWindow::paintedBody()
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

void tst_SlateWindow::pressedSign()
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

void tst_SlateWindow::panelIsShownAsItIs()
{
    QImage grey(3, 1, QImage::Format_Grayscale8);
    std::memcpy(grey.scanLine(0), "\x00\x77\xff", 3);
    const QImage shown = shownPanel(grey, 1, false, 100, 100);
    QCOMPARE(shown.size(), QSize(3, 1));
    QCOMPARE(shown.pixel(0, 0), 0xff000000u);
    QCOMPARE(shown.pixel(1, 0), 0xff777777u);
    QCOMPARE(shown.pixel(2, 0), 0xffffffffu);
    QCOMPARE(shownPanel(grey, 1, true, 0, 100), shown); // a light that is on at nothing
}

void tst_SlateWindow::panelAtAFraction()
{
    QImage grey(5, 4, QImage::Format_Grayscale8);
    grey.fill(255);
    std::memset(grey.scanLine(0), 0, 2);
    std::memset(grey.scanLine(1), 0, 2);
    const QImage shown = shownPanel(grey, 2, false, 0, 0);
    QCOMPARE(shown.size(), QSize(2, 2));
    QVERIFY(qGray(shown.pixel(0, 0)) < 60);
    QVERIFY(qGray(shown.pixel(1, 1)) > 250);
}

void tst_SlateWindow::lightOnPaper_data()
{
    QTest::addColumn<int>("brightness");
    QTest::addColumn<int>("colour");

    for (const int brightness : {1, 40, 100, 200}) {
        for (const int colour : {-5, 0, 50, 100, 300})
            QTest::addRow("brightness %d, colour %d", brightness, colour) << brightness << colour;
    }
}

void tst_SlateWindow::lightOnPaper()
{
    QFETCH(int, brightness);
    QFETCH(int, colour);

    QImage grey(256, 1, QImage::Format_Grayscale8);
    for (int x = 0; x < 256; ++x)
        grey.scanLine(0)[x] = uchar(x);
    const QImage lit = shownPanel(grey, 1, true, brightness, colour);
    for (int x = 0; x < 256; ++x) {
        const QRgb pixel = lit.pixel(x, 0);
        for (const int channel : {qRed(pixel), qGreen(pixel), qBlue(pixel)})
            QVERIFY2(qAbs(channel - x) <= 255 * 8 / 100, qPrintable(QString::number(x)));
    }
}

void tst_SlateWindow::lightLeavesInk()
{
    QImage colours(2, 1, QImage::Format_RGB888);
    colours.fill(Qt::black);
    colours.setPixel(1, 0, qRgb(255, 255, 255));
    const QImage lit = shownPanel(colours, 1, true, 100, 100);
    QCOMPARE(lit.pixel(0, 0), 0xff000000u);
    QVERIFY(lit.pixel(1, 0) != 0xffffffffu);
}

void tst_SlateWindow::lightIsWarmOrCold()
{
    QImage paper(1, 1, QImage::Format_Grayscale8);
    paper.fill(255);
    const QRgb cold = shownPanel(paper, 1, true, 100, 0).pixel(0, 0);
    const QRgb warm = shownPanel(paper, 1, true, 100, 100).pixel(0, 0);
    QVERIFY(qBlue(cold) > qRed(cold));
    QVERIFY(qRed(warm) > qBlue(warm));
    const QRgb weak = shownPanel(paper, 1, true, 20, 100).pixel(0, 0);
    QVERIFY(qBlue(weak) > qBlue(warm));
}

void tst_SlateWindow::showsThePanelUpright()
{
    m_writer->beginWrite();
    m_writer->header().orientation = 3;
    m_writer->pixels()[0] = 0;
    m_writer->endWrite();
    show();
    QCOMPARE(m_view->shown().size(), panelSize);
    QCOMPARE(m_view->shown().pixel(299, 399), 0xff000000u);
    QCOMPARE(m_view->shown().pixel(0, 0), 0xffffffffu);
}

void tst_SlateWindow::followsTheTurn()
{
    show();
    QCOMPARE(m_view->size(), DeviceBody(panelSize).size());
    m_writer->beginWrite();
    m_writer->header().orientation = 1;
    m_writer->endWrite();
    m_view->readSoon();
    QTRY_COMPARE(m_view->shown().size(), panelSize.transposed());
    QTRY_COMPARE(m_view->size(), DeviceBody(panelSize.transposed()).size());
}

void tst_SlateWindow::followsTheLight()
{
    show();
    QCOMPARE(m_view->shown().pixel(0, 0), 0xffffffffu);
    m_writer->beginWrite();
    m_writer->header().flags = 4;
    m_writer->header().brightness = 100;
    m_writer->header().colour = 100;
    m_writer->endWrite();
    m_view->readSoon();
    QTRY_VERIFY(qBlue(m_view->shown().pixel(0, 0)) < 255);
}

void tst_SlateWindow::tap()
{
    show();
    QTest::mouseClick(m_view.get(), Qt::LeftButton, {}, onWindow({100, 200}));
    QCOMPARE(m_asked->count(), 1);
    QCOMPARE(m_asked->at(0).at(0), u"tap"_s);
    QCOMPARE(m_asked->at(0).at(1).toJsonObject(), (QJsonObject{{u"x"_s, 100}, {u"y"_s, 200}}));
}

void tst_SlateWindow::hold()
{
    show();
    QTest::mousePress(m_view.get(), Qt::LeftButton, {}, onWindow({0, 399}));
    QTest::mouseRelease(m_view.get(), Qt::LeftButton, {}, onWindow({0, 399}), 600);
    QCOMPARE(m_asked->count(), 1);
    QCOMPARE(m_asked->at(0).at(0), u"hold"_s);
    const QJsonObject members = m_asked->at(0).at(1).toJsonObject();
    QCOMPARE(members.value("x"_L1), 0);
    QCOMPARE(members.value("y"_L1), 399);
    QVERIFY(members.value("ms"_L1).toInt() >= 600);
    QCOMPARE(members.size(), 3);
}

void tst_SlateWindow::wobblingTap()
{
    show();
    QTest::mousePress(m_view.get(), Qt::LeftButton, {}, onWindow({100, 200}));
    QTest::mouseMove(m_view.get(), onWindow({104, 203}));
    QTest::mouseRelease(m_view.get(), Qt::LeftButton, {}, onWindow({104, 203}));
    QCOMPARE(m_asked->count(), 1);
    QCOMPARE(m_asked->at(0).at(0), u"tap"_s);
    QCOMPARE(m_asked->at(0).at(1).toJsonObject().value("x"_L1), 100);
}

void tst_SlateWindow::drag()
{
    show();
    QTest::mousePress(m_view.get(), Qt::LeftButton, {}, onWindow({250, 200}));
    QTest::mouseMove(m_view.get(), onWindow({150, 200}));
    QTest::mouseMove(m_view.get(), onWindow({248, 201})); // back again: it has moved all the same
    QTest::mouseRelease(m_view.get(), Qt::LeftButton, {}, onWindow({248, 201}));
    QCOMPARE(m_asked->count(), 1);
    QCOMPARE(m_asked->at(0).at(0), u"drag"_s);
    QJsonObject members = m_asked->at(0).at(1).toJsonObject();
    QVERIFY(members.value("steps"_L1).toInt() >= 2);
    members.remove(u"steps"_s);
    QCOMPARE(members, (QJsonObject{{u"x1"_s, 250}, {u"y1"_s, 200}, {u"x2"_s, 248}, {u"y2"_s, 201}}));
}

void tst_SlateWindow::dragThatLeavesThePanel()
{
    show();
    QTest::mousePress(m_view.get(), Qt::LeftButton, {}, onWindow({250, 200}));
    QTest::mouseMove(m_view.get(), QPoint(2, 450));
    QTest::mouseRelease(m_view.get(), Qt::LeftButton, {}, QPoint(2, 490));
    QCOMPARE(m_asked->count(), 1);
    QCOMPARE(m_asked->at(0).at(0), u"drag"_s);
    const QJsonObject members = m_asked->at(0).at(1).toJsonObject();
    QCOMPARE(members.value("x2"_L1), 0);
    QCOMPARE(members.value("y2"_L1), 399);
}

void tst_SlateWindow::rightButtonIsNoFinger()
{
    show();
    QTest::mouseClick(m_view.get(), Qt::RightButton, {}, onWindow({100, 200}));
    QTest::mousePress(m_view.get(), Qt::LeftButton, {}, onWindow({100, 200}));
    QTest::mouseClick(m_view.get(), Qt::RightButton, {}, onWindow({100, 200}));
    QCOMPARE(m_asked->count(), 0);
    QTest::mouseRelease(m_view.get(), Qt::LeftButton, {}, onWindow({100, 200}));
    QCOMPARE(m_asked->count(), 1);
}

void tst_SlateWindow::keysOfTheKeyboard_data()
{
    QTest::addColumn<Qt::Key>("key");
    QTest::addColumn<QString>("name");

    QTest::newRow("left") << Qt::Key_Left << u"prev"_s;
    QTest::newRow("page up") << Qt::Key_PageUp << u"prev"_s;
    QTest::newRow("right") << Qt::Key_Right << u"next"_s;
    QTest::newRow("page down") << Qt::Key_PageDown << u"next"_s;
    QTest::newRow("m") << Qt::Key_M << u"menu"_s;
    QTest::newRow("menu") << Qt::Key_Menu << u"menu"_s;
    QTest::newRow("up") << Qt::Key_Up << u"up"_s;
    QTest::newRow("down") << Qt::Key_Down << u"down"_s;
    QTest::newRow("return") << Qt::Key_Return << u"centre"_s;
    QTest::newRow("enter") << Qt::Key_Enter << u"centre"_s;
    QTest::newRow("escape") << Qt::Key_Escape << u"back"_s;
}

void tst_SlateWindow::keysOfTheKeyboard()
{
    QFETCH(Qt::Key, key);
    QFETCH(QString, name);

    show();
    QTest::keyClick(m_view.get(), key);
    QCOMPARE(m_asked->count(), 1);
    QCOMPARE(m_asked->at(0).at(0), u"key"_s);
    QCOMPARE(m_asked->at(0).at(1).toJsonObject(), (QJsonObject{{u"name"_s, name}}));
}

void tst_SlateWindow::otherKeysOfTheKeyboard()
{
    show();
    for (const Qt::Key key : {Qt::Key_A, Qt::Key_F12, Qt::Key_Shift})
        QTest::keyClick(m_view.get(), key);
    QTest::keyClick(m_view.get(), Qt::Key_M, Qt::ControlModifier);
    QCOMPARE(m_asked->count(), 0);
}

void tst_SlateWindow::signIsAKey_data()
{
    QTest::addColumn<QString>("key");

    for (const char *key : {"prev", "menu", "next"})
        QTest::newRow(key) << QString::fromLatin1(key);
}

void tst_SlateWindow::signIsAKey()
{
    QFETCH(QString, key);

    show();
    QTest::mouseClick(m_view.get(), Qt::LeftButton, {}, m_view->body().keyRectangle(key).center());
    QCOMPARE(m_asked->count(), 1);
    QCOMPARE(m_asked->at(0).at(0), u"key"_s);
    QCOMPARE(m_asked->at(0).at(1).toJsonObject(), (QJsonObject{{u"name"_s, key}}));
}

void tst_SlateWindow::signLeftBeforeRelease()
{
    show();
    const QPoint menu = m_view->body().keyRectangle(u"menu"_s).center();
    const QPoint next = m_view->body().keyRectangle(u"next"_s).center();
    QTest::mousePress(m_view.get(), Qt::LeftButton, {}, menu);
    QTest::mouseRelease(m_view.get(), Qt::LeftButton, {}, next);
    QCOMPARE(m_asked->count(), 0);
    QTest::mousePress(m_view.get(), Qt::LeftButton, {}, menu);
    QTest::mouseMove(m_view.get(), next);
    QTest::mouseMove(m_view.get(), menu);
    QTest::mouseRelease(m_view.get(), Qt::LeftButton, {}, menu);
    QCOMPARE(m_asked->count(), 1);
}

void tst_SlateWindow::size()
{
    show();
    QTest::keyClick(m_view.get(), Qt::Key_Minus, Qt::ControlModifier);
    QTRY_COMPARE(m_view->shown().size(), panelSize / 2);
    QTRY_COMPARE(m_view->size(), DeviceBody(panelSize, 2).size());
    QTest::mouseClick(m_view.get(), Qt::LeftButton, {}, onWindow({100, 200}));
    QCOMPARE(m_asked->at(0).at(1).toJsonObject(), (QJsonObject{{u"x"_s, 101}, {u"y"_s, 201}}));
    for (int i = 0; i < 3; ++i) // never larger than one to one
        QTest::keyClick(m_view.get(), Qt::Key_Plus, Qt::ControlModifier);
    QTRY_COMPARE(m_view->shown().size(), panelSize);
}

void tst_SlateWindow::closingIsAsked()
{
    show();
    QSignalSpy closing(m_view.get(), &DeviceView::closing);
    m_view->close();
    QCOMPARE(closing.count(), 1);
    QVERIFY(m_view->isVisible());
    QTest::keyClick(m_view.get(), Qt::Key_Q, Qt::ControlModifier);
    QCOMPARE(closing.count(), 2);
}

void tst_SlateWindow::linkWaitsForTheDevice()
{
    DeviceLink link(m_folder->path());
    QSignalSpy connected(&link, &DeviceLink::connected);
    QSignalSpy gone(&link, &DeviceLink::gone);
    link.open(30'000);
    QCOMPARE(connected.count(), 0);
    ControlServer server;
    QVERIFY(server.listen(path(u"control"_s), nullptr));
    QTRY_COMPARE(connected.count(), 1);
    QTRY_COMPARE(server.clients(), 2);
    QCOMPARE(gone.count(), 0);
}

void tst_SlateWindow::linkGivesUp()
{
    DeviceLink link(m_folder->path());
    QSignalSpy connected(&link, &DeviceLink::connected);
    QSignalSpy gone(&link, &DeviceLink::gone);
    link.open(120);
    QVERIFY(gone.wait());
    QCOMPARE(gone.count(), 1);
    QCOMPARE(connected.count(), 0);
}

void tst_SlateWindow::linkHearsAndSends()
{
    ControlServer server;
    QList<QJsonObject> requests;
    server.add(u"key"_s, {u"name"_s}, [&](const QJsonObject &request, const Reply &reply) {
        requests.append(request);
        reply();
    });
    QVERIFY(server.listen(path(u"control"_s), nullptr));
    DeviceLink link(m_folder->path());
    QSignalSpy refreshed(&link, &DeviceLink::refreshed);
    QSignalSpy changed(&link, &DeviceLink::changed);
    link.open(30'000);
    for (int i = 0; i < 100; ++i) // answers make room for more
        link.send(u"key"_s, {{u"name"_s, u"next"_s}});
    QTRY_COMPARE(requests.size(), 32);
    QTRY_VERIFY((link.send(u"key"_s, {{u"name"_s, u"menu"_s}}), requests.size() > 32));
    QCOMPARE(requests.constFirst().value("name"_L1), u"next"_s);
    QCOMPARE(requests.constLast().value("name"_L1), u"menu"_s);
    QTRY_VERIFY((server.announce({{u"event"_s, u"refresh"_s}, {u"number"_s, 1}}), refreshed.count() > 0));
    QCOMPARE(changed.count(), 0);
    QTRY_VERIFY((server.announce({{u"event"_s, u"changed"_s}}), changed.count() > 0));
}

void tst_SlateWindow::linkOfADeviceThatGoes()
{
    auto server = std::make_unique<ControlServer>();
    QVERIFY(server->listen(path(u"control"_s), nullptr));
    DeviceLink link(m_folder->path());
    QSignalSpy gone(&link, &DeviceLink::gone);
    link.open(30'000);
    QTRY_COMPARE(server->clients(), 2);
    server.reset();
    QTRY_COMPARE(gone.count(), 1);
    link.send(u"quit"_s);
    QCoreApplication::processEvents();
    QCOMPARE(gone.count(), 1);
}

void tst_SlateWindow::linkDropsWhatAHangingDeviceCannotTake()
{
    ControlServer server;
    QList<Reply> pending;
    int begun = 0;
    server.add(u"tap"_s, {}, [&](const QJsonObject &, const Reply &reply) {
        ++begun;
        pending.append(reply);
    });
    QVERIFY(server.listen(path(u"control"_s), nullptr));
    DeviceLink link(m_folder->path());
    QSignalSpy connected(&link, &DeviceLink::connected);
    link.open(30'000);
    QTRY_COMPARE(connected.count(), 1);
    for (int i = 0; i < 1000; ++i)
        link.send(u"tap"_s);
    for (int i = 1; i <= 32; ++i) {
        QTRY_COMPARE(begun, i);
        pending.takeFirst()();
    }
    // Answered all; the next one that comes is a new one.
    QTRY_VERIFY((link.send(u"tap"_s), begun > 32));
}

void tst_SlateWindow::programEndsWithTheDevice()
{
    auto server = std::make_unique<ControlServer>();
    QVERIFY(server->listen(path(u"control"_s), nullptr));
    QProcess window;
    window.start(program(), {u"--run"_s, m_folder->path()});
    QTRY_COMPARE_WITH_TIMEOUT(server->clients(), 2, 30'000);
    server.reset();
    QTRY_COMPARE_WITH_TIMEOUT(window.state(), QProcess::NotRunning, 30'000);
    QCOMPARE(window.exitStatus(), QProcess::NormalExit);
    QCOMPARE(window.exitCode(), 0);
}

void tst_SlateWindow::programUsage_data()
{
    QTest::addColumn<QStringList>("arguments");

    QTest::newRow("nothing") << QStringList();
    QTest::newRow("run without folder") << QStringList{u"--run"_s};
    QTest::newRow("unknown option") << QStringList{u"--walk"_s};
    QTest::newRow("a word") << QStringList{u"--run"_s, u"/tmp"_s, u"word"_s};
    QTest::newRow("both ways") << QStringList{u"--run"_s, u"/tmp"_s, u"--root"_s, u"/tmp"_s};
    QTest::newRow("root that is missing") << QStringList{u"--root"_s, u"/none/at/all"_s};
}

void tst_SlateWindow::programUsage()
{
    QFETCH(QStringList, arguments);

    QProcess window;
    window.start(program(), arguments);
    QVERIFY(window.waitForFinished());
    QCOMPARE(window.exitCode(), 2);
    const QByteArray errors = window.readAllStandardError();
    QVERIFY2(errors.contains("slate-window: "), errors.constData());
}

int main(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication application(argc, argv);
    tst_SlateWindow test;
    return QTest::qExec(&test, argc, argv);
}
#include "tst_slate_window.moc"
