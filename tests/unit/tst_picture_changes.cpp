// Picture files that change under their readers, at every call that these make for them.

#include "file_calls.h"
#include "finished_cover.h"
#include "panel_application.h"
#include "picture_show_test.h"

#include "created_date.h"
#include "picture_reader.h"
#include "resource_image_provider.h"

#include <QDir>

#include <functional>

#include <sys/stat.h>

namespace {

using Change = std::function<void(const QByteArray &)>;
using Reader = std::function<QImage(const QString &)>;

constexpr QSize pictureSize(200, 150);

QImage noise(QSize size)
{
    QImage picture(size, QImage::Format_RGB32);
    for (int y = 0; y < size.height(); ++y) {
        for (int x = 0; x < size.width(); ++x)
            picture.setPixel(x, y, qRgb(x * 37 ^ y * 11, x * 5 ^ y * 71, x * y));
    }
    return picture;
}

void become(const QByteArray &path, const QByteArray &contents)
{
    write(path + ".new", contents);
    std::rename((path + ".new").constData(), path.constData());
}

const QList<std::pair<const char *, Change>> &changes()
{
    static const QByteArray other = encoded(noise({90, 60}), "BMP");
    static const QList<std::pair<const char *, Change>> all{
        {"vanishes", [](const QByteArray &path) { ::unlink(path.constData()); }},
        {"is emptied", [](const QByteArray &path) { write(path, {}); }},
        {"shrinks",
         [](const QByteArray &path) {
             QFile file(QFile::decodeName(path));
             file.resize(file.size() / 2);
         }},
        {"grows",
         [](const QByteArray &path) {
             QFile file(QFile::decodeName(path));
             if (file.open(QIODevice::Append))
                 file.write(QByteArray(500'000, '\x55'));
         }},
        {"is overwritten", [](const QByteArray &path) { write(path, other); }},
        {"becomes another picture", [](const QByteArray &path) { become(path, other); }},
        {"becomes a text", [](const QByteArray &path) { become(path, "no picture at all\n"); }},
        {"becomes a folder",
         [](const QByteArray &path) {
             ::unlink(path.constData());
             ::mkdir(path.constData(), 0700);
         }},
        {"becomes a FIFO", // opening it would wait for ever
         [](const QByteArray &path) {
             ::unlink(path.constData());
             ::mkfifo(path.constData(), 0600);
         }},
        {"becomes a device", // reading it would never end
         [](const QByteArray &path) {
             ::unlink(path.constData());
             QFile::link(u"/dev/zero"_s, QFile::decodeName(path));
         }},
    };
    return all;
}

} // namespace

class tst_PictureChanges : public PictureShowTest
{
    Q_OBJECT

private slots:
    void initTestCase() { stored_database::remove(); }
    void init() { begin(); }
    void cleanup() { end(); }
    void cleanupTestCase() { qInfo("%d changes and errors", m_changes); }

    void whileItIsRead_data();
    void whileItIsRead();
    void readsThatFail_data() { addReaders(); }
    void readsThatFail();
    void pulledOutAndPutBack_data();
    void pulledOutAndPutBack();
    void onTheWayToTheScreen_data();
    void onTheWayToTheScreen();

private:
    static void addReaders();
    int m_changes = 0;
};

void tst_PictureChanges::addReaders()
{
    QTest::addColumn<Reader>("reader");

    QTest::newRow("show") << Reader(
        [](const QString &path) { return lindenreed::picture_stand::readImage(path).value_or(QImage()); });
    QTest::newRow("thumbnail") << Reader([](const QString &path) { return cover(path, {120, 90}); });
    QTest::newRow("date") << Reader([](const QString &path) {
        lindenreed::picture_stand::createdDate(path);
        return QImage();
    });
}

void tst_PictureChanges::whileItIsRead_data()
{
    addReaders();
}

void tst_PictureChanges::whileItIsRead()
{
    QFETCH(Reader, reader);

    const QList<QSize> possible{{}, pictureSize, QSize(90, 60), QSize(120, 90), QSize(120, 80), QSize(0, 0)};
    int file = 0;
    for (const char *format : {"JPEG", "PNG", "BMP", "TIFF"}) {
        const QByteArray whole = encoded(noise(pictureSize), format);
        for (const auto &[name, change] : changes()) {
            int count = 0;
            for (int number = 0; number <= count; ++number) {
                const QByteArray path = QFile::encodeName(m_folder->filePath(QString::number(++file)));
                QVERIFY(write(path, whole));
                count = 0;
                QImage picture;
                {
                    const FileCalls calls(path, [&, &itsChange = change](FileCall &) {
                        if (count++ == number)
                            itsChange(path);
                    });
                    picture = reader(QFile::decodeName(path));
                }
                QVERIFY2(possible.contains(picture.size()),
                         QByteArray(format) + ' ' + name + " at call " + QByteArray::number(number));
                m_changes += count > number ? 1 : 0;
            }
            QVERIFY(count >= 3); // a look, opening and reading
        }
    }
}

void tst_PictureChanges::readsThatFail()
{
    QFETCH(Reader, reader);

    int file = 0;
    for (const char *format : {"JPEG", "PNG", "BMP", "TIFF"}) {
        const QByteArray whole = encoded(noise(pictureSize), format);
        for (const int error : {EIO, EMFILE, ESTALE}) {
            int count = 0;
            for (int number = 0; number <= count; ++number) {
                const QByteArray path = QFile::encodeName(m_folder->filePath(u"e%1"_s.arg(++file)));
                QVERIFY(write(path, whole));
                count = 0;
                const FileCalls calls(path,
                                      [&](FileCall &call) { call.error = count++ == number ? error : 0; });
                reader(QFile::decodeName(path));
                m_changes += count > number ? 1 : 0;
            }
        }
    }
}

void tst_PictureChanges::pulledOutAndPutBack_data()
{
    QTest::addColumn<int>("calls");

    QTest::newRow("after it was given up") << 0;
    QTest::newRow("before the next call") << 1;
    QTest::newRow("before the one behind it") << 2;
    QTest::newRow("a while later") << 5;
}

/// A card, at each call for a picture on it: reading fails from then on. When it is back, which gives the
/// name to another file, so is the picture.
void tst_PictureChanges::pulledOutAndPutBack()
{
    QFETCH(int, calls);

    constexpr QSize box(120, 90);
    lindenreed::picture_stand::ResourceImageProvider provider;
    const auto shown = [&](const QByteArray &path) {
        QSize size;
        return provider.requestImage(QFile::decodeName(path), &size, box);
    };
    const auto thumbnail = [&](const QByteArray &path) { return cover(QFile::decodeName(path), box); };
    const auto nameOf = [this](const QString &name) { return QFile::encodeName(m_folder->filePath(name)); };
    int file = 0;
    for (const char *format : {"JPEG", "PNG", "BMP", "TIFF"}) {
        const QByteArray whole = encoded(noise(pictureSize), format);
        QVERIFY(write(nameOf(u"whole"_s + QLatin1String(format)), whole));
        for (const auto &look : {std::function<QImage(const QByteArray &)>(shown), {thumbnail}}) {
            const QImage expected = look(nameOf(u"whole"_s + QLatin1String(format)));
            QVERIFY(!expected.isNull());
            int count = 0;
            for (int number = 0; number <= count; ++number) {
                const QByteArray path = nameOf(u"card %1"_s.arg(++file));
                QVERIFY(write(path, whole));
                count = 0;
                {
                    const FileCalls hook(path, [&](FileCall &call) {
                        if (count == number)
                            std::rename(path.constData(), (path + ".out").constData());
                        const bool isBack = calls > 0 && count >= number + calls;
                        if (isBack && !QFile::exists(QFile::decodeName(path)))
                            write(path, whole);
                        if (count++ >= number && (!isBack || QByteArrayView(call.path).endsWith(".out")))
                            call.error = EIO;
                    });
                    look(path);
                }
                m_changes += count > number ? 1 : 0;
                if (!QFile::exists(QFile::decodeName(path)))
                    std::rename((path + ".out").constData(), path.constData());
                QVERIFY2(look(path) == expected,
                         QByteArray(format) + " at call " + QByteArray::number(number));
            }
        }
    }
}

void tst_PictureChanges::onTheWayToTheScreen_data()
{
    QTest::addColumn<int>("moment");

    QTest::newRow("after the listing") << 0;
    QTest::newRow("after its date was read") << 1;
    QTest::newRow("after it was read ahead") << 2;
}

/// In one show all changes, each with a picture behind it that stays.
void tst_PictureChanges::onTheWayToTheScreen()
{
    QFETCH(int, moment);

    QStringList paths;
    for (int i = 0; i < 2 * changes().size() + 2; ++i) {
        paths.append(m_folder->filePath(u"%1.jpg"_s.arg(i)));
        QVERIFY(write(QFile::encodeName(paths.last()), encoded(noise(pictureSize), "PNG")));
    }
    const auto changeAll = [&] {
        for (int i = 0; i < changes().size(); ++i)
            changes().at(i).second(QFile::encodeName(paths.at(2 * i + 1)));
    };
    App app;
    QCOMPARE(runApp(app,
                    [&](RunningApp &running) {
                        running.slideshow()->initFromList(paths, 30);
                        for (int i = 0; moment == 1 && i < changes().size(); ++i) {
                            running.slideshow()->setCurrentFile(paths.at(2 * i + 1));
                            QVERIFY(running.slideshow()->createdDateTime().isValid());
                        }
                        if (moment <= 1)
                            changeAll();
                        running.slideshow()->setCurrentFile(paths.first());
                        app.changeView(u"slideshow"_s);
                        emit running.slideshow()->loadToCache(paths, 0);
                        QThreadPool::globalInstance()->waitForDone();
                        QVERIFY(m_log->text().contains("/1.jpg size("));
                        if (moment == 2)
                            changeAll();
                        for (int i = 0; i < changes().size(); ++i) {
                            const QByteArray name = changes().at(i).first;
                            QVERIFY(m_device->fire("nextImageEvent"));
                            QCOMPARE(running.slideshow()->currentImage(), paths.at(2 * i + 1));
                            const bool shown = moment == 2 || name.endsWith("picture")
                                || name == "is overwritten" || name == "grows";
                            if (name != "shrinks" || moment == 2) // else black, or what is left
                                QVERIFY2(status(running) == (shown ? Ready : Error), name);
                            running.slideshow()->createdDateTime();
                            QVERIFY(m_device->fire("nextImageEvent")); // and the show goes on
                            QCOMPARE(running.slideshow()->currentImage(), paths.at(2 * i + 2));
                            QCOMPARE(status(running), int(Ready));
                            ++m_changes;
                        }
                    }),
             0);
}

PANEL_TEST_MAIN(tst_PictureChanges)
#include "tst_picture_changes.moc"
