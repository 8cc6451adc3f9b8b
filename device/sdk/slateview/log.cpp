// The device log.

#include "slateview.h"

#include "call.h"

#include <log.h>

#include <cstdarg>
#include <cstdio>
#include <string>

using namespace lindenreed::device;
using namespace lindenreed::device::sdk;

void lr_print_log2(int level, const char *file, int line, const char *function, const char *format, ...)
{
    note("lr_print_log2", level, file, line, function);
    std::string message;
    if (format) {
        std::va_list arguments;
        va_start(arguments, format);
        std::va_list again;
        va_copy(again, arguments);
        const int length = std::vsnprintf(nullptr, 0, format, arguments);
        va_end(arguments);
        if (length > 0) {
            message.resize(std::size_t(length) + 1); // one more for the end that vsnprintf writes
            std::vsnprintf(message.data(), message.size(), format, again);
            message.pop_back();
        }
        va_end(again);
    }
    log::line(level, file, line, function, message);
}
