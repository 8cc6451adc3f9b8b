// Language tables that are not as they should be: damaged, unreadable, with wrong placeholders.

#include <language_table.h>
#include <paths.h>
#include <placeholders.h>
#include <texts.h>

#include <obeyed_permissions.h>
#include <stderr_capture.h>

#include <QCoreApplication>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <algorithm>
#include <memory>

using namespace Qt::StringLiterals;
using namespace lindenreed::device;

namespace {

constexpr qsizetype headSize = 16;
constexpr qsizetype sectionHeadSize = 5;

QByteArray tableOf(const QString &language, const QString &folder = dataFolder() + u"/languages"_s)
{
    QFile file(folder + u'/' + language + u".qm"_s);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/// As a table holds a text.
QByteArray stored(const QString &text)
{
    QByteArray bytes;
    for (const QChar letter : text)
        bytes.append(char(letter.unicode() >> 8)).append(char(letter.unicode() & 0xff));
    return bytes;
}

/// As a table holds a number.
QByteArray stored(quint32 number)
{
    QByteArray bytes;
    for (int shift = 24; shift >= 0; shift -= 8)
        bytes.append(char(number >> shift & 0xff));
    return bytes;
}

} // namespace

class tst_LanguageTables : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void placeholdersOfAText_data();
    void placeholdersOfAText();
    void wholeTable();
    void cutAnywhere();
    void anyByteWrong();
    void damaged_data();
    void damaged();
    void unreadable();
    void damagedEnglish();
    void wrongPlaceholders_data();
    void wrongPlaceholders();
    void withoutEnglish();

private:
    QString folder() const { return m_folder->path(); }
    static QString smallTables() { return QStringLiteral(TEST_LANGUAGES); }
    void write(const QString &language, const QByteArray &table) const;

    std::unique_ptr<QTemporaryDir> m_folder; ///< with the English and the Polish table
};

void tst_LanguageTables::write(const QString &language, const QByteArray &table) const
{
    QFile file(folder() + u'/' + language + u".qm"_s);
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(table), table.size());
}

void tst_LanguageTables::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    QVERIFY(m_folder->isValid());
    write(u"en"_s, tableOf(u"en"_s));
    write(u"pl"_s, tableOf(u"pl"_s));
    texts::load(u"ja"_s); // what a test loads next is another language
}

void tst_LanguageTables::placeholdersOfAText_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QStringList>("inOrder");
    QTest::addColumn<QStringList>("numbered");

    const auto row = [](const char *name, const QString &text, const QStringList &inOrder,
                        const QStringList &numbered) { QTest::newRow(name) << text << inOrder << numbered; };
    row("none", u"Play"_s, {}, {});
    row("empty", {}, {}, {});
    row("two texts", u"%s of %s"_s, {u"%s"_s, u"%s"_s}, {});
    row("text and number", u"%s has %d"_s, {u"%s"_s, u"%d"_s}, {});
    row("other kinds", u"%n %lu %5.2f %-3c %*d"_s, {u"%n"_s, u"%lu"_s, u"%5.2f"_s, u"%-3c"_s, u"%*d"_s}, {});
    row("by position", u"%2$s %1$s"_s, {u"%2$s"_s, u"%1$s"_s}, {});
    row("Qt's, sorted", u"%2 (%1)"_s, {}, {u"%1"_s, u"%2"_s});
    row("Qt's before a full stop", u"%1."_s, {}, {u"%1"_s});
    row("Qt's in the locale's digits", u"%L1 %11"_s, {}, {u"%11"_s, u"%L1"_s});
    row("percent signs", u"100 %% of %s"_s, {u"%s"_s}, {});
    row("a percent sign at the end", u"100 %"_s, {u"%"_s}, {});
    row("a percent sign that takes the next letter along", u"50 % der"_s, {u"% d"_s}, {});
    row("in other scripts", u"已将 %s 张照片添加到“%s”"_s, {u"%s"_s, u"%s"_s}, {});
}

void tst_LanguageTables::placeholdersOfAText()
{
    QFETCH(QString, text);
    QFETCH(QStringList, inOrder);
    QFETCH(QStringList, numbered);

    const Placeholders found = placeholders(text);
    QCOMPARE(found.inOrder, inOrder);
    QCOMPARE(found.numbered, numbered);
}

