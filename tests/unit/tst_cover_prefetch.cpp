// Thumbnails ahead of requests, on a theme whose covers are no squares: their size, and what is left of the
// responses.

#include "cover_cache.h"
#include "cover_provider.h"
#include "panel_application.h"
#include "picture_fixture.h"

#include <theme.h>

#include <private/qhooks_p.h>

#include <atomic>
#include <optional>

using namespace Qt::StringLiterals;
using lindenreed::picture_stand::CoverCache;
using lindenreed::picture_stand::coverKey;
using lindenreed::picture_stand::CoverProvider;

namespace {

constexpr QSize themeBox(30, 20);

/// Before the device, which would take the installed theme.
void loadTheme()
{
    const QTemporaryDir folder;
    QFile file(folder.filePath(u"theme.cfg"_s));
    if (!file.open(QIODevice::WriteOnly)
        || file.write("e3.galery_cover.width=30\ne3.galery_cover.height=20\n") < 0)
        qFatal("%s cannot be written", qPrintable(file.fileName()));
    file.close();
    if (!lindenreed::device::theme::load(nullptr, file.fileName()))
        qFatal("the theme cannot be loaded");
}
[[maybe_unused]] const bool themeLoaded = (loadTheme(), true);

/// What is remembered of a file in the theme's size, if anything.
std::optional<QImage> prefetched(const QString &path)
{
    return CoverCache::instance().find(coverKey(path, themeBox.width(), themeBox.height()));
}

std::atomic<int> living = 0; ///< objects that began and did not end since the counting began, on all threads

/// Counts the objects of the process while it lives.
class CountedObjects
{
public:
    CountedObjects()
    {
        living = 0;
        qtHookData[QHooks::AddQObject] = reinterpret_cast<quintptr>(+[](QObject *) { ++living; });
        qtHookData[QHooks::RemoveQObject] = reinterpret_cast<quintptr>(+[](QObject *) { --living; });
    }
    ~CountedObjects()
    {
        qtHookData[QHooks::AddQObject] = 0;
        qtHookData[QHooks::RemoveQObject] = 0;
    }
    CountedObjects(const CountedObjects &) = delete;
    CountedObjects &operator=(const CountedObjects &) = delete;
};

} // namespace

class tst_CoverPrefetch : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_test = std::make_unique<PictureFixture>(); }
    void cleanup() { m_test.reset(); }

    void widthAndHeightOfTheTheme_data();
    void widthAndHeightOfTheTheme();
    void responsesFreeThemselves();

private:
    std::unique_ptr<PictureFixture> m_test;
};

void tst_CoverPrefetch::widthAndHeightOfTheTheme_data()
{
    QTest::addColumn<QSize>("file");
    QTest::addColumn<QSize>("cover");

    QTest::newRow("wide") << QSize(60, 20) << QSize(30, 10);
    QTest::newRow("square") << QSize(40, 40) << QSize(20, 20);
    QTest::newRow("high") << QSize(20, 80) << QSize(5, 20);
    QTest::newRow("small") << QSize(3, 2) << QSize(30, 20);
}

void tst_CoverPrefetch::widthAndHeightOfTheTheme()
{
    QFETCH(QSize, file);
    QFETCH(QSize, cover);

    const QString path = m_test->save(gradient(file), u"a.png"_s);
    CoverProvider provider;
    provider.setup();
    provider.prefetchCovers({path});
    QTRY_VERIFY(prefetched(path));
    QCOMPARE(prefetched(path)->size(), cover);
}

void tst_CoverPrefetch::responsesFreeThemselves()
{
    QStringList paths;
    for (int i = 0; i < 60; ++i) // more than the cache keeps
        paths.append(m_test->save(gradient({20, 10}), u"%1.bmp"_s.arg(i)));
    CoverProvider provider;
    provider.setup();
    provider.prefetchCovers(paths); // threads and image readers are there from now on
    QTRY_VERIFY(prefetched(paths.last()));

    const CountedObjects counted;
    provider.prefetchCovers(paths);
    provider.prefetchCovers({m_test->save(gradient({20, 10}), u"last.bmp"_s), u"/nowhere.bmp"_s});
    QTRY_VERIFY(prefetched(u"/nowhere.bmp"_s));
    QTRY_VERIFY2(living <= 0, qPrintable(QString::number(living)));
}

PANEL_TEST_MAIN(tst_CoverPrefetch)
#include "tst_cover_prefetch.moc"
