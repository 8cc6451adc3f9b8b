// The gallery of the controls: every page is there, and nothing on it complains.

#include "launched_device.h"

#include <QCoreApplication>
#include <QImage>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

constexpr int pageCount = 12;

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
    const auto page = [&] { // without the status panel, whose clock goes on
        return device.does(u"idle"_s, {{u"ms"_s, 150}}) ? device.client->screenshot().copy(0, 45, 758, 979)
                                                        : QImage();
    };
    QList<QImage> pages;
    for (int i = 0; i < pageCount; ++i) {
        const QImage shown = page();
        QVERIFY(!shown.isNull());
        QVERIFY2(!pages.contains(shown), qPrintable(u"page %1"_s.arg(i)));
        pages.append(shown);
        QVERIFY(device.does(u"key"_s, {{u"name"_s, u"next"_s}}));
    }
    QCOMPARE(page(), pages.constFirst()); // once round
    QVERIFY(device.does(u"key"_s, {{u"name"_s, u"prev"_s}}));
    QCOMPARE(page(), pages.constLast());

    QVERIFY(device.does(u"quit"_s));
    const LauncherEnd end = LauncherPlace::end(device.launcher);
    QCOMPARE(end.errors, QByteArray());
    QCOMPARE(end.status, 0);
}

QTEST_GUILESS_MAIN(tst_Gallery)
#include "tst_gallery.moc"
