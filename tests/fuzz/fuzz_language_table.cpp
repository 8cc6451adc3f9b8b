// Compiled language tables.

#include "fuzz_targets.h"
#include "require.h"

#include <language_table.h>
#include <placeholders.h>

using namespace lindenreed::device;

void fuzzLanguageTable(const QByteArray &input)
{
    // Every table begins with the same bytes: chance would not find them.
    const QByteArray bytes = QByteArray::fromHex("3cb86418caef9c95cd211cbf60a1bddd") + input;
    const auto table = LanguageTable::fromBytes(bytes);
    if (!table)
        return;
    qsizetype characters = 0;
    for (const LanguageTable::Entry &entry : table->entries()) {
        // Each text of a table that was accepted is found, and every count has an answer.
        require(table->find(entry.key, -1) == entry.forms.value(0));
        for (const int count : {0, 1, 2, 5, 2147483647})
            table->find(entry.key, count);
        for (const QString &form : entry.forms) {
            characters += form.size();
            // What is handed to printf() and to Qt, whatever the text is.
            const Placeholders found = placeholders(form);
            require(found.inOrder.size() + found.numbered.size() <= form.count(QLatin1Char('%')));
        }
    }
    require(characters * 2 <= input.size()); // no text is more than the file has
}
