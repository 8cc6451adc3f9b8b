// Damaged and hostile pictures on the real program, which has 512 MiB: each full screen and as a thumbnail.

#include "hostile_bombs.h"
#include "hostile_mutations.h"
#include "process_memory.h"
#include "show_device.h"
#include "stored_database.h"

#include <QDir>
#include <QElapsedTimer>
#include <QGuiApplication>
#include <QJsonDocument>
#include <QProcessEnvironment>
#include <QSet>
#include <QTemporaryDir>

#include <algorithm>
#include <memory>

#include <sys/inotify.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

const QString folder = u"/mnt/ext1/Photo/hostile"_s;
constexpr qint64 mostMemory = 512 * 1024 * 1024;

/// What is opened in the folder.
class OpenedFiles
{
public:
    OpenedFiles()
        : m_watch(::inotify_init1(IN_NONBLOCK | IN_CLOEXEC))
    {
        ::inotify_add_watch(m_watch, folder.toUtf8().constData(), IN_OPEN);
    }
    ~OpenedFiles() { ::close(m_watch); }
    OpenedFiles(const OpenedFiles &) = delete;
    OpenedFiles &operator=(const OpenedFiles &) = delete;

    const QSet<QByteArray> &names()
    {
        alignas(inotify_event) char buffer[64 * 1024];
        for (ssize_t size = 0; (size = ::read(m_watch, buffer, sizeof buffer)) > 0;) {
            for (const char *at = buffer; at < buffer + size;) {
                const auto *const event = static_cast<const inotify_event *>(static_cast<const void *>(at));
                if (event->len > 0)
                    m_names.insert(event->name);
                at += sizeof(inotify_event) + event->len;
            }
        }
        return m_names;
    }

private:
    int m_watch;
    QSet<QByteArray> m_names;
};

} // namespace

class tst_HostilePictures : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();
    void fullScreen();
    void thumbnails();

private:
    bool isReading() const;
    void tellMemory() const;

    QTemporaryDir m_said;
    QByteArrayList m_names;
    std::unique_ptr<ShowDevice> m_device;
};

void tst_HostilePictures::initTestCase()
{
    const bool isLong = qEnvironmentVariableIsSet("SLATE_LONG");
    QDir(folder).removeRecursively();
    QVERIFY(QDir().mkpath(folder));
    QCOMPARE(::mkfifo((folder.toUtf8() + "/pipe").constData(), 0600), 0);
    hostile::Pictures pictures = hostile::damagedPictures(isLong ? 21 : 1);
    const hostile::Pictures bombs = hostile::svgBombs(folder.toUtf8()) + hostile::pngBombs()
        + hostile::jpegBombs(hostile::written("jpeg")) + hostile::tiffBombs() + hostile::otherBombs();
    // Seconds each; some are only slow where several wait for one another.
    const QByteArrayList slow{"svg file that blocks.svg",       "svg many pictures.svg", "svg dashes.svg",
                              "svg many elements.svg",          "png texts of 7 GB.png", "svg deep.svg",
                              "svg letters of a kilometre.svg", "png 400 megapixels.png"};
    for (const hostile::Picture &bomb : bombs) {
        if (isLong || !slow.contains(bomb.name))
            pictures.append(bomb);
    }
    if (isLong)
        QVERIFY2(pictures.size() >= 300, qPrintable(QString::number(pictures.size())));

    // The first and the last are the same good one.
    const QByteArray good = hostile::written("png");
    pictures.prepend({" first.png", good});
    pictures.append({"~ last.png", good});
    for (const hostile::Picture &picture : std::as_const(pictures)) {
        QFile file(folder + u'/' + QString::fromUtf8(picture.name));
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write(picture.contents) == picture.contents.size());
        m_names.append(picture.name);
    }
    qInfo("%d pictures", int(pictures.size()));

    stored_database::remove();
    QVERIFY(ShowDevice().start()); // which makes the database
    QStringList statements{u"UPDATE settings SET value = '0' WHERE name = 'is_first_run'"_s,
                           u"DELETE FROM playlist_images"_s};
    for (const QByteArray &name : std::as_const(m_names))
        statements.append(u"INSERT INTO playlist_images (url, playlist) VALUES ('%1/%2', 1)"_s.arg(
            folder, QString::fromUtf8(name)));
    QVERIFY(stored_database::execute(statements));
}

