// The panel alone on a whole display.

#include "panel_file.h"
#include "slate_window_view.h"

#include <QGuiApplication>
#include <QScreen>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <memory>

using namespace Qt::StringLiterals;
using namespace lindenreed::remote;

class tst_SlateWindowFullScreen : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanup();

    void panelAlone_data();
    void panelAlone();
    void followsTheTurn();
    void lightIsTheDisplaysOwn();
    void fingers();
    void besideThePanel();
    void keys();

private:
    void show(QSize panel);
    QImage painted() const;

    QTemporaryDir m_folder;
    QSize m_screen;
    std::unique_ptr<PanelWriter> m_writer;
    std::unique_ptr<ButtonStates> m_buttons;
    std::unique_ptr<DeviceView> m_view;
    std::unique_ptr<QSignalSpy> m_asked;
};

void tst_SlateWindowFullScreen::initTestCase()
{
    m_screen = QGuiApplication::primaryScreen()->size();
    QCOMPARE(m_screen, QSize(800, 800)); // that of the platform "offscreen"
}

void tst_SlateWindowFullScreen::cleanup()
{
    m_asked.reset();
    m_view.reset();
    m_buttons.reset();
    m_writer.reset();
}

void tst_SlateWindowFullScreen::show(QSize panel)
{
    m_writer = PanelWriter::create({.size = panel}, m_folder.filePath(u"panel"_s), nullptr);
    QVERIFY(m_writer);
    m_buttons = std::make_unique<ButtonStates>();
    m_view = std::make_unique<DeviceView>(m_folder.filePath(u"panel"_s), m_buttons.get());
    m_view->showPanelAlone();
    m_asked = std::make_unique<QSignalSpy>(m_view.get(), &DeviceView::asked);
    QSignalSpy ready(m_view.get(), &DeviceView::ready);
    m_view->readSoon();
    QVERIFY(ready.wait());
    m_view->showFullScreen();
    QVERIFY(QTest::qWaitForWindowExposed(m_view.get()));
    QCOMPARE(m_view->windowStates(), Qt::WindowFullScreen);
    QCOMPARE(m_view->size(), m_screen);
}

QImage tst_SlateWindowFullScreen::painted() const
{
    return m_view->screen()->grabWindow(m_view->winId()).toImage();
}

void tst_SlateWindowFullScreen::panelAlone_data()
{
    QTest::addColumn<QSize>("panel");
    QTest::addColumn<QRect>("shown"); // on the display

    QTest::newRow("the display's own size") << QSize(800, 800) << QRect(0, 0, 800, 800);
    QTest::newRow("smaller") << QSize(300, 400) << QRect(250, 200, 300, 400);
    QTest::newRow("wider") << QSize(1600, 800) << QRect(0, 200, 800, 400);
    QTest::newRow("higher") << QSize(400, 1600) << QRect(300, 0, 200, 800);
}

void tst_SlateWindowFullScreen::panelAlone()
{
    QFETCH(QSize, panel);
    QFETCH(QRect, shown);

    show(panel);
    if (QTest::currentTestFailed())
        return;
    QImage expected(m_screen, QImage::Format_RGB32);
    expected.fill(Qt::black);
    for (int y = shown.top(); y <= shown.bottom(); ++y) {
        for (int x = shown.left(); x <= shown.right(); ++x)
            expected.setPixel(x, y, 0xffffffffu);
    }
    QTRY_COMPARE(painted().convertToFormat(QImage::Format_RGB32), expected);
}

void tst_SlateWindowFullScreen::followsTheTurn()
{
    show({300, 400});
    m_writer->beginWrite();
    m_writer->header().orientation = 1;
    m_writer->endWrite();
    m_view->readSoon();
    QTRY_COMPARE(m_view->shown().size(), QSize(400, 300));
    QCOMPARE(m_view->size(), m_screen);
    QTRY_COMPARE(painted().pixel(200, 250), 0xffffffffu);
    QCOMPARE(painted().pixel(300, 249), 0xff000000u);
}

void tst_SlateWindowFullScreen::lightIsTheDisplaysOwn()
{
    show({300, 400});
    m_writer->beginWrite();
    m_writer->header().flags = 4;
    m_writer->header().brightness = 100;
    m_writer->header().colour = 100;
    m_writer->pixels()[0] = 0;
    m_writer->endWrite();
    m_view->readSoon();
    QTRY_COMPARE(m_view->shown().pixel(0, 0), 0xff000000u);
    QCOMPARE(m_view->shown().pixel(1, 0), 0xffffffffu);
}

void tst_SlateWindowFullScreen::fingers()
{
    show({300, 400});
    QTest::mouseClick(m_view.get(), Qt::LeftButton, {}, {250 + 100, 200 + 399});
    QCOMPARE(m_asked->size(), 1);
    QCOMPARE(m_asked->at(0).at(0), u"tap"_s);
    QCOMPARE(m_asked->at(0).at(1).toJsonObject(), (QJsonObject{{u"x"_s, 100}, {u"y"_s, 399}}));

    // A touch that nobody takes is a mouse.
    const std::unique_ptr<QPointingDevice> touch(QTest::createTouchDevice());
    QTest::touchEvent(m_view.get(), touch.get()).press(0, QPoint(260, 210), m_view.get());
    QTest::touchEvent(m_view.get(), touch.get()).release(0, QPoint(260, 210), m_view.get());
    QTRY_COMPARE(m_asked->size(), 2);
    QCOMPARE(m_asked->at(1).at(1).toJsonObject(), (QJsonObject{{u"x"_s, 10}, {u"y"_s, 10}}));
}

void tst_SlateWindowFullScreen::besideThePanel()
{
    show({300, 400});
    for (int y = 10; y < m_screen.height(); y += 20) {
        for (int x = 10; x < m_screen.width(); x += 20) {
            if (!QRect(250, 200, 300, 400).contains(x, y))
                QTest::mouseClick(m_view.get(), Qt::LeftButton, {}, {x, y});
        }
    }
    QCOMPARE(m_asked->size(), 0);
    QCOMPARE(m_view->tip(), QString());
}

void tst_SlateWindowFullScreen::keys()
{
    show({300, 400});
    QTest::keyClick(m_view.get(), Qt::Key_PageDown);
    QCOMPARE(m_asked->size(), 1);
    QCOMPARE(m_asked->at(0).at(1).toJsonObject(), (QJsonObject{{u"name"_s, u"next"_s}}));
    QTest::keyClick(m_view.get(), Qt::Key_Minus, Qt::ControlModifier); // there is but one size
    QCOMPARE(m_view->body().divisor(), 1.0);
    QCOMPARE(m_view->size(), m_screen);
}

int main(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication application(argc, argv);
    tst_SlateWindowFullScreen test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_slate_window_full_screen.moc"
