#include "language_table.h"

#include <QByteArrayView>
#include <QFile>
#include <QHash>
#include <QSet>

#include <algorithm>
#include <iterator>
#include <optional>
#include <utility>

namespace lindenreed::device {

using namespace Qt::StringLiterals;

namespace {

constexpr char contextName[] = "device";
constexpr qint64 largestFile = 4 * 1024 * 1024;

constexpr unsigned char magic[]
    = {0x3c, 0xb8, 0x64, 0x18, 0xca, 0xef, 0x9c, 0x95, 0xcd, 0x21, 0x1c, 0xbf, 0x60, 0xa1, 0xbd, 0xdd};

enum Section : uchar { Hashes = 0x42, Messages = 0x69, NumerusRules = 0x88, Language = 0xa7 };
enum MessageTag : uchar { End = 1, Translation = 3, SourceText = 6, Context = 7, Comment = 8 };

/// Takes bytes from the front of others; nothing where there are too few.
class Reader
{
public:
    explicit Reader(QByteArrayView bytes)
        : m_rest(bytes)
    {
    }

    qsizetype left() const { return m_rest.size(); }

    std::optional<QByteArrayView> bytes(qsizetype count)
    {
        if (count > m_rest.size())
            return std::nullopt;
        const QByteArrayView taken = m_rest.first(count);
        m_rest = m_rest.sliced(count);
        return taken;
    }

    std::optional<uchar> byte()
    {
        const auto one = bytes(1);
        return one ? std::optional(uchar(one->front())) : std::nullopt;
    }

    std::optional<quint32> number()
    {
        const auto four = bytes(4);
        if (!four)
            return std::nullopt;
        quint32 value = 0;
        for (const char byte : *four)
            value = value << 8 | uchar(byte);
        return value;
    }

    /// As many bytes as the number before them says.
    std::optional<QByteArrayView> block()
    {
        const auto size = number();
        // On a 32-bit machine a large size would become a negative one.
        return size && qint64(*size) <= left() ? bytes(qsizetype(*size)) : std::nullopt;
    }

private:
    QByteArrayView m_rest;
};

std::optional<QString> utf16(QByteArrayView bytes)
{
    if (bytes.size() % 2 != 0)
        return std::nullopt;
    QString text;
    for (qsizetype i = 0; i < bytes.size(); i += 2)
        text += QChar(char16_t(uchar(bytes[i]) << 8 | uchar(bytes[i + 1])));
    return text;
}

struct Message
{
    QByteArray context;
    LanguageTable::Entry entry;
};

std::optional<Message> readMessage(Reader &reader)
{
    Message message;
    for (;;) {
        const auto tag = reader.byte();
        if (tag == End)
            return message.entry.key.isEmpty() ? std::nullopt : std::optional(message);
        const auto block = tag ? reader.block() : std::nullopt;
        if (!block)
            return std::nullopt;
        switch (*tag) {
        case Translation:
            if (const auto text = utf16(*block))
                message.entry.forms.append(*text);
            else
                return std::nullopt;
            break;
        case SourceText:
            message.entry.key = block->toByteArray();
            break;
        case Context:
            message.context = block->toByteArray();
            break;
        case Comment:
            break;
        default:
            return std::nullopt;
        }
    }
}

/// The device's messages. Nothing where the sections do not hold what Qt's own reader relies on.
std::optional<QList<LanguageTable::Entry>> readMessages(QByteArrayView messages, QByteArrayView hashes)
{
    QList<LanguageTable::Entry> entries;
    QSet<quint32> starts;
    for (Reader reader(messages); reader.left() > 0;) {
        starts.insert(quint32(messages.size() - reader.left()));
        const auto message = readMessage(reader);
        if (!message)
            return std::nullopt;
        if (message->context == contextName)
            entries.append(message->entry);
    }
    for (Reader reader(hashes); reader.left() > 0;) {
        const auto hash = reader.number();
        const auto start = reader.number();
        if (!hash || !start || !starts.contains(*start))
            return std::nullopt;
    }
    return entries;
}

std::optional<QList<LanguageTable::Entry>> readEntries(QByteArrayView bytes)
{
    Reader reader(bytes);
    const auto start = reader.bytes(qsizetype(sizeof magic));
    if (!start
        || !std::equal(std::begin(magic), std::end(magic), start->cbegin(),
                       [](unsigned char a, char b) { return a == uchar(b); }))
        return std::nullopt;

    // Others than these would have Qt look elsewhere or open further files.
    QHash<uchar, QByteArrayView> sections{{Hashes, {}}, {Messages, {}}, {NumerusRules, {}}, {Language, {}}};
    while (reader.left() > 0) {
        const auto tag = reader.byte();
        const auto block = tag ? reader.block() : std::nullopt;
        if (!block || block->isEmpty() || !sections.contains(*tag) || !sections.value(*tag).isEmpty())
            return std::nullopt;
        sections.insert(*tag, *block);
    }
    return readMessages(sections.value(Messages), sections.value(Hashes));
}

} // namespace

LanguageTable::LanguageTable(const QByteArray &bytes)
    : m_bytes(bytes)
{
}

std::unique_ptr<LanguageTable> LanguageTable::fromBytes(const QByteArray &bytes)
{
    std::unique_ptr<LanguageTable> table(new LanguageTable(bytes));
    return table->load() ? std::move(table) : nullptr;
}

std::unique_ptr<LanguageTable> LanguageTable::read(const QString &path, QString *error)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        *error = u"%1 cannot be read: %2"_s.arg(path, file.errorString());
        return nullptr;
    }
    auto table = fromBytes(file.read(largestFile + 1));
    if (!table)
        *error = u"%1 is no whole language table"_s.arg(path);
    return table;
}

bool LanguageTable::load()
{
    if (m_bytes.size() > largestFile)
        return false;
    const auto entries = readEntries(m_bytes);
    const auto *const data = reinterpret_cast<const uchar *>(m_bytes.constData());
    if (!entries || !m_texts.load(data, int(m_bytes.size())))
        return false;
    m_entries = *entries;
    return std::all_of(m_entries.cbegin(), m_entries.cend(), [this](const Entry &entry) {
        return m_texts.translate(contextName, entry.key) == entry.forms.value(0);
    });
}

QString LanguageTable::find(const char *key, int count) const
{
    const QString text = m_texts.translate(contextName, key, nullptr, count);
    // A text without plural forms is the same for every count.
    return text.isEmpty() && count >= 0 ? m_texts.translate(contextName, key) : text;
}

} // namespace lindenreed::device
