// From a picture to the panel file: levels, turning, header.

#include <light.h>
#include <panel.h>
#include <turning.h>

#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;
using lindenreed::device::Light;
using lindenreed::device::Panel;
using lindenreed::device::Profile;
using lindenreed::device::RefreshMode;
using lindenreed::device::Screen;
using lindenreed::device::Tones;
using lindenreed::device::toneTable;
using lindenreed::device::ToneTable;
using lindenreed::device::Turning;

namespace {

Profile smallProfile(int colourMask, int levels)
{
    Profile profile;
    profile.panelSize = QSize(70, 130); // more than one square of tiles each way
    profile.colourMask = colourMask;
    profile.levels = levels;
    profile.statusHeight = 8;
    return profile;
}

/// A picture in which every pixel tells its place.
QImage numbered(const QSize &size, QImage::Format format)
{
    QImage picture(size, format);
    for (int y = 0; y < size.height(); ++y) {
        for (int x = 0; x < size.width(); ++x) {
            if (format == QImage::Format_Grayscale8)
                picture.scanLine(y)[x] = uchar((x * 7 + y * 31) % 256);
            else
                picture.setPixel(x, y, qRgb(x, y, (x + y) % 256));
        }
    }
    return picture;
}

} // namespace

class tst_Panel : public QObject
{
    Q_OBJECT

private slots:
    void multiplesOf17PassUnchanged();
    void nearestOfSixteenLevels();
    void invertedTableIsTurnedRound();
    void allLevelsPassUnchanged();
    void twoLevels();
    void corners_data();
    void corners();
    void rectangles();
    void copies_data();
    void copies();
    void opposites();
    void partOfAPicture();
    void twoTones();
    void inverted();
    void header();
};

void tst_Panel::multiplesOf17PassUnchanged()
{
    const ToneTable table = toneTable(16, false);
    for (int step = 0; step < 16; ++step)
        QCOMPARE(int(table[std::size_t(step * 17)]), step * 17);
}

void tst_Panel::nearestOfSixteenLevels()
{
    const ToneTable table = toneTable(16, false);
    for (int grey = 0; grey < 256; ++grey) {
        const int shown = table[std::size_t(grey)];
        QCOMPARE(shown % 17, 0);
        QVERIFY2(qAbs(shown - grey) <= 8, qPrintable(QString::number(grey)));
    }
}

void tst_Panel::invertedTableIsTurnedRound()
{
    const ToneTable plain = toneTable(16, false);
    const ToneTable inverted = toneTable(16, true);
    QCOMPARE(int(inverted[0]), 255);
    QCOMPARE(int(inverted[255]), 0);
    for (std::size_t grey = 0; grey < 256; ++grey)
        QCOMPARE(inverted[grey], plain[255 - grey]);
}

void tst_Panel::allLevelsPassUnchanged()
{
    const ToneTable table = toneTable(256, false);
    for (int grey = 0; grey < 256; ++grey)
        QCOMPARE(int(table[std::size_t(grey)]), grey);
}

void tst_Panel::twoLevels()
{
    const ToneTable table = toneTable(2, false);
    QCOMPARE(int(table[127]), 0);
    QCOMPARE(int(table[128]), 255);
}

void tst_Panel::corners_data()
{
    QTest::addColumn<int>("orientation");
    QTest::addColumn<QSize>("screen");
    QTest::addColumn<QPoint>("topLeft");
    QTest::addColumn<QPoint>("topRight");
    QTest::newRow("upright") << 0 << QSize(70, 130) << QPoint(0, 0) << QPoint(69, 0);
    QTest::newRow("clockwise by 90: the top lies at the right")
        << 1 << QSize(130, 70) << QPoint(69, 0) << QPoint(69, 129);
    QTest::newRow("clockwise by 270: the top lies at the left")
        << 2 << QSize(130, 70) << QPoint(0, 129) << QPoint(0, 0);
    QTest::newRow("upside down") << 3 << QSize(70, 130) << QPoint(69, 129) << QPoint(0, 129);
}

void tst_Panel::corners()
{
    QFETCH(int, orientation);
    QFETCH(QSize, screen);
    const Turning turning(QSize(70, 130), orientation);
    QCOMPARE(turning.screenSize(), screen);
    QTEST(turning.toPanel(QPoint(0, 0)), "topLeft");
    QTEST(turning.toPanel(QPoint(screen.width() - 1, 0)), "topRight");
    QCOMPARE(turning.toPanel(QRect(QPoint(0, 0), screen)), QRect(0, 0, 70, 130));
}

