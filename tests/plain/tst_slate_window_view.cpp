// The window of the device on the desk: what is shown, and what fingers and keys become.

#include "panel_file.h"
#include "slate_window_view.h"

#include <QGuiApplication>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace lindenreed::remote;

namespace {

constexpr QSize panelSize(300, 400);

} // namespace

class tst_SlateWindowView : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

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
    void arrowsWithoutTouch();
    void otherKeysOfTheKeyboard();
    void signIsAKey_data();
    void signIsAKey();
    void signLeftBeforeRelease();
    void size();
    void closingIsAsked();
    void lostDevice();

private:
    void show();
    QPoint onWindow(QPoint panelPixel) const
    {
        return m_view->body().panel().topLeft() + panelPixel / int(m_view->body().divisor());
    }

    QTemporaryDir m_folder;
    std::unique_ptr<PanelWriter> m_writer;
    std::unique_ptr<ButtonStates> m_buttons;
    std::unique_ptr<DeviceView> m_view;
    std::unique_ptr<QSignalSpy> m_asked;
};

void tst_SlateWindowView::init()
{
    m_writer = PanelWriter::create({.size = panelSize}, m_folder.filePath(u"panel"_s), nullptr);
    QVERIFY(m_writer);
}

void tst_SlateWindowView::cleanup()
{
    m_asked.reset();
    m_view.reset();
    m_buttons.reset();
    m_writer.reset();
}

void tst_SlateWindowView::show()
{
    m_buttons = std::make_unique<ButtonStates>();
    m_view = std::make_unique<DeviceView>(m_folder.filePath(u"panel"_s), m_buttons.get());
    m_asked = std::make_unique<QSignalSpy>(m_view.get(), &DeviceView::asked);
    QSignalSpy ready(m_view.get(), &DeviceView::ready);
    m_view->readSoon();
    QVERIFY(ready.wait());
    QCOMPARE(m_view->body().divisor(), 1.0);
    m_view->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_view.get()));
}

void tst_SlateWindowView::showsThePanelUpright()
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

void tst_SlateWindowView::followsTheTurn()
{
    show();
    QCOMPARE(m_view->size(), WindowLayout(panelSize).size());
    m_writer->beginWrite();
    m_writer->header().orientation = 1;
    m_writer->endWrite();
    m_view->readSoon();
    QTRY_COMPARE(m_view->shown().size(), panelSize.transposed());
    QTRY_COMPARE(m_view->size(), WindowLayout(panelSize.transposed()).size());
}

void tst_SlateWindowView::followsTheLight()
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

void tst_SlateWindowView::tap()
{
    show();
    QTest::mouseClick(m_view.get(), Qt::LeftButton, {}, onWindow({100, 200}));
    QCOMPARE(m_asked->count(), 1);
    QCOMPARE(m_asked->at(0).at(0), u"tap"_s);
    QCOMPARE(m_asked->at(0).at(1).toJsonObject(), (QJsonObject{{u"x"_s, 100}, {u"y"_s, 200}}));
}

void tst_SlateWindowView::hold()
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

void tst_SlateWindowView::wobblingTap()
{
    show();
    QTest::mousePress(m_view.get(), Qt::LeftButton, {}, onWindow({100, 200}));
    QTest::mouseMove(m_view.get(), onWindow({104, 203}));
    QTest::mouseRelease(m_view.get(), Qt::LeftButton, {}, onWindow({104, 203}));
    QCOMPARE(m_asked->count(), 1);
    QCOMPARE(m_asked->at(0).at(0), u"tap"_s);
    QCOMPARE(m_asked->at(0).at(1).toJsonObject().value("x"_L1), 100);
}

void tst_SlateWindowView::drag()
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

void tst_SlateWindowView::dragThatLeavesThePanel()
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

void tst_SlateWindowView::rightButtonIsNoFinger()
{
    show();
    QTest::mouseClick(m_view.get(), Qt::RightButton, {}, onWindow({100, 200}));
    QTest::mousePress(m_view.get(), Qt::LeftButton, {}, onWindow({100, 200}));
    QTest::mouseClick(m_view.get(), Qt::RightButton, {}, onWindow({100, 200}));
    QCOMPARE(m_asked->count(), 0);
    QTest::mouseRelease(m_view.get(), Qt::LeftButton, {}, onWindow({100, 200}));
    QCOMPARE(m_asked->count(), 1);
}

void tst_SlateWindowView::keysOfTheKeyboard_data()
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

