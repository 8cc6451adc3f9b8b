// The states of the show's screen and every way from one to another, on the real program: by touch, by the
// device's keys and by assistive input. Devices and orientations take turns, so that every pair of them
// occurs.

#include "show_device.h"

#include <QDir>
#include <QFile>
#include <QTest>

#include <memory>

using namespace Qt::StringLiterals;

namespace {

enum State { Showing, Menu, LightPanel, BarePause, Left };

} // namespace

class tst_ShowStates : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void transitions_data();
    void transitions();
    void stepsBehind_data();
    void stepsBehind();
    void background_data();
    void background();
    void lightOfThePanelIsKept();
    void menuOverTheLightPanel();
    void allFilesGone();
    void keysAlone();

private:
    bool play(const QString &profile, int orientation = 0);
    bool act(const QString &means);
    bool goTo(State state);
    QByteArray differenceFrom(State state);
    QList<QJsonObject> items() { return m_device->items(); }
    int count(const QString &name);
    QJsonObject state(const QString &part) { return m_device->state().value(part).toObject(); }
    QString lastFastUpdates();

    std::unique_ptr<ShowDevice> m_device;
};

void tst_ShowStates::init()
{
    QFile::remove(u"/mnt/ext1/system/picture_stand.sqlite"_s);
    QFile::remove(u"/devroot/device.json"_s);
    m_device = std::make_unique<ShowDevice>();
}

void tst_ShowStates::cleanup()
{
    QCOMPARE(m_device->unexpectedErrors(), QByteArrayList());
    m_device.reset();
}

int tst_ShowStates::count(const QString &name)
{
    int found = 0;
    for (const QJsonObject &item : items()) {
        if (item.value("name"_L1).toString() == name)
            ++found;
    }
    return found;
}

bool tst_ShowStates::play(const QString &profile, int orientation)
{
    QFile record(u"/devroot/device.json"_s);
    if (!record.open(QIODevice::WriteOnly) || record.write("{\"profile\":\"" + profile.toUtf8() + "\"}") < 0)
        return false;
    record.close();
    if (!m_device->start() || !m_device->play())
        return false;
    if (orientation == 0)
        return true;
    const QJsonObject upright = state(u"screen"_s);
    QSize size(upright.value("width"_L1).toInt(), upright.value("height"_L1).toInt());
    if (orientation != 3)
        size.transpose();
    return m_device->does(u"orientation"_s, {{u"value"_s, orientation}})
        && QTest::qWaitFor([&] { return ShowDevice::rectangleOf(items().value(0)).size() == size; });
}

/// "tap PLACE" touches a part of the screen, "touch NAME" the middle of an item; "press", "key" and "event"
/// are the device's commands.
bool tst_ShowStates::act(const QString &means)
{
    const QString verb = means.section(u' ', 0, 0);
    const QString object = means.section(u' ', 1);
    if (verb == "press"_L1 || verb == "key"_L1)
        return m_device->does(verb, {{u"name"_s, object}});
    if (verb == "event"_L1)
        return m_device->does(verb, {{u"type"_s, object.toInt()}, {u"par1"_s, 0}, {u"par2"_s, 0}});
    QPointF at;
    if (verb == "touch"_L1) {
        for (const QJsonObject &item : items()) {
            if (item.value("name"_L1).toString() == object)
                at = ShowDevice::rectangleOf(item).center();
        }
    } else {
        const QRect screen = ShowDevice::rectangleOf(items().value(0));
        const QHash<QString, QPointF> places{{u"centre"_s, {0.5, 0.05}},
                                             {u"left"_s, {0.22, 0.05}},
                                             {u"right"_s, {0.9, 0.05}},
                                             {u"corner"_s, {0.1, 0.1}}};
        at = {screen.width() * places.value(object).x(), screen.height() * places.value(object).y()};
    }
    return m_device->does(u"tap"_s, {{u"x"_s, qRound(at.x())}, {u"y"_s, qRound(at.y())}});
}

bool tst_ShowStates::goTo(State state)
{
    return state == Showing
        || (act(u"press #wrapper"_s)
            && (state == Menu
                || (act(u"press Frontlight"_s) && (state == LightPanel || act(u"tap left"_s)))));
}

