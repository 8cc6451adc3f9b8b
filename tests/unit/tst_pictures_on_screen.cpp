// Bad pictures, files that are none, and a long show, as the show's screen draws them.

#include "panel_application.h"
#include "picture_show_test.h"
#include "special_files.h"

#include <QDir>
#include <QFile>
#include <QSignalSpy>

#include <malloc.h>

class tst_PicturesOnScreen : public PictureShowTest
{
    Q_OBJECT

private slots:
    void initTestCase() { stored_database::remove(); }
    void init() { begin(); }
    void cleanup() { end(); }

    void badPictures_data();
    void badPictures();
    void truncatedPictures_data();
    void truncatedPictures();
    void thread();
    void neverOpened_data();
    void neverOpened();
    void longShowLeavesNothingBehind();

private:
    /// A show of two, which starts with this one and must come to the other.
    void showBeforeAGoodOne(const QString &path, int expected);

    int m_opened = 0; ///< how often the first of the two was
};

void tst_PicturesOnScreen::badPictures_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("contents");
    QTest::addColumn<bool>("shown");

    QImage photo(200, 150, QImage::Format_RGB32);
    photo.fill(Qt::darkGray);
    QTest::newRow("empty") << u"a.jpg"_s << QByteArray() << false;
    QTest::newRow("text under a picture's name") << u"a.png"_s << QByteArray("no picture at all\n") << false;
    QTest::newRow("a PNG named JPG") << u"a.jpg"_s << encoded(photo, "PNG") << true;
    QTest::newRow("a JPEG named TIFF") << u"a.tiff"_s << encoded(photo, "JPEG") << true;
    QTest::newRow("a BMP named SVG") << u"a.svg"_s << encoded(photo, "BMP") << true;
    QTest::newRow("one pixel") << u"a.png"_s << encoded(QImage(1, 1, QImage::Format_RGB32), "PNG") << true;

    QByteArray huge = encoded(photo, "PNG");
    for (int i : {16, 20}) { // width and height of 60000, big end first
        huge[i] = huge[i + 1] = 0;
        huge[i + 2] = char(0xea);
        huge[i + 3] = char(0x60);
    }
    QTest::newRow("a header that claims 60000 x 60000") << u"a.png"_s << huge << false;
}

void tst_PicturesOnScreen::badPictures()
{
    QFETCH(QString, name);
    QFETCH(QByteArray, contents);
    QFETCH(bool, shown);

    const QString path = m_folder->filePath(name);
    QVERIFY(write(QFile::encodeName(path), contents));
    showBeforeAGoodOne(path, shown ? Ready : Error);
    QVERIFY(m_opened > 0);
}

void tst_PicturesOnScreen::showBeforeAGoodOne(const QString &path, int expected)
{
    const QString good = m_folder->filePath(u"z.png"_s);
    QVERIFY(twoGreys().save(good));
    const OpenCount opened(path);
    App app;
    QCOMPARE(runApp(app,
                    [&](RunningApp &running) {
                        running.slideshow()->initFromList({path, good}, 30);
                        QCOMPARE(running.slideshow()->currentImage(), path);
                        running.slideshow()->createdDateTime();
                        app.changeView(u"slideshow"_s);
                        QCOMPARE(status(running), expected);
                        QVERIFY(m_device->fire("nextImageEvent")); // and the show goes on
                        QCOMPARE(running.slideshow()->currentImage(), good);
                        QCOMPARE(status(running), int(Ready));
                    }),
             0);
    m_opened = opened.get();
}

void tst_PicturesOnScreen::truncatedPictures_data()
{
    QTest::addColumn<QByteArray>("format");

    for (const char *format : {"JPEG", "PNG", "BMP", "TIFF"})
        QTest::newRow(format) << QByteArray(format);
}

