// slate-run: keeps a device in an ordinary folder and runs a program on it.

#include "launch.h"
#include "message.h"
#include "options.h"

#include <QCoreApplication>

#include <cstdio>

using namespace lindenreed::host;

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);

    QString error;
    const auto options = readOptions(QCoreApplication::arguments().sliced(1), &error);
    if (!options) {
        say(error);
        return 2;
    }
    if (options->help) {
        std::fputs(qUtf8Printable(helpText()), stdout);
        return 0;
    }
    if (options->version) {
        std::puts("slate-run " SLATE_VERSION);
        return 0;
    }
    return Launch(*options).run();
}
