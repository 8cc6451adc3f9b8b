// Everything with Qt that reads outside bytes, in one program: compiling Qt's headers for each would take
// longer than the runs. fuzz_device PARSER OPTIONS... where the options are libFuzzer's.

#include "fuzz_targets.h"
#include "require.h"

#include <QCoreApplication>

#include <cstdint>
#include <cstdio>
#include <cstring>
#include <iterator>

#include <sys/mman.h>
#include <unistd.h>

namespace {

using Check = void (*)(const QByteArray &input);

struct Parser
{
    const char *name;
    Check check;
};

constexpr Parser parsers[] = {
    {"configuration", fuzzConfiguration}, {"control_connection", fuzzControlConnection},
    {"device_record", fuzzDeviceRecord},  {"language_table", fuzzLanguageTable},
    {"locale_alias", fuzzLocaleAlias},    {"profile", fuzzProfile},
    {"request_line", fuzzRequestLine},    {"theme", fuzzTheme},
};

Check check = nullptr;

} // namespace

QString inputFile(const QByteArray &contents)
{
    static const int file = ::memfd_create("input", MFD_CLOEXEC);
    require(::ftruncate(file, 0) == 0);
    require(::pwrite(file, contents.constData(), std::size_t(contents.size()), 0) == contents.size());
    return QStringLiteral("/proc/self/fd/%1").arg(file);
}

void requireSentence(const QString &error, const QString &path)
{
    require(!error.isEmpty() && error.contains(path));
    for (const QChar character : error)
        require(character.category() != QChar::Other_Control && character != QChar::LineSeparator
                && character != QChar::ParagraphSeparator);
}

extern "C" int LLVMFuzzerInitialize(int *count, char ***arguments)
{
    // The parser's name is not one of libFuzzer's arguments.
    for (const Parser &parser : parsers) {
        if (*count < 2 || std::strcmp((*arguments)[1], parser.name) != 0)
            continue;
        check = parser.check;
        for (int i = 2; i < *count; ++i)
            (*arguments)[i - 1] = (*arguments)[i];
        (*arguments)[--*count] = nullptr;
        static int one = 1;
        static QCoreApplication application(one, *arguments);
        return 0;
    }
    std::fprintf(stderr, "usage: fuzz_device PARSER OPTIONS...; parsers are");
    for (const Parser &parser : parsers)
        std::fprintf(stderr, " %s", parser.name);
    std::fprintf(stderr, "\n");
    std::_Exit(2);
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    // A copy of exactly this size, so that a read beyond its end is one beyond its memory.
    check(QByteArray(reinterpret_cast<const char *>(data), qsizetype(size)));
    return 0;
}
