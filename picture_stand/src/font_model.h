// The font families of the device, as a list for the interface.

#pragma once

#include <QAbstractListModel>
#include <QHash>
#include <QList>
#include <QString>

namespace lindenreed::picture_stand {

/// One family, with the name of its face in each style; empty where it has none.
struct FontItem
{
    QString text; ///< the title that is shown and stored
    QString family; ///< for the text renderer
    QString normal;
    QString bold;
    QString italic;
    QString bold_italic;
};

/**
 * What date overlays may be written with: the word "default", then the families in the device's order.
 *
 * Empty until loadFonts(), unchanged afterwards. Main thread.
 */
class FontModel : public QAbstractListModel
{
    Q_OBJECT

public:
    enum ContentDataRoles {
        UidRole = Qt::UserRole + 1, ///< the row
        TitleRole,
        FamilyNameRole,
        NormalNameRole,
        BoldNameRole,
        ItalicNameRole,
        BoldItalicNameRole,
        HasBold,
        HasItalic,
        HasBoldItalic
    };
    Q_ENUM(ContentDataRoles)

    explicit FontModel(QObject *parent = nullptr);

    /// Reads the fonts that the device has now. Tells no view: it comes before the first one.
    void loadFonts();

    int rowCount(const QModelIndex &parent = {}) const override; ///< whatever the parent
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    QHash<int, QByteArray> roleNames() const override;

public slots:
    /// The device's own font for "default"; any other name as it is; empty before loadFonts().
    QString getFontFamilyByName(QString name);

private:
    QList<FontItem> m_fonts;
};

} // namespace lindenreed::picture_stand
