// Man pages and help tell the same commands and options.

#include <QCoreApplication>
#include <QFile>
#include <QProcess>
#include <QRegularExpression>
#include <QSet>
#include <QStandardPaths>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

QString page(const QString &program)
{
    QFile file(QStringLiteral(SOURCE_FOLDER "/docs/man/") + program + u".1"_s);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

QString answer(const QString &program, const QString &option)
{
    QProcess process;
    process.start(QCoreApplication::applicationDirPath() + u"/../../bin/"_s + program, {option});
    process.waitForFinished();
    return QString::fromUtf8(process.readAllStandardOutput());
}

QString help(const QString &program)
{
    return answer(program, u"--help"_s);
}

/// Sorted, each once.
QStringList matches(const QString &text, const QString &pattern)
{
    QSet<QString> found;
    const QRegularExpression expression(pattern, QRegularExpression::MultilineOption);
    for (auto match = expression.globalMatch(text); match.hasNext();)
        found.insert(match.next().captured(1));
    QStringList sorted(found.cbegin(), found.cend());
    sorted.sort();
    return sorted;
}

} // namespace

class tst_ManPages : public QObject
{
    Q_OBJECT

private slots:
    void options_data() { programs(); }
    void options();
    void commands();
    void wordsOfTheLight();
    void versions_data() { programs(); }
    void versions();
    void footers_data() { programs(); }
    void footers();
    void namesOfProfilesAndLanguages();
    void setsWithoutWarnings_data() { programs(); }
    void setsWithoutWarnings();

private:
    static void programs()
    {
        QTest::addColumn<QString>("program");
        QTest::newRow("slatectl") << u"slatectl"_s;
        QTest::newRow("slate-run") << u"slate-run"_s;
        QTest::newRow("slate-window") << u"slate-window"_s;
    }
};

void tst_ManPages::options()
{
    QFETCH(QString, program);

    const QStringList inHelp = matches(help(program), u"^  --([a-z-]+) "_s);
    QVERIFY(inHelp.contains(u"help"_s));
    QCOMPARE(matches(page(program), u"^\\.It Fl -([a-z-]+)"_s), inHelp);
}

void tst_ManPages::commands()
{
    const QString text = help(u"slatectl"_s);
    const QStringList inHelp = matches(text.sliced(text.indexOf(u"Commands:"_s)), u"^  ([a-z]+)(?: |$)"_s);
    QVERIFY(inHelp.size() > 20);
    QCOMPARE(matches(page(u"slatectl"_s), u"^\\.It Ic ([a-z]+)"_s), inHelp);
}

void tst_ManPages::wordsOfTheLight()
{
    const QString line = matches(page(u"slatectl"_s), u"^(\\.It Ic light .*)$"_s).value(0);
    QCOMPARE(matches(line, u"Cm ([a-z-]+)"_s),
             matches(matches(help(u"slatectl"_s), u"^(  light .*)$"_s).value(0), u"\\[([a-z-]+) "_s));
}

void tst_ManPages::versions()
{
    QFETCH(QString, program);

    QCOMPARE(answer(program, u"--version"_s), program + u" " SLATE_VERSION "\n"_s);
}

void tst_ManPages::footers()
{
    QFETCH(QString, program);

    QCOMPARE(matches(page(program), u"^\\.Os (.*)$"_s), QStringList{u"picture_stand " SLATE_VERSION ""_s});
    QCOMPARE(matches(page(program), u"^\\.Dd (.*)$"_s), matches(page(u"slatectl"_s), u"^\\.Dd (.*)$"_s));
    QCOMPARE(matches(page(program), u"^\\.Dt (.*)$"_s), QStringList{program.toUpper() + u" 1"_s});
}

void tst_ManPages::namesOfProfilesAndLanguages()
{
    const auto names = [](const QString &text, const QString &line) {
        QStringList found = matches(text, line).value(0).split(QRegularExpression(u", | or |\\s+"_s));
        found.sort();
        return found;
    };
    const QString text = help(u"slate-run"_s);
    const QStringList profiles = names(text, u"^ +(.*keys-6.*)$"_s);
    QVERIFY(profiles.size() >= 5);
    QCOMPARE(names(page(u"slate-run"_s), u"kept between starts: (.*keys-6.*)\\.$"_s), profiles);
    const QStringList languages = names(text, u"^ +(.*zh_CN.*)$"_s);
    QVERIFY(languages.size() >= 10);
    QCOMPARE(names(page(u"slate-run"_s), u"kept between starts: (.*zh_CN.*)\\.$"_s), languages);
}

void tst_ManPages::setsWithoutWarnings()
{
    QFETCH(QString, program);

    if (QStandardPaths::findExecutable(u"groff"_s).isEmpty())
        QSKIP("groff is not installed");
    QProcess groff;
    groff.start(u"groff"_s,
                {u"-mandoc"_s, u"-ww"_s, u"-Tutf8"_s, u"-z"_s,
                 QStringLiteral(SOURCE_FOLDER "/docs/man/") + program + u".1"_s});
    QVERIFY(groff.waitForFinished());
    QCOMPARE(groff.readAllStandardError(), QByteArray());
    QCOMPARE(groff.exitCode(), 0);
}

QTEST_GUILESS_MAIN(tst_ManPages)
#include "tst_man_pages.moc"
