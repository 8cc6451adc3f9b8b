// The control set as a module: versions, numbers, styles and functions.

#include <device.h>
#include <facts.h>

#include "panel_application.h"
#include "qml_scene.h"

#include <QColor>
#include <QSignalSpy>
#include <QStyleHints>

using namespace lindenreed::device;
using namespace Qt::StringLiterals;

class tst_ControlsModule : public QObject
{
    Q_OBJECT

private slots:
    void cleanup();
    void names_data();
    void names();
    void headerIsOfTheSecondVersion();
    void bothVersionsSideBySide();
    void internalFrameIsNoName();
    void lengths_data();
    void lengths();
    void colours_data();
    void colours();
    void pressDelay();
    void lengthFunctions_data();
    void lengthFunctions();
    void styles_data();
    void styles();
    void unknownStyleIsUnstyled();
    void themePictures();
    void screenWidthFollowsTheTurn();
    void fullRefreshIsAskedOnce();
    void fastModeTakesScreenPixels_data();
    void fastModeTakesScreenPixels();

private:
    /// The value of a JavaScript expression with the module imported.
    static QVariant value(const QByteArray &expression, const QByteArray &version = "1.0");
};

namespace {

struct Density
{
    explicit Density(int dpi) { facts().dpi = dpi; }
    ~Density() { facts().dpi = 212; }
    Density(const Density &) = delete;
    Density &operator=(const Density &) = delete;
};

} // namespace

QVariant tst_ControlsModule::value(const QByteArray &expression, const QByteArray &version)
{
    QQmlEngine engine;
    QQmlComponent component(&engine);
    component.setData("import QtQml\nimport com.lindenreed.controls " + version
                          + "\nQtObject { property var value: " + expression + " }",
                      QUrl(u"qrc:/value.qml"_s));
    const std::unique_ptr<QObject> object(component.create());
    return object ? object->property("value") : QVariant(component.errorString());
}

void tst_ControlsModule::cleanup()
{
    facts().dpi = 212;
}

void tst_ControlsModule::names_data()
{
    QTest::addColumn<QByteArray>("use");
    QTest::addColumn<QByteArray>("version");

    const QByteArrayList uses = {
        "property var used: Global.dp(1)",
        "property var used: GlobalValues.defaultMenuMargin",
        "property var used: FontStyles.BodyS",
        "property var used: DeviceInfoProvider.isTouchDevice",
        "AdvancedTextInput {}",
        "AutoReloadImage {}",
        "BitmapButton {}",
        "ComboBox {}",
        "ContextMenu {}",
        "DialogContainer {}",
        "DialogFooter {}",
        "DottedSeparator {}",
        "Frontlight {}",
        "GroupSelectionPanel {}",
        "InfoMessage {}",
        "LoaderNoSleep {}",
        "RoundedCornerButtonContainer {}",
        "ScrollIndicator {}",
        "SettingsBitmapTextSwitcher {}",
        "SettingsBitmapTextTextButton {}",
        "StyledText {}",
        "TextButton {}",
    };
    for (const QByteArray &use : uses) {
        for (const QByteArray version : {"1.0", "2.0"})
            QTest::addRow("%s in %s", use.constData(), version.constData()) << use << version;
    }
    for (const QByteArray use : {"AppHeader {}", "Breadcrumbs {}", "ScrollAssistant {}"})
        QTest::addRow("%s in 2.0", use.constData()) << use << QByteArray("2.0");
}

void tst_ControlsModule::names()
{
    QFETCH(QByteArray, use);
    QFETCH(QByteArray, version);

    QmlScene scene("import QtQuick\nimport com.lindenreed.controls " + version + "\nItem { " + use + " }");
    QVERIFY2(scene.isShown(), qPrintable(scene.errors()));
    QCOMPARE(scene.warnings(), QStringList());
    if (use.startsWith("property"))
        QVERIFY(scene.root()->property("used").isValid());
}

void tst_ControlsModule::headerIsOfTheSecondVersion()
{
    QmlScene scene("import com.lindenreed.controls 1.0\nAppHeader {}");
    QVERIFY(!scene.root());
    QVERIFY2(scene.errors().contains(u"AppHeader is not a type"), qPrintable(scene.errors()));
}

void tst_ControlsModule::bothVersionsSideBySide()
{
    QmlScene scene("import QtQuick\nimport com.lindenreed.controls 1.0\n"
                   "import com.lindenreed.controls 2.0 as LRControls2\n"
                   "Item { LRControls2.AppHeader { BitmapButton {} }\n"
                   "property bool same: Global.dp(64) === LRControls2.Global.dp(64)\n"
                   "property bool sameStyle: FontStyles.Heading3 === LRControls2.FontStyles.Heading3 }");
    QVERIFY2(scene.isShown(), qPrintable(scene.errors()));
    QVERIFY(scene.root()->property("same").toBool());
    QVERIFY(scene.root()->property("sameStyle").toBool());
    QCOMPARE(scene.warnings(), QStringList());
}

