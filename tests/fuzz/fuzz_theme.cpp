// The theme's numbers.

#include "fuzz_targets.h"
#include "require.h"

#include <configuration.h>
#include <theme.h>

#include <QFile>

using namespace lindenreed::device;

void fuzzTheme(const QByteArray &input)
{
    const QString path = inputFile(input);
    const Configuration table = Configuration::read(QFile::encodeName(path));
    if (theme::complaint(table).isEmpty()) {
        // A theme stays loaded, so none is here.
        require(table.keys().size() == 2);
        for (const QByteArray &name : table.keys())
            require(table.integer(name).value_or(0) >= 1 && *table.integer(name) <= 10'000);
        return;
    }
    QString error;
    require(!theme::load(&error, path));
    requireSentence(error, path);
    require(theme::integer("e3.galery_cover.width", 165) == 165); // nothing of it was taken
}
