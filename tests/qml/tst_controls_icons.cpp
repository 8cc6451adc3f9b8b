// The theme's icons, as the control set's image providers give them to an engine.

#include <facts.h>

#include "captured_error.h"
#include "panel_application.h"
#include "qml_scene.h"

#include <QQuickImageProvider>

using namespace lindenreed::device;
using namespace Qt::StringLiterals;

class tst_ControlsIcons : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanup() { facts().dpi = 212; }
    void everyIcon_data();
    void everyIcon();
    void inverse_data();
    void inverse();
    void secondNameOfAnInverse();
    void darkIcons_data();
    void darkIcons();
    void greys_data();
    void greys();
    void linesOfWholePixels_data();
    void linesOfWholePixels();
    void requestedSize_data();
    void requestedSize();
    void unknown_data();
    void unknown();
    void imageItemHasTheNaturalSize();

private:
    QImage icon(const QString &id, const QString &provider = u"resource"_s, QSize size = {},
                QSize *natural = nullptr);

    std::unique_ptr<QmlScene> m_scene;
};

void tst_ControlsIcons::initTestCase()
{
    m_scene = std::make_unique<QmlScene>("import QtQuick\nimport com.lindenreed.controls 1.0\nItem {}");
    QVERIFY2(m_scene->isShown(), qPrintable(m_scene->errors()));
    QVERIFY(m_scene->engine().imageProvider(u"resource"_s));
    QVERIFY(m_scene->engine().imageProvider(u"resource_inv"_s));
}

QImage tst_ControlsIcons::icon(const QString &id, const QString &provider, QSize size, QSize *natural)
{
    auto *source = static_cast<QQuickImageProvider *>(m_scene->engine().imageProvider(provider));
    QSize answered;
    const QImage image = source->requestImage(id, natural ? natural : &answered, size);
    return image.convertToFormat(QImage::Format_ARGB32);
}

void tst_ControlsIcons::everyIcon_data()
{
    QTest::addColumn<QSize>("at300");

    const QSize usual(72, 72);
    for (const char *name : {"audio_book_play",
                             "audio_book_play_disabled",
                             "back",
                             "battery_warning",
                             "bookstore_change_view_to_list",
                             "bookstore_change_view_to_thumbnails",
                             "checkbox_on",
                             "desktop_app_calendar",
                             "desktop_app_settings",
                             "desktop_app_settings_f",
                             "display_mode",
                             "done",
                             "edit_word",
                             "frontlight_brightness",
                             "frontlight_color",
                             "home",
                             "icon_done",
                             "minus",
                             "photo_created_date",
                             "player2_mode_random",
                             "plus",
                             "plus_add",
                             "scribble_text_tool",
                             "trash",
                             "validity_date"})
        QTest::newRow(name) << usual;
    QTest::newRow("arrow_down") << QSize(32, 32);
    QTest::newRow("photo_created_date_small") << QSize(48, 48);
    QTest::newRow("sync_status_done") << QSize(48, 48);
    QTest::newRow("context_menu_pointer") << QSize(28, 56);
    QTest::newRow("ci_device_email") << QSize(134, 134);
    for (const char *name :
         {"e3_detail_internal_memory", "e3_detail_otg", "e3_detail_sd_card", "e3_filter_folders"})
        QTest::newRow(name) << QSize(144, 144);
    for (const char *name : {"slideshow_stop", "slideshow_settings", "slideshow_brightness"})
        QTest::newRow(name) << QSize(160, 160);
    for (const char *name : {"positioning_top_left", "positioning_top_right", "positioning_bottom_left",
                             "positioning_bottom_right"})
        QTest::newRow(name) << QSize(94, 94);
    for (const char *name : {"audio_book_play_inv", "back_inv", "bookstore_change_view_to_list_inv",
                             "bookstore_change_view_to_thumbnails_inv", "done_inv", "home_inv", "minus_inv",
                             "plus_add_inv", "plus_inv"})
        QTest::newRow(name) << usual;
    for (const char *name : {"slideshow_stop_inv", "slideshow_settings_inv", "slideshow_brightness_inv"})
        QTest::newRow(name) << QSize(160, 160);
    for (const char *name : {"positioning_top_left_inv", "positioning_top_right_inv",
                             "positioning_bottom_left_inv", "positioning_bottom_right_inv"})
        QTest::newRow(name) << QSize(94, 94);
}

