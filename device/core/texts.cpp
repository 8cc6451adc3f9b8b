#include "texts.h"

#include "language_table.h"
#include "log.h"
#include "placeholders.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QPointer>
#include <QRegularExpression>
#include <QSet>
#include <QTranslator>

#include <algorithm>
#include <atomic>
#include <cmath>
#include <limits>
#include <memory>
#include <mutex>
#include <string>
#include <unordered_set>
#include <utility>
#include <vector>

namespace lindenreed::device::texts {

using namespace Qt::StringLiterals;

namespace {

/// One language's texts, filled before any other thread reads them and never freed.
struct Table
{
    QString language;
    QLocale locale;
    std::unique_ptr<const LanguageTable> texts;
    std::unique_ptr<const LanguageTable> english; ///< null where that is the language, or not to be had
    QSet<QByteArray> refused; ///< keys whose English text serves

    QString find(const char *key, int count) const
    {
        if (refused.isEmpty() || !refused.contains(QByteArray(key)))
            return texts->find(key, count);
        return english ? english->find(key, count) : QString();
    }
};

constinit std::atomic<const Table *> current = nullptr;

QString englishName()
{
    return u"en"_s;
}

/// What qsTr() asks: any context, any disambiguation, the same table.
class DeviceTranslator : public QTranslator
{
public:
    bool isEmpty() const override { return false; } // else it would not be installed
    QString translate(const char *, const char *key, const char *, int count) const override
    {
        const Table *const table = current;
        return table ? table->find(key, count) : QString();
    }
};

void logProblem(const QString &message)
{
    log::line(2, __FILE__, __LINE__, "load", message.toStdString());
}

/// Null, without a word, where the folder has no table of that name.
std::unique_ptr<const LanguageTable> readTable(const QString &language, const QString &folder)
{
    // The language comes from a file of the user's: none leads out of the folder.
    static const QRegularExpression plain(u"\\A[A-Za-z]+(_[A-Za-z]+)?\\z"_s);
    const QString path = folder + u'/' + language + u".qm"_s;
    if (!plain.match(language).hasMatch() || !QFileInfo(path).isFile())
        return nullptr;
    QString error;
    auto table = LanguageTable::read(path, &error);
    if (!table)
        logProblem(language == englishName() ? error : error + u"; English takes its place"_s);
    return table;
}

/// Finds the keys whose text takes other values than the English one. Texts go to printf() and QString::arg()
/// as formats: what the English table holds is what the programs hand over.
void compareWithEnglish(Table &table)
{
    for (const LanguageTable::Entry &entry : table.texts->entries()) {
        const QString english = table.english ? table.english->find(entry.key, -1) : QString();
        const Placeholders wanted = placeholders(english);
        for (const QString &form : entry.forms) {
            if (placeholders(form) == wanted)
                continue;
            logProblem(
                u"%1 in language %2: \"%3\" does not take the values of \"%4\", which takes its place"_s.arg(
                    QString::fromUtf8(entry.key), table.language, form, english));
            table.refused.insert(entry.key);
            break;
        }
    }
}

std::unique_ptr<Table> loadTable(const QString &language, const QString &folder)
{
    QStringList names{language, language.section(u'_', 0, 0), englishName()};
    names.removeDuplicates();
    for (const QString &name : names) {
        auto texts = readTable(name, folder);
        if (!texts)
            continue;
        auto table = std::make_unique<Table>();
        table->language = name;
        table->locale = QLocale(name);
        table->texts = std::move(texts);
        if (name != englishName()) {
            table->english = readTable(englishName(), folder);
            compareWithEnglish(*table);
        }
        return table;
    }
    return nullptr;
}

void installTranslator()
{
    // Neither removed nor freed: worker threads and the application's last moments still look texts up.
    static auto *const translator = new DeviceTranslator;
    static auto *const installedIn = new QPointer<QCoreApplication>;
    QCoreApplication *const application = QCoreApplication::instance();
    if (!application || *installedIn == application)
        return;
    QCoreApplication::installTranslator(translator);
    *installedIn = application;
}

/// Texts that live for ever. There are only as many as the tables hold.
const char *immortal(const QString &text)
{
    if (text.isEmpty())
        return nullptr;
    static auto *const mutex = new std::mutex;
    static auto *const kept = new std::unordered_set<std::string>;
    const std::lock_guard lock(*mutex);
    return kept->insert(text.toStdString()).first->c_str();
}

const char *find(const char *key, int count)
{
    const Table *const table = current;
    return table && key ? immortal(table->find(key, count)) : nullptr;
}

} // namespace

void load(const QString &language, const QString &folder)
{
    const Table *const before = current;
    if (!before || before->language != language) {
        if (auto table = loadTable(language, folder)) {
            // The old table stays where it is: another thread may be reading it.
            static auto *const tables = new std::vector<std::unique_ptr<Table>>;
            current = table.get();
            tables->push_back(std::move(table));
        }
    }
    installTranslator();
}

QLocale locale()
{
    const Table *const table = current;
    return table ? table->locale : QLocale::c();
}

QString language()
{
    const Table *const table = current;
    return table ? table->language : QString();
}

const char *text(const char *key)
{
    return find(key, -1);
}

const char *plural(const char *key, double count)
{
    const double rounded = std::isnan(count) ? 0.0 : std::round(count);
    return find(key, int(std::clamp(rounded, 0.0, double(std::numeric_limits<int>::max()))));
}

} // namespace lindenreed::device::texts