void tst_LanguageTables::wholeTable()
{
    QString error;
    const auto table = LanguageTable::read(folder() + u"/pl.qm"_s, &error);
    QVERIFY2(table, qPrintable(error));
    QVERIFY(table->entries().size() > 62);
    QCOMPARE(table->find("@Delete", -1), u"Usuń"_s);
    QCOMPARE(table->find("@Delete", 3), u"Usuń"_s);
    QCOMPARE(table->find("@Second", 3), u"sekundy"_s);
    QCOMPARE(table->find("@Second", -1), u"sekunda"_s);
    QCOMPARE(table->find("@Nothing", 3), QString());
    const auto second = std::find_if(table->entries().cbegin(), table->entries().cend(),
                                     [](const auto &entry) { return entry.key == "@Second"; });
    QVERIFY(second != table->entries().cend());
    QCOMPARE(second->forms, (QStringList{u"sekunda"_s, u"sekundy"_s, u"sekund"_s}));
}

void tst_LanguageTables::cutAnywhere()
{
    const QByteArray whole = tableOf(u"pl"_s, smallTables());
    // Where a section ends a shorter file is whole as well, only poorer: its plural rules are the last
    // section.
    qsizetype rules = headSize;
    for (qsizetype at = headSize; at < whole.size();) {
        rules = at;
        at += sectionHeadSize + (uchar(whole[at + 3]) << 8 | uchar(whole[at + 4]));
    }
    for (qsizetype length = 0; length < whole.size(); ++length) {
        const auto table = LanguageTable::fromBytes(whole.first(length));
        QVERIFY2(!table || length == rules || table->entries().isEmpty(),
                 qPrintable(QString::number(length)));
    }
}

void tst_LanguageTables::anyByteWrong()
{
    const QByteArray whole = tableOf(u"pl"_s, smallTables());
    int refused = 0;
    for (qsizetype at = 0; at < whole.size(); ++at) {
        QByteArray wrong = whole;
        wrong[at] = char(uchar(wrong[at]) ^ 0xff);
        const auto table = LanguageTable::fromBytes(wrong);
        if (!table) {
            ++refused;
            continue;
        }
        // Another text, but nothing that a look-up could trip over.
        for (const LanguageTable::Entry &entry : table->entries())
            QVERIFY(!table->find(entry.key, 5).isEmpty() || entry.forms.contains(QString()));
    }
    QVERIFY2(refused > whole.size() / 3, qPrintable(QString::number(refused)));
}

void tst_LanguageTables::damaged_data()
{
    QTest::addColumn<QByteArray>("table");

    const QByteArray whole = tableOf(u"pl"_s);
    const QByteArray head = whole.first(headSize);
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("text") << QByteArray("<?xml version=\"1.0\"?>");
    QTest::newRow("cut in the middle") << whole.first(whole.size() / 2);
    QTest::newRow("more behind it") << whole + "more";
    QTest::newRow("a section twice") << whole + whole.sliced(headSize);
    QTest::newRow("a section of no bytes") << whole + char(0xa7) + stored(0U);
    QTest::newRow("a section that is longer than the file") << head + 'i' + stored(0xffffffffU) + "i";
    QTest::newRow("names of further files") << whole + char(0x96) + stored(4U) + stored(u"ab"_s);
    const qsizetype rules = whole.lastIndexOf(QByteArray("\x88\0\0\0", 4)) + sectionHeadSize;
    QTest::newRow("plural rules that are none") << QByteArray(whole).replace(rules, 1, "\xff");
    QTest::newRow("a text that leaves the file") << head + 'i' + stored(5U) + char(3) + stored(0x7ffffffeU)
            + 'B' + stored(8U) + stored(1U) + stored(0U);
    QTest::newRow("a look-up that leaves the file")
        << QByteArray(whole).replace(whole.indexOf('B') + 9, 4, stored(0xfffffff0U));
    QTest::newRow("five megabytes") << whole + QByteArray(5'000'000, 'x');
}

void tst_LanguageTables::damaged()
{
    QFETCH(QByteArray, table);

    write(u"pl"_s, table);
    const StderrCapture log;
    texts::load(u"pl"_s, folder());
    QCOMPARE(texts::language(), u"en"_s);
    QCOMPARE(QByteArray(texts::text("@Delete")), QByteArray("Delete"));
    const QByteArray lines = log.text();
    QCOMPARE(lines.count('\n'), 1);
    QVERIFY2(lines.endsWith("/pl.qm is no whole language table; English takes its place\n"),
             lines.constData());
}

void tst_LanguageTables::unreadable()
{
    const ObeyedPermissions asOrdinaryUser;
    QVERIFY(QFile::setPermissions(folder() + u"/pl.qm"_s, {}));
    const StderrCapture log;
    texts::load(u"pl"_s, folder());
    QCOMPARE(texts::language(), u"en"_s);
    const QByteArray lines = log.text();
    QCOMPARE(lines.count('\n'), 1);
    QVERIFY2(lines.contains("/pl.qm cannot be read: "), lines.constData());
}

