// The two dates by themselves: measures, colours, texts, fonts.

#include "app_fixture.h"
#include "panel_application.h"
#include "running_app.h"

#include <slateview.h>

#include <QFont>
#include <QFontInfo>
#include <QFontMetricsF>
#include <QQmlComponent>

#include <ctime>
#include <memory>

using namespace Qt::StringLiterals;
using lindenreed::picture_stand::App;

namespace {

int dp(double design)
{
    return qRound(design * 0.53 * 212 / 160);
}

/// What the device makes of a format; it and the machine know the language.
QString deviceTime(const char *format, const QDateTime &dateTime)
{
    const auto seconds = std::time_t(dateTime.toSecsSinceEpoch());
    std::tm parts = {};
    localtime_r(&seconds, &parts);
    char text[128] = {};
    GetLangTime(text, sizeof text, format, &parts, 0);
    return QString::fromUtf8(text);
}

/// The items of an overlay, however deep, that have the property.
QList<QQuickItem *> itemsWith(QQuickItem *item, const char *property)
{
    QList<QQuickItem *> found;
    if (item->metaObject()->indexOfProperty(property) >= 0)
        found.append(item);
    for (QQuickItem *child : item->childItems())
        found += itemsWith(child, property);
    return found;
}

QFont fontOf(QQuickItem *text)
{
    return text->property("font").value<QFont>();
}

const QDateTime oneDay(QDate(2026, 5, 7), QTime(9, 5));

} // namespace

class tst_DateRectangles : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        stored_database::remove();
        QGuiApplication::setFont(QFont(u"Noto Sans"_s)); // as the program does: points then are the panel's
    }
    void init() { m_test = std::make_unique<AppFixture>(); }
    void cleanup() { m_test.reset(); }

    void defaults();
    void createdDate();
    void currentDate();
    void fonts_data();
    void fonts();
    void fontChangesWhileShown();
    void states();
    void minuteByMinute();
    void noDate();

private:
    using Body = std::function<void(RunningApp &, QQuickItem *)>;
    /// One overlay of its own in the window of a running application.
    void with(const QByteArray &declaration, const Body &body);

    std::unique_ptr<AppFixture> m_test;
};

void tst_DateRectangles::with(const QByteArray &declaration, const Body &body)
{
    App app;
    QCOMPARE(runApp(app,
                    [&](RunningApp &running) {
                        QQmlComponent component(qmlEngine(running.window));
                        component.setData("import QtQuick\nimport com.lindenreed.picture_stand 1.0\n"
                                              + declaration,
                                          QUrl(u"qrc:/overlay.qml"_s));
                        const std::unique_ptr<QObject> object(component.create());
                        auto *overlay = qobject_cast<QQuickItem *>(object.get());
                        QVERIFY2(overlay, qPrintable(component.errorString()));
                        overlay->setParentItem(running.window->contentItem());
                        body(running, overlay);
                    }),
             0);
}

void tst_DateRectangles::defaults()
{
    const auto both = [](RunningApp &, QQuickItem *overlay) {
        QCOMPARE(overlay->property("bold").toBool(), true);
        QCOMPARE(overlay->property("italic").toBool(), true);
        QCOMPARE(overlay->property("font_family").toString(), u"Roboto"_s);
        QCOMPARE(overlay->property("position_uid").toInt(), 0);
        QCOMPARE(overlay->state(), u"top_left"_s);
        QVERIFY(std::abs(overlay->property("datetime").toDateTime().secsTo(QDateTime::currentDateTime()))
                < 60);
        QCOMPARE(overlay->property("color").value<QColor>(), QColor(0, 0, 0, 0x80));
        const auto *border = overlay->property("border").value<QObject *>();
        QCOMPARE(border->property("color").value<QColor>(), QColor(Qt::white));
        QCOMPARE(border->property("width").toInt(), dp(1));
    };
    with("RectangleCreatedDate {}", both);
    with("RectangleCurrentDate {}", both);
}

