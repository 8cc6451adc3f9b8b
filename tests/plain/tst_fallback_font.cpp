// Han characters come from the font of the device language, everything else from the interface's own.

#include <fallback_font.h>

#include <QFont>
#include <QGlyphRun>
#include <QGuiApplication>
#include <QRawFont>
#include <QTest>
#include <QTextLayout>

using namespace Qt::StringLiterals;
using namespace lindenreed::device;

namespace {

QStringList familiesOf(const QString &text, bool bold)
{
    QFont font(u"Noto Sans"_s);
    static int size = 20;
    font.setPixelSize(++size); // fonts of a size seen before keep what they were made of
    font.setBold(bold);
    QTextLayout layout(text, font);
    layout.beginLayout();
    layout.createLine();
    layout.endLayout();
    QStringList families;
    const QList<QGlyphRun> runs = layout.glyphRuns();
    for (const QGlyphRun &run : runs)
        families.append(run.rawFont().familyName()
                        + (run.rawFont().weight() >= QFont::Bold ? u" bold"_s : QString()));
    families.removeDuplicates();
    return families;
}

} // namespace

class tst_FallbackFont : public QObject
{
    Q_OBJECT

private slots:
    void cleanup() { QFont::removeSubstitutions(u"Noto Sans"_s); }
    void families_data();
    void families();
    void namedTwice();
};

void tst_FallbackFont::families_data()
{
    QTest::addColumn<QString>("language");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("family");

    QTest::newRow("Chinese") << u"zh_CN"_s << u"直接删除"_s << u"Noto Sans CJK SC"_s;
    QTest::newRow("Japanese") << u"ja"_s << u"直接削除"_s << u"Noto Sans CJK JP"_s;
    QTest::newRow("kana") << u"ja"_s << u"スライド"_s << u"Noto Sans CJK JP"_s;
    QTest::newRow("a Chinese name on an English device") << u"en"_s << u"照片"_s << u"Noto Sans CJK SC"_s;
    QTest::newRow("letters on a Japanese device") << u"ja"_s << u"SD Ночь"_s << u"Noto Sans"_s;
}

void tst_FallbackFont::families()
{
    QFETCH(QString, language);
    QFETCH(QString, text);
    QFETCH(QString, family);

    nameFallbackFont(language);
    QCOMPARE(familiesOf(text, false), QStringList(family));
    QCOMPARE(familiesOf(text, true), QStringList(family + u" bold"_s)); // a face of its own
}

void tst_FallbackFont::namedTwice()
{
    nameFallbackFont(u"ja"_s);
    nameFallbackFont(u"ja"_s);
    QCOMPARE(QFont::substitutes(u"Noto Sans"_s), QStringList(u"noto sans cjk jp"_s));
}

int main(int argc, char *argv[])
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication application(argc, argv);
    tst_FallbackFont test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_fallback_font.moc"