void tst_Panel::rectangles()
{
    const QRect area(1, 2, 10, 20);
    const QSize glass(70, 130);
    QCOMPARE(Turning(glass, 0).toPanel(area), area);
    QCOMPARE(Turning(glass, 1).toPanel(area), QRect(70 - 2 - 20, 1, 20, 10));
    QCOMPARE(Turning(glass, 2).toPanel(area), QRect(2, 130 - 1 - 10, 20, 10));
    QCOMPARE(Turning(glass, 3).toPanel(area), QRect(70 - 1 - 10, 130 - 2 - 20, 10, 20));
    QVERIFY(Turning(glass, 1).toPanel(QRect()).isEmpty());
}

void tst_Panel::copies_data()
{
    QTest::addColumn<int>("colourMask");
    QTest::addColumn<int>("levels");
    QTest::addColumn<int>("orientation");
    for (const int orientation : {0, 1, 2, 3}) {
        QTest::addRow("grey, 16 levels, orientation %d", orientation) << 0 << 16 << orientation;
        QTest::addRow("grey, 256 levels, orientation %d", orientation) << 0 << 256 << orientation;
        QTest::addRow("colour, 256 levels, orientation %d", orientation) << 1 << 256 << orientation;
        QTest::addRow("colour, 16 levels, orientation %d", orientation) << 1 << 16 << orientation;
    }
}

void tst_Panel::copies()
{
    QFETCH(int, colourMask);
    QFETCH(int, levels);
    QFETCH(int, orientation);
    const QTemporaryDir folder;
    QString error;
    const auto panel = Panel::create(smallProfile(colourMask, levels), folder.filePath(u"panel"_s), &error);
    QVERIFY2(panel, qPrintable(error));
    Screen screen(smallProfile(colourMask, levels));
    screen.setOrientation(orientation);
    const Light light;
    panel->setOrientation(orientation);
    const QImage picture = numbered(screen.size(), panel->pictureFormat());

    panel->begin();
    panel->describe(screen, light);
    panel->copy(picture, QPoint(0, 0), picture.rect(), Tones::All);
    QCOMPARE(panel->finish(RefreshMode::Full, picture.rect()), 1U);

    const auto snapshot = lindenreed::remote::readPanel(folder.filePath(u"panel"_s), &error);
    QVERIFY2(snapshot, qPrintable(error));
    const QImage upright = snapshot->upright();
    QCOMPARE(upright.size(), picture.size());
    const ToneTable table = toneTable(levels, false);
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            const QRgb drawn = picture.pixel(x, y);
            const QRgb expected = qRgb(table[std::size_t(qRed(drawn))], table[std::size_t(qGreen(drawn))],
                                       table[std::size_t(qBlue(drawn))]);
            if (upright.pixel(x, y) != expected)
                QFAIL(qPrintable(u"at %1, %2"_s.arg(x).arg(y)));
        }
    }
}

void tst_Panel::opposites()
{
    const QTemporaryDir folder;
    QString error;
    const Profile profile = smallProfile(0, 16);
    const auto panel = Panel::create(profile, folder.filePath(u"panel"_s), &error);
    QVERIFY2(panel, qPrintable(error));
    QList<QImage> glass;
    for (const int orientation : {0, 1, 2, 3}) {
        panel->setOrientation(orientation);
        const QImage picture = numbered(panel->turning().screenSize(), panel->pictureFormat());
        panel->begin();
        panel->copy(picture, QPoint(0, 0), picture.rect(), Tones::All);
        panel->finish(RefreshMode::Full, picture.rect());
        glass.append(lindenreed::remote::readPanel(folder.filePath(u"panel"_s), &error)->glass);
    }
    QCOMPARE(glass.at(3), glass.at(0).mirrored(true, true)); // 180 is 0 turned
    QCOMPARE(glass.at(2), glass.at(1).mirrored(true, true)); // 270 is 90 turned
    const QImage sideways = numbered(QSize(130, 70), QImage::Format_Grayscale8);
    QImage turned = sideways.transformed(QTransform().rotate(90)); // clockwise
    const ToneTable table = toneTable(16, false);
    for (int y = 0; y < turned.height(); ++y) {
        for (int x = 0; x < turned.width(); ++x)
            turned.scanLine(y)[x] = table[turned.constScanLine(y)[x]];
    }
    QCOMPARE(glass.at(1), turned.convertToFormat(QImage::Format_Grayscale8));
}