QString tst_ShowStates::lastFastUpdates()
{
    QString last;
    for (const QJsonValue &value : m_device->journal()) {
        const QJsonObject call = value.toObject();
        if (call.value("name"_L1) == "setFastUpdates"_L1)
            last = call.value("arguments"_L1).toArray().at(0).toString();
    }
    return last;
}

/// What of the device is not as the state has it; empty: all is.
QByteArray tst_ShowStates::differenceFrom(State expected)
{
    if ((state(u"panel"_s).value("type"_L1).toInt() == 1) != (expected == Left))
        return "the screen is the wrong one";
    const int menu = count(u"Stop slideshow"_s);
    if (menu != (expected == Menu))
        return "the menu";
    if (count(u"Frontlight"_s) - menu != (expected == LightPanel)) // an entry of the menu has the same name
        return "the light panel";
    const bool running = expected == Showing;
    bool armed = false;
    for (const QJsonValue &timer : m_device->state().value("timers"_L1).toArray())
        armed = armed || timer.toObject().value("name"_L1) == "nextImageEvent"_L1;
    if (armed != running)
        return "the timer";
    const QJsonObject power = state(u"power"_s);
    if (power.value("auto_power_off"_L1).toBool() == running
        || power.value("auto_keylock"_L1).toBool() == running)
        return "the automatisms";
    const bool colour = m_device->state().value("profile"_L1) == "colour-6"_L1;
    const bool fast = expected == Menu || expected == Left;
    if (lastFastUpdates() != (!colour ? u""_s : fast ? u"1"_s : u"0"_s))
        return "the quality of updates";
    return {};
}

void tst_ShowStates::transitions_data()
{
    QTest::addColumn<State>("from");
    QTest::addColumn<QString>("means");
    QTest::addColumn<State>("to");
    QTest::addColumn<QString>("profile");
    QTest::addColumn<int>("orientation");

    const QStringList profiles{u"grey-6"_s, u"colour-6"_s, u"grey-8"_s, u"grey-6-hd"_s};
    const QStringList names{u"showing"_s, u"menu"_s, u"light panel"_s, u"bare pause"_s};
    int row = 0;
    const auto add = [&](State from, const char *means, State to) {
        const QString profile = profiles.at(row % 4);
        const int orientation = (row + row / 4) % 4;
        QTest::addRow("%s: %s on %s, orientation %d", qPrintable(names.at(from)), means, qPrintable(profile),
                      orientation)
            << from << QString::fromLatin1(means) << to << profile << orientation;
        ++row;
    };
    add(Showing, "tap centre", Menu);
    add(Showing, "key menu", Menu);
    add(Showing, "press #wrapper", Menu);
    add(Showing, "tap corner", Left);
    add(Showing, "tap left", Showing);
    add(Showing, "tap right", Showing);
    add(Menu, "tap right", Showing);
    add(Menu, "tap corner", Showing);
    add(Menu, "key menu", Showing);
    add(Menu, "touch Frontlight", LightPanel);
    add(Menu, "press Frontlight", LightPanel);
    add(Menu, "touch Stop slideshow", Left);
    add(Menu, "press Stop slideshow", Left);
    add(LightPanel, "tap centre", Showing);
    add(LightPanel, "tap left", BarePause);
    add(LightPanel, "tap right", BarePause);
    add(LightPanel, "tap corner", Left);
    add(LightPanel, "touch Automatic brightness", LightPanel);
    add(BarePause, "tap centre", Menu);
    add(BarePause, "key menu", Menu);
    add(BarePause, "press #wrapper", Menu);
    add(BarePause, "tap corner", Left);
    add(BarePause, "tap left", BarePause);
    add(BarePause, "tap right", BarePause);
}

void tst_ShowStates::transitions()
{
    QFETCH(State, from);
    QFETCH(QString, means);
    QFETCH(State, to);
    QFETCH(QString, profile);
    QFETCH(int, orientation);

    QVERIFY(play(profile, orientation));
    QVERIFY(goTo(from));
    QCOMPARE(differenceFrom(from), QByteArray());
    QVERIFY(act(means));
    QCOMPARE(differenceFrom(to), QByteArray());
}

