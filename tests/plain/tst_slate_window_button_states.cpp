// What the buttons beside the device mean: what they ask for, and what they make of the answers.

#include "asked_buttons.h"

using namespace Qt::StringLiterals;
using namespace lindenreed::remote;

class tst_SlateWindowButtonStates : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_buttons = std::make_unique<AskedButtons>(); }

    void asksWhatTheDeviceHas();
    void commands_data();
    void commands();
    void turnsOn();
    void turnThatIsDeclined();
    void sleepingShows();
    void profileWithoutLight();
    void deviceThatKnowsNoCard();
    void refusedOnce();
    void nothingWithoutDevice();

private:
    std::unique_ptr<AskedButtons> m_buttons;
};

void tst_SlateWindowButtonStates::asksWhatTheDeviceHas()
{
    QCOMPARE(m_buttons->requests.count(), 2);
    QCOMPARE(m_buttons->requests.at(0).at(0), u"state"_s);
    QCOMPARE(m_buttons->requests.at(1).at(0), u"light"_s);
    QVERIFY(m_buttons->requests.at(1).at(1).toJsonObject().isEmpty()); // it changes nothing
}

void tst_SlateWindowButtonStates::commands_data()
{
    QTest::addColumn<DeviceButton>("button");
    QTest::addColumn<QString>("first");
    QTest::addColumn<QString>("second"); ///< where it is on

    QTest::newRow("card") << DeviceButton::Card << u"card in=true"_s << u"card in=false"_s;
    QTest::newRow("USB") << DeviceButton::Usb << u"usb in=true"_s << u"usb in=false"_s;
    QTest::newRow("light") << DeviceButton::Light << u"light enabled=true"_s << u"light enabled=false"_s;
    QTest::newRow("invert") << DeviceButton::Invert << u"invert on=true"_s << u"invert on=false"_s;
    QTest::newRow("sleep") << DeviceButton::Sleep << u"background"_s << u"background"_s;
    QTest::newRow("wake") << DeviceButton::Wake << u"foreground"_s << u"foreground"_s;
}

void tst_SlateWindowButtonStates::commands()
{
    QFETCH(DeviceButton, button);
    QFETCH(QString, first);
    QFETCH(QString, second);

    m_buttons->setState(buttonsState(false, false, false, false, 0));
    QVERIFY(!m_buttons->isOn(button));
    const QString name = m_buttons->name(button);
    m_buttons->press(button);
    QCOMPARE(m_buttons->lastRequest(), first);
    m_buttons->setState(buttonsState(true, true, true, true, 0));
    QCOMPARE(m_buttons->isOn(button), first != second);
    QCOMPARE(m_buttons->name(button) != name, first != second); // says what the next press does
    m_buttons->press(button);
    QCOMPARE(m_buttons->lastRequest(), second);
}

void tst_SlateWindowButtonStates::turnsOn()
{
    int orientation = 0;
    QStringList asked;
    for (int i = 0; i < 5; ++i) {
        m_buttons->setState(buttonsState(false, false, false, false, orientation));
        m_buttons->press(DeviceButton::Turn);
        asked.append(m_buttons->lastRequest());
        orientation = m_buttons->requests.constLast().at(1).toJsonObject().value("value"_L1).toInt();
    }
    QCOMPARE(asked,
             (QStringList{u"orientation value=1"_s, u"orientation value=3"_s, u"orientation value=2"_s,
                          u"orientation value=0"_s, u"orientation value=1"_s}));
}

void tst_SlateWindowButtonStates::turnThatIsDeclined()
{
    // A device that does not go upside down stays sideways; the next press goes on from there.
    m_buttons->setState(buttonsState(false, false, false, false, 1));
    m_buttons->press(DeviceButton::Turn);
    QCOMPARE(m_buttons->lastRequest(), u"orientation value=3"_s);
    m_buttons->setState(buttonsState(false, false, false, false, 1));
    m_buttons->press(DeviceButton::Turn);
    QCOMPARE(m_buttons->lastRequest(), u"orientation value=2"_s);
}

void tst_SlateWindowButtonStates::sleepingShows()
{
    QVERIFY(!m_buttons->isOn(DeviceButton::Sleep));
    m_buttons->setState({{u"task"_s, QJsonObject{{u"foreground"_s, false}}}});
    QVERIFY(m_buttons->isOn(DeviceButton::Sleep));
    QVERIFY(!m_buttons->isOn(DeviceButton::Wake));
    m_buttons->setState({{u"task"_s, QJsonObject{{u"foreground"_s, true}}}});
    QVERIFY(!m_buttons->isOn(DeviceButton::Sleep));
}

void tst_SlateWindowButtonStates::profileWithoutLight()
{
    m_buttons->setState(buttonsState(false, false, true, false, 0));
    QVERIFY(m_buttons->isAvailable(DeviceButton::Light));
    m_buttons->refuse(u"light"_s, u"not-supported"_s, u"There is no light."_s);
    QVERIFY(!m_buttons->isAvailable(DeviceButton::Light));
    QVERIFY(!m_buttons->isOn(DeviceButton::Light));
    QVERIFY(m_buttons->isAvailable(DeviceButton::Card));
    QCOMPARE(m_buttons->tip(DeviceButton::Light), u"There is no light."_s);
    QCOMPARE(m_buttons->notes.count(), 0); // nobody has pressed it yet
    const qsizetype before = m_buttons->requests.count();
    m_buttons->press(DeviceButton::Light);
    QCOMPARE(m_buttons->requests.count(), before);
    QCOMPARE(m_buttons->notes.count(), 1);
    m_buttons->deviceCame(); // another device may have one
    QVERIFY(m_buttons->isAvailable(DeviceButton::Light));
}

void tst_SlateWindowButtonStates::deviceThatKnowsNoCard()
{
    m_buttons->press(DeviceButton::Card);
    m_buttons->refuse(u"card"_s, u"unknown-command"_s, u"There is no command card."_s);
    QVERIFY(!m_buttons->isAvailable(DeviceButton::Card));
    QCOMPARE(m_buttons->notes.count(), 1);
    QCOMPARE(m_buttons->notes.at(0).at(0), u"There is no command card."_s);
}

void tst_SlateWindowButtonStates::refusedOnce()
{
    m_buttons->press(DeviceButton::Usb);
    m_buttons->refuse(u"usb"_s, u"not-possible"_s, u"The drive is in use."_s);
    QVERIFY(m_buttons->isAvailable(DeviceButton::Usb));
    QCOMPARE(m_buttons->notes.count(), 1);
    QCOMPARE(m_buttons->notes.at(0).at(0), u"The drive is in use."_s);
}

void tst_SlateWindowButtonStates::nothingWithoutDevice()
{
    m_buttons->deviceWent();
    const qsizetype before = m_buttons->requests.count();
    for (const DeviceButton button : deviceButtons) {
        QVERIFY(!m_buttons->isAvailable(button));
        m_buttons->press(button);
    }
    QCOMPARE(m_buttons->requests.count(), before);
}

QTEST_GUILESS_MAIN(tst_SlateWindowButtonStates)
#include "tst_slate_window_button_states.moc"
