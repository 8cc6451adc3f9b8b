// The language tables of the device: complete, with every plural form and the right placeholders, and what
// they say.

#include <placeholders.h>
#include <texts.h>

#include <stderr_capture.h>

#include <QCoreApplication>
#include <QDirIterator>
#include <QFile>
#include <QHash>
#include <QMap>
#include <QRegularExpression>
#include <QSet>
#include <QTest>
#include <QXmlStreamReader>

using namespace Qt::StringLiterals;
using namespace lindenreed::device;

namespace {

/// A message of a table's source.
struct Message
{
    bool plural = false;
    bool finished = true;
    QStringList forms;
};

using Messages = QMap<QString, Message>;

/// Plural forms of each language that the device speaks.
const QMap<QString, int> &languages()
{
    static const QMap<QString, int> all{{u"de"_s, 2}, {u"en"_s, 2},   {u"es"_s, 2}, {u"fr"_s, 2},
                                        {u"it"_s, 2}, {u"ja"_s, 1},   {u"pl"_s, 3}, {u"ru"_s, 3},
                                        {u"uk"_s, 3}, {u"zh_CN"_s, 1}};
    return all;
}

QString sources(const QString &below)
{
    return QStringLiteral(SLATE_SOURCES) + u'/' + below;
}

void readTranslation(QXmlStreamReader &xml, Message &message)
{
    message.finished = xml.attributes().isEmpty();
    if (!message.plural) {
        message.forms.append(xml.readElementText());
        return;
    }
    while (xml.readNextStartElement())
        message.forms.append(xml.readElementText());
}

Messages readSource(const QString &language)
{
    Messages messages;
    QFile file(sources(u"device/data/languages/%1.ts"_s.arg(language)));
    if (!file.open(QIODevice::ReadOnly))
        return messages;
    QString key;
    Message message;
    QXmlStreamReader xml(&file);
    while (!xml.atEnd()) {
        if (xml.readNext() == QXmlStreamReader::EndElement && xml.name() == u"message"_s)
            messages.insert(key, message);
        if (!xml.isStartElement())
            continue;
        if (xml.name() == u"TS"_s && xml.attributes().value(u"language"_s) != language)
            return {}; // the plural rules would be another language's
        if (xml.name() == u"message"_s)
            message = {xml.attributes().value(u"numerus"_s) == u"yes"_s, true, {}};
        if (xml.name() == u"source"_s)
            key = xml.readElementText();
        if (xml.name() == u"translation"_s)
            readTranslation(xml, message);
    }
    return xml.hasError() ? Messages() : messages;
}

/// Keys in the sources of a folder, each with a file that has it.
QHash<QString, QString> keysBelow(const QString &folder)
{
    static const QRegularExpression key(u"[\"'](@[A-Za-z]\\w*)[\"']"_s);
    QHash<QString, QString> keys;
    QDirIterator files(sources(folder), {u"*.qml"_s, u"*.cpp"_s, u"*.h"_s}, QDir::Files,
                       QDirIterator::Subdirectories);
    while (files.hasNext()) {
        QFile file(files.next());
        if (!file.open(QIODevice::ReadOnly))
            continue;
        const QString content = QString::fromUtf8(file.readAll());
        for (auto matches = key.globalMatch(content); matches.hasNext();)
            keys.insert(matches.next().captured(1), file.fileName());
    }
    return keys;
}

void everyLanguage()
{
    QTest::addColumn<QString>("language");
    for (const QString &language : languages().keys())
        QTest::newRow(qPrintable(language)) << language;
}

} // namespace

class tst_Languages : public QObject
{
    Q_OBJECT

private slots:
    void allLanguagesAreThere();
    void keysInUse_data();
    void keysInUse();
    void complete_data() { everyLanguage(); }
    void complete();
    void wellSet_data() { everyLanguage(); }
    void wellSet();
    void loadsWithoutAWord_data() { everyLanguage(); }
    void loadsWithoutAWord();
    void plurals_data();
    void plurals();
    void months_data();
    void months();
    void bothWaysToAText();
};

void tst_Languages::allLanguagesAreThere()
{
    QStringList sourceNames = QDir(sources(u"device/data/languages"_s)).entryList({u"*.ts"_s}, QDir::Files);
    sourceNames.replaceInStrings(u".ts"_s, QString());
    QCOMPARE(sourceNames, languages().keys());
}

void tst_Languages::keysInUse_data()
{
    QTest::addColumn<QString>("folder");
    QTest::addColumn<QString>("oneOfThem");

    QTest::newRow("native classes of the application") << u"picture_stand/src"_s << u"@KA_next"_s;
    QTest::newRow("screens of the application") << u"picture_stand/qml"_s << u"@StartPlayback"_s;
    QTest::newRow("controls of the device") << u"device/controls"_s << u"@Close"_s;
    QTest::newRow("the device's own drawings") << u"device/platform"_s << QString();
    QTest::newRow("libraries of the device") << u"device/sdk"_s << u"@Size_GB"_s;
}

