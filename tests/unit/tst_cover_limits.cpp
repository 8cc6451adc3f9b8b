// Thumbnails of the largest pictures, and the memory that they take.

#include "async_image_response.h"
#include "cover_cache.h"
#include "cover_provider.h"
#include "cover_requests.h"
#include "held_pictures.h"
#include "panel_application.h"
#include "picture_fixture.h"
#include "process_memory.h"

#include <QImageReader>
#include <QtEndian>
#include <QtPlugin>

#include <cmath>
#include <memory>
#include <vector>

Q_IMPORT_PLUGIN(HeldPicturePlugin)

using namespace Qt::StringLiterals;
using lindenreed::picture_stand::AsyncImageResponse;
using lindenreed::picture_stand::CoverCache;
using lindenreed::picture_stand::coverKey;
using lindenreed::picture_stand::CoverProvider;

namespace {

/// Of a PNG chunk.
quint32 checksum(const QByteArray &bytes)
{
    quint32 sum = 0xffff'ffff;
    for (const char byte : bytes) {
        sum ^= uchar(byte);
        for (int bit = 0; bit < 8; ++bit)
            sum = (sum & 1) != 0 ? (sum >> 1) ^ 0xedb8'8320 : sum >> 1;
    }
    return ~sum;
}

} // namespace

class tst_CoverLimits : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_test = std::make_unique<PictureFixture>(); }
    void cleanup()
    {
        HeldPictures::letAllPass();
        m_test.reset();
    }

    void headerBeyondTheLimit();
    void hugePictureAndFiftyRequests();

private:
    std::unique_ptr<PictureFixture> m_test;
};

void tst_CoverLimits::headerBeyondTheLimit()
{
    // Width and height of 60000 in the first chunk of a PNG, which has a checksum.
    const QString path = m_test->save(gradient({200, 150}), u"a.png"_s);
    QFile file(path);
    QVERIFY(file.open(QIODevice::ReadWrite));
    QByteArray bytes = file.readAll();
    bytes.replace(16, 8, QByteArray("\0\0\xea\x60\0\0\xea\x60", 8));
    const quint32 sum = qToBigEndian(checksum(bytes.mid(12, 17)));
    bytes.replace(29, 4, QByteArray(reinterpret_cast<const char *>(&sum), 4));
    QVERIFY(file.seek(0) && file.write(bytes) == bytes.size());
    file.close();
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"exceeds the current allocation limit"_s));
    AsyncImageResponse response(path, {32, 32});
    response.run();
    QVERIFY(imageOf(response).isNull());
    QVERIFY(CoverCache::instance().find(coverKey(path, 32, 32))->isNull()); // remembered like any other
}

void tst_CoverLimits::hugePictureAndFiftyRequests()
{
    // Qt reckons four bytes a pixel: a grey picture of 100 megapixels is above its limit.
    QString huge;
    {
        QImage picture(10'000, 10'000, QImage::Format_Grayscale8);
        QVERIFY(!picture.isNull());
        picture.fill(0x80);
        huge = m_test->save(picture, u"huge.png"_s);
    }
    // The largest that is read.
    const int side = int(std::sqrt(QImageReader::allocationLimit() * 1024. * 1024 / 4)) - 1;
    const qint64 largeSize = qint64(side) * side * 4 / 1024; // KiB
    QString large;
    {
        QImage picture(side, side, QImage::Format_RGB32);
        QVERIFY(!picture.isNull());
        picture.fill(Qt::darkGray);
        large = m_test->save(picture, u"large.png"_s);
    }
    CoverProvider provider;
    provider.setup();
    QVERIFY(!takeThreads(provider, m_test->folder.path()).isEmpty());
    const GrowthWatch watch;
    Listener listener;
    std::vector<const QQuickImageResponse *> responses;
    for (int i = 0; i < 50; ++i) {
        QString path = m_test->save(gradient({200, 150}), u"%1.png"_s.arg(i));
        if (i % 10 == 0)
            path = huge;
        else if (i % 10 == 1)
            path = large;
        if (path == huge)
            QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"exceeds the current allocation limit"_s));
        QQuickImageResponse *response = provider.requestImageResponse(path, {100 + i, 100 + i});
        listener.listenTo(response);
        responses.push_back(response);
    }
    HeldPictures::letAllPass();
    QVERIFY(listener.waitForEnds(50, 240'000));
    for (int i = 0; i < 50; ++i)
        QCOMPARE(imageOf(*responses.at(std::size_t(i))).isNull(), i % 10 == 0);

    // Two of the large ones at once, and something for the rest.
    const qint64 grown = watch.grown();
    QVERIFY2(grown < 2 * largeSize + 60 * 1024, QByteArray::number(grown).constData());
    QVERIFY2(grown > largeSize, QByteArray::number(grown).constData()); // read whole
}

PANEL_TEST_MAIN(tst_CoverLimits)
#include "tst_cover_limits.moc"
