// Texts whose place has a fixed size fit there in every language. Lengths are pixels of a 300 dpi panel.

#include <fallback_font.h>
#include <texts.h>

#include <QFont>
#include <QFontMetricsF>
#include <QGuiApplication>
#include <QTest>
#include <QTextLayout>

using namespace Qt::StringLiterals;
using namespace lindenreed::device;

namespace {

constexpr int smallestScreen = 1072; // width, upright
constexpr int dialogText = 960 - 2 * 48;
constexpr int emptyPageText = smallestScreen - 2 * 115;
// Of a panel of 758 pixels at 212 dpi, whose font is rounded up: the least room.
constexpr int storageText = 239 - 14 - 2 * 8;
constexpr int storageFont = 30;

QFont font(int size, bool bold)
{
    QFont font(u"Noto Sans"_s);
    font.setPixelSize(size);
    font.setBold(bold);
    font.setHintingPreference(QFont::PreferNoHinting);
    return font;
}

QString text(const char *key)
{
    return QString::fromUtf8(texts::text(key));
}

int linesOf(QString text, const QFont &font, int width)
{
    text.replace(u'\n', QChar::LineSeparator);
    QTextLayout layout(text, font);
    QTextOption option;
    option.setWrapMode(QTextOption::WordWrap);
    layout.setTextOption(option);
    layout.beginLayout();
    int lines = 0;
    for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
        line.setLineWidth(width);
        if (line.naturalTextWidth() > width)
            return 1000; // a word alone is too long
        ++lines;
    }
    layout.endLayout();
    return lines;
}

} // namespace

class tst_TextLengths : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void storageNames_data() { everyLanguage(); }
    void storageNames();
    void storageSpace_data() { everyLanguage(); }
    void storageSpace();
    void firstRun_data() { everyLanguage(); }
    void firstRun();
    void emptyPages_data() { everyLanguage(); }
    void emptyPages();
    void batteryNote_data() { everyLanguage(); }
    void batteryNote();

private:
    static void everyLanguage();
};

void tst_TextLengths::everyLanguage()
{
    QTest::addColumn<QString>("language");
    for (const QString &language :
         {u"en"_s, u"de"_s, u"fr"_s, u"es"_s, u"it"_s, u"pl"_s, u"uk"_s, u"ru"_s, u"zh_CN"_s, u"ja"_s})
        QTest::newRow(qPrintable(language)) << language;
}

void tst_TextLengths::init()
{
    QFETCH(QString, language);
    texts::load(language);
    QCOMPARE(texts::language(), language);
    QFont::removeSubstitutions(u"Noto Sans"_s);
    nameFallbackFont(language);
}

void tst_TextLengths::storageNames()
{
    for (const char *const key : {"@FlashDir", "@SDcard", "@OTG"}) {
        const double width = QFontMetricsF(font(50, true)).horizontalAdvance(text(key));
        QVERIFY2(width <= 280, qPrintable(u"%1: %2"_s.arg(text(key)).arg(width)));
    }
}

void tst_TextLengths::storageSpace()
{
    // Sizes have three digits in all.
    for (const QString &size : {u"88.8 "_s, u"888 "_s}) {
        const QString space = text("@AvailableDiskSpace").replace(u"%s"_s, size + text("@Size_GB"));
        QCOMPARE(linesOf(space, font(storageFont, true), storageText), 2);
    }
}

void tst_TextLengths::firstRun()
{
    const int message = linesOf(text("@DeviceWontTurnOffUntilYouStopPlayback"), font(58, true), dialogText);
    const int note = linesOf(text("@WhenPlaybackIsActiveTheDeviceWillNotAutomaticallyBeTurnedOff"),
                             font(50, false), dialogText);
    QVERIFY2(message + note <= 5, qPrintable(u"%1 and %2"_s.arg(message).arg(note)));
}

void tst_TextLengths::emptyPages()
{
    for (const char *const key : {"@ThereAreNoPicturesYet", "@ThereAreNoPlaylistsYet"})
        QVERIFY2(linesOf(text(key), font(50, false), emptyPageText) <= 2, key);
}

void tst_TextLengths::batteryNote()
{
    const int width = smallestScreen - 89 - 44 - 72 - 24;
    QVERIFY(linesOf(text("@NoteThatEnablingFrontlightLeadsToFasterBatteryDraining"), font(42, false), width)
            <= 2);
}

int main(int argc, char *argv[])
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication application(argc, argv);
    tst_TextLengths test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_text_lengths.moc"
