// Thumbnail jobs on their pool: how many at once, in which order, ahead of requests, and how they end.

#include "async_image_response.h"
#include "cover_cache.h"
#include "cover_provider.h"
#include "cover_requests.h"
#include "held_pictures.h"
#include "panel_application.h"
#include "picture_fixture.h"
#include "storage.h"

#include <boardconf.h>
#include <slateview.h>

#include <QThread>
#include <QtPlugin>

#include <algorithm>
#include <memory>

Q_IMPORT_PLUGIN(HeldPicturePlugin)

using namespace Qt::StringLiterals;
using lindenreed::device::SdkCall;
using lindenreed::picture_stand::AsyncImageResponse;
using lindenreed::picture_stand::CoverCache;
using lindenreed::picture_stand::coverKey;
using lindenreed::picture_stand::CoverProvider;
using lindenreed::picture_stand::Storage;

namespace {

constexpr QSize themeBox(220, 220); ///< of the theme that the tests have

bool isCached(const QString &path, QSize box)
{
    return CoverCache::instance().find(coverKey(path, box.width(), box.height())).has_value();
}

QString number(int i)
{
    return QString::number(i);
}

} // namespace

class tst_CoverProvider : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void requestIsAnswered();
    void finishedComesFromThePool();
    void themeSizesAndThreads();
    void atOnce_data();
    void atOnce();
    void requestsBeforePrefetch();
    void prefetchInOrderOfTheList();
    void prefetchTakesTheThemesSize();
    void prefetchTakesBareNames();
    void listingStartsPrefetch();
    void providerThatWentHearsNothing();
    void prefetchFillsAllPlaces();
    void cancelledJobFillsTheCache();
    void twoJobsForOneKey();
    void queuedJobsDoNotRun();
    void deletedResponseIsForgotten();
    void leftResponsesGoWithTheProvider();

private:
    /// A finished response, null where it does not come: nothing could run before somebody listened to its
    /// end.
    QQuickImageResponse *answered(CoverProvider &provider, const QString &path, QSize box);
    QString held(int i) const { return writeHeldPicture(m_test->folder.path(), number(i)); }

    std::unique_ptr<PictureFixture> m_test;
};

void tst_CoverProvider::init()
{
    m_test = std::make_unique<PictureFixture>();
    HeldPictures::reset();
}

void tst_CoverProvider::cleanup()
{
    HeldPictures::letAllPass();
    lindenreed::device::facts().platformNumber = 0;
    m_test.reset();
}

QQuickImageResponse *tst_CoverProvider::answered(CoverProvider &provider, const QString &path, QSize box)
{
    Listener listener;
    for (QQuickImageResponse *holder : takeThreads(provider, m_test->folder.path()))
        listener.listenTo(holder);
    QQuickImageResponse *response = provider.requestImageResponse(path, box);
    listener.listenTo(response);
    HeldPictures::letAllPass();
    return listener.waitForEnds(3) ? response : nullptr;
}

void tst_CoverProvider::requestIsAnswered()
{
    const QString path = m_test->save(gradient({300, 100}), u"a.png"_s);
    CoverProvider provider;
    provider.setup();
    const QQuickImageResponse *response = answered(provider, path, {100, 100});
    QVERIFY(qobject_cast<const AsyncImageResponse *>(response));
    QCOMPARE(imageOf(*response).size(), QSize(100, 33));
    QVERIFY(isCached(path, {100, 100}));
}

void tst_CoverProvider::finishedComesFromThePool()
{
    CoverProvider provider;
    provider.setup();
    Listener listener;
    listener.listenTo(provider.requestImageResponse(held(1), {10, 10}));
    HeldPictures::letAllPass();
    QVERIFY(listener.waitForEnds(1));
    QVERIFY(listener.heard->thread != QThread::currentThread());
    QVERIFY(!listener.waitForEnds(1, 0)); // once
}

void tst_CoverProvider::themeSizesAndThreads()
{
    CoverProvider provider;
    m_test->device.forgetCalls();
    provider.setup();
    const QList<SdkCall> calls = m_test->device.calls({"GetThemeInt", "device_platform"});
    QCOMPARE(calls.size(), 3);
    QCOMPARE(calls.at(0).arguments, (QByteArrayList{"e3.galery_cover.width", "165"}));
    QCOMPARE(calls.at(1).arguments, (QByteArrayList{"e3.galery_cover.height", "290"}));
    QCOMPARE(calls.at(2).name, QByteArray("device_platform"));
}

void tst_CoverProvider::atOnce_data()
{
    QTest::addColumn<int>("platform");
    QTest::addColumn<int>("threads");

    QTest::newRow("an ordinary platform") << 0 << 2;
    QTest::newRow("16") << 16 << 2;
    QTest::newRow("17") << 17 << 3;
    QTest::newRow("18") << 18 << 2;
}

