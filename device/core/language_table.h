// One language's compiled table of texts (.qm).

#pragma once

#include <QByteArray>
#include <QList>
#include <QString>
#include <QStringList>
#include <QTranslator>

#include <memory>

namespace lindenreed::device {

/// Read and checked once, only looked up afterwards, then by any thread.
class LanguageTable
{
public:
    struct Entry
    {
        QByteArray key;
        QStringList forms; ///< by Qt's numbering of plural forms; one for a text without
    };

    /// Null for bytes that are no whole table: no look-up leaves those of a table that was made.
    static std::unique_ptr<LanguageTable> fromBytes(const QByteArray &bytes);

    /// Null, with one sentence in `error`, for a file that cannot be read or is no whole table.
    static std::unique_ptr<LanguageTable> read(const QString &path, QString *error);

    const QList<Entry> &entries() const { return m_entries; }

    /// Empty where there is none. `count` chooses the plural form, -1 the text without one.
    QString find(const char *key, int count) const;

private:
    explicit LanguageTable(const QByteArray &bytes);
    bool load();

    const QByteArray m_bytes; ///< the translator reads them in place
    QList<Entry> m_entries;
    QTranslator m_texts;
};

} // namespace lindenreed::device