void tst_ControlsModule::internalFrameIsNoName()
{
    QFile description(QCoreApplication::applicationDirPath() + u"/com/lindenreed/controls/qmldir"_s);
    QVERIFY(description.open(QIODevice::ReadOnly));
    QVERIFY(description.readAll().contains("\ninternal FocusFrame FocusFrame.qml"));
}

void tst_ControlsModule::lengths_data()
{
    QTest::addColumn<int>("at212");
    QTest::addColumn<int>("at300");

    QTest::newRow("minimalLineThickness") << 1 << 2;
    QTest::newRow("defaultSolidSeparatorThickness") << 1 << 2;
    QTest::newRow("inputElementBorder") << 1 << 2;
    QTest::newRow("inputElementActiveBorder") << 3 << 4;
    QTest::newRow("dialogBorderWidth") << 3 << 4;
    QTest::newRow("defaultFocusedElementBorderThickness") << 4 << 6;
    QTest::newRow("listElementHoverFrameBorderRadius") << 8 << 12;
    QTest::newRow("defaultElementBorderRadius") << 11 << 16;
    QTest::newRow("defaultDialogBorderRadius") << 14 << 20;
    QTest::newRow("defaultMenuMargin") << 11 << 16;
    QTest::newRow("defaultAppHeaderMargin") << 14 << 20;
    QTest::newRow("separatorSideOffset") << 34 << 48;
    QTest::newRow("dialogSidePadding") << 34 << 48;
    QTest::newRow("defaultListViewSideMargin") << 42 << 60;
    QTest::newRow("defaultAppHeaderHeight") << 85 << 120;
    QTest::newRow("breadcrumbsHeight") << 79 << 112;
    QTest::newRow("defaultTextButtonHeight") << 79 << 112;
    QTest::newRow("scrollListButtonsHeight") << 90 << 128;
    QTest::newRow("scrollListCenterButtonSideOffset") << 79 << 112;
    QTest::newRow("scrollIndicatorMinimalLenght") << 68 << 96;
    QTest::newRow("fontLargeBodyLineHeight") << 45 << 64;
    QTest::newRow("confirmationDialogWidth") << 678 << 960;
}

void tst_ControlsModule::lengths()
{
    QFETCH(int, at212);
    QFETCH(int, at300);

    const QByteArray name = QByteArray("GlobalValues.") + QTest::currentDataTag();
    QCOMPARE(value(name), QVariant(at212));
    const Density fine(300);
    QCOMPARE(value(name), QVariant(at300));
    QCOMPARE(value(name, "2.0"), QVariant(at300));
}

void tst_ControlsModule::colours_data()
{
    QTest::addColumn<QColor>("colour");

    QTest::newRow("defaultSolidseparatorColor") << QColor(0x55, 0x55, 0x55);
    QTest::newRow("defaultBorderColor") << QColor(Qt::black);
    QTest::newRow("defaultBackgroundColor") << QColor(Qt::white);
    QTest::newRow("defaultDisabledTextColor") << QColor(0xAA, 0xAA, 0xAA);
}

void tst_ControlsModule::colours()
{
    QFETCH(QColor, colour);
    QCOMPARE(value(QByteArray("GlobalValues.") + QTest::currentDataTag()).value<QColor>().rgba(),
             colour.rgba());
}

void tst_ControlsModule::pressDelay()
{
    const Density fine(300);
    const QVariant delay = value("GlobalValues.listPressDelay");
    QCOMPARE(delay, QVariant(120)); // a time, whatever the density
    // A list hands the press on so late, and a menu opens no later than a reader expects it.
    QCOMPARE(QGuiApplication::styleHints()->mousePressAndHoldInterval() + delay.toInt(), 600);
}

void tst_ControlsModule::lengthFunctions_data()
{
    QTest::addColumn<QByteArray>("call");
    QTest::addColumn<int>("at212");
    QTest::addColumn<int>("at300");

    QTest::newRow("nothing") << QByteArray("Global.dp(0)") << 0 << 0;
    QTest::newRow("a header") << QByteArray("Global.dp(64)") << 85 << 120;
    QTest::newRow("a design length in dp") << QByteArray("Global.dp(268 * 0.5333)") << 189 << 268;
    QTest::newRow("half a pixel goes up") << QByteArray("Global.dp(0.8)") << 1 << 2;
    QTest::newRow("less than half a pixel") << QByteArray("Global.dp(0.2)") << 0 << 0;
    QTest::newRow("to the left") << QByteArray("Global.dp(-64)") << -85 << -120;
    QTest::newRow("design pixels") << QByteArray("Global.pixelsFromDesign(10)") << 7 << 10;
    QTest::newRow("a button in design pixels") << QByteArray("Global.pixelsFromDesign(136)") << 96 << 136;
}