void tst_PicturesOnScreen::truncatedPictures()
{
    QFETCH(QByteArray, format);

    // Every tenth of a file: black or what there is of it, and never the end of the show.
    QImage photo(300, 200, QImage::Format_RGB32);
    photo.fill(Qt::lightGray);
    QStringList paths;
    const QByteArray whole = encoded(photo, format.constData());
    QVERIFY(!whole.isEmpty());
    for (int tenth = 0; tenth < 10; ++tenth) {
        paths.append(m_folder->filePath(QString::number(tenth)));
        QVERIFY(write(QFile::encodeName(paths.last()), whole.first(whole.size() * tenth / 10)));
    }
    const QString good = m_folder->filePath(u"z.png"_s);
    QVERIFY(twoGreys().save(good));
    paths.append(good);
    App app;
    QCOMPARE(runApp(app,
                    [&](RunningApp &running) {
                        running.startShow(paths);
                        for (int i = 1; i < paths.size(); ++i) {
                            QVERIFY(status(running) == Ready || (status(running) == Error));
                            QVERIFY(m_device->fire("nextImageEvent"));
                            QCOMPARE(running.slideshow()->currentImage(), paths.at(i));
                        }
                        QCOMPARE(status(running), int(Ready));
                    }),
             0);
}

void tst_PicturesOnScreen::thread()
{
    // All width: one row of it is kept, and nothing in the cache is larger than the screen.
    QImage wide(20'000, 1, QImage::Format_Grayscale8);
    wide.fill(9);
    const QString path = m_folder->filePath(u"wide.png"_s);
    QVERIFY(wide.save(path));
    showBeforeAGoodOne(path, Ready);
    QVERIFY(m_log->text().contains("/wide.png size(760) ")); // 758 pixels, in whole words
}

void tst_PicturesOnScreen::neverOpened_data()
{
    QTest::addColumn<QByteArray>("kind");

    for (const QByteArray &kind : special_files::kinds)
        QTest::newRow(kind) << kind;
}

void tst_PicturesOnScreen::neverOpened()
{
    QFETCH(QByteArray, kind);

    const QString path = special_files::make(kind, m_folder->filePath(u"a.jpg"_s));
    QVERIFY(!path.isEmpty());
    showBeforeAGoodOne(path, Error); // black
    QCOMPARE(m_opened, 0);
}

void tst_PicturesOnScreen::longShowLeavesNothingBehind()
{
    QStringList paths;
    for (int i = 0; i < 10; ++i) {
        QImage picture(300, 400, QImage::Format_Grayscale8);
        picture.fill(i * 20);
        paths.append(m_folder->filePath(u"%1.png"_s.arg(i)));
        QVERIFY(picture.save(paths.last()));
    }
    App app;
    QCOMPARE(runApp(app,
                    [&](RunningApp &running) {
                        running.startShow(paths);
                        const auto changes = [&](int count) {
                            for (int i = 0; i < count; ++i) {
                                running.slideshow()->nextImage();
                                QCoreApplication::processEvents();
                            }
                            QThreadPool::globalInstance()->waitForDone();
                            // The scene graph lets go of the last picture but one when it has drawn again.
                            for (int frame = 0; frame < 2; ++frame) {
                                QSignalSpy drawn(running.window, &QQuickWindow::frameSwapped);
                                running.window->contentItem()->update();
                                running.window->update();
                                drawn.wait();
                            }
                            m_device->forgetCalls();
                            return mallinfo2().uordblks;
                        };
                        const auto early = qint64(changes(100));
                        const auto late = qint64(changes(900));
                        QVERIFY2(std::abs(late - early) <= 256 * 1024,
                                 QByteArray::number(late - early).constData());
                        // Ten pictures of 300 x 400 bytes, each once, and none of them given up.
                        const QByteArray log = m_log->text();
                        QCOMPARE(log.count("add image"), 10);
                        QCOMPARE(log.count("remove image"), 0);
                        QVERIFY(log.mid(log.lastIndexOf("add image")).contains(" ram(1200000/"));
                    }),
             0);
}

PANEL_TEST_MAIN(tst_PicturesOnScreen)
#include "tst_pictures_on_screen.moc"