void tst_DateRectangles::createdDate()
{
    with("RectangleCreatedDate { font_family: 'Noto Sans'; datetime: new Date(2026, 4, 7, 9, 5) }",
         [](RunningApp &, QQuickItem *overlay) {
             QQuickItem *text = itemsWith(overlay, "styledFont").value(0);
             QQuickItem *icon = itemsWith(overlay, "fillMode").value(0);
             QCOMPARE(text->property("text").toString(), deviceTime("%b %d, %Y", oneDay));
             QCOMPARE(text->property("color").value<QColor>(), QColor(Qt::white));
             QCOMPARE(icon->property("source").toUrl(), QUrl(u"image://resource/photo_created_date_small"_s));
             const int content = int(icon->width() + text->width() + dp(15.5));
             QCOMPARE(overlay->property("potential_width").toInt(), 2 * dp(40) + content);
             QCOMPARE(int(overlay->width()), 2 * dp(40) + content);
             QCOMPARE(int(overlay->height()), 2 * dp(15) + int(text->height()));
             QCOMPARE(overlay->property("radius").toInt(), dp(58));
             QCOMPARE(icon->mapToItem(overlay, QPointF()).x(), dp(40));
             QCOMPARE(text->mapToItem(overlay, QPointF()).x(), dp(40) + icon->width() + dp(4));
             for (QQuickItem *item : {text, icon}) {
                 const double middle = item->mapToItem(overlay, QPointF(0, item->height() / 2)).y();
                 QVERIFY(std::abs(middle - overlay->height() / 2) <= 1);
             }
             overlay->setWidth(overlay->width() + 100); // the content stays in the middle
             QCOMPARE(icon->mapToItem(overlay, QPointF()).x(), dp(40) + 50);
             QCOMPARE(fontOf(text).pixelSize(), 30); // the control's own
         });
}

void tst_DateRectangles::currentDate()
{
    with("RectangleCurrentDate { font_family: 'Noto Sans'; datetime: new Date(2026, 4, 7, 9, 5) }",
         [](RunningApp &, QQuickItem *overlay) {
             const QList<QQuickItem *> lines = itemsWith(overlay, "styledFont");
             QCOMPARE(lines.size(), 3);
             const QStringList texts{u"09:05"_s, deviceTime("%A,", oneDay), deviceTime("%e %l", oneDay)};
             const QList<int> heights{dp(113), dp(57), dp(57)};
             QCOMPARE(int(overlay->height()), dp(347));
             QCOMPARE(overlay->property("radius").toInt(), dp(40));
             QCOMPARE(overlay->property("potential_width").toInt(), 2 * dp(35) + int(lines.at(0)->width()));
             // A column of the three, in the middle of what the margins leave.
             int top = dp(60) + (dp(347) - 2 * dp(60) - heights.at(0) - heights.at(1) - heights.at(2)) / 2;
             for (int i = 0; i < 3; ++i) {
                 QCOMPARE(lines.at(i)->property("text").toString(), texts.at(i));
                 QCOMPARE(int(lines.at(i)->height()), heights.at(i));
                 QCOMPARE(lines.at(i)->property("color").value<QColor>(), QColor(Qt::white));
                 const QPointF place = lines.at(i)->mapToItem(overlay, QPointF());
                 QVERIFY(std::abs(place.y() - top) <= 1);
                 QVERIFY(std::abs(place.x() + lines.at(i)->width() / 2 - overlay->width() / 2) <= 1);
                 top += heights.at(i);
             }
             QCOMPARE(fontOf(lines.at(0)).pointSize(), 26);
             QCOMPARE(QFontInfo(fontOf(lines.at(0))).pixelSize(), 77); // on a panel of 212 dpi
             QCOMPARE(fontOf(lines.at(1)).pixelSize(), 30);
             QCOMPARE(fontOf(lines.at(2)).pixelSize(), 30);
             // The letters stay within their lines.
             for (QQuickItem *line : lines) {
                 const QFontMetricsF metrics(fontOf(line));
                 const QString text = line->property("text").toString();
                 QVERIFY(metrics.tightBoundingRect(text).height() <= line->height());
             }
         });
}

