// The gallery of the controls: every page shows what it is for, upright and sideways, and nothing on it
// complains.

#include "launched_device.h"

#include <QCoreApplication>
#include <QImage>
#include <QJsonArray>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

/// A page, and something that can be read or reached on this one alone.
struct Page
{
    QString name;
    QString shows; ///< an accessible name
    bool enabled = true;
};

const QList<Page> pages{
    {u"Types"_s, u"Heading3 – Garden in spring 1/24"_s},
    {u"Icons"_s, {}},
    {u"Buttons"_s, u"Add pictures"_s},
    {u"Pressed"_s, u"Save"_s},
    {u"Focused"_s, u"Save"_s},
    {u"Asleep"_s, u"All"_s, false},
    {u"Rows"_s, u"Random order"_s},
    {u"Inputs"_s, u"Automatic brightness"_s},
    {u"Lists"_s, u"The last evening"_s},
    {u"ComboBoxes"_s, u"Interval in: Minutes"_s},
    {u"ComboBoxOpen"_s, u"Hours, or as long as the battery lasts"_s},
    {u"ComboBoxAbove"_s, u"Summer of 2018"_s},
    {u"MenuWithIcons"_s, u"Rename"_s},
    {u"MenuWithRadioButtons"_s, u"Show in random order"_s},
    {u"MenuLong"_s, u"Summer of 2013"_s},
    {u"Dialog"_s, u"Cancel"_s},
    {u"DialogAtTop"_s, u"Cancel"_s},
    {u"KeyboardLetters"_s, u"Shift"_s},
    {u"KeyboardDigits"_s, u"5"_s},
    {u"Message"_s, u"2 pictures were added to Garden"_s},
};

/// Every node with what belongs to it, in the order of the tree.
QList<QJsonObject> flat(const QJsonArray &nodes)
{
    QList<QJsonObject> all;
    for (const QJsonValue &node : nodes) {
        all.append(node.toObject());
        all.append(flat(node[u"children"_s].toArray()));
    }
    return all;
}

bool isOn(const Page &page, const QList<QJsonObject> &nodes)
{
    return page.shows.isEmpty() || std::any_of(nodes.begin(), nodes.end(), [&page](const QJsonObject &node) {
               return node[u"name"_s] == page.shows && node[u"enabled"_s] == page.enabled;
           });
}

} // namespace

class tst_Gallery : public QObject
{
    Q_OBJECT

private slots:
    void everyPage();
};

void tst_Gallery::everyPage()
{
    LaunchedDevice device;
    QVERIFY(device.start({u"--temporary"_s, u"--headless"_s, u"--"_s,
                          QCoreApplication::applicationDirPath() + u"/device_gallery"_s}));

    const auto still = [&] { return device.does(u"idle"_s, {{u"ms"_s, 150}}); };
    const auto step = [&](const QString &key) {
        return device.does(u"key"_s, {{u"name"_s, key}}) && still();
    };
    const auto nodes = [&] { return flat(device.client->ask(u"tree"_s)[u"tree"_s].toArray()); };
    // Without the status panel, whose clock goes on.
    const auto picture = [&] {
        const QImage screen = device.client->screenshot();
        return screen.copy(0, 45, screen.width(), screen.height() - 45);
    };
    QVERIFY(still());
    for (int orientation : {0, 1}) {
        QVERIFY(device.does(u"orientation"_s, {{u"value"_s, orientation}}) && still());
        QList<QImage> pictures;
        for (const Page &page : pages) {
            const QByteArray label = page.name.toUtf8() + (orientation == 0 ? "" : ", sideways");
            QVERIFY2(isOn(page, nodes()), label);
            pictures.append(picture());
            QCOMPARE(pictures.last().size(), orientation == 0 ? QSize(758, 979) : QSize(1024, 713));
            QVERIFY2(pictures.count(pictures.last()) == 1, label);
            QVERIFY(step(u"next"_s));
        }
        QVERIFY(isOn(pages.first(), nodes())); // once round
        QCOMPARE(picture(), pictures.first());
        QVERIFY(step(u"prev"_s));
        QVERIFY(isOn(pages.last(), nodes()));
        QVERIFY(step(u"next"_s));
    }

    QVERIFY(device.does(u"quit"_s));
    const LauncherEnd end = LauncherPlace::end(device.launcher);
    QCOMPARE(end.errors, QByteArray());
    QCOMPARE(end.status, 0);
}

QTEST_GUILESS_MAIN(tst_Gallery)
#include "tst_gallery.moc"
