// The theme's lengths and colours for QML.

#pragma once

#include "measures.h"

#include <QColor>
#include <QObject>
#include <QtQml/qqmlregistration.h>

namespace lindenreed::device {

/// Read-only numbers of the theme. Lengths are whole pixels of this panel, times are milliseconds.
/// A panel keeps its density for the life of the process, hence no notifiers.
class GlobalValues : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_ADDED_IN_VERSION(1, 0)
    QML_SINGLETON

    Q_PROPERTY(int minimalLineThickness READ minimalLineThickness CONSTANT FINAL)
    Q_PROPERTY(int defaultSolidSeparatorThickness READ defaultSolidSeparatorThickness CONSTANT FINAL)
    Q_PROPERTY(QColor defaultSolidseparatorColor READ defaultSolidseparatorColor CONSTANT FINAL)
    Q_PROPERTY(QColor defaultBorderColor READ defaultBorderColor CONSTANT FINAL)
    Q_PROPERTY(QColor defaultBackgroundColor READ defaultBackgroundColor CONSTANT FINAL)
    Q_PROPERTY(QColor defaultDisabledTextColor READ defaultDisabledTextColor CONSTANT FINAL)
    Q_PROPERTY(int inputElementBorder READ inputElementBorder CONSTANT FINAL)
    Q_PROPERTY(int inputElementActiveBorder READ inputElementActiveBorder CONSTANT FINAL)
    Q_PROPERTY(int dialogBorderWidth READ dialogBorderWidth CONSTANT FINAL)
    Q_PROPERTY(
        int defaultFocusedElementBorderThickness READ defaultFocusedElementBorderThickness CONSTANT FINAL)
    Q_PROPERTY(int listElementHoverFrameBorderRadius READ listElementHoverFrameBorderRadius CONSTANT FINAL)
    Q_PROPERTY(int defaultElementBorderRadius READ defaultElementBorderRadius CONSTANT FINAL)
    Q_PROPERTY(int defaultDialogBorderRadius READ defaultDialogBorderRadius CONSTANT FINAL)
    Q_PROPERTY(int defaultMenuMargin READ defaultMenuMargin CONSTANT FINAL)
    Q_PROPERTY(int defaultAppHeaderMargin READ defaultAppHeaderMargin CONSTANT FINAL)
    Q_PROPERTY(int separatorSideOffset READ separatorSideOffset CONSTANT FINAL)
    Q_PROPERTY(int dialogSidePadding READ dialogSidePadding CONSTANT FINAL)
    Q_PROPERTY(int defaultListViewSideMargin READ defaultListViewSideMargin CONSTANT FINAL)
    Q_PROPERTY(int defaultAppHeaderHeight READ defaultAppHeaderHeight CONSTANT FINAL)
    Q_PROPERTY(int breadcrumbsHeight READ breadcrumbsHeight CONSTANT FINAL)
    Q_PROPERTY(int defaultTextButtonHeight READ defaultTextButtonHeight CONSTANT FINAL)
    Q_PROPERTY(int scrollListButtonsHeight READ scrollListButtonsHeight CONSTANT FINAL)
    Q_PROPERTY(int scrollListCenterButtonSideOffset READ scrollListCenterButtonSideOffset CONSTANT FINAL)
    Q_PROPERTY(int scrollIndicatorMinimalLenght READ scrollIndicatorMinimalLenght CONSTANT FINAL)
    Q_PROPERTY(int fontLargeBodyLineHeight READ fontLargeBodyLineHeight CONSTANT FINAL)
    Q_PROPERTY(int confirmationDialogWidth READ confirmationDialogWidth CONSTANT FINAL)
    Q_PROPERTY(int listPressDelay READ listPressDelay CONSTANT FINAL)

public:
    using QObject::QObject;

    int minimalLineThickness() const { return measures::dp(1.07); }
    int defaultSolidSeparatorThickness() const { return measures::dp(1.07); }
    QColor defaultSolidseparatorColor() const { return QColor(0x55, 0x55, 0x55); }
    QColor defaultBorderColor() const { return Qt::black; }
    QColor defaultBackgroundColor() const { return Qt::white; }
    QColor defaultDisabledTextColor() const { return QColor(0xAA, 0xAA, 0xAA); }
    int inputElementBorder() const { return measures::dp(1.07); }
    int inputElementActiveBorder() const { return measures::dp(2.13); }
    int dialogBorderWidth() const { return measures::dp(2.13); }
    int defaultFocusedElementBorderThickness() const { return measures::dp(3.2); }
    int listElementHoverFrameBorderRadius() const { return measures::dp(6.4); }
    int defaultElementBorderRadius() const { return measures::dp(8.53); }
    int defaultDialogBorderRadius() const { return measures::dp(10.67); }
    int defaultMenuMargin() const { return measures::dp(8.53); }
    int defaultAppHeaderMargin() const { return measures::dp(10.67); }
    int separatorSideOffset() const { return measures::dp(25.6); }
    int dialogSidePadding() const { return measures::dp(25.6); }
    int defaultListViewSideMargin() const { return measures::dp(32); }
    int defaultAppHeaderHeight() const { return measures::dp(64); }
    int breadcrumbsHeight() const { return measures::dp(59.73); }
    int defaultTextButtonHeight() const { return measures::dp(59.73); }
    int scrollListButtonsHeight() const { return measures::dp(68.27); }
    int scrollListCenterButtonSideOffset() const { return measures::dp(59.73); }
    int scrollIndicatorMinimalLenght() const { return measures::dp(51.2); }
    int fontLargeBodyLineHeight() const { return measures::dp(34.13); }
    int confirmationDialogWidth() const { return measures::dp(512); }
    int listPressDelay() const { return 120; }
};

} // namespace lindenreed::device