void tst_DateRectangles::fonts_data()
{
    QTest::addColumn<bool>("bold");
    QTest::addColumn<bool>("italic");

    QTest::newRow("regular") << false << false;
    QTest::newRow("bold") << true << false;
    QTest::newRow("italic") << false << true;
    QTest::newRow("bold and italic") << true << true;
}

void tst_DateRectangles::fonts()
{
    QFETCH(bool, bold);
    QFETCH(bool, italic);

    const QByteArray properties = QByteArray(" { font_family: 'Noto Serif'; bold: ")
        + (bold ? "true" : "false") + "; italic: " + (italic ? "true" : "false") + " }";
    for (const char *type : {"RectangleCreatedDate", "RectangleCurrentDate"}) {
        with(QByteArray(type) + properties, [&](RunningApp &, QQuickItem *overlay) {
            const QList<QQuickItem *> lines = itemsWith(overlay, "styledFont");
            QCOMPARE(lines.size(), qstrcmp(type, "RectangleCreatedDate") == 0 ? 1 : 3);
            for (QQuickItem *line : lines) {
                QCOMPARE(fontOf(line).family(), u"Noto Serif"_s);
                QCOMPARE(fontOf(line).bold(), bold);
                QCOMPARE(fontOf(line).italic(), italic);
            }
        });
    }
}

void tst_DateRectangles::fontChangesWhileShown()
{
    with("RectangleCurrentDate { bold: false; font_family: 'Noto Sans' }",
         [](RunningApp &, QQuickItem *overlay) {
             const int regular = overlay->property("potential_width").toInt();
             overlay->setProperty("bold", true);
             QVERIFY(overlay->property("potential_width").toInt() > regular);
             QCOMPARE(overlay->width(), overlay->property("potential_width").toInt());
             overlay->setProperty("bold", false);
             QCOMPARE(overlay->property("potential_width").toInt(), regular);
             for (QQuickItem *line : itemsWith(overlay, "styledFont"))
                 QVERIFY(!fontOf(line).bold());
         });
}

void tst_DateRectangles::states()
{
    const QStringList names{u"top_left"_s, u"top_right"_s, u"bottom_left"_s, u"bottom_right"_s,
                            u"top_left"_s};
    const auto all = [&names](RunningApp &, QQuickItem *overlay) {
        for (int uid = 0; uid < names.size(); ++uid) {
            overlay->setProperty("position_uid", uid);
            QCOMPARE(overlay->state(), names.at(uid));
            QVariant state;
            QVERIFY(QMetaObject::invokeMethod(overlay, "getStateByPosition", Q_RETURN_ARG(QVariant, state),
                                              Q_ARG(QVariant, uid)));
            QCOMPARE(state.toString(), names.at(uid));
        }
        overlay->setProperty("position_uid", -1);
        QCOMPARE(overlay->state(), names.at(0));
    };
    with("RectangleCreatedDate {}", all);
    with("RectangleCurrentDate {}", all);
}

void tst_DateRectangles::minuteByMinute()
{
    with("RectangleCurrentDate {}", [this](RunningApp &running, QQuickItem *overlay) {
        const QDateTime before = overlay->property("datetime").toDateTime();
        QTRY_VERIFY(before.msecsTo(QDateTime::currentDateTime()) > 1);
        QCOMPARE(overlay->property("datetime").toDateTime(), before); // between two ticks it stands
        QVERIFY(m_test->device.fire("updateDateTimeEvent"));
        QVERIFY(overlay->property("datetime").toDateTime() > before);
        QVERIFY(overlay->property("datetime").toDateTime() <= running.app.currentDate());
    });
}

void tst_DateRectangles::noDate()
{
    // A show without pictures has none; what the device says of the beginning of time stands there.
    with("RectangleCreatedDate { datetime: SlideshowModel.created_datetime }",
         [](RunningApp &, QQuickItem *overlay) {
             QVERIFY(!overlay->property("datetime").toDateTime().isValid());
             QCOMPARE(itemsWith(overlay, "styledFont").value(0)->property("text").toString(),
                      deviceTime("%b %d, %Y", QDateTime::fromSecsSinceEpoch(0)));
         });
}

PANEL_TEST_MAIN(tst_DateRectangles)
#include "tst_date_rectangles.moc"
