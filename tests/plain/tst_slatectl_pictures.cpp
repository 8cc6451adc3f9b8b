// slatectl: the panel as a PNG, PGM or PPM, made by the client alone.

#include "panel_file.h"
#include "slatectl_place.h"

#include <QFile>
#include <QFileInfo>
#include <QImage>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>
#include <array>

#include <fcntl.h>
#include <sys/stat.h>

using namespace Qt::StringLiterals;
using namespace lindenreed::remote;

class tst_SlatectlPictures : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void screenshot_data();
    void screenshot();
    void screenshotWithoutDevice();
    void screenshotWithoutPanel();
    void screenshotThatCannotBeWritten();
    void screenshotIntoPipe();

    void frame_data();
    void frame();
    void frameIsNotTurned();
    void frameInColour();
    void frameOutside_data();
    void frameOutside();
    void frameWithoutDevice();
    void frameWithoutPanel();
    void frameThatCannotBeWritten();

private:
    std::unique_ptr<PanelWriter> makePanel(bool colour = false) const
    {
        return PanelWriter::create({.size = {30, 20}, .colour = colour}, m_place->runFolder() + u"/panel"_s,
                                   nullptr);
    }

    std::unique_ptr<SlatectlPlace> m_place;
    std::unique_ptr<ControlServer> m_server; ///< knows no command: whoever asks it fails
};

void tst_SlatectlPictures::init()
{
    m_place = std::make_unique<SlatectlPlace>();
    m_server = std::make_unique<ControlServer>();
    QVERIFY(m_server->listen(m_place->runFolder() + u"/control"_s, nullptr));
}

void tst_SlatectlPictures::cleanup()
{
    m_server.reset();
    m_place.reset();
}

void tst_SlatectlPictures::screenshot_data()
{
    QTest::addColumn<int>("orientation");
    QTest::addColumn<QSize>("size");
    QTest::addColumn<QPoint>("dark"); ///< where the glass's top left pixel is for the user

    QTest::newRow("not turned") << 0 << QSize(30, 20) << QPoint(0, 0);
    QTest::newRow("turned by 90 degrees") << 1 << QSize(20, 30) << QPoint(0, 29);
    QTest::newRow("turned by 270 degrees") << 2 << QSize(20, 30) << QPoint(19, 0);
    QTest::newRow("turned by 180 degrees") << 3 << QSize(30, 20) << QPoint(29, 19);
}

void tst_SlatectlPictures::screenshot()
{
    QFETCH(int, orientation);
    QFETCH(QSize, size);
    QFETCH(QPoint, dark);

    const auto writer = makePanel();
    QVERIFY(writer);
    writer->beginWrite();
    writer->header().orientation = std::uint32_t(orientation);
    writer->pixels()[0] = 17;
    writer->endWrite();

    const QString file = m_place->path(u"picture without a suffix"_s);
    const SlatectlOutcome outcome = SlatectlPlace::run({u"screenshot"_s, file});
    QCOMPARE(outcome.errors, QByteArray());
    QCOMPARE(outcome.status, 0);
    const QJsonObject told = QJsonDocument::fromJson(outcome.output).object();
    QCOMPARE(told,
             (QJsonObject{{u"file"_s, file}, {u"width"_s, size.width()}, {u"height"_s, size.height()}}));

    const QImage picture(file, "png");
    QCOMPARE(picture.size(), size);
    for (int y = 0; y < size.height(); ++y) {
        for (int x = 0; x < size.width(); ++x)
            QCOMPARE(qGray(picture.pixel(x, y)), QPoint(x, y) == dark ? 17 : 255);
    }
}

void tst_SlatectlPictures::screenshotWithoutDevice()
{
    const auto writer = makePanel();
    m_server.reset(); // the panel that a killed device leaves behind shows nothing that is
    const QString file = m_place->path(u"a.png"_s);
    QCOMPARE(SlatectlPlace::run({u"screenshot"_s, file}).status, 2);
    QVERIFY(!QFile::exists(file));
}

void tst_SlatectlPictures::screenshotWithoutPanel()
{
    const QString file = m_place->path(u"a.png"_s);
    const SlatectlOutcome outcome = SlatectlPlace::run({u"screenshot"_s, file});
    QCOMPARE(outcome.status, 2);
    QCOMPARE(outcome.errors.count('\n'), 1);
    QVERIFY(!QFile::exists(file));
}

void tst_SlatectlPictures::screenshotThatCannotBeWritten()
{
    const auto writer = makePanel();
    QVERIFY(writer);
    const QString file = m_place->path(u"none/a.png"_s);
    const SlatectlOutcome outcome = SlatectlPlace::run({u"screenshot"_s, file});
    QCOMPARE(outcome.status, 2);
    QCOMPARE(outcome.output, QByteArray());
    QCOMPARE(outcome.errors.count('\n'), 1);
    QVERIFY2(outcome.errors.contains(QFile::encodeName(file)), outcome.errors.constData());
}

