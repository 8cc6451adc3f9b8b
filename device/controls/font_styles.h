// The theme's text styles for QML.

#pragma once

#include <QObject>
#include <QString>
#include <QtQml/qqmlregistration.h>

namespace lindenreed::device {

/// Named text styles, for the property styledFont. Sizes and line heights are whole pixels of this panel.
class FontStyles : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_ADDED_IN_VERSION(1, 0)
    QML_SINGLETON

    Q_PROPERTY(QString family READ family CONSTANT FINAL)

public:
    /// Unstyled is text that names no style.
    enum Style {
        Unstyled,
        TextInIcons1,
        BodyS,
        BodySBold,
        BodyL,
        BodyLBold,
        BodyBold,
        Heading5,
        Heading4,
        Heading3
    };
    Q_ENUM(Style)

    using QObject::QObject;

    QString family() const { return QStringLiteral("Noto Sans"); }

    // A number that is no style answers as Unstyled.
    Q_INVOKABLE int pixelSize(int style) const;
    Q_INVOKABLE bool isBold(int style) const;
    Q_INVOKABLE int lineHeight(int style) const; ///< the tightest line in which no descender is cut
    Q_INVOKABLE int
    leading(int style) const; ///< what lineHeight() is higher than the font's own line; below 0: tighter
};

} // namespace lindenreed::device
