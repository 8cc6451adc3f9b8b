// Compiled language tables.

#include "language_table.h"

#include <cstdint>
#include <cstdlib>

using namespace lindenreed::device;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    // Every table begins with the same bytes: chance would not find them.
    QByteArray bytes = QByteArray::fromHex("3cb86418caef9c95cd211cbf60a1bddd");
    bytes.append(reinterpret_cast<const char *>(data), qsizetype(size));
    const auto table = LanguageTable::fromBytes(bytes);
    if (!table)
        return 0;
    for (const LanguageTable::Entry &entry : table->entries()) {
        // Each text of a table that was accepted is found, and every count has an answer.
        if (table->find(entry.key, -1) != entry.forms.value(0))
            std::abort();
        for (const int count : {0, 1, 2, 5, 2147483647})
            table->find(entry.key, count);
    }
    return 0;
}