void tst_SlatectlPictures::screenshotIntoPipe()
{
    // Nothing takes the place of what is no file.
    const auto writer = makePanel();
    const QString pipe = m_place->path(u"pipe"_s);
    QCOMPARE(::mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
    const int descriptor = ::open(QFile::encodeName(pipe).constData(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    QFile reader;
    QVERIFY(reader.open(descriptor, QIODevice::ReadOnly, QFileDevice::AutoCloseHandle));
    const SlatectlOutcome outcome = SlatectlPlace::run({u"screenshot"_s, pipe});
    QCOMPARE(outcome.errors, QByteArray());
    QCOMPARE(outcome.status, 0);
    QCOMPARE(QImage::fromData(reader.readAll(), "png").size(), QSize(30, 20));
    QVERIFY(!QFileInfo(pipe).isFile());
}

void tst_SlatectlPictures::frame_data()
{
    QTest::addColumn<QStringList>("words");
    QTest::addColumn<QRect>("area");

    QTest::newRow("all of it") << QStringList() << QRect(0, 0, 30, 20);
    QTest::newRow("all of it, named") << QStringList{u"0"_s, u"0"_s, u"30"_s, u"20"_s} << QRect(0, 0, 30, 20);
    QTest::newRow("a part") << QStringList{u"3"_s, u"4"_s, u"5"_s, u"6"_s} << QRect(3, 4, 5, 6);
    QTest::newRow("the last pixel") << QStringList{u"29"_s, u"19"_s, u"1"_s, u"1"_s} << QRect(29, 19, 1, 1);
}

void tst_SlatectlPictures::frame()
{
    QFETCH(QStringList, words);
    QFETCH(QRect, area);

    const auto writer = makePanel();
    const auto grey = [](int x, int y) { return char(y * 11 + x); };
    for (int y = 0; y < 20; ++y) {
        for (int x = 0; x < 30; ++x)
            writer->pixels()[std::size_t(y) * writer->stride() + std::size_t(x)] = std::uint8_t(grey(x, y));
    }
    QByteArray expected
        = "P5\n" + QByteArray::number(area.width()) + ' ' + QByteArray::number(area.height()) + "\n255\n";
    for (int y = area.top(); y <= area.bottom(); ++y) {
        for (int x = area.left(); x <= area.right(); ++x)
            expected += grey(x, y);
    }

    const SlatectlOutcome outcome = SlatectlPlace::run(QStringList{u"frame"_s} + words);
    QCOMPARE(outcome.errors, QByteArray());
    QCOMPARE(outcome.status, 0);
    QCOMPARE(outcome.output, expected);
}

void tst_SlatectlPictures::frameIsNotTurned()
{
    const auto writer = makePanel();
    writer->header().orientation = 1;
    const QByteArray output = SlatectlPlace::run({u"frame"_s}).output;
    QVERIFY2(output.startsWith("P5\n30 20\n255\n"), output.left(20).constData());
}

void tst_SlatectlPictures::frameInColour()
{
    const auto writer = makePanel(true);
    const std::array<std::uint8_t, 6> bytes{1, 2, 3, 4, 5, 6};
    std::copy(bytes.begin(), bytes.end(), writer->pixels() + writer->stride() * 2 + 3);
    QCOMPARE(SlatectlPlace::run({u"frame"_s, u"1"_s, u"2"_s, u"2"_s, u"1"_s}).output,
             QByteArray("P6\n2 1\n255\n\1\2\3\4\5\6"));
}

void tst_SlatectlPictures::frameOutside_data()
{
    QTest::addColumn<QStringList>("words");

    QTest::newRow("left of it") << QStringList{u"-1"_s, u"0"_s, u"5"_s, u"5"_s};
    QTest::newRow("above it") << QStringList{u"0"_s, u"-1"_s, u"5"_s, u"5"_s};
    QTest::newRow("one column too wide") << QStringList{u"1"_s, u"0"_s, u"30"_s, u"5"_s};
    QTest::newRow("one row too high") << QStringList{u"0"_s, u"1"_s, u"5"_s, u"20"_s};
    QTest::newRow("far away") << QStringList{u"2147483647"_s, u"0"_s, u"2147483647"_s, u"1"_s};
}

void tst_SlatectlPictures::frameOutside()
{
    QFETCH(QStringList, words);

    const auto writer = makePanel();
    const SlatectlOutcome outcome = SlatectlPlace::run(QStringList{u"frame"_s} + words);
    QCOMPARE(outcome.status, 1); // as a tap outside the screen
    QCOMPARE(outcome.output, QByteArray());
    QCOMPARE(
        outcome.errors,
        QByteArray(
            "slatectl: bad-argument: The rectangle is not within the panel, which has 30 by 20 pixels.\n"));
}

void tst_SlatectlPictures::frameWithoutDevice()
{
    const auto writer = makePanel();
    m_server.reset();
    const SlatectlOutcome outcome = SlatectlPlace::run({u"frame"_s});
    QCOMPARE(outcome.status, 2);
    QCOMPARE(outcome.output, QByteArray());
}

void tst_SlatectlPictures::frameWithoutPanel()
{
    const SlatectlOutcome outcome = SlatectlPlace::run({u"frame"_s});
    QCOMPARE(outcome.status, 2);
    QCOMPARE(outcome.output, QByteArray());
    QCOMPARE(outcome.errors.count('\n'), 1);
}

void tst_SlatectlPictures::frameThatCannotBeWritten()
{
    const auto writer = makePanel();
    QProcess program;
    program.setStandardOutputFile(u"/dev/full"_s);
    program.start(SlatectlPlace::program(), {u"frame"_s});
    QTRY_COMPARE(program.state(), QProcess::NotRunning);
    QCOMPARE(program.exitCode(), 2);
    QCOMPARE(program.readAllStandardError(),
             QByteArray("slatectl: The frame cannot be written: No space left on device.\n"));
}

QTEST_GUILESS_MAIN(tst_SlatectlPictures)
#include "tst_slatectl_pictures.moc"