void tst_SlateWindowView::keysOfTheKeyboard()
{
    QFETCH(Qt::Key, key);
    QFETCH(QString, name);

    show();
    QTest::keyClick(m_view.get(), key);
    QCOMPARE(m_asked->count(), 1);
    QCOMPARE(m_asked->at(0).at(0), u"key"_s);
    QCOMPARE(m_asked->at(0).at(1).toJsonObject(), (QJsonObject{{u"name"_s, name}}));
}

void tst_SlateWindowView::arrowsWithoutTouch()
{
    show();
    m_buttons->setState({{u"touch"_s, false}});
    QStringList names;
    for (const Qt::Key key :
         {Qt::Key_Left, Qt::Key_Right, Qt::Key_Up, Qt::Key_Down, Qt::Key_PageUp, Qt::Key_PageDown}) {
        QTest::keyClick(m_view.get(), key);
        names.append(m_asked->constLast().at(1).toJsonObject().value("name"_L1).toString());
    }
    QCOMPARE(names, (QStringList{u"left"_s, u"right"_s, u"up"_s, u"down"_s, u"prev"_s, u"next"_s}));
    m_buttons->setState({{u"touch"_s, true}}); // another device in the same root
    QTest::keyClick(m_view.get(), Qt::Key_Left);
    QCOMPARE(m_asked->constLast().at(1).toJsonObject().value("name"_L1), u"prev"_s);
}

void tst_SlateWindowView::otherKeysOfTheKeyboard()
{
    show();
    for (const Qt::Key key : {Qt::Key_A, Qt::Key_F12, Qt::Key_Shift})
        QTest::keyClick(m_view.get(), key);
    QTest::keyClick(m_view.get(), Qt::Key_M, Qt::ControlModifier);
    QCOMPARE(m_asked->count(), 0);
}

void tst_SlateWindowView::signIsAKey_data()
{
    QTest::addColumn<QString>("key");

    for (const char *key : {"prev", "menu", "next"})
        QTest::newRow(key) << QString::fromLatin1(key);
}

void tst_SlateWindowView::signIsAKey()
{
    QFETCH(QString, key);

    show();
    QTest::mouseClick(m_view.get(), Qt::LeftButton, {}, m_view->body().keyRectangle(key).center());
    QCOMPARE(m_asked->count(), 1);
    QCOMPARE(m_asked->at(0).at(0), u"key"_s);
    QCOMPARE(m_asked->at(0).at(1).toJsonObject(), (QJsonObject{{u"name"_s, key}}));
}

void tst_SlateWindowView::signLeftBeforeRelease()
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

void tst_SlateWindowView::size()
{
    show();
    QTest::keyClick(m_view.get(), Qt::Key_Minus, Qt::ControlModifier);
    QTRY_COMPARE(m_view->shown().size(), panelSize / 2);
    QTRY_COMPARE(m_view->size(), WindowLayout(panelSize, 2).size());
    QTest::mouseClick(m_view.get(), Qt::LeftButton, {}, onWindow({100, 200}));
    QCOMPARE(m_asked->at(0).at(1).toJsonObject(), (QJsonObject{{u"x"_s, 101}, {u"y"_s, 201}}));
    for (int i = 0; i < 3; ++i) // never larger than one to one
        QTest::keyClick(m_view.get(), Qt::Key_Plus, Qt::ControlModifier);
    QTRY_COMPARE(m_view->shown().size(), panelSize);
}

void tst_SlateWindowView::closingIsAsked()
{
    show();
    QSignalSpy closing(m_view.get(), &DeviceView::closing);
    m_view->close();
    QCOMPARE(closing.count(), 1);
    QVERIFY(m_view->isVisible());
    QTest::keyClick(m_view.get(), Qt::Key_Q, Qt::ControlModifier);
    QCOMPARE(closing.count(), 2);
}

void tst_SlateWindowView::lostDevice()
{
    show();
    const auto ofPaper = [this] {
        QCoreApplication::processEvents();
        return m_view->shown().pixel(5, 5);
    };
    QVERIFY(m_view->lostSentence().isEmpty());
    m_view->setDeviceIsThere(false);
    QVERIFY(m_view->lostSentence().contains(u"The device has gone"_s));
    m_writer->beginWrite();
    std::fill_n(m_writer->pixels(), m_writer->stride() * 400, std::uint8_t(0));
    m_writer->endWrite();
    QCOMPARE(ofPaper(), 0xffffffffu); // its last picture
    m_view->setDeviceIsThere(true);
    QVERIFY(m_view->lostSentence().isEmpty());
    QTRY_COMPARE(ofPaper(), 0xff000000u);
}

int main(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication application(argc, argv);
    tst_SlateWindowView test;
    return QTest::qExec(&test, argc, argv);
}
#include "tst_slate_window_view.moc"
