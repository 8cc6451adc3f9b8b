// The SDK's operations on texts, theme, fonts, customisation, tasks and the viewer.

#include <slateview.h>
#include <slateview_testing.h>

#include <device.h>

#include <journal_lines.h>

#include <QDir>
#include <QFontDatabase>
#include <QGuiApplication>
#include <QTest>

#include <cstring>

using namespace Qt::StringLiterals;
using namespace lindenreed::device;

class tst_SdkTexts : public QObject
{
    Q_OBJECT

private slots:
    void texts();
    void keyWithoutText();
    void plural();
    void time();
    void timeIsCut_data();
    void timeIsCut();
    void timeWithoutArguments();
    void theme();
    void defaultFont();
    void customisation();
    void noPreviousTask();
    void previousTask_data();
    void previousTask();
    void openBook_data();
    void openBook();
};

void tst_SdkTexts::texts()
{
    DeviceForTest device;
    QCOMPARE(QByteArray(GetLangText("@DefaultPlaylist")), QByteArray("Photos"));
    QCOMPARE(journalLines(device), QByteArrayList({"GetLangText(@DefaultPlaylist) = Photos"}));
}

void tst_SdkTexts::keyWithoutText()
{
    DeviceForTest device;
    const char title[] = "Garden";
    QVERIFY(GetLangText(title) == title); // the caller's own pointer
    QVERIFY(GetLangTextPlural(title, 2) == title);
    QVERIFY(!GetLangText(nullptr));
    QVERIFY(!GetLangTextPlural(nullptr, 2));
    QCOMPARE(journalLines(device),
             QByteArrayList({"GetLangText(Garden) = Garden", "GetLangTextPlural(Garden, 2) = Garden",
                             "GetLangText(null) = null", "GetLangTextPlural(null, 2) = null"}));
}

void tst_SdkTexts::plural()
{
    DeviceForTest device;
    QCOMPARE(QByteArray(GetLangTextPlural("@PhotosWereAddedToPlaylist", 0)),
             QByteArray("%s pictures were added to %s"));
    QCOMPARE(QByteArray(GetLangTextPlural("@PhotosWereAddedToPlaylist", 1)),
             QByteArray("%s picture was added to %s"));
    QCOMPARE(journalLines(device).constLast(),
             QByteArray("GetLangTextPlural(@PhotosWereAddedToPlaylist, 1) = %s picture was added to %s"));
}

void tst_SdkTexts::time()
{
    DeviceForTest device;
    std::tm moment{};
    moment.tm_mday = 24;
    moment.tm_mon = 11;
    char buffer[128];
    std::memset(buffer, 'x', sizeof buffer);
    GetLangTime(buffer, sizeof buffer, "%e %l", &moment, 0);
    QCOMPARE(QByteArray(buffer), QByteArray("24 December"));
    QCOMPARE(buffer[12], 'x'); // nothing behind the end
    QCOMPARE(journalLines(device), QByteArrayList({"GetLangTime(128, %e %l, 0) = 24 December"}));
}

void tst_SdkTexts::timeIsCut_data()
{
    QTest::addColumn<int>("size");
    QTest::addColumn<QByteArray>("expected");

    QTest::newRow("just large enough") << 9 << QByteArray("December");
    QTest::newRow("one too small") << 8 << QByteArray("Decembe");
    QTest::newRow("only the end") << 1 << QByteArray("");
}

void tst_SdkTexts::timeIsCut()
{
    QFETCH(int, size);
    QFETCH(QByteArray, expected);

    DeviceForTest device;
    std::tm moment{};
    moment.tm_mon = 11;
    char buffer[16];
    std::memset(buffer, 'x', sizeof buffer);
    GetLangTime(buffer, size, "%B", &moment, 0);
    QCOMPARE(QByteArray(buffer), expected);
    QCOMPARE(buffer[size], 'x');
}

void tst_SdkTexts::timeWithoutArguments()
{
    DeviceForTest device;
    std::tm moment{};
    char buffer[4] = "abc";
    GetLangTime(nullptr, 4, "%B", &moment, 0);
    GetLangTime(buffer, 0, "%B", &moment, 0);
    GetLangTime(buffer, -4, "%B", &moment, 0);
    QCOMPARE(QByteArray(buffer), QByteArray("abc"));
    GetLangTime(buffer, 4, "%B", nullptr, 0);
    QCOMPARE(QByteArray(buffer), QByteArray(""));
    buffer[0] = 'a';
    GetLangTime(buffer, 4, nullptr, &moment, 0);
    QCOMPARE(QByteArray(buffer), QByteArray(""));
    QCOMPARE(device.calls().size(), 5);
}

void tst_SdkTexts::theme()
{
    DeviceForTest device;
    QCOMPARE(GetThemeInt("e3.galery_cover.width", 1), 220);
    QCOMPARE(GetThemeInt("e3.galery_cover.height", 1), 220);
    QCOMPARE(GetThemeInt("e3.no_such_number", -1), -1);
    QCOMPARE(GetThemeInt(nullptr, 9), 9);
    QCOMPARE(journalLines(device),
             QByteArrayList({"GetThemeInt(e3.galery_cover.width, 1) = 220",
                             "GetThemeInt(e3.galery_cover.height, 1) = 220",
                             "GetThemeInt(e3.no_such_number, -1) = -1", "GetThemeInt(null, 9) = 9"}));
}

