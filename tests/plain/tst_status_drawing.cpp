// The status panel's looks.

#include <status_drawing.h>

#include <QGuiApplication>
#include <QTest>

using namespace Qt::StringLiterals;
using lindenreed::device::drawStatusPanel;
using lindenreed::device::StatusValues;

namespace {

constexpr int dpi = 300; // so that design pixels are pixels
const QSize size(1404, 64);

/// First and last column of `area` with ink; -1 without any.
std::pair<int, int> ink(const QImage &picture, int from, int to)
{
    std::pair<int, int> columns(-1, -1);
    for (int x = from; x < to; ++x) {
        for (int y = 0; y < picture.height(); ++y) {
            if (qGray(picture.pixel(x, y)) > 200)
                continue;
            if (columns.first < 0)
                columns.first = x;
            columns.second = x;
        }
    }
    return columns;
}

int blackIn(const QImage &picture, const QRect &area)
{
    int black = 0;
    for (int y = area.top(); y <= area.bottom(); ++y) {
        for (int x = area.left(); x <= area.right(); ++x)
            black += qGray(picture.pixel(x, y)) < 128 ? 1 : 0;
    }
    return black;
}

QImage draw(const StatusValues &values)
{
    return drawStatusPanel(size, dpi, QImage::Format_Grayscale8, values);
}

} // namespace

class tst_StatusDrawing : public QObject
{
    Q_OBJECT

private slots:
    void noRoom();
    void nothingToTell();
    void clockAtTheLeft();
    void rightEdge();
    void signsOnlyWhenThere();
    void batteryFillsInFifths();
    void percentText();
};

void tst_StatusDrawing::noRoom()
{
    QTest::failOnWarning(QRegularExpression(QStringLiteral(".")));
    QVERIFY(drawStatusPanel(QSize(758, 0), dpi, QImage::Format_Grayscale8, {}).isNull());
}

void tst_StatusDrawing::nothingToTell()
{
    const QImage picture = draw({});
    QCOMPARE(picture.size(), size);
    QCOMPARE(picture.format(), QImage::Format_Grayscale8);
    QCOMPARE(ink(picture, 0, size.width()).first, -1);
}

void tst_StatusDrawing::clockAtTheLeft()
{
    const auto columns = ink(draw({u"14:32"_s, false, false, false, std::nullopt}), 0, size.width());
    QVERIFY(columns.first >= 60 && columns.first <= 66);
    QVERIFY(columns.second < 200);
}

void tst_StatusDrawing::rightEdge()
{
    const auto columns = ink(draw({{}, false, false, false, 80}), 0, size.width());
    QVERIFY(columns.second < size.width() - 60);
    QVERIFY(columns.second > size.width() - 66);
}

void tst_StatusDrawing::signsOnlyWhenThere()
{
    StatusValues values;
    values.light = true;
    const auto light = ink(draw(values), 0, size.width());
    QVERIFY(light.first >= size.width() - 60 - 40);
    QVERIFY(light.second < size.width() - 60);
    values.usb = true;
    const auto usb = ink(draw(values), 0, size.width());
    QVERIFY(usb.first < size.width() - 60 - 60); // 20 apart, to the left of the light
    values.card = true;
    const auto card = ink(draw(values), 0, size.width());
    QVERIFY(card.first < size.width() - 60 - 120);
    QCOMPARE(card.second, light.second);
}

void tst_StatusDrawing::batteryFillsInFifths()
{
    int before = -1;
    for (const int percent : {0, 20, 40, 60, 80, 100}) {
        const QImage picture = draw({{}, false, false, false, percent});
        const int left = ink(picture, 0, size.width()).first;
        const int black = blackIn(picture, QRect(left, 18, 52, 28));
        QVERIFY2(black > before, qPrintable(QString::number(percent)));
        before = black;
        const int sameFifth = qMax(0, percent - 19);
        const QImage same = draw({{}, false, false, false, percent == 0 ? 0 : sameFifth});
        const int sameLeft = ink(same, 0, size.width()).first;
        QCOMPARE(blackIn(same, QRect(sameLeft, 18, 52, 28)), black);
    }
}

void tst_StatusDrawing::percentText()
{
    QCOMPARE(lindenreed::device::batteryText(80), u"80\u00a0%"_s);
    QCOMPARE(lindenreed::device::batteryText(101), u"100\u00a0%"_s);
}

int main(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QGuiApplication application(argc, argv);
    tst_StatusDrawing test;
    return QTest::qExec(&test, argc, argv);
}
#include "tst_status_drawing.moc"
