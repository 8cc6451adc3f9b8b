// The dates on the picture as the panel shows them: letters that stay in their lines, on several panels and
// in several languages, and a date that follows the picture.

#include "show_device.h"
#include "stored_database.h"

#include <QTest>

#include <memory>

using namespace Qt::StringLiterals;

namespace {

bool write(const QString &path, const QByteArray &contents)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(contents) == contents.size();
}

} // namespace

class tst_ShowDates : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void lettersStayInTheirLines_data();
    void lettersStayInTheirLines();
    void dateFollowsThePicture();

private:
    bool start(const QString &profile, const QString &language, const QStringList &settings);
    QHash<QString, QJsonObject> items(); ///< by id; of several the last

    std::unique_ptr<ShowDevice> m_device;
};

void tst_ShowDates::init()
{
    stored_database::remove();
    m_device = std::make_unique<ShowDevice>();
}

void tst_ShowDates::cleanup()
{
    QCOMPARE(m_device->unexpectedErrors(), QByteArrayList());
    m_device.reset();
}

QHash<QString, QJsonObject> tst_ShowDates::items()
{
    QHash<QString, QJsonObject> byId;
    for (const QJsonObject &item : m_device->items())
        byId.insert(item.value("id"_L1).toString(), item);
    return byId;
}

/// A show whose settings are those of a first start but for `settings`, each "name=value".
bool tst_ShowDates::start(const QString &profile, const QString &language, const QStringList &settings)
{
    QStringList statements{u"UPDATE settings SET value = '0' WHERE name = 'is_first_run'"_s};
    for (const QString &setting : settings)
        statements.append(u"UPDATE settings SET value = '%2' WHERE name = '%1'"_s.arg(
            setting.section(u'=', 0, 0), setting.section(u'=', 1)));
    if (!write(u"/devroot/device.json"_s, "{\"profile\":\"" + profile.toUtf8() + "\"}")
        || !write(u"/mnt/ext1/system/config/global.cfg"_s, "language=" + language.toUtf8() + '\n')
        || !m_device->start())
        return false;
    m_device = std::make_unique<ShowDevice>(); // the first start has made the database
    if (!stored_database::execute(statements) || !m_device->start())
        return false;
    return m_device->press(u"#play_button"_s); // whatever its name is in this language
}

void tst_ShowDates::lettersStayInTheirLines_data()
{
    QTest::addColumn<QString>("profile");
    QTest::addColumn<QString>("language");
    QTest::addColumn<QString>("style");

    QTest::newRow("212 dpi, English") << u"grey-6"_s << u"en"_s << u"0"_s;
    QTest::newRow("212 dpi, Ukrainian, bold and italic") << u"grey-6"_s << u"uk"_s << u"1"_s;
    QTest::newRow("300 dpi, colour, German, bold and italic") << u"colour-6"_s << u"de"_s << u"1"_s;
    QTest::newRow("300 dpi, colour, Japanese") << u"colour-6"_s << u"ja"_s << u"0"_s;
    QTest::newRow("300 dpi, Polish, bold and italic") << u"grey-8"_s << u"pl"_s << u"1"_s;
}

void tst_ShowDates::lettersStayInTheirLines()
{
    QFETCH(QString, profile);
    QFETCH(QString, language);
    QFETCH(QString, style);

    const QString first = u"/mnt/ext1/Photo/01.jpg"_s;
    QVERIFY(QFile::rename(first, first + u".kept"_s));
    QImage black(8, 8, QImage::Format_Grayscale8);
    black.fill(0);
    QVERIFY(black.save(first, "PNG"));
    QStringList settings{u"current_date_show=1"_s, u"current_date_position=3"_s,
                         u"created_date_position=3"_s};
    for (const QString &name : {u"bold"_s, u"italic"_s})
        settings += {u"current_date_font_is_%1=%2"_s.arg(name, style),
                     u"created_date_font_is_%1=%2"_s.arg(name, style)};
    const bool started = start(profile, language, settings);
    QVERIFY(QFile::remove(first) && QFile::rename(first + u".kept"_s, first));
    QVERIFY(started);

    const QHash<QString, QJsonObject> byId = items();
    const QImage panel = m_device->screenshot();
    const auto dp
        = [&](double design) { return qRound(design * 0.53 * (profile == "grey-6"_L1 ? 212 : 300) / 160); };
    const QStringList ids{u"main_txt"_s, u"subtext"_s, u"subtext2"_s, u"txt"_s};
    QList<QRect> lines;
    for (const QString &id : ids) {
        QVERIFY2(byId.contains(id), qPrintable(id));
        lines.append(ShowDevice::rectangleOf(byId.value(id)));
    }
    // Both overlays, from the right edge of the picture; the frame and its round corners left out.
    const int icon = qRound(48.0 * (profile == "grey-6"_L1 ? 212 : 300) / 300);
    const int width
        = std::max(2 * dp(40) + icon + lines.at(3).width() + dp(15.5), 2 * dp(35) + lines.at(0).width());
    const int right = panel.width() - dp(48);
    const int bottom = panel.height() - dp(48);
    const QRect created(right - width, bottom - 2 * dp(15) - lines.at(3).height(), width,
                        2 * dp(15) + lines.at(3).height());
    const QRect current(right - width, created.top() - dp(24) - dp(347), width, dp(347));
    for (int i = 0; i < 4; ++i) {
        const QRect &frame = i < 3 ? current : created;
        QVERIFY2(frame.adjusted(2, 2, -2, -2).contains(lines.at(i)), qPrintable(ids.at(i)));
    }

    const auto hasInk = [&](int y, int from, int to) {
        for (int x = from; x < to; ++x) {
            if (qGray(panel.pixel(x, y)) > 0x30)
                return true;
        }
        return false;
    };
    const int inset = dp(30);
    for (int i = 0; i < 4; ++i) {
        bool ink = false;
        for (int y = lines.at(i).top(); y <= lines.at(i).bottom(); ++y)
            ink = ink || hasInk(y, lines.at(i).left(), lines.at(i).right());
        QVERIFY2(ink, qPrintable(ids.at(i)));
        // Blank where the line begins and after it has ended.
        for (const int y : {lines.at(i).top(), lines.at(i).bottom() + 1})
            QVERIFY2(!hasInk(y, current.left() + inset, current.right() - inset), qPrintable(ids.at(i)));
    }
    for (int y = current.top() + inset; y < lines.at(0).top(); ++y)
        QVERIFY(!hasInk(y, current.left() + inset, current.right() - inset));
    for (int y = lines.at(2).bottom() + 1; y < current.bottom() - inset; ++y)
        QVERIFY(!hasInk(y, current.left() + inset, current.right() - inset));
}

void tst_ShowDates::dateFollowsThePicture()
{
    QVERIFY(start(u"grey-6"_s, u"en"_s, {}));
    QStringList dates;
    for (int i = 0; i < 3; ++i) {
        dates.append(items().value(u"txt"_s).value("name"_L1).toString());
        QVERIFY(m_device->fire(u"nextImageEvent"_s));
    }
    QCOMPARE(dates.at(0), u"Oct 14, 2023"_s); // in the file
    QCOMPARE(dates.removeDuplicates(), 0);
}

QTEST_GUILESS_MAIN(tst_ShowDates)
#include "tst_show_dates.moc"
