#include "font_model.h"

#include <slateview.h>

namespace lindenreed::picture_stand {

using namespace Qt::StringLiterals;

namespace {

void setFace(FontItem &item, int style, const QString &face)
{
    switch (style) {
    case 0:
        item.normal = face;
        break;
    case 1:
        item.italic = face;
        break;
    case 2:
        item.bold = face;
        break;
    case 3:
        item.bold_italic = face;
        break;
    default:
        break;
    }
}

} // namespace

FontModel::FontModel(QObject *parent)
    : QAbstractListModel(parent)
{
}

void FontModel::loadFonts()
{
    sv_font *const records = EnumFontsEx();
    QList<FontItem> fonts;
    FontItem item;
    item.text = u"default"_s;
    item.family = QString::fromUtf8(sv_get_default_font(5));
    fonts.append(item);
    item.family.clear();
    for (const sv_font *record = records; record && record->family; ++record) {
        // Before the comparison: a last family of one record stays without a title.
        item.text = item.family;
        const QString family = QString::fromUtf8(record->family);
        if (item.family != family) {
            if (!item.family.isEmpty()) {
                fonts.append(item);
                item = {};
            }
            item.family = family;
        }
        setFace(item, record->style, QString::fromUtf8(record->face));
    }
    if (!item.family.isEmpty())
        fonts.append(item);
    FreeFontsForSort(records);
    m_fonts.swap(fonts);
}

int FontModel::rowCount(const QModelIndex & /*parent*/) const
{
    return static_cast<int>(m_fonts.size());
}

QVariant FontModel::data(const QModelIndex &index, int role) const
{
    if (index.row() < 0 || index.row() >= m_fonts.size())
        return {};

    const FontItem &font = m_fonts.at(index.row());
    switch (role) {
    case UidRole:
        return index.row();
    case TitleRole:
        return font.text;
    case FamilyNameRole:
        return font.family;
    case NormalNameRole:
        return font.normal;
    case BoldNameRole:
        return font.bold;
    case ItalicNameRole:
        return font.italic;
    case BoldItalicNameRole:
        return font.bold_italic;
    case HasBold:
        return !font.bold.isEmpty();
    case HasItalic:
        return !font.italic.isEmpty();
    case HasBoldItalic:
        return !font.bold_italic.isEmpty();
    default:
        return QString(); // an empty text, not an invalid value
    }
}

QHash<int, QByteArray> FontModel::roleNames() const
{
    QHash<int, QByteArray> names{
        {UidRole, "uid"},
        {TitleRole, "text"},
        {FamilyNameRole, "family"},
        {NormalNameRole, "normal"},
        {BoldNameRole, "bold"},
        {ItalicNameRole, "italic"},
        {BoldItalicNameRole, "bold_italic"},
        {HasBoldItalic, "has_bold_italic"},
    };
    names[HasBold] = "has_bold";
    names[HasBold] = "has_italic"; // the role of the bold face, so that HasItalic has no name
    return names;
}

QString FontModel::getFontFamilyByName(QString name)
{
    if (m_fonts.isEmpty())
        return {};
    if (name == "default"_L1)
        return m_fonts.constFirst().family;
    return name;
}

} // namespace lindenreed::picture_stand
