// The fonts of the device.

#include "slateview.h"

#include "call.h"

#include <texts.h>

#include <QFont>
#include <QFontDatabase>
#include <QFontInfo>
#include <QGuiApplication>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <string>

using namespace Qt::StringLiterals;
using namespace lindenreed::device;
using namespace lindenreed::device::sdk;

namespace {

/// Fonts need the application object of windows; one that has none uses no font.
bool haveFonts()
{
    return qobject_cast<QGuiApplication *>(QCoreApplication::instance()) != nullptr;
}

/// What a family must be able to write to be of use to the reader of this language.
QFontDatabase::WritingSystem writingSystem()
{
    switch (texts::locale().script()) {
    case QLocale::CyrillicScript:
        return QFontDatabase::Cyrillic;
    case QLocale::SimplifiedHanScript:
        return QFontDatabase::SimplifiedChinese;
    case QLocale::JapaneseScript:
        return QFontDatabase::Japanese;
    default:
        return QFontDatabase::Latin;
    }
}

/// Fonts of Chinese, Japanese and Korean hold Latin and Cyrillic letters by the way, and are so many that a
/// list for readers of these would be full of them.
bool isMadeForHan(const QString &family)
{
    const QList<QFontDatabase::WritingSystem> systems = QFontDatabase::writingSystems(family);
    return systems.contains(QFontDatabase::Japanese) || systems.contains(QFontDatabase::Korean)
        || systems.contains(QFontDatabase::SimplifiedChinese)
        || systems.contains(QFontDatabase::TraditionalChinese);
}

/// The plainest of a family's faces that are upright or italic, light or bold: nearest to the usual weight,
/// and of the shortest name, since "Condensed" and the like make it longer. Empty where there is none.
QString plainestFace(const QString &family, bool bold, bool italic)
{
    const int usual = bold ? QFont::Bold : QFont::Normal;
    QStringList faces = QFontDatabase::styles(family);
    faces.removeIf([&](const QString &face) {
        return QFontDatabase::italic(family, face) != italic
            || (QFontDatabase::weight(family, face) >= QFont::DemiBold) != bold;
    });
    const auto rank = [&](const QString &face) {
        return std::pair(std::abs(QFontDatabase::weight(family, face) - usual), face.size());
    };
    const auto best = std::min_element(faces.cbegin(), faces.cend(),
                                       [&rank](const auto &a, const auto &b) { return rank(a) < rank(b); });
    return best == faces.cend() ? QString() : *best;
}

QList<FontRecord> systemFonts()
{
    QList<FontRecord> fonts;
    if (!haveFonts())
        return fonts;
    const QFontDatabase::WritingSystem wanted = writingSystem();
    const bool alphabet = wanted == QFontDatabase::Latin || wanted == QFontDatabase::Cyrillic;
    const QStringList families = QFontDatabase::families(wanted);
    for (const QString &family : families) {
        // The list also has words for "any such font", which are no family.
        if (!QFontDatabase::hasFamily(family) || QFontDatabase::isPrivateFamily(family)
            || !QFontDatabase::isScalable(family) || (alphabet && isMadeForHan(family)))
            continue;
        for (int style = 0; style < 4; ++style) {
            const QString face = plainestFace(family, style >= 2, style % 2 == 1);
            if (!face.isEmpty())
                fonts.append({family.toUtf8(), style, (family + u' ' + face).toUtf8()});
        }
    }
    return fonts;
}

} // namespace

sv_font *EnumFontsEx(void)
{
    const Device *const running = device();
    QList<FontRecord> fonts;
    if (running)
        fonts = running->fonts ? *running->fonts : systemFonts();

    // The records, the one that ends them and all their texts are one piece of memory.
    std::size_t size = sizeof(sv_font) * std::size_t(fonts.size() + 1);
    for (const FontRecord &font : fonts)
        size += std::size_t(font.family.size() + font.face.size() + 2);
    auto *const records = static_cast<sv_font *>(std::calloc(1, size));
    if (!records)
        qFatal("no memory for %zu bytes of font records", size);
    char *text = reinterpret_cast<char *>(records + fonts.size() + 1);
    const auto place = [&text](const QByteArray &name) -> const char * {
        if (name.isNull())
            return nullptr;
        char *const start = text;
        std::memcpy(start, name.constData(), std::size_t(name.size()));
        text += name.size() + 1;
        return start;
    };
    sv_font *record = records;
    for (const FontRecord &font : fonts)
        *record++ = {place(font.family), font.style, place(font.face)};
    journal::record("EnumFontsEx", {}, shown(fonts.size()));
    return records;
}

void FreeFontsForSort(sv_font *fonts)
{
    note("FreeFontsForSort", fonts ? "fonts" : "null");
    std::free(fonts);
}

const char *sv_get_default_font(int use)
{
    const char *family = nullptr;
    if (device() && haveFonts()) {
        // Every use is the interface's own font: this device has no other. Kept for the caller, who does not
        // free it.
        static const std::string *const found = [] {
            const QString preferred = u"Noto Sans"_s;
            const QString name = QFontDatabase::hasFamily(preferred)
                ? preferred
                : QFontInfo(QFontDatabase::systemFont(QFontDatabase::GeneralFont)).family();
            return new std::string(name.toStdString());
        }();
        family = found->c_str();
    }
    return answer("sv_get_default_font", family, use);
}