void tst_ControlsIcons::everyIcon()
{
    QFETCH(QSize, at300);

    const QString name = QString::fromLatin1(QTest::currentDataTag());
    const QSize at212(qRound(at300.width() * 212 / 300.0), qRound(at300.height() * 212 / 300.0));
    for (const QString &provider : {u"resource"_s, u"resource_inv"_s}) {
        for (const auto &[dpi, size] : {std::pair(212, at212), std::pair(300, at300)}) {
            facts().dpi = dpi;
            QSize natural;
            const QImage image = icon(name, provider, {}, &natural);
            QCOMPARE(image.size(), size);
            QCOMPARE(natural, size);
            int drawn = 0;
            for (int y = 0; y < image.height(); ++y) {
                for (int x = 0; x < image.width(); ++x)
                    drawn += qAlpha(image.pixel(x, y)) == 255;
            }
            QVERIFY2(drawn > size.width(), "next to nothing is drawn");
        }
    }
}

void tst_ControlsIcons::inverse_data()
{
    QTest::addColumn<QString>("provider");
    QTest::addColumn<QString>("id");

    QTest::newRow("by its name") << u"resource"_s << u"validity_date_inv"_s;
    QTest::newRow("by its provider") << u"resource_inv"_s << u"validity_date"_s;
}

void tst_ControlsIcons::inverse()
{
    QFETCH(QString, provider);
    QFETCH(QString, id);

    facts().dpi = 300;
    const QImage plain = icon(u"validity_date"_s);
    const QImage turned = icon(id, provider);
    QCOMPARE(turned.size(), plain.size());
    for (int y = 12; y < 60; ++y) { // the corners are round, and cut away
        for (int x = 0; x < turned.width(); ++x) {
            const int ink = qAlpha(plain.pixel(x, y));
            const QRgb pixel = turned.pixel(x, y);
            QCOMPARE(qAlpha(pixel), 255);
            QVERIFY2(std::abs(qGray(pixel) - ink) <= 1, "white where the icon is black, black elsewhere");
        }
    }
    QCOMPARE(qAlpha(turned.pixel(0, 0)), 0);
    QCOMPARE(turned.pixel(36, 0), qRgb(0, 0, 0));
}

void tst_ControlsIcons::secondNameOfAnInverse()
{
    QCOMPARE(icon(u"desktop_app_settings_f"_s), icon(u"desktop_app_settings"_s, u"resource_inv"_s));
    QVERIFY(icon(u"desktop_app_settings_f"_s) != icon(u"desktop_app_settings"_s));
}

void tst_ControlsIcons::darkIcons_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QPoint>("ground"); // inside the sign's disc, where only the pressed icon is filled

    facts().dpi = 300;
    QTest::newRow("stop") << u"slideshow_stop"_s << QPoint(80, 25);
    QTest::newRow("settings") << u"slideshow_settings"_s << QPoint(80, 25);
    QTest::newRow("brightness") << u"slideshow_brightness"_s << QPoint(80, 25);
    QTest::newRow("small camera") << u"photo_created_date_small"_s << QPoint(8, 4);
}

void tst_ControlsIcons::darkIcons()
{
    QFETCH(QString, name);
    QFETCH(QPoint, ground);

    facts().dpi = 300;
    const QImage plain = icon(name);
    const QImage pressed = icon(name + u"_inv"_s);
    QCOMPARE(qAlpha(plain.pixel(ground)), 0);
    QCOMPARE(pressed.pixel(ground), qRgb(255, 255, 255));
    bool black = false;
    for (int y = 0; y < plain.height(); ++y) {
        for (int x = 0; x < plain.width(); ++x) {
            const QRgb pixel = plain.pixel(x, y);
            QVERIFY(qAlpha(pixel) < 200 || qGray(pixel) >= 254);
            black = black || pressed.pixel(x, y) == qRgb(0, 0, 0);
        }
    }
    QVERIFY2(black, "the pressed icon's sign");
}

void tst_ControlsIcons::greys_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("ink");

    QTest::newRow("black") << u"back"_s << 0;
    QTest::newRow("asleep") << u"audio_book_play_disabled"_s << 0xAA;
}

void tst_ControlsIcons::greys()
{
    QFETCH(QString, name);
    QFETCH(int, ink);

    const QImage image = icon(name);
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            const QRgb pixel = image.pixel(x, y);
            if (qAlpha(pixel) == 255)
                QCOMPARE(pixel, qRgb(ink, ink, ink));
        }
    }
    QCOMPARE(image.pixel(0, 0), 0U);
}