void tst_LanguageTables::damagedEnglish()
{
    write(u"en"_s, "no table");
    const StderrCapture log;
    texts::load(u"en"_s, folder());
    QCOMPARE(texts::language(), u"ja"_s); // the former one stays
    const QByteArray lines = log.text();
    QCOMPARE(lines.count('\n'), 1);
    QVERIFY2(lines.endsWith("/en.qm is no whole language table\n"), lines.constData());
}

void tst_LanguageTables::wrongPlaceholders_data()
{
    QTest::addColumn<QByteArray>("key");
    QTest::addColumn<QString>("text"); // of the Polish table
    QTest::addColumn<QString>("wrong"); // of the same length
    QTest::addColumn<QString>("english");

    const QByteArray space("@AvailableDiskSpace");
    const QString right = u"%s wol.\nz %s"_s;
    const QString english = u"%s free\nof %s"_s;
    QTest::newRow("another kind") << space << right << u"%d wol.\nz %s"_s << english;
    QTest::newRow("one that writes to memory") << space << right << u"%s wol.\nz %n"_s << english;
    QTest::newRow("one is missing") << space << right << u"%s wol.\nz XX"_s << english;
    QTest::newRow("both are missing") << space << right << u"XX wol.\nz XX"_s << english;
    QTest::newRow("one too many") << space << right << u"%s wo%s\nz %s"_s << english;
    QTest::newRow("Qt's in place of printf's") << space << right << u"%1 wol.\nz %2"_s << english;
    QTest::newRow("a width from the values") << space << right << u"%*d wol. z%s"_s << english;
    QTest::newRow("one in a text without values")
        << QByteArray("@PlayItem") << u"Odtwórz"_s << u"%stwórz"_s << u"Play"_s;
    QTest::newRow("a bare percent sign")
        << QByteArray("@PlayItem") << u"Odtwórz"_s << u"Odtwór%"_s << u"Play"_s;
    QTest::newRow("printf's in place of Qt's") << QByteArray("@MonthOfDay") << u"%1"_s << u"%s"_s << u"%1"_s;
    QTest::newRow("one plural form alone")
        << QByteArray("@PhotosWereAddedToPlaylist") << u"Dodano %s zdjęcia do „%s”"_s
        << u"Dodano %d zdjęcia do „%s”"_s << u"%s pictures were added to %s"_s;
}

void tst_LanguageTables::wrongPlaceholders()
{
    QFETCH(QByteArray, key);
    QFETCH(QString, text);
    QFETCH(QString, wrong);
    QFETCH(QString, english);

    QCOMPARE(wrong.size(), text.size());
    const QByteArray whole = tableOf(u"pl"_s);
    const QByteArray before = stored(quint32(2 * text.size())) + stored(text);
    QCOMPARE(whole.count(before), 1);
    write(u"pl"_s, QByteArray(whole).replace(before, stored(quint32(2 * text.size())) + stored(wrong)));

    const StderrCapture log;
    texts::load(u"pl"_s, folder());
    QCOMPARE(texts::language(), u"pl"_s);
    QCOMPARE(log.text().count('\n'), 1);
    QVERIFY2(log.text().contains(key + " in language pl: "), log.text().constData());
    // The whole key is English, every other one is as it was.
    QCOMPARE(QString::fromUtf8(texts::plural(key.constData(), 7)), english);
    QCOMPARE(QCoreApplication::translate("A", key.constData(), "0", 22), english);
    QCOMPARE(QString::fromUtf8(texts::text("@Delete")), u"Usuń"_s);
    QCOMPARE(QString::fromUtf8(texts::plural("@Second", 22)), u"sekundy"_s);
}

void tst_LanguageTables::withoutEnglish()
{
    QVERIFY(QFile::remove(folder() + u"/en.qm"_s));
    const StderrCapture log;
    texts::load(u"pl"_s, folder());
    QCOMPARE(texts::language(), u"pl"_s);
    QCOMPARE(QString::fromUtf8(texts::text("@Delete")), u"Usuń"_s);
    // What a format takes cannot be told: the key alone is safe.
    QCOMPARE(texts::text("@AvailableDiskSpace"), nullptr);
    QCOMPARE(texts::plural("@PhotosWereAddedToPlaylist", 5), nullptr);
    std::tm time{};
    QCOMPARE(texts::time("%l", time), QByteArray("stycznia"));
    QVERIFY(log.text().contains("@AvailableDiskSpace in language pl: "));
}

QTEST_GUILESS_MAIN(tst_LanguageTables)
#include "tst_language_tables.moc"