void tst_CoverProvider::atOnce()
{
    QFETCH(int, platform);
    QFETCH(int, threads);

    lindenreed::device::facts().platformNumber = platform;
    CoverProvider provider;
    provider.setup();
    for (int i = 0; i < 8; ++i)
        provider.requestImageResponse(held(i), {10, 10});
    QVERIFY(HeldPictures::waitUntilBegun(threads));
    for (int i = threads + 1; i <= 8; ++i) { // one more begins for each that ends
        HeldPictures::letPass(1);
        QVERIFY(HeldPictures::waitUntilBegun(i));
    }
    HeldPictures::letAllPass();
    QCOMPARE(HeldPictures::most(), threads);
    for (int i = 0; i < 8; ++i)
        QTRY_VERIFY(isCached(m_test->folder.filePath(u"%1.held"_s.arg(i)), {10, 10}));
}

void tst_CoverProvider::requestsBeforePrefetch()
{
    CoverProvider provider;
    provider.setup();
    QStringList paths;
    for (int i = 0; i < 5; ++i)
        paths.append(held(i));
    provider.prefetchCovers(paths);
    QVERIFY(HeldPictures::waitUntilBegun(2));
    provider.requestImageResponse(held(100), {10, 10});
    HeldPictures::letPass(1);
    QVERIFY(HeldPictures::waitUntilBegun(3));
    QCOMPARE(HeldPictures::begun().at(2), u"100"_s);
    HeldPictures::letAllPass();
    QVERIFY(HeldPictures::waitUntilBegun(6));
}

void tst_CoverProvider::prefetchInOrderOfTheList()
{
    CoverProvider provider;
    provider.setup();
    QStringList paths;
    QStringList names;
    for (int i : {5, 3, 9, 1, 7, 2}) {
        paths.append(held(i));
        names.append(number(i));
    }
    provider.prefetchCovers(paths);
    QVERIFY(HeldPictures::waitUntilBegun(2));
    for (int i = 3; i <= 6; ++i) {
        HeldPictures::letPass(1);
        QVERIFY(HeldPictures::waitUntilBegun(i));
        QCOMPARE(HeldPictures::begun().mid(2), names.mid(2, i - 2)); // the first two begin together
    }
    HeldPictures::letAllPass();
}

void tst_CoverProvider::prefetchTakesTheThemesSize()
{
    const QString path = m_test->save(gradient({20, 10}), u"a.png"_s);
    CoverProvider provider;
    provider.setup();
    provider.prefetchCovers({path});
    QTRY_VERIFY(isCached(path, themeBox));
    QCOMPARE(CoverCache::instance().find(coverKey(path, 220, 220))->size(), QSize(220, 110));

    // A request of exactly this size and path finds it.
    QVERIFY(QFile::remove(path));
    const QQuickImageResponse *response = answered(provider, path, themeBox);
    QVERIFY(response);
    QCOMPARE(imageOf(*response).size(), QSize(220, 110));
}

void tst_CoverProvider::prefetchTakesBareNames()
{
    // Names mean files of the working directory; elsewhere they leave an entry that nobody can show.
    const QString old = QDir::currentPath();
    QVERIFY(!m_test->save(gradient({20, 10}), u"bare.png"_s).isEmpty());
    QVERIFY(QDir::setCurrent(m_test->folder.path()));
    CoverProvider provider;
    provider.setup();
    provider.prefetchCovers({u"bare.png"_s, u"nowhere.png"_s});
    QTRY_VERIFY(isCached(u"bare.png"_s, themeBox));
    QTRY_VERIFY(isCached(u"nowhere.png"_s, themeBox));
    QVERIFY(QDir::setCurrent(old));
    QVERIFY(!CoverCache::instance().find(u"bare.png_220x220"_s)->isNull());
    QVERIFY(CoverCache::instance().find(u"nowhere.png_220x220"_s)->isNull());
}

void tst_CoverProvider::listingStartsPrefetch()
{
    QVERIFY(!m_test->save(gradient({20, 10}), u"listed.png"_s).isEmpty());
    QVERIFY(!m_test->save(gradient({20, 10}), u"listed.txt.jpg"_s).isEmpty());
    CoverProvider provider;
    Storage::instance().listFiles(m_test->folder.path(), {u"*.png"_s}, 0);
    provider.setup();
    QVERIFY(!isCached(u"listed.png"_s, themeBox)); // not before
    Storage::instance().listFiles(m_test->folder.path(), {u"*.jpg"_s}, 0);
    QTRY_VERIFY(isCached(u"listed.txt.jpg"_s, themeBox)); // by its bare name
    QVERIFY(!isCached(u"listed.png"_s, themeBox));
    QVERIFY(!isCached(m_test->folder.filePath(u"listed.txt.jpg"_s), themeBox));
}

