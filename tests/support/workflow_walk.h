// A random walk through the playlist workflow: which steps are possible, which one is taken, and what it
// makes of the model. Whoever walks does each step on the real thing as well.
//
// SLATE_SEED repeats the walk of one seed, SLATE_LONG asks for more walks.

#pragma once

#include "workflow_model.h"

#include <QDate>
#include <QTest>

#include <array>
#include <random>

class WorkflowWalk
{
public:
    enum Action {
        Open, ///< playlist
        Create, ///< text
        Rename, ///< playlist, text
        LeaveMenu, ///< playlist
        AddByMenu, ///< playlist
        DeleteByMenu, ///< playlist
        Back,
        Plus,
        SelectSeveral, ///< text: by whose menu
        DeletePicture, ///< text
        DeleteSelected,
        Toggle, ///< text
        PressBox,
        Cancel,
        AddSelected,
        ChangeFolder, ///< text
        PressCrumb, ///< number
        SetInterval, ///< number
        MoveMedium, ///< number
        LookAtStorages,
        VanishOrReturn ///< text
    };

    struct Step
    {
        Action action;
        qlonglong playlist = -1;
        QString text = {};
        int number = 0;

        QString asText() const
        {
            constexpr std::array names{"open",
                                       "create",
                                       "rename",
                                       "leave menu",
                                       "add by menu",
                                       "delete by menu",
                                       "back",
                                       "plus",
                                       "select several",
                                       "delete picture",
                                       "delete selected",
                                       "toggle",
                                       "press box",
                                       "cancel",
                                       "add selected",
                                       "change folder",
                                       "press crumb",
                                       "set interval",
                                       "move medium",
                                       "look at storages",
                                       "vanish or return"};
            return QLatin1String(names.at(action)) + QStringLiteral(" %1 %2 ").arg(playlist).arg(number)
                + text.left(40);
        }
    };

    /// What can be reached where the walk is done.
    struct Bounds
    {
        QStringList titles;
        int playlists; ///< no more are made
        qsizetype playlistRows; ///< the first ones can be touched
        qsizetype pickerRows;
        bool alone; ///< nobody else looks at the storages, and the settings can be changed
    };

    WorkflowWalk(quint32 seed, Bounds bounds)
        : m_random(seed)
        , m_bounds(std::move(bounds))
    {
    }

    int below(qsizetype limit)
    {
        return std::uniform_int_distribution(0, static_cast<int>(limit) - 1)(m_random);
    }
    template <typename List>
    auto oneOf(const List &list)
    {
        return list.at(below(list.size()));
    }

    Step next(const WorkflowModel &model)
    {
        if (below(8) == 0)
            return ofTheDevice();
        QList<Step> possible;
        if (model.mode == WorkflowModel::AllViewMode)
            addOverview(model, possible);
        else if (model.isPicking() || model.selecting)
            addSelecting(model, possible);
        else
            addPlaylist(model, possible);
        return oneOf(possible);
    }

    static void apply(const Step &step, WorkflowModel &model)
    {
        switch (step.action) {
        case Open:
            return model.open(step.playlist);
        case Create:
            return model.create(step.text);
        case Rename:
            return model.rename(step.playlist, step.text);
        case LeaveMenu:
            return model.leaveMenu();
        case AddByMenu:
            return model.addByMenu(step.playlist);
        case DeleteByMenu:
            return model.deleteByMenu(step.playlist);
        case Back:
            return model.back();
        case Plus:
            return model.plus();
        case SelectSeveral:
            model.selecting = true;
            return;
        case DeletePicture:
            return model.deletePicture(step.text);
        case DeleteSelected:
            return model.deleteSelected();
        case Toggle:
            return model.toggle(step.text);
        case PressBox:
            return model.pressBox();
        case Cancel:
            return model.cancel();
        case AddSelected:
            return model.addSelected();
        case ChangeFolder:
            return model.changeFolder(step.text);
        case PressCrumb:
            return model.pressCrumb(step.number);
        case SetInterval:
            model.intervals[model.activeId] = step.number;
            return;
        case MoveMedium: {
            const auto medium = static_cast<WorkflowWorld::Medium>(step.number);
            model.world.setIn(medium, !model.world.isIn(medium));
            return;
        }
        case LookAtStorages:
            return model.storagesAreReported();
        case VanishOrReturn:
            model.world.setThere(step.text, !model.world.hasPicture(step.text));
            return;
        }
    }