void tst_Languages::keysInUse()
{
    QFETCH(QString, folder);
    QFETCH(QString, oneOfThem);

    const Messages english = readSource(u"en"_s);
    const QHash<QString, QString> keys = keysBelow(folder);
    QVERIFY2(oneOfThem.isEmpty() || keys.contains(oneOfThem), "the search finds nothing");
    for (auto key = keys.cbegin(); key != keys.cend(); ++key)
        QVERIFY2(english.contains(key.key()), qPrintable(key.key() + u" of "_s + key.value()));
}

void tst_Languages::complete()
{
    QFETCH(QString, language);

    const Messages english = readSource(u"en"_s);
    const Messages messages = readSource(language);
    QVERIFY(english.size() > 62);
    QCOMPARE(messages.keys(), english.keys());
    for (auto at = messages.cbegin(); at != messages.cend(); ++at) {
        const Message &expected = english[at.key()];
        QVERIFY2(at->finished, qPrintable(at.key()));
        QVERIFY2(at->plural == expected.plural, qPrintable(at.key()));
        const qsizetype forms = at->plural ? languages()[language] : 1;
        QVERIFY2(at->forms.size() == forms, qPrintable(at.key()));
        for (const QString &form : at->forms) {
            QVERIFY2(!form.isEmpty(), qPrintable(at.key()));
            QVERIFY2(placeholders(form) == placeholders(expected.forms.constLast()), qPrintable(form));
        }
    }
}

void tst_Languages::wellSet()
{
    QFETCH(QString, language);

    static const QRegularExpression typewriter(u"['\"]|\\.\\.\\.|  |^\\s|\\s$|!"_s);
    static const QRegularExpression looseUnit(u"\\d [^\\d]"_s);
    const Messages messages = readSource(language);
    for (const Message &message : messages) {
        for (const QString &form : message.forms) {
            QVERIFY2(!typewriter.match(form).hasMatch(), qPrintable(form));
            QVERIFY2(!looseUnit.match(form).hasMatch(), qPrintable(form));
        }
    }
    // Buttons, titles and rows end without a full stop; only the two empty pages are sentences.
    for (auto at = messages.cbegin(); at != messages.cend(); ++at) {
        const QString text = at->forms.constFirst();
        const bool sentence = text.endsWith(u'.') || text.endsWith(u'。');
        QCOMPARE(sentence, at.key().startsWith(u"@ThereAreNo"_s));
    }
}

void tst_Languages::loadsWithoutAWord()
{
    QFETCH(QString, language);

    const StderrCapture log;
    texts::load(language);
    QCOMPARE(log.text(), QByteArray());
    QCOMPARE(texts::language(), language);
    const Messages messages = readSource(language);
    for (auto at = messages.cbegin(); at != messages.cend(); ++at)
        QCOMPARE(QString::fromUtf8(texts::text(at.key().toUtf8().constData())), at->forms.constFirst());
}

void tst_Languages::plurals_data()
{
    QTest::addColumn<QString>("language");
    QTest::addColumn<QList<int>>("counts");
    QTest::addColumn<QString>("second");
    QTest::addColumn<QString>("hour");

    using Counts = QList<int>;
    const auto row = [](const char *language, const char *name, const Counts &counts, const QString &second,
                        const QString &hour) {
        QTest::addRow("%s, %s", language, name) << QString::fromLatin1(language) << counts << second << hour;
    };
    row("en", "one", Counts{1}, u"second"_s, u"hour"_s);
    row("en", "others", Counts{0, 2, 5, 11, 21, 101}, u"seconds"_s, u"hours"_s);
    row("de", "one", Counts{1}, u"Sekunde"_s, u"Stunde"_s);
    row("de", "others", Counts{0, 2, 21, 101}, u"Sekunden"_s, u"Stunden"_s);
    row("fr", "none and one", Counts{0, 1}, u"seconde"_s, u"heure"_s);
    row("fr", "others", Counts{2, 21, 101}, u"secondes"_s, u"heures"_s);
    row("es", "one", Counts{1}, u"segundo"_s, u"hora"_s);
    row("es", "others", Counts{0, 2, 21, 101}, u"segundos"_s, u"horas"_s);
    row("it", "one", Counts{1}, u"secondo"_s, u"ora"_s);
    row("it", "others", Counts{0, 2, 21, 101}, u"secondi"_s, u"ore"_s);
    row("pl", "one", Counts{1}, u"sekunda"_s, u"godzina"_s);
    row("pl", "two to four", Counts{2, 3, 4, 22, 34, 102}, u"sekundy"_s, u"godziny"_s);
    row("pl", "others", Counts{0, 5, 11, 12, 14, 21, 25, 101, 112}, u"sekund"_s, u"godzin"_s);
    row("ru", "one", Counts{1, 21, 101}, u"секунда"_s, u"час"_s);
    row("ru", "two to four", Counts{2, 3, 4, 22, 34, 102}, u"секунды"_s, u"часа"_s);
    row("ru", "others", Counts{0, 5, 11, 12, 14, 25, 111, 112}, u"секунд"_s, u"часов"_s);
    row("uk", "one", Counts{1, 21, 101}, u"секунда"_s, u"година"_s);
    row("uk", "two to four", Counts{2, 3, 4, 22, 34, 102}, u"секунди"_s, u"години"_s);
    row("uk", "others", Counts{0, 5, 11, 12, 14, 25, 111, 112}, u"секунд"_s, u"годин"_s);
    row("zh_CN", "any", Counts{0, 1, 2, 5, 21}, u"秒"_s, u"小时"_s);
    row("ja", "any", Counts{0, 1, 2, 5, 21}, u"秒"_s, u"時間"_s);
}