void tst_ShowStates::stepsBehind_data()
{
    QTest::addColumn<State>("state");
    QTest::addColumn<QString>("means");

    QTest::newRow("menu, next key") << Menu << u"key next"_s;
    QTest::newRow("menu, previous key") << Menu << u"key prev"_s;
    QTest::newRow("light panel, next key") << LightPanel << u"key next"_s;
    QTest::newRow("light panel, previous key") << LightPanel << u"key prev"_s;
}

void tst_ShowStates::stepsBehind()
{
    QFETCH(State, state);
    QFETCH(QString, means);

    QVERIFY(play(u"grey-6"_s));
    QVERIFY(goTo(state));
    QVERIFY(m_device->idle());
    const QImage before = m_device->screenshot();
    QVERIFY(act(means) && m_device->idle());
    QCOMPARE(differenceFrom(state), QByteArray());
    QVERIFY(m_device->screenshot() != before);
}

void tst_ShowStates::background_data()
{
    QTest::addColumn<State>("state");

    QTest::newRow("showing") << Showing;
    QTest::newRow("menu") << Menu;
    QTest::newRow("light panel") << LightPanel;
    QTest::newRow("bare pause") << BarePause;
}

void tst_ShowStates::background()
{
    QFETCH(State, state);

    const auto light = [this](const char *member) {
        return this->state(u"light"_s).value(QLatin1String(member)).toVariant();
    };
    QVERIFY(play(u"grey-6"_s));
    QVERIFY(goTo(state));
    QCOMPARE(light("enabled"), QVariant(false)); // the frame's own light, which was never on
    QVERIFY(m_device->does(u"background"_s));
    QCOMPARE(light("enabled"), QVariant(true));
    QCOMPARE(light("brightness").toInt(), 40); // the device's
    const QJsonObject power = this->state(u"power"_s);
    QVERIFY(power.value("auto_power_off"_L1).toBool() && power.value("auto_keylock"_L1).toBool());
    QVERIFY(!m_device->ask(u"fire"_s, {{u"name"_s, u"nextImageEvent"_s}}).value("ok"_L1).toBool());

    QVERIFY(m_device->does(u"foreground"_s));
    QCOMPARE(light("brightness").toInt(), 0);
    QCOMPARE(light("enabled"), QVariant(true)); // always, once it was kept
    QCOMPARE(differenceFrom(state), QByteArray());
}

void tst_ShowStates::lightOfThePanelIsKept()
{
    const auto brightness = [this] { return state(u"light"_s).value("brightness"_L1).toInt(); };
    QVERIFY(play(u"grey-6"_s));
    QVERIFY(goTo(LightPanel));
    const auto panelHeight = [this] {
        int top = 1024;
        for (const QJsonObject &item : items()) {
            if (item.value("name"_L1) == "Frontlight"_L1)
                top = ShowDevice::rectangleOf(item).top();
        }
        return 1024 - top;
    };
    const int dark = panelHeight();
    QVERIFY(act(u"touch Frontlight"_s)); // the switch
    QVERIFY(state(u"light"_s).value("enabled"_L1).toBool());
    QVERIFY(panelHeight() > dark); // the warning has come
    QVERIFY(m_device->does(u"increase"_s, {{u"name"_s, u"Brightness"_s}}));
    QCOMPARE(brightness(), 5);
    QCOMPARE(differenceFrom(LightPanel), QByteArray());
    QVERIFY(m_device->does(u"background"_s));
    QCOMPARE(brightness(), 40);
    QVERIFY(m_device->does(u"foreground"_s));
    QCOMPARE(brightness(), 5);
    QVERIFY(act(u"tap corner"_s));
    QCOMPARE(brightness(), 40);
    QVERIFY(m_device->play());
    QCOMPARE(brightness(), 5);
}

