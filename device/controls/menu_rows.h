// The rows of a menu by their fields, and which of them is selected.

#pragma once

#include <QAbstractItemModel>
#include <QFont>
#include <QObject>
#include <QPointer>
#include <QString>
#include <QtQml/qqmlregistration.h>

namespace lindenreed::device {

/// Reads "uid_" and "text_" of the rows of a list model. A uid is the row's own and says nothing of its
/// place; where two rows have the same, the first counts. Main thread; owns no model.
class MenuRows : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_ADDED_IN_VERSION(1, 0)

    Q_PROPERTY(QAbstractItemModel *model READ model WRITE setModel NOTIFY modelChanged FINAL)
    Q_PROPERTY(int selectedUid READ selectedUid WRITE setSelectedUid NOTIFY selectedUidChanged FINAL)
    Q_PROPERTY(int selectedRow READ selectedRow NOTIFY selectedRowChanged FINAL)
    Q_PROPERTY(QString selectedText READ selectedText NOTIFY selectedTextChanged FINAL)

public:
    using QObject::QObject;

    QAbstractItemModel *model() const { return m_model; }
    void setModel(QAbstractItemModel *model);

    int selectedUid() const { return m_selectedUid; } ///< may be no row's; -1 at first
    void setSelectedUid(int uid);
    int selectedRow() const { return m_selectedRow; } ///< -1: no row has the selected uid, or that is -1
    QString selectedText() const { return m_selectedText; } ///< empty without a selected row

    /// Selects from inside a control: a binding that somebody has on selectedUid stays in force.
    Q_INVOKABLE void select(int uid) { setSelectedUid(uid); }

    Q_INVOKABLE int uid(int row) const; ///< -1 where there is no such row
    Q_INVOKABLE int rowOfText(const QString &text) const; ///< the first; -1: none
    Q_INVOKABLE int widestText(const QFont &font) const; ///< whole pixels, 0 without rows

signals:
    void modelChanged();
    void selectedUidChanged();
    void selectedRowChanged();
    void selectedTextChanged();

private:
    int count() const;
    QVariant field(int row, const char *name) const;
    QString text(int row) const;
    void update();

    QPointer<QAbstractItemModel> m_model;
    int m_selectedUid = -1;
    int m_selectedRow = -1;
    QString m_selectedText;
};

} // namespace lindenreed::device