void tst_HostilePictures::init()
{
    m_device = std::make_unique<ShowDevice>();
#ifndef __SANITIZE_ADDRESS__ // whose shadow alone is more
    m_device->program().setChildProcessModifier([] {
        // The limit counts what is reserved for the stacks of threads, too.
        constexpr rlimit stack{1024 * 1024, 1024 * 1024};
        ::setrlimit(RLIMIT_STACK, &stack);
        constexpr rlimit memory{mostMemory, mostMemory};
        ::setrlimit(RLIMIT_DATA, &memory);
    });
#endif
    // A size that nobody has is refused to a decoder, as it would be without the sanitizer.
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(u"ASAN_OPTIONS"_s,
                       environment.value(u"ASAN_OPTIONS"_s) + u":allocator_may_return_null=1"_s);
    m_device->program().setProcessEnvironment(environment);
    // Not a pipe: nobody reads while an answer is awaited.
    m_device->program().setStandardErrorFile(m_said.filePath(u"said"_s));
    QVERIFY(m_device->start());
}

void tst_HostilePictures::cleanup()
{
    if (QFile said(m_said.filePath(u"said"_s)); QTest::currentTestFailed() && said.open(QIODevice::ReadOnly))
        qInfo("%s", said.readAll().right(6000).constData());
    QVERIFY(m_device->does(u"quit"_s));
    // It ends what it is reading.
    QTRY_COMPARE_WITH_TIMEOUT(m_device->program().state(), QProcess::NotRunning, 30'000);
    QCOMPARE(m_device->program().exitStatus(), QProcess::NormalExit);
    QCOMPARE(m_device->program().exitCode(), 0);
    m_device.reset();
}

/// Whether one of the pictures is open.
bool tst_HostilePictures::isReading() const
{
    const QDir handles(u"/proc/%1/fd"_s.arg(m_device->program().processId()));
    const QFileInfoList all = handles.entryInfoList(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot);
    return std::ranges::any_of(
        all, [](const QFileInfo &handle) { return handle.symLinkTarget().startsWith(folder + u'/'); });
}

void tst_HostilePictures::tellMemory() const
{
    const qint64 most = processMemory("VmHWM", m_device->program().processId());
    qInfo("memory at most %lld KiB", most);
#ifndef __SANITIZE_ADDRESS__
    QVERIFY(most > 0 && most < mostMemory / 1024);
#endif
}

void tst_HostilePictures::fullScreen()
{
    QVERIFY(m_device->press(u"#play_button"_s));
    const QImage good = m_device->screenshot();
    qint64 slowest = 0;
    QByteArray slowestName;
    for (qsizetype i = 1; i < m_names.size(); ++i) {
        QElapsedTimer time;
        time.start();
        // The second answer comes when the picture has been decoded: the main thread does it.
        QVERIFY2(m_device->ask(u"fire"_s, {{u"name"_s, u"nextImageEvent"_s}}, 20s).value("ok"_L1).toBool()
                     && m_device->ask(u"state"_s, {}, 20s).value("ok"_L1).toBool(),
                 m_names.at(i).constData());
        if (time.elapsed() > slowest) {
            slowest = time.elapsed();
            slowestName = m_names.at(i);
        }
    }
    QTRY_COMPARE(m_device->screenshot(), good);
    qInfo("slowest: %lld ms, %s", slowest, slowestName.constData());
    tellMemory();
}

void tst_HostilePictures::thumbnails()
{
    OpenedFiles opened;
    QVERIFY(m_device->tap(300, 200));
    QSet<QByteArray> wanted(m_names.cbegin(), m_names.cend());
    const auto isComplete = [&] { return opened.names().contains(wanted); };
    int pages = 1;
    for (; !isComplete(); ++pages) {
        // Those of a page that is turned are made all the same, and in the end all are.
        const QJsonObject answer = m_device->ask(u"press"_s, {{u"name"_s, u"Next page"_s}}, 20s);
        QVERIFY2(answer.value("ok"_L1).toBool(), QJsonDocument(answer).toJson().constData());
        QTRY_VERIFY_WITH_TIMEOUT(!isReading(), 1'200'000);
    }
    QTRY_VERIFY_WITH_TIMEOUT(!isReading(), 1'200'000);
    qInfo("%d pages", pages);
    tellMemory();
}

int main(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen"); // pictures are written here, nothing is shown
    const QGuiApplication application(argc, argv);
    tst_HostilePictures test;
    return QTest::qExec(&test, argc, argv);
}
#include "tst_hostile_pictures.moc"