    /// A row for each walk. Where they are many, each day has seeds of its own: a second try meets the same.
    static void addSeeds(int usual, int many)
    {
        QTest::addColumn<quint32>("seed");
        bool given = false;
        const quint32 only = qEnvironmentVariable("SLATE_SEED").toUInt(&given);
        const bool isLong = qEnvironmentVariableIsSet("SLATE_LONG");
        for (int i = 0; i < (given ? 1 : isLong ? many : usual); ++i) {
            const quint32 first
                = isLong ? static_cast<quint32>(QDate::currentDate().toJulianDay()) * 1000 : 1;
            const quint32 seed = given ? only : first + static_cast<quint32>(i);
            QTest::addRow("SLATE_SEED=%u", seed) << seed;
        }
    }

private:
    Step ofTheDevice()
    {
        if (m_bounds.alone && below(4) == 0)
            return {SetInterval, -1, {}, 1 + below(1000)};
        if (m_bounds.alone && below(3) == 0)
            return {LookAtStorages};
        if (below(2) == 0)
            return {MoveMedium, -1, {}, below(2)};
        return {VanishOrReturn, -1, oneOf(WorkflowWorld::allPictures())};
    }

    void addOverview(const WorkflowModel &model, QList<Step> &possible)
    {
        const QString title = oneOf(m_bounds.titles);
        if (model.titles.size() < m_bounds.playlists)
            possible << Step{Create, -1, title};
        if (model.titles.isEmpty())
            return;
        const qlonglong id = oneOf(model.titles.keys());
        possible << Step{Open, id} << Step{Open, id} << Step{Rename, id, title} << Step{LeaveMenu, id}
                 << Step{AddByMenu, id};
        if (below(3) == 0)
            possible << Step{DeleteByMenu, id};
    }

    void addPlaylist(const WorkflowModel &model, QList<Step> &possible)
    {
        possible << Step{Back} << Step{Plus};
        const qsizetype reach = qMin(model.rows.size(), m_bounds.playlistRows);
        if (reach == 0)
            return;
        const QString path = model.rows.at(below(reach)).path;
        possible << Step{SelectSeveral, -1, path} << Step{DeletePicture, -1, path};
    }

    void addSelecting(const WorkflowModel &model, QList<Step> &possible)
    {
        if (below(4) == 0)
            possible << Step{Cancel};
        if (!model.isPicking() || model.countFiles > 0) // else it is asleep
            possible << Step{PressBox};
        if (!model.selected.isEmpty())
            possible += QList<Step>(3, {model.isPicking() ? AddSelected : DeleteSelected});
        const qsizetype reach
            = qMin(model.rows.size(), model.isPicking() ? m_bounds.pickerRows : m_bounds.playlistRows);
        for (int i = 0; i < 4 && reach > 0; ++i) {
            const WorkflowModel::Row &row = model.rows.at(below(reach));
            if (model.canBeToggled(row))
                possible << Step{Toggle, -1, row.path};
            else if (row.kind <= WorkflowModel::Folder && isKnown(row))
                possible << Step{ChangeFolder, -1, row.path};
        }
        if (model.isPicking())
            possible << Step{PressCrumb, -1, {}, below(model.crumbs.size())};
    }
    /// What the device brings along is not walked into.
    static bool isKnown(const WorkflowModel::Row &row) { return WorkflowWorld::isOwnFolder(row.path); }

    std::mt19937 m_random;
    Bounds m_bounds;
};
