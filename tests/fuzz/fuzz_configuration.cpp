// Configuration files, such as global.cfg.

#include "fuzz_targets.h"
#include "require.h"

#include <configuration.h>

#include <QFile>

#include <algorithm>

using namespace lindenreed::device;

namespace {

Configuration readBytes(const QByteArray &contents)
{
    return Configuration::read(QFile::encodeName(inputFile(contents)));
}

QByteArrayList sortedKeys(const Configuration &configuration)
{
    QByteArrayList keys = configuration.keys();
    std::sort(keys.begin(), keys.end());
    return keys;
}

bool areEqual(const Configuration &left, const Configuration &right)
{
    const QByteArrayList keys = sortedKeys(left);
    return keys == sortedKeys(right) && std::ranges::all_of(keys, [&](const QByteArray &key) {
               return left.text(key) == right.text(key) && left.integer(key) == right.integer(key);
           });
}

} // namespace

void fuzzConfiguration(const QByteArray &input)
{
    const Configuration read = readBytes(input);
    const QByteArrayList keys = sortedKeys(read);
    require(keys.size() <= input.count('\n') + 1);

    // Written again in any order it is the same; CR LF, because a value may end in CR.
    QByteArray forward;
    QByteArray backward;
    qsizetype size = 0;
    for (const QByteArray &key : keys) {
        const QByteArray value = *read.text(key);
        require(!key.isEmpty() && !key.contains('\n') && !key.contains('=') && !value.contains('\n'));
        size += key.size() + value.size() + 1;
        const QByteArray line = key + '=' + value + "\r\n";
        forward.append(line);
        backward.prepend(line);
        // A number is written in one way, but for zeros before it.
        if (const std::optional<int> number = read.integer(key)) {
            bool whole = false;
            require(value.toInt(&whole) == *number && whole);
        }
    }
    require(size <= input.size());
    require(areEqual(readBytes(forward), read));
    require(areEqual(readBytes(backward), read));

    // Line ends of the other kind say the same.
    if (!input.contains('\r'))
        require(areEqual(readBytes(QByteArray(input).replace('\n', "\r\n")), read));

    // The last line of a key wins, and no other key changes.
    if (!keys.isEmpty()) {
        const Configuration later = readBytes(input + '\n' + keys.first() + "=42\n");
        require(later.integer(keys.first()) == 42 && later.keys().size() == keys.size());
        for (const QByteArray &key : keys.sliced(1))
            require(later.text(key) == read.text(key));
    }
}
