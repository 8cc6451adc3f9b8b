// The folder model over real folders, and what it tells. Needs slate_core.

#pragma once

#include "folder_model.h"
#include "folder_tree.h"
#include "media_fixture.h"

#include <QAbstractItemModelTester>
#include <QRegularExpression>
#include <QScopeGuard>
#include <QTest>

#include <memory>
#include <utility>

/// Notes a model's signals in the order in which they come, with what can be read then.
class FolderSignals : public QObject
{
public:
    explicit FolderSignals(const lindenreed::picture_stand::FolderModel *model)
    {
        using lindenreed::picture_stand::FolderModel;
        const auto note = [this](const QString &line) { m_lines.append(line); };
        connect(model, &FolderModel::modelAboutToBeReset, this, [note] { note(QStringLiteral("about")); });
        connect(model, &FolderModel::modelReset, this,
                [=] { note(QStringLiteral("reset %1").arg(model->rowCount())); });
        connect(model, &FolderModel::changedFolder, this,
                [note](const QString &path) { note(QStringLiteral("folder %1").arg(path)); });
        connect(model, &FolderModel::countFilesChanged, this,
                [=] { note(QStringLiteral("files %1").arg(model->countFiles())); });
        connect(model, &FolderModel::countSelectedChanged, this,
                [=] { note(QStringLiteral("selected %1").arg(model->countSelected())); });
        connect(model, &FolderModel::modeChanged, this,
                [=] { note(QStringLiteral("mode %1").arg(model->mode())); });
        connect(model, &FolderModel::viewModeChanged, this,
                [=] { note(QStringLiteral("view %1").arg(model->viewMode())); });
        connect(model, &FolderModel::dataChanged, this,
                [note](const QModelIndex &from, const QModelIndex &to, const QList<int> &roles) {
                    QString line = QStringLiteral("row %1 to %2:").arg(from.row()).arg(to.row());
                    for (const int role : roles)
                        line += QStringLiteral(" %1").arg(role);
                    note(line);
                });
    }

    QStringList taken() { return std::exchange(m_lines, {}); }

private:
    QStringList m_lines;
};

/// Media that are out, an empty folder on the internal memory, a model, and a tester that watches it.
class FolderFixture
{
public:
    using FolderModel = lindenreed::picture_stand::FolderModel;

    FolderFixture()
    {
        QTest::failOnWarning(QRegularExpression(QStringLiteral(".?")));
        if (!MediaFixture::settled() || !MediaFixture::look())
            qFatal("the storages are not reported");
    }

    QVariant cell(int row, int role) const { return model.data(model.index(row), role); }

    /// "name path type" of each row.
    QStringList rows() const
    {
        QStringList lines;
        for (int row = 0; row < model.rowCount(); ++row)
            lines.append(QStringLiteral("%1 %2 %3")
                             .arg(cell(row, FolderModel::NameRole).toString(),
                                  cell(row, FolderModel::PathRole).toString())
                             .arg(cell(row, FolderModel::TypeRole).toInt()));
        return lines;
    }
    QStringList names() const
    {
        QStringList found;
        for (int row = 0; row < model.rowCount(); ++row)
            found.append(cell(row, FolderModel::NameRole).toString());
        return found;
    }
    /// Names of the rows that show as selected.
    QStringList selectedNames() const
    {
        QStringList found;
        for (int row = 0; row < model.rowCount(); ++row) {
            if (cell(row, FolderModel::IsSelectedRole).toBool())
                found.append(cell(row, FolderModel::NameRole).toString());
        }
        return found;
    }
    QString path(const QString &entry) const { return tree.path(entry); }

    /// Takes the storages' reports, as in the running application.
    void followStorages()
    {
        using lindenreed::picture_stand::Storage;
        QObject::connect(&Storage::instance(), &Storage::storageChanged, &model,
                         &FolderModel::storageChanged);
    }

    MediaFixture media;
    const FolderTree tree{QStringLiteral("/mnt/ext1/album")};
    FolderModel model;
    QAbstractItemModelTester tester{&model, QAbstractItemModelTester::FailureReportingMode::Fatal};
    FolderSignals told{&model};
};

/// Works in a folder until the end of the scope.
[[nodiscard]] inline auto workIn(const QString &folder)
{
    const QString before = QDir::currentPath();
    if (!QDir::setCurrent(folder))
        qFatal("cannot work in %s", qPrintable(folder));
    return qScopeGuard([before] { QDir::setCurrent(before); });
}
