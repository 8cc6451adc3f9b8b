#include "texts.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QPointer>
#include <QRegularExpression>
#include <QTranslator>

#include <algorithm>
#include <atomic>
#include <cmath>
#include <limits>
#include <memory>
#include <mutex>
#include <string>
#include <unordered_set>
#include <vector>

namespace lindenreed::device::texts {

using namespace Qt::StringLiterals;

namespace {

/// One language's table, filled before any other thread reads it and never freed.
struct Table
{
    QString language;
    QTranslator texts;

    QString find(const char *key, int count) const
    {
        const QString text = texts.translate("device", key, nullptr, count);
        // A text without plural forms is the same for every count.
        return text.isEmpty() && count >= 0 ? texts.translate("device", key) : text;
    }
};

constinit std::atomic<const Table *> current = nullptr;

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

bool loadTable(Table &table, const QString &language, const QString &folder)
{
    // The language comes from a file of the user's: none leads out of the folder.
    static const QRegularExpression plain(u"\\A[A-Za-z]+(_[A-Za-z]+)?\\z"_s);
    const QString path = folder + u'/' + language + u".qm"_s;
    // Asked for a file that is missing, the translator would look for shorter names by itself.
    if (!plain.match(language).hasMatch() || !QFileInfo(path).isFile() || !table.texts.load(path))
        return false;
    table.language = language;
    return true;
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
        auto table = std::make_unique<Table>();
        if (loadTable(*table, language, folder) || loadTable(*table, language.section(u'_', 0, 0), folder)
            || loadTable(*table, u"en"_s, folder)) {
            // The old table stays where it is: another thread may be reading it.
            static auto *const tables = new std::vector<std::unique_ptr<Table>>;
            current = table.get();
            tables->push_back(std::move(table));
        }
    }
    installTranslator();
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