void tst_ControlsIcons::linesOfWholePixels_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<Qt::Orientation>("across"); // the way that is gone, straight across the lines
    QTest::addColumn<int>("at");
    QTest::addColumn<int>("lines");

    QTest::newRow("house") << u"home"_s << Qt::Horizontal << 38 << 2;
    QTest::newRow("bin") << u"trash"_s << Qt::Vertical << 36 << 3;
    QTest::newRow("calendar") << u"desktop_app_calendar"_s << Qt::Vertical << 36 << 3;
    QTest::newRow("frame") << u"display_mode"_s << Qt::Vertical << 17 << 2;
    QTest::newRow("camera") << u"photo_created_date"_s << Qt::Vertical << 17 << 2;
    QTest::newRow("squares") << u"bookstore_change_view_to_thumbnails"_s << Qt::Horizontal << 20 << 4;
    QTest::newRow("battery") << u"battery_warning"_s << Qt::Vertical << 20 << 2;
    QTest::newRow("this device") << u"e3_detail_internal_memory"_s << Qt::Vertical << 72 << 4;
    QTest::newRow("card") << u"e3_detail_sd_card"_s << Qt::Vertical << 90 << 2;
    QTest::newRow("folder") << u"e3_filter_folders"_s << Qt::Vertical << 100 << 3;
    QTest::newRow("device") << u"ci_device_email"_s << Qt::Vertical << 67 << 5;
    QTest::newRow("corner") << u"positioning_top_left"_s << Qt::Horizontal << 60 << 2;
}

void tst_ControlsIcons::linesOfWholePixels()
{
    QFETCH(QString, name);
    QFETCH(Qt::Orientation, across);
    QFETCH(int, at);
    QFETCH(int, lines);

    facts().dpi = 300;
    const QImage image = icon(name);
    const int length = across == Qt::Horizontal ? image.width() : image.height();
    QList<int> runs; // of ink, in pixels
    int previous = 0;
    for (int i = 0; i < length; ++i) {
        const int alpha = qAlpha(across == Qt::Horizontal ? image.pixel(i, at) : image.pixel(at, i));
        if (alpha < 16) {
            previous = 0;
            continue;
        }
        QVERIFY2(alpha > 239, "a grey edge");
        if (previous == 0)
            runs.append(0);
        ++runs.last();
        previous = alpha;
    }
    QCOMPARE(runs, QList<int>(lines, 6));
}

void tst_ControlsIcons::requestedSize_data()
{
    QTest::addColumn<QSize>("requested");
    QTest::addColumn<QSize>("given");

    QTest::newRow("both sides") << QSize(94, 94) << QSize(94, 94);
    QTest::newRow("another shape") << QSize(100, 50) << QSize(100, 50);
    QTest::newRow("width alone") << QSize(100, 0) << QSize(100, 100);
    QTest::newRow("height alone") << QSize(-1, 24) << QSize(24, 24);
    QTest::newRow("none") << QSize(0, 0) << QSize(51, 51);
}

void tst_ControlsIcons::requestedSize()
{
    QFETCH(QSize, requested);
    QFETCH(QSize, given);

    QSize natural;
    const QImage image = icon(u"home"_s, u"resource"_s, requested, &natural);
    QCOMPARE(image.size(), given);
    QCOMPARE(natural, QSize(51, 51));
}

void tst_ControlsIcons::unknown_data()
{
    QTest::addColumn<QString>("name");

    QTest::newRow("no such icon") << u"no_such_icon"_s;
    QTest::newRow("no name") << QString();
    QTest::newRow("a way out of the theme") << u"../icons/back"_s;
    QTest::newRow("inverse of nothing") << u"_inv"_s;
}

void tst_ControlsIcons::unknown()
{
    QFETCH(QString, name);

    CapturedError error;
    QSize natural;
    const QImage image = icon(name, u"resource"_s, {}, &natural);
    const QByteArrayList lines = error.finish();
    QCOMPARE(lines.size(), 1);
    QVERIFY2(lines.first().endsWith("no icon \"" + name.toUtf8() + "\"\n"), lines.first().constData());
    // A mark that is seen where an icon is missing, and is like no icon.
    QCOMPARE(image.size(), QSize(51, 51));
    QCOMPARE(natural, image.size());
    for (const QPoint &point :
         {QPoint(25, 25), QPoint(17, 17), QPoint(34, 17), QPoint(9, 25), QPoint(42, 25)})
        QVERIFY2(qAlpha(image.pixel(point)) > 128, "a crossed box");
    QCOMPARE(icon(name, u"resource"_s, QSize(94, 60)).size(), QSize(94, 60));
}

void tst_ControlsIcons::imageItemHasTheNaturalSize()
{
    QmlScene scene(
        "import QtQuick\nimport com.lindenreed.controls 1.0\n"
        "Item { Image { objectName: 'plain'; source: 'image://resource/back' }\n"
        "Image { objectName: 'wide'; source: Global.getNormalImage('back'); sourceSize.width: 94 } }");
    QCOMPARE(scene.item(u"plain"_s)->size(), QSizeF(51, 51));
    QCOMPARE(scene.item(u"wide"_s)->size(), QSizeF(94, 94));
    QCOMPARE(scene.warnings(), QStringList());
}

PANEL_TEST_MAIN(tst_ControlsIcons)
#include "tst_controls_icons.moc"
