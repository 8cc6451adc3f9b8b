// The device's keyboard beside the application's windows: what it covers, how both are drawn, how the program
// ends.

#include "keyboard_scene.h"
#include "panel_application.h"

#include <device.h>
#include <events.h>

#include <QPainter>
#include <QRasterWindow>
#include <QTimer>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

/// A window that does not want the focus.
class GreyWindow : public QRasterWindow
{
public:
    GreyWindow()
    {
        setFlags(Qt::Window | Qt::WindowDoesNotAcceptFocus);
        setGeometry(0, 45, 758, 979);
        show();
    }

protected:
    void paintEvent(QPaintEvent *) override
    {
        QPainter(this).fillRect(QRect(QPoint(), size()), QColor(0x33, 0x33, 0x33));
    }
};

} // namespace

class tst_PanelKeyboardWindows : public KeyboardTest
{
    Q_OBJECT

private slots:
    void init() { begin(); }
    void cleanup() { end(); }

    void staysAboveOtherWindows();
    void coversItemsOfTheTree();
    void invertedOverTwoWindows();
    void turnedOverTwoWindows();
    void fullRefreshOfTwoWindows();
    void nothingDrawnWhileOpen();
    void closingTheWindowEndsTheProgram();
    void quitWhileOpen();
    void theApplicationEndsWhileOpen();
};

void tst_PanelKeyboardWindows::staysAboveOtherWindows()
{
    QVERIFY(m_scene->open());
    GreyWindow later;
    QTRY_COMPARE(panel_view::greyAt(400, 300), 0x33);
    QCOMPARE(m_scene->greyOfGround(), KeyboardScene::ground);
    m_scene->window->raise();
    QTRY_COMPARE(panel_view::greyAt(400, 500), 0x88);
    QCOMPARE(m_scene->greyOfGround(), KeyboardScene::ground);
    later.raise();
    QTRY_COMPARE(panel_view::greyAt(400, 500), 0x33);
    QCOMPARE(m_scene->greyOfGround(), KeyboardScene::ground);
    QVERIFY(m_scene->tapKey(u"x"_s));
    QCOMPARE(m_scene->text("name"), u"x"_s);
}

void tst_PanelKeyboardWindows::coversItemsOfTheTree()
{
    auto *field = m_scene->item("number");
    field->setY(979 - 60);
    field->setProperty("text", u"77"_s);
    const auto isListed = [&] {
        const QJsonArray tree = m_scene->remote.ask(u"tree"_s).value(u"tree"_s).toArray();
        return std::any_of(tree.begin(), tree.end(), [](const QJsonValue &node) {
            return node.toObject().value(u"value"_s).toString() == u"77"_s;
        });
    };
    QVERIFY(isListed());
    QVERIFY(m_scene->open());
    QVERIFY(!isListed());
}

void tst_PanelKeyboardWindows::invertedOverTwoWindows()
{
    QVERIFY(m_scene->open());
    screen().setInverted(true);
    QTRY_COMPARE(panel_view::greyAt(400, 300), 0x77);
    QCOMPARE(m_scene->greyOfGround(), 255 - KeyboardScene::ground);
    QCOMPARE(panel_view::snapshot().header.refreshMode, 1U);
    QVERIFY(m_scene->tapKey(u"123"_s));
    QVERIFY(panel_view::waitUntilStill());
    QCOMPARE(m_scene->greyOfGround(), 255 - KeyboardScene::ground);
    QGuiApplication::inputMethod()->hide();
    QTRY_COMPARE(panel_view::greyAt(756, 1022), 0x77);
}

void tst_PanelKeyboardWindows::turnedOverTwoWindows()
{
    QVERIFY(m_scene->open());
    const QImage before = panel_view::upright();
    screen().setOrientation(3);
    QTRY_COMPARE(int(panel_view::snapshot().header.orientation), 3);
    QVERIFY(panel_view::waitUntilStill());
    // The clock may have gone on.
    const QRect below(0, 45, 758, 979);
    QCOMPARE(panel_view::upright().copy(below), before.copy(below));
}

void tst_PanelKeyboardWindows::fullRefreshOfTwoWindows()
{
    QVERIFY(m_scene->open());
    const QImage before = panel_view::upright();
    screen().clear();
    QCOMPARE(panel_view::greyAt(400, 300), 255);
    screen().refresh(lindenreed::device::RefreshMode::Full);
    QTRY_COMPARE(panel_view::greyAt(400, 300), 0x88);
    const QRect below(0, 45, 758, 979);
    QCOMPARE(panel_view::upright().copy(below), before.copy(below));
}

void tst_PanelKeyboardWindows::nothingDrawnWhileOpen()
{
    QVERIFY(m_scene->open());
    const quint64 before = panel_view::countFrom();
    QVERIFY(m_scene->ask(u"idle"_s, {{u"ms"_s, 300}}));
    QCOMPARE(panel_view::refreshNumber(), before);
}

void tst_PanelKeyboardWindows::closingTheWindowEndsTheProgram()
{
    QVERIFY(m_scene->open());
    constexpr int tooLate = 7;
    QTimer::singleShot(0, m_scene->window.get(), &QWindow::close);
    QTimer::singleShot(5000, m_scene->window.get(), [] { QCoreApplication::exit(tooLate); });
    QCOMPARE(QCoreApplication::exec(), 0); // the keyboard alone keeps nothing running
    QTRY_VERIFY(!KeyboardScene::isOpen());
}

void tst_PanelKeyboardWindows::quitWhileOpen()
{
    QVERIFY(m_scene->open());
    QTimer::singleShot(0, m_scene->window.get(), [this] { m_scene->remote.send(u"quit"_s); });
    QCOMPARE(QCoreApplication::exec(), 0);
    QVERIFY(KeyboardScene::isOpen());
    // A program that is ended goes to the background first.
    using namespace lindenreed::device;
    Device::instance()->events.send(event::foreground, 0, 0);
}

void tst_PanelKeyboardWindows::theApplicationEndsWhileOpen()
{
    // The last test: what it leaves open is still open when the application object goes, in main().
    const auto leave = qScopeGuard([this] { m_scene.reset(); });
    m_scene->item("name")->forceActiveFocus();
    QTRY_VERIFY(KeyboardScene::isOpen());
}

PANEL_TEST_MAIN(tst_PanelKeyboardWindows)
#include "tst_panel_keyboard_windows.moc"