void tst_Panel::partOfAPicture()
{
    const QTemporaryDir folder;
    QString error;
    const auto panel = Panel::create(smallProfile(0, 256), folder.filePath(u"panel"_s), &error);
    QVERIFY2(panel, qPrintable(error));
    panel->setOrientation(1);
    const QImage picture = numbered(QSize(100, 60), QImage::Format_Grayscale8);
    const QPoint origin(20, 8);
    const QRect area(30, 10, 5, 3);
    panel->begin();
    panel->fill(QRect(0, 0, 130, 70));
    panel->copy(picture, origin, area, Tones::All);
    panel->finish(RefreshMode::Partial, area);

    const auto snapshot = lindenreed::remote::readPanel(folder.filePath(u"panel"_s), &error);
    const QImage upright = snapshot->glass.transformed(QTransform().rotate(270));
    for (int y = 0; y < 70; ++y) {
        for (int x = 0; x < 130; ++x) {
            const int expected = area.contains(x, y) ? qGray(picture.pixel(QPoint(x, y) - origin)) : 255;
            QCOMPARE(qGray(upright.pixel(x, y)), expected);
        }
    }
    QCOMPARE(snapshot->header.x, 70 - 10 - 3);
    QCOMPARE(snapshot->header.y, 30);
    QCOMPARE(snapshot->header.refreshWidth, 3);
    QCOMPARE(snapshot->header.refreshHeight, 5);
}

void tst_Panel::twoTones()
{
    for (const int colourMask : {0, 1}) {
        const QTemporaryDir folder;
        QString error;
        const auto panel = Panel::create(smallProfile(colourMask, 16), folder.filePath(u"panel"_s), &error);
        QVERIFY2(panel, qPrintable(error));
        const QImage picture = numbered(QSize(70, 130), panel->pictureFormat());
        panel->begin();
        panel->copy(picture, QPoint(0, 0), picture.rect(), Tones::Two);
        panel->finish(RefreshMode::Fast, picture.rect());
        const QImage glass = lindenreed::remote::readPanel(folder.filePath(u"panel"_s), &error)->glass;
        for (int y = 0; y < 130; ++y) {
            for (int x = 0; x < 70; ++x) {
                const QRgb expected = qGray(picture.pixel(x, y)) < 128 ? qRgb(0, 0, 0) : qRgb(255, 255, 255);
                QCOMPARE(glass.pixel(x, y), expected);
            }
        }
    }
}

void tst_Panel::inverted()
{
    const QTemporaryDir folder;
    QString error;
    const auto panel = Panel::create(smallProfile(0, 16), folder.filePath(u"panel"_s), &error);
    QVERIFY2(panel, qPrintable(error));
    panel->setInverted(true);
    QImage picture(70, 100, QImage::Format_Grayscale8);
    picture.fill(0x33);
    panel->begin();
    panel->copy(picture, QPoint(0, 0), picture.rect(), Tones::All);
    panel->fill(QRect(0, 100, 70, 30));
    panel->finish(RefreshMode::Full, QRect(0, 0, 70, 130));
    const QImage glass = lindenreed::remote::readPanel(folder.filePath(u"panel"_s), &error)->glass;
    QCOMPARE(qGray(glass.pixel(5, 5)), 0xcc);
    QCOMPARE(qGray(glass.pixel(5, 120)), 0); // paper
}

void tst_Panel::header()
{
    const QTemporaryDir folder;
    QString error;
    const Profile profile = smallProfile(0, 16);
    const auto panel = Panel::create(profile, folder.filePath(u"panel"_s), &error);
    QVERIFY2(panel, qPrintable(error));
    const auto header
        = [&] { return lindenreed::remote::readPanel(folder.filePath(u"panel"_s), &error)->header; };
    QCOMPARE(header().refreshNumber, 0U);

    Screen screen(profile);
    Light light;
    light.setBrightness(30);
    light.setColour(70);
    light.setEnabled(false);
    screen.setInverted(true);
    screen.setPanelType(0);
    panel->begin();
    panel->describe(screen, light);
    panel->end();
    QCOMPARE(header().flags, 1U);
    QCOMPARE(header().brightness, 30U);
    QCOMPARE(header().colour, 70U);
    QCOMPARE(header().refreshNumber, 0U);

    screen.setInverted(false);
    screen.setPanelType(1);
    light.setEnabled(true);
    panel->setOrientation(2);
    panel->begin();
    panel->describe(screen, light);
    panel->finish(RefreshMode::Fast, QRect(0, 0, 4, 4));
    QCOMPARE(header().flags, 6U);
    QCOMPARE(header().orientation, 2U);
    QCOMPARE(header().refreshNumber, 1U);
    QCOMPARE(header().refreshMode, 2U);

    panel->begin();
    panel->describe(screen, Light(QString(), false)); // a device without a light
    panel->end();
    QCOMPARE(header().flags, 2U);
    QCOMPARE(header().brightness, 0U);
    QCOMPARE(header().colour, 0U);
}

QTEST_GUILESS_MAIN(tst_Panel)
#include "tst_panel.moc"
