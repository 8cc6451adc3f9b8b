#include "log.h"

#include <string_view>

#include <unistd.h>

namespace lindenreed::device::log {

namespace {

void appendHex(std::string &line, unsigned char byte)
{
    constexpr char digits[] = "0123456789abcdef";
    line += "\\x";
    line += digits[byte >> 4];
    line += digits[byte & 15];
}

// A log line must not end early nor steer the terminal it is shown on.
void appendVisible(std::string &line, std::string_view text)
{
    for (std::size_t i = 0; i < text.size(); ++i) {
        const auto byte = static_cast<unsigned char>(text[i]);
        const auto next = i + 1 < text.size() ? static_cast<unsigned char>(text[i + 1]) : 0U;
        if (byte == '\n') {
            line += "\\n";
        } else if (byte == '\r') {
            line += "\\r";
        } else if (byte == '\t') {
            line += "\\t";
        } else if (byte < 0x20 || byte == 0x7f) {
            appendHex(line, byte);
        } else if (byte == 0xc2 && next >= 0x80 && next < 0xa0) {
            appendHex(line,
                      static_cast<unsigned char>(next)); // U+0080 to U+009F are control characters as well
            ++i;
        } else {
            line += text[i];
        }
    }
}

} // namespace

void line(int level, const char *file, int line, const char *function, const std::string &message)
{
    std::string text = std::to_string(level) + ' ';
    appendVisible(text, file ? file : "");
    text += ':' + std::to_string(line) + ' ';
    appendVisible(text, function ? function : "");
    text += ": ";
    appendVisible(text, message);
    text += '\n';
    // Lines of several threads and processes do not mix. Where standard error is gone there is nobody to
    // tell.
    [[maybe_unused]] const ssize_t written = ::write(STDERR_FILENO, text.data(), text.size());
}

} // namespace lindenreed::device::log