void tst_ShowStates::menuOverTheLightPanel()
{
    // The menu key asks for the menu alone; the light panel stays, and lies above it.
    QVERIFY(play(u"grey-6"_s));
    QVERIFY(goTo(LightPanel));
    QVERIFY(act(u"key menu"_s));
    QCOMPARE(count(u"Stop slideshow"_s), 1);
    QCOMPARE(count(u"Brightness"_s), 1);
    QVERIFY(act(u"key menu"_s));
    QCOMPARE(count(u"Stop slideshow"_s), 0);
    QCOMPARE(count(u"Brightness"_s), 1);
    QVERIFY(!state(u"power"_s).value("auto_power_off"_L1).toBool());
    QVERIFY(act(u"tap centre"_s));
    QCOMPARE(differenceFrom(Showing), QByteArray());
}

void tst_ShowStates::allFilesGone()
{
    QVERIFY(m_device->start());
    QVERIFY(QDir().rename(u"/mnt/ext1/Photo"_s, u"/mnt/ext1/Photo.kept"_s));
    const bool pressed = m_device->play();
    QVERIFY(QDir().rename(u"/mnt/ext1/Photo.kept"_s, u"/mnt/ext1/Photo"_s));
    QVERIFY(pressed);
    QCOMPARE(differenceFrom(BarePause), QByteArray()); // nothing to start
    const QImage panel = m_device->screenshot();
    for (int y = 0; y < 900; ++y) { // the date stays, and says the beginning of time
        for (int x = 0; x < panel.width(); ++x)
            QCOMPARE(qGray(panel.pixel(x, y)), 0);
    }
    QCOMPARE(count(u"Jan 01, 1970"_s), 1);
    QVERIFY(act(u"tap left"_s) && act(u"tap right"_s));
    QCOMPARE(differenceFrom(BarePause), QByteArray());
    QVERIFY(act(u"tap centre"_s));
    QCOMPARE(differenceFrom(Menu), QByteArray());
    QVERIFY(act(u"tap corner"_s)); // outside the entries
    QCOMPARE(differenceFrom(BarePause), QByteArray());
    QVERIFY(act(u"tap corner"_s));
    QCOMPARE(differenceFrom(Left), QByteArray());
    for (const QByteArray &line : m_device->unexpectedErrors())
        QVERIFY2(line.endsWith("Failed to get image from provider: image://image_provider/"),
                 line.constData());
}

void tst_ShowStates::keysAlone()
{
    // A device without touch: the frame shows where the keys are.
    const auto framed = [this](const QString &name) {
        for (const QJsonObject &item : items()) {
            const QRect place = ShowDevice::rectangleOf(item);
            if (item.value("name"_L1).toString() == name)
                return qGray(m_device->screenshot().pixel(place.center().x(), place.top())) == 255;
        }
        return false;
    };
    QVERIFY(play(u"keys-6"_s));
    QVERIFY(act(u"key next"_s) && act(u"key prev"_s));
    QCOMPARE(differenceFrom(Showing), QByteArray());
    QVERIFY(act(u"key menu"_s) && m_device->idle());
    QCOMPARE(differenceFrom(Menu), QByteArray());
    QVERIFY(framed(u"Stop slideshow"_s) && !framed(u"Frontlight"_s));
    QVERIFY(act(u"key back"_s));
    QCOMPARE(differenceFrom(Showing), QByteArray());
    QVERIFY(act(u"key menu"_s) && act(u"key down"_s) && act(u"key down"_s) && m_device->idle());
    QVERIFY(framed(u"Frontlight"_s) && !framed(u"Stop slideshow"_s));
    QVERIFY(act(u"key centre"_s));
    QCOMPARE(differenceFrom(LightPanel), QByteArray());
    QVERIFY(act(u"key centre"_s)); // on the switch
    QVERIFY(state(u"light"_s).value("enabled"_L1).toBool());
    QVERIFY(act(u"key back"_s));
    QCOMPARE(differenceFrom(Showing), QByteArray());
    QVERIFY(act(u"key menu"_s) && act(u"key centre"_s));
    QCOMPARE(differenceFrom(Left), QByteArray());
    const QJsonObject tap = m_device->ask(u"tap"_s, {{u"x"_s, 1}, {u"y"_s, 1}});
    QCOMPARE(tap.value("error"_L1).toString(), u"not-supported"_s);
}

QTEST_GUILESS_MAIN(tst_ShowStates)
#include "tst_show_states.moc"