void tst_ControlsModule::lengthFunctions()
{
    QFETCH(QByteArray, call);
    QFETCH(int, at212);
    QFETCH(int, at300);

    QCOMPARE(value(call).toInt(), at212);
    const Density fine(300);
    QCOMPARE(value(call).toInt(), at300);
}

void tst_ControlsModule::styles_data()
{
    QTest::addColumn<int>("size212");
    QTest::addColumn<int>("size300");
    QTest::addColumn<int>("line212");
    QTest::addColumn<int>("line300");
    QTest::addColumn<bool>("bold");

    QTest::newRow("TextInIcons1") << 20 << 28 << 24 << 34 << true;
    QTest::newRow("BodyS") << 30 << 42 << 38 << 54 << false;
    QTest::newRow("BodySBold") << 30 << 42 << 38 << 54 << true;
    QTest::newRow("BodyL") << 35 << 50 << 45 << 64 << false;
    QTest::newRow("BodyLBold") << 35 << 50 << 45 << 64 << true;
    QTest::newRow("BodyBold") << 35 << 50 << 45 << 64 << true;
    QTest::newRow("Heading5") << 34 << 48 << 44 << 62 << true;
    QTest::newRow("Heading4") << 41 << 58 << 52 << 74 << false;
    QTest::newRow("Heading3") << 41 << 58 << 52 << 74 << true;
    QTest::newRow("Unstyled") << 30 << 42 << 40 << 57 << false;
}

void tst_ControlsModule::styles()
{
    QFETCH(int, size212);
    QFETCH(int, size300);
    QFETCH(int, line212);
    QFETCH(int, line300);
    QFETCH(bool, bold);

    const QByteArray style = QByteArray("FontStyles.") + QTest::currentDataTag();
    const QByteArray all = "[FontStyles.pixelSize(" + style + "), FontStyles.lineHeight(" + style
        + "), FontStyles.isBold(" + style + ")].join()";
    const auto expected = [&](int size, int line) {
        return u"%1,%2,%3"_s.arg(size).arg(line).arg(bold ? u"true"_s : u"false"_s);
    };
    QCOMPARE(value(all).toString(), expected(size212, line212));
    const Density fine(300);
    QCOMPARE(value(all).toString(), expected(size300, line300));
}

void tst_ControlsModule::unknownStyleIsUnstyled()
{
    QCOMPARE(value("FontStyles.pixelSize(-1)").toInt(), 30);
    QCOMPARE(value("FontStyles.pixelSize(1000)").toInt(), 30);
}

void tst_ControlsModule::themePictures()
{
    QCOMPARE(value("Global.getNormalImage('positioning_top_left')").toString(),
             u"image://resource/positioning_top_left"_s);
    QCOMPARE(value("Global.defaultNormalImagesPrefix").toString(), u"image://resource"_s);
}

void tst_ControlsModule::screenWidthFollowsTheTurn()
{
    QmlScene scene("import QtQuick\nimport com.lindenreed.controls 1.0\n"
                   "Item { property int panelWidth: DeviceInfoProvider.screenWidth\n"
                   "property bool touch: DeviceInfoProvider.isTouchDevice }");
    QCOMPARE(scene.root()->property("panelWidth").toInt(), 758);
    QVERIFY(scene.root()->property("touch").toBool());
    Device::instance()->screen.setOrientation(1);
    QCOMPARE(scene.root()->property("panelWidth").toInt(), 1024);
    Device::instance()->screen.setOrientation(0);
    QCOMPARE(scene.root()->property("panelWidth").toInt(), 758);
}

void tst_ControlsModule::fullRefreshIsAskedOnce()
{
    QSignalSpy asked(&Device::instance()->screen, &Screen::nextDrawingWanted);
    value("DeviceInfoProvider.requireFullUpdateHQ()");
    QCOMPARE(asked.count(), 1);
    QCOMPARE(asked.constFirst().constFirst().value<RefreshMode>(), RefreshMode::Full);
}

void tst_ControlsModule::fastModeTakesScreenPixels_data()
{
    QTest::addColumn<QByteArray>("arguments");
    QTest::addColumn<QRect>("area");

    QTest::newRow("whole pixels") << QByteArray("34, 130, 690, 800") << QRect(34, 130, 690, 800);
    QTest::newRow("broken pixels are covered") << QByteArray("34.5, 130.5, 10, 10") << QRect(34, 130, 11, 11);
    QTest::newRow("beyond the screen is cut") << QByteArray("0, 1000, 758, 800") << QRect(0, 1000, 758, 24);
}

void tst_ControlsModule::fastModeTakesScreenPixels()
{
    QFETCH(QByteArray, arguments);
    QFETCH(QRect, area);

    QSignalSpy wanted(&Device::instance()->screen, &Screen::fastModeWanted);
    value("DeviceInfoProvider.enterA2onFlick(" + arguments + ")");
    QCOMPARE(wanted.count(), 1);
    QCOMPARE(wanted.first().first().toRect(), area);
}

PANEL_TEST_MAIN(tst_ControlsModule)
#include "tst_controls_module.moc"
