// What packages, desktops and shells are told of the program agrees with the program.

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QRegularExpression>
#include <QSet>
#include <QTest>
#include <QXmlStreamReader>

using namespace Qt::StringLiterals;

namespace {

QString contents(const QString &name)
{
    QFile file(QStringLiteral(SOURCE_FOLDER "/") + name);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

/// What a translation has for a text of the device; the text of English itself stands in its own table.
QString word(const QString &language, const QString &key)
{
    QXmlStreamReader xml(contents(u"device/data/languages/%1.ts"_s.arg(language)));
    QString source;
    while (!xml.atEnd()) {
        xml.readNext();
        if (!xml.isStartElement())
            continue;
        if (xml.name() == "source"_L1)
            source = xml.readElementText();
        else if (xml.name() == "translation"_L1 && source == key)
            return xml.readElementText();
    }
    return {};
}

/// Names of packages in a field of debian/control, without versions and variables.
QSet<QString> packagesIn(const QString &field)
{
    QSet<QString> found;
    static const QRegularExpression line(u"^ ([a-z0-9.+-]+)[^\\n]*,$"_s, QRegularExpression::MultilineOption);
    for (auto match = line.globalMatch(field); match.hasNext();)
        found.insert(match.next().captured(1));
    return found;
}

/// What bash offers behind these words.
QStringList offered(const QStringList &words)
{
    QProcess bash;
    bash.setWorkingDirectory(QCoreApplication::applicationDirPath() + u"/../../bin"_s);
    const QString script = uR"sh(
        PATH=$PWD:$PATH
        for file in %1/packaging/completions/*; do . "$file"; done
        compopt() { :; }
        COMP_WORDS=("$@") COMP_CWORD=$(($# - 1))
        read -r -a by <<<"$(complete -p "$1")"
        "${by[2]}" "$1" "${@: -1}" "${COMP_WORDS[COMP_CWORD - 1]}"
        printf '%s\n' "${COMPREPLY[@]}")sh"_s.arg(QStringLiteral(SOURCE_FOLDER));
    bash.start(u"bash"_s, QStringList{u"-c"_s, script, u"test"_s} + words);
    bash.waitForFinished();
    if (const QByteArray errors = bash.readAllStandardError(); !errors.isEmpty())
        return {QString::fromUtf8(errors)};
    return QString::fromUtf8(bash.readAllStandardOutput()).split(u'\n', Qt::SkipEmptyParts);
}

} // namespace

class tst_Packaging : public QObject
{
    Q_OBJECT

private slots:
    void oneVersion();
    void packagesAreThoseOfTheBuild();
    void namesOnTheDesktop();
    void completions_data();
    void completions();
};

void tst_Packaging::oneVersion()
{
    const QString version = QStringLiteral(PROGRAM_VERSION);
    QVERIFY(contents(u"debian/changelog"_s).startsWith(u"picture-stand (%1) "_s.arg(version)));
    QVERIFY(contents(u"packaging/com.lindenreed.picture_stand.metainfo.xml"_s)
                .contains(u"<release version=\"%1\" "_s.arg(version)));
}

void tst_Packaging::packagesAreThoseOfTheBuild()
{
    QProcess list;
    list.start(QStringLiteral(SOURCE_FOLDER "/tools/install-dependencies"), {u"--list"_s});
    list.waitForFinished();
    const QStringList names
        = QString::fromUtf8(list.readAllStandardOutput()).split(u'\n', Qt::SkipEmptyParts);
    const QSet<QString> installed(names.cbegin(), names.cend());
    const QString control = contents(u"debian/control"_s);
    // Of the packages' own making, of the appliance's, and of whose desk it is.
    const QSet<QString> others = {u"debhelper-compat"_s, u"dh-sequence-installsysusers"_s, u"picture-stand"_s,
                                  u"udev"_s, u"xdg-utils"_s};
    const QSet<QString> needed = packagesIn(control) - others;
    QVERIFY(needed.contains(u"bubblewrap"_s) && needed.contains(u"libexif-dev"_s));
    QCOMPARE(needed - installed, QSet<QString>());
}

void tst_Packaging::namesOnTheDesktop()
{
    const QString entry = contents(u"packaging/com.lindenreed.picture_stand.desktop"_s);
    QVERIFY(entry.contains(u"\nName=%1\n"_s.arg(word(u"en"_s, u"@picture_stand"_s))));
    for (const QString &file :
         QDir(QStringLiteral(SOURCE_FOLDER "/device/data/languages")).entryList({u"*.ts"_s})) {
        const QString language = file.chopped(3);
        if (language != u"en"_s) {
            const QString line = u"\nName[%1]=%2\n"_s.arg(language, word(language, u"@picture_stand"_s));
            QVERIFY2(entry.contains(line), qPrintable(line));
        }
    }
}

void tst_Packaging::completions_data()
{
    QTest::addColumn<QStringList>("words");
    QTest::addColumn<QStringList>("expected");

    const auto row = [](const char *words, const char *expected) {
        QTest::newRow(words) << QString::fromLatin1(words).split(u' ')
                             << QString::fromLatin1(expected).split(u' ', Qt::SkipEmptyParts);
    };
    row("picture-stand --p", "--photos --profile");
    QStringList greys;
    for (const QFileInfo &file :
         QDir(QStringLiteral(SOURCE_FOLDER "/device/data/profiles")).entryInfoList({u"gr*"_s}))
        greys.append(file.completeBaseName());
    greys.sort();
    row("slate-run --profile gr", greys.join(u' ').toLatin1());
    row("slate-run --language z", "zh_CN");
    row("slate-run --orientation ", "0 1 2 3");
    row("slate-run --root /devn", "");
    row("slate-run --root /pro", "/proc");
    row("slate-run --headless -- ls --h", "");
    row("slatectl sc", "screenshot");
    row("slatectl --v", "--version");
    row("slatectl --root /pro", "/proc");
    row("slatectl --root /proc key p", "prev page-up page-down");
    row("slatectl card ", "in out");
    row("slatectl light auto ", "on off");
    row("slatectl light brightness ", "");
    row("slatectl light c", "color color-auto");
    row("slatectl quit ", "");
    row("slate-window --r", "--root --run");
    row("slate-window --run /pro", "/proc");
}

void tst_Packaging::completions()
{
    QFETCH(QStringList, words);
    QTEST(offered(words), "expected");
}

QTEST_GUILESS_MAIN(tst_Packaging)
#include "tst_packaging.moc"