void tst_Languages::plurals()
{
    QFETCH(QString, language);
    QFETCH(QList<int>, counts);
    QFETCH(QString, second);
    QFETCH(QString, hour);

    texts::load(language);
    for (const int count : counts) {
        QCOMPARE(QString::fromUtf8(texts::plural("@Second", count)), second);
        QCOMPARE(QCoreApplication::translate("Settings", "@Hour", "0", count), hour);
    }
}

void tst_Languages::months_data()
{
    QTest::addColumn<QString>("language");
    QTest::addColumn<int>("month");
    QTest::addColumn<QString>("besideADay");
    QTest::addColumn<QString>("alone");
    QTest::addColumn<QString>("abbreviated");
    QTest::addColumn<QString>("day");

    const auto row = [](const char *language, int month, const QString &besideADay, const QString &alone,
                        const QString &abbreviated, const QString &day) {
        QTest::addRow("%s, month %d", language, month)
            << QString::fromLatin1(language) << month << besideADay << alone << abbreviated << day;
    };
    row("en", 5, u" 7 May"_s, u"May"_s, u"May"_s, u"Sunday, 00:04 2023"_s);
    row("de", 3, u" 7 März"_s, u"März"_s, u"März"_s, u"Sonntag, 00:04 2023"_s);
    row("fr", 8, u" 7 août"_s, u"août"_s, u"août"_s, u"dimanche, 00:04 2023"_s);
    row("es", 12, u" 7 de diciembre"_s, u"diciembre"_s, u"dic"_s, u"domingo, 00:04 2023"_s);
    row("it", 1, u" 7 gennaio"_s, u"gennaio"_s, u"gen"_s, u"domenica, 00:04 2023"_s);
    row("pl", 2, u" 7 lutego"_s, u"luty"_s, u"lut"_s, u"niedziela, 00:04 2023"_s);
    row("pl", 10, u" 7 października"_s, u"październik"_s, u"paź"_s, u"niedziela, 00:04 2023"_s);
    row("uk", 2, u" 7 лютого"_s, u"лютий"_s, u"лют."_s, u"неділя, 00:04 2023"_s);
    row("uk", 11, u" 7 листопада"_s, u"листопад"_s, u"лист."_s, u"неділя, 00:04 2023"_s);
    row("ru", 5, u" 7 мая"_s, u"май"_s, u"мая"_s, u"воскресенье, 00:04 2023"_s);
    row("ru", 8, u" 7 августа"_s, u"август"_s, u"авг."_s, u"воскресенье, 00:04 2023"_s);
    row("zh_CN", 2, u" 7 二月"_s, u"二月"_s, u"2月"_s, u"星期日, 00:04 2023"_s);
    row("ja", 2, u" 7 2月"_s, u"2月"_s, u"2月"_s, u"日曜日, 00:04 2023"_s);
}

void tst_Languages::months()
{
    QFETCH(QString, language);
    QFETCH(int, month);
    QFETCH(QString, besideADay);
    QFETCH(QString, alone);
    QFETCH(QString, abbreviated);
    QFETCH(QString, day);

    std::tm time{};
    time.tm_year = 123;
    time.tm_mon = month - 1;
    time.tm_mday = 7;
    time.tm_min = 4;
    texts::load(language);
    QCOMPARE(QString::fromUtf8(texts::time("%e %l", time)), besideADay);
    QCOMPARE(QString::fromUtf8(texts::time("%B", time)), alone);
    QCOMPARE(QString::fromUtf8(texts::time("%A, %H:%M %Y", time)), day);
    QCOMPARE(QString::fromUtf8(texts::time("%b", time)), abbreviated);
}

void tst_Languages::bothWaysToAText()
{
    texts::load(u"ja"_s);
    QCOMPARE(QCoreApplication::translate("Playlists", "@Delete"), u"削除"_s);
    QCOMPARE(QString::fromUtf8(texts::text("@Delete")), u"削除"_s);
    texts::load(u"uk_UA"_s);
    QCOMPARE(QCoreApplication::translate("Playlists", "@Delete"), u"Видалити"_s);
    QCOMPARE(QString::fromUtf8(texts::text("@Delete")), u"Видалити"_s);
}

QTEST_GUILESS_MAIN(tst_Languages)
#include "tst_languages.moc"
