#include "menu_rows.h"

#include <QFontMetricsF>
#include <QtMath>

#include <algorithm>
#include <utility>

namespace lindenreed::device {

void MenuRows::setModel(QAbstractItemModel *model)
{
    if (m_model == model)
        return;
    if (m_model)
        m_model->disconnect(this);
    m_model = model;
    if (model) {
        connect(model, &QAbstractItemModel::dataChanged, this, &MenuRows::update);
        connect(model, &QAbstractItemModel::modelReset, this, &MenuRows::update);
        connect(model, &QAbstractItemModel::rowsInserted, this, &MenuRows::update);
        connect(model, &QAbstractItemModel::rowsMoved, this, &MenuRows::update);
        connect(model, &QAbstractItemModel::rowsRemoved, this, &MenuRows::update);
        connect(model, &QObject::destroyed, this, &MenuRows::update);
    }
    emit modelChanged();
    update();
}

void MenuRows::setSelectedUid(int uid)
{
    if (m_selectedUid == uid)
        return;
    m_selectedUid = uid;
    update(); // the text first: who hears of the uid may ask for it
    emit selectedUidChanged();
}

int MenuRows::uid(int row) const
{
    bool isNumber = false;
    const int uid = field(row, "uid_").toInt(&isNumber);
    return isNumber ? uid : -1;
}

int MenuRows::rowOfText(const QString &text) const
{
    for (int row = 0; row < count(); ++row) {
        if (this->text(row) == text)
            return row;
    }
    return -1;
}

int MenuRows::widestText(const QFont &font) const
{
    const QFontMetricsF metrics(font);
    qreal widest = 0;
    for (int row = 0; row < count(); ++row)
        widest = std::max(widest, metrics.horizontalAdvance(text(row)));
    return qCeil(widest);
}

int MenuRows::count() const
{
    return m_model ? m_model->rowCount() : 0;
}

QVariant MenuRows::field(int row, const char *name) const
{
    if (row < 0 || row >= count())
        return {};
    // A ListModel gets its fields with its first row, so they are looked up each time.
    const int role = m_model->roleNames().key(name, -1);
    return role < 0 ? QVariant() : m_model->data(m_model->index(row, 0), role);
}

QString MenuRows::text(int row) const
{
    return field(row, "text_").toString();
}

void MenuRows::update()
{
    int row = -1;
    for (int i = 0; i < count() && row < 0 && m_selectedUid != -1; ++i) {
        if (uid(i) == m_selectedUid)
            row = i;
    }
    const bool rowChanged = std::exchange(m_selectedRow, row) != row;
    const QString text = this->text(row);
    const bool textChanged = std::exchange(m_selectedText, text) != text;
    if (rowChanged)
        emit selectedRowChanged();
    if (textChanged)
        emit selectedTextChanged();
}

} // namespace lindenreed::device
