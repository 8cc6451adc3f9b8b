// Where the preview of a trial and its corner picker stand; the tests of two profiles are made of it.

#pragma once

#include "customize_screen.h"

#include <cmath>
#include <memory>

/// `profile` is the one of the test's device.
class CustomizeGeometryTest : public QObject
{
    Q_OBJECT

public:
    explicit CustomizeGeometryTest(const QString &profile)
        : m_profile(profile)
    {
    }

private slots:
    void initTestCase() { stored_database::remove(); }
    void init() { m_test = std::make_unique<SettingsScreens>(m_profile); }
    void cleanup() { m_test.reset(); }

    void preview_data() { customize_screen::rowForEachDate(); }
    void preview();
    void fromCornerToCorner_data() { customize_screen::rowForEachDate(); }
    void fromCornerToCorner();
    void picker_data();
    void picker();
    void turnedWhileThePickerIsOpen();

private:
    void run(int date, const std::function<void(RunningApp &)> &body)
    {
        m_test->run(customize_screen::dates.at(date).view, body);
    }
    static int value(const RunningApp &running, const char *expression)
    {
        return SettingsScreens::number(running, "header", QString::fromLatin1(expression));
    }
    /// As the device is turned; the interface is told of the sizes, and by the test of the turn itself.
    static bool turn(const RunningApp &running, int orientation)
    {
        SetOrientation(orientation);
        emit running.app.screenChanged();
        return QTest::qWaitFor(
            [&] { return running.screen()->size() == QSizeF(ScreenWidth(), ScreenHeight()); });
    }
    static void checkPreview(const RunningApp &running, int corner);
    static void checkPicker(const RunningApp &running);

    QString m_profile;
    std::unique_ptr<SettingsScreens> m_test;
};

inline void CustomizeGeometryTest::checkPreview(const RunningApp &running, int corner)
{
    const int margin = value(running, "Global.dp(48 * 0.53)");
    const int top = margin + value(running, "GlobalValues.defaultAppHeaderHeight")
        + value(running, "GlobalValues.defaultSolidSeparatorThickness");
    const QQuickItem *const preview = customize_screen::item(running, "preview");
    const QSizeF screen = running.screen()->size();
    const double x = corner % 2 == 0 ? margin : screen.width() - margin - preview->width();
    const double y = corner < 2 ? top : screen.height() - margin - preview->height();
    QCOMPARE(preview->mapToScene(QPointF()), QPointF(x, y));
    QCOMPARE(preview->width(), preview->property("potential_width").toReal());
}

inline void CustomizeGeometryTest::preview()
{
    QFETCH(int, date);

    run(date, [date](RunningApp &running) {
        for (int corner = 0; corner < 4; ++corner) {
            running.settings()->setProperty(customize_screen::dates.at(date).prefix + "position", corner);
            checkPreview(running, corner);
        }
    });
}

inline void CustomizeGeometryTest::fromCornerToCorner()
{
    QFETCH(int, date);

    // From each to each, without anything of the first that stays.
    run(date, [date](RunningApp &running) {
        const QByteArray position = customize_screen::dates.at(date).prefix + "position";
        for (int from = 0; from < 4; ++from) {
            for (int to = 0; to < 4; ++to) {
                running.settings()->setProperty(position, from);
                running.settings()->setProperty(position, to);
                checkPreview(running, to);
            }
        }
    });
}

inline void CustomizeGeometryTest::checkPicker(const RunningApp &running)
{
    auto *const picker = customize_screen::item(running, "loader")->property("item").value<QQuickItem *>();
    QVERIFY(picker);
    QQmlContext *const context = qmlContext(picker->childItems().constFirst());
    const auto part = [&](const char *id) {
        return qobject_cast<QQuickItem *>(context->objectForName(QString::fromLatin1(id)));
    };
    const QQuickItem *const square = customize_screen::item(running, "position_rect");
    const QRectF area(square->mapToScene(QPointF()), square->size());
    const double headerHeight = customize_screen::item(running, "header")->height();
    QCOMPARE(picker->property("transparentRect").toRectF(),
             QRectF(area.x(), area.y(), area.width(), headerHeight - area.y()));

    const int border = value(running, "GlobalValues.dialogBorderWidth");
    const int space = value(running, "Global.dp(40 * 0.53)");
    const int edge = value(running, "GlobalValues.separatorSideOffset");
    const int picture = value(running, "Global.pixelsFromDesign(94)"); // an icon as large as it is drawn
    const QQuickItem *const pointer = part("pointer");
    const double screenWidth = running.window->width();
    QCOMPARE(picker->width(), screenWidth);
    const double center = area.center().x();
    const double width = 2 * (space / 2.0 + border) + 4 * (picture + space);
    double left = center - width / 2;
    if (center + width / 2 > screenWidth - edge)
        left = screenWidth - edge - width;
    else if (left < edge)
        left = edge;
    const QQuickItem *const frame = part("menu");
    const QRectF drawn(frame->mapToScene(QPointF()), frame->size());
    // Whole pixels: it would be drawn in grey between two.
    QCOMPARE(drawn.left(), screenWidth - std::floor(screenWidth - left - width + 0.5) - width);
    QCOMPARE(drawn.left(), std::floor(drawn.left()));
    QCOMPARE(drawn.width(), width);
    QCOMPARE(drawn.top(), headerHeight + pointer->width() - border);
    QCOMPARE(drawn.height(), 2.0 * (value(running, "GlobalValues.defaultMenuMargin") + border) + picture);
    const QRectF tip = pointer->mapRectToScene(QRectF(QPointF(), pointer->size()));
    QCOMPARE(tip.left(), std::floor(center - tip.width() / 2));
    QCOMPARE(tip.top(), headerHeight);
    QCOMPARE(tip.bottom(), drawn.top() + border);
}

inline void CustomizeGeometryTest::picker_data()
{
    QTest::addColumn<int>("orientation");
    QTest::addColumn<bool>("withStyle");

    QTest::newRow("upright") << 0 << false;
    QTest::newRow("upright, farther right") << 0 << true;
    QTest::newRow("lying") << 1 << false;
    QTest::newRow("lying, farther right") << 1 << true;
}

inline void CustomizeGeometryTest::picker()
{
    QFETCH(int, orientation);
    QFETCH(bool, withStyle);

    m_test->device.setFonts(
        {{"A rather long name of a font", 0, "R"}, {"A rather long name of a font", 3, "BI"}});
    run(0, [&](RunningApp &running) {
        QVERIFY(turn(running, orientation));
        if (withStyle) {
            QVERIFY(
                customize_screen::choose(running, "font", QStringLiteral("A rather long name of a font")));
            QTRY_VERIFY(customize_screen::item(running, "position")->x()
                        > customize_screen::item(running, "font_style")->x());
        }
        QVERIFY(pressByAccessibility(customize_screen::item(running, "position")));
        checkPicker(running);
        QVERIFY(turn(running, 0));
    });
}

inline void CustomizeGeometryTest::turnedWhileThePickerIsOpen()
{
    run(0, [](RunningApp &running) {
        QVERIFY(pressByAccessibility(customize_screen::item(running, "position")));
        for (const int orientation : {1, 0}) {
            QVERIFY(turn(running, orientation));
            emit running.app.orientationChanged();
            QVERIFY(customize_screen::item(running, "loader")->isVisible());
            checkPicker(running);
        }
    });
}