void tst_CoverProvider::providerThatWentHearsNothing()
{
    QVERIFY(!m_test->save(gradient({20, 10}), u"gone.png"_s).isEmpty());
    {
        CoverProvider provider;
        provider.setup();
    }
    Storage::instance().listFiles(m_test->folder.path(), {u"*.png"_s}, 0);
    QVERIFY(!isCached(u"gone.png"_s, themeBox));
}

void tst_CoverProvider::prefetchFillsAllPlaces()
{
    const QString before = m_test->save(gradient({20, 10}), u"before.png"_s);
    QStringList names;
    for (int i = 0; i < 60; ++i) {
        names.append(u"p%1.held"_s.arg(i));
        QVERIFY(!writeHeldPicture(m_test->folder.path(), u"p%1"_s.arg(i)).isEmpty());
    }
    CoverProvider provider;
    provider.setup();
    provider.prefetchCovers({before});
    QTRY_VERIFY(isCached(before, themeBox));
    const QString old = QDir::currentPath();
    QVERIFY(QDir::setCurrent(m_test->folder.path()));
    Storage::instance().listFiles(m_test->folder.path(), {u"*.held"_s}, 0);
    HeldPictures::letAllPass();
    QVERIFY(HeldPictures::waitUntilBegun(60));
    const auto kept = [&names] {
        return std::count_if(names.cbegin(), names.cend(),
                             [](const QString &name) { return isCached(name, themeBox); });
    };
    QTRY_COMPARE(kept(), 50);
    QVERIFY(QDir::setCurrent(old));
    QVERIFY(!isCached(before, themeBox));
}

void tst_CoverProvider::cancelledJobFillsTheCache()
{
    CoverProvider provider;
    provider.setup();
    const QString path = held(1);
    QQuickImageResponse *response = provider.requestImageResponse(path, {10, 10});
    QVERIFY(HeldPictures::waitUntilBegun(1));
    response->cancel();
    HeldPictures::letAllPass();
    QTRY_VERIFY(isCached(path, {10, 10}));
}

void tst_CoverProvider::twoJobsForOneKey()
{
    // Neither waits for the other; both have a picture.
    CoverProvider provider;
    provider.setup();
    const QString path = held(1);
    QQuickImageResponse *one = provider.requestImageResponse(path, {10, 10});
    QQuickImageResponse *two = provider.requestImageResponse(path, {10, 10});
    QVERIFY(HeldPictures::waitUntilBegun(2));
    QCOMPARE(HeldPictures::most(), 2);
    Listener listener;
    listener.listenTo(one);
    listener.listenTo(two);
    HeldPictures::letAllPass();
    QVERIFY(listener.waitForEnds(2));
    QVERIFY(!imageOf(*one).isNull() && imageOf(*one) == imageOf(*two));
}

void tst_CoverProvider::queuedJobsDoNotRun()
{
    QStringList paths;
    for (int i = 0; i < 40; ++i)
        paths.append(held(i));
    {
        CoverProvider provider;
        provider.setup();
        provider.prefetchCovers(paths);
        for (int i = 100; i < 110; ++i)
            provider.requestImageResponse(held(i), {10, 10}); // goes with the provider
        QVERIFY(HeldPictures::waitUntilBegun(2));
    }
    QCOMPARE(HeldPictures::begun().size(), 2);
    for (int i = 2; i < 40; ++i)
        QVERIFY(!isCached(paths.at(i), themeBox));
}

void tst_CoverProvider::deletedResponseIsForgotten()
{
    const QString path = m_test->save(gradient({20, 10}), u"a.png"_s);
    CoverProvider provider;
    provider.setup();
    for (int i = 0; i < 100; ++i) {
        const QQuickImageResponse *response = answered(provider, path, {10, 10});
        QVERIFY(response);
        delete response; // right in the end of its run
    }
}

void tst_CoverProvider::leftResponsesGoWithTheProvider()
{
    const QString path = m_test->save(gradient({20, 10}), u"a.png"_s);
    std::atomic<int> gone = 0;
    {
        CoverProvider provider;
        provider.setup();
        for (int i = 0; i < 20; ++i) {
            auto *response = provider.requestImageResponse(i % 2 == 0 ? path : QString(), {10, 10});
            connect(
                response, &QObject::destroyed, this, [&gone] { ++gone; }, Qt::DirectConnection);
        }
        QTRY_VERIFY(isCached(path, {10, 10}));
    }
    QCOMPARE(int(gone), 20);
}

PANEL_TEST_MAIN(tst_CoverProvider)
#include "tst_cover_provider.moc"