void tst_SdkTexts::defaultFont()
{
    DeviceForTest device;
    const char *const family = sv_get_default_font(5);
    QVERIFY(family);
    QVERIFY2(QFontDatabase::hasFamily(QString::fromUtf8(family)), family);
    QVERIFY(sv_get_default_font(5) == family);
    QCOMPARE(journalLines(device).constFirst(), QByteArray("sv_get_default_font(5) = ") + family);
}

void tst_SdkTexts::customisation()
{
    DeviceForTest device;
    QCOMPARE(GetSoftwareLocalizationType(), 0);
    QCOMPARE(GetCustomizedPartner(), 0);
    device.setLocalization(4, 21);
    QCOMPARE(GetSoftwareLocalizationType(), 4);
    QCOMPARE(GetCustomizedPartner(), 21);
    QCOMPARE(journalLines(device),
             QByteArrayList({"GetSoftwareLocalizationType() = 0", "GetCustomizedPartner() = 0",
                             "GetSoftwareLocalizationType() = 4", "GetCustomizedPartner() = 21"}));
}

void tst_SdkTexts::noPreviousTask()
{
    DeviceForTest device;
    int task = 7;
    int subtask = 7;
    GetPreviousTask(&task, &subtask);
    QCOMPARE(task, 0);
    QCOMPARE(subtask, 0);
    QVERIFY(!GetTaskFramebufferInfo(task));
    QCOMPARE(journalLines(device),
             QByteArrayList({"GetPreviousTask() = 0", "GetTaskFramebufferInfo(0) = null"}));
}

void tst_SdkTexts::previousTask_data()
{
    QTest::addColumn<int>("orientation");
    QTest::addColumn<QSize>("size");

    QTest::newRow("upright") << 0 << QSize(758, 1024);
    QTest::newRow("a quarter turn clockwise") << 1 << QSize(1024, 758);
    QTest::newRow("three quarter turns clockwise") << 2 << QSize(1024, 758);
    QTest::newRow("half a turn") << 3 << QSize(758, 1024);
}

void tst_SdkTexts::previousTask()
{
    QFETCH(int, orientation);
    QFETCH(QSize, size);

    DeviceForTest device;
    device.setPreviousOrientation(orientation);
    int task = 0;
    GetPreviousTask(&task, nullptr);
    QVERIFY(task != 0);
    GetPreviousTask(nullptr, nullptr);
    const sv_framebuffer_info *const info = GetTaskFramebufferInfo(task);
    QVERIFY(info);
    QCOMPARE(info->orientation, orientation);
    QCOMPARE(QSize(info->width, info->height), size);
    QVERIFY(!GetTaskFramebufferInfo(task + 1));
    QVERIFY(!GetTaskFramebufferInfo(0));
    QCOMPARE(GetOrientation(), 0); // asking turns nothing
    QCOMPARE(device.calls({"GetTaskFramebufferInfo"}).constFirst().result,
             "orientation " + QByteArray::number(orientation));
}

void tst_SdkTexts::openBook_data()
{
    QTest::addColumn<QByteArray>("path");
    QTest::addColumn<int>("result");
    QTest::addColumn<QStringList>("opened");

    const QString here = QDir::currentPath();
    QTest::newRow("absolute") << QByteArray("/mnt/ext1/Photo/01.jpg") << 1
                              << QStringList{u"/mnt/ext1/Photo/01.jpg"_s};
    QTest::newRow("relative") << QByteArray("a b%.jpg") << 1 << QStringList{here + u"/a b%.jpg"_s};
    QTest::newRow("letters beyond ASCII")
        << QByteArray("/Bücher/図.png") << 1 << QStringList{u"/Bücher/図.png"_s};
    QTest::newRow("empty") << QByteArray("") << 0 << QStringList();
    QTest::newRow("null") << QByteArray() << 0 << QStringList();
}

void tst_SdkTexts::openBook()
{
    QFETCH(QByteArray, path);
    QFETCH(int, result);
    QFETCH(QStringList, opened);

    DeviceForTest device;
    const char *const argument = path.isNull() ? nullptr : path.constData();
    QCOMPARE(OpenBook(argument, nullptr, 0), result);
    QCOMPARE(Device::instance()->viewer.opened(), opened);
    const QByteArray shown = argument ? path : QByteArray("null");
    QCOMPARE(journalLines(device),
             QByteArrayList({"OpenBook(" + shown + ", null, 0) = " + QByteArray::number(result)}));
}

int main(int argc, char *argv[])
{
    qputenv("QT_QPA_PLATFORM", "offscreen"); // fonts need an application object of windows
    QGuiApplication application(argc, argv);
    tst_SdkTexts test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_sdk_texts.moc"
