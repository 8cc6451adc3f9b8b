// The real program, walked through the playlist workflow by touch and by assistive press, and seen by what is
// on its screen.

#pragma once

#include "show_device.h"
#include "workflow_walk.h"

#include <algorithm>

/// The program in the device root that the test itself runs in.
class WalkingDevice : public ShowDevice
{
public:
    struct Request
    {
        QString command;
        QJsonObject members;
    };

    /// Titles are unlike all that the screens say themselves.
    static WorkflowWalk::Bounds bounds()
    {
        return {{QStringLiteral("Holiday"), QStringLiteral("%s %1 100%"),
                 QStringLiteral("<b>\"x\"</b> & | \\"), QStringLiteral("a\u0308 \u96ea"),
                 QStringLiteral("'; DROP TABLE playlists; --"), QString()},
                3,
                reach,
                reach,
                false};
    }

    /// What a new database has.
    static void meetFirstRun(WorkflowModel &model)
    {
        model.titles.insert(1, QStringLiteral("@DefaultPlaylist"));
        for (int i = 1; i <= 10; ++i)
            model.pictures[1].insert(
                QStringLiteral("/mnt/ext1/Photo/%1.jpg").arg(i, 2, 10, QLatin1Char('0')));
    }

    /// Everything up to the request that has the step's effect; nothing where it cannot be done.
    std::optional<Request> prepare(const WorkflowWalk::Step &step, const WorkflowModel &model)
    {
        const auto press = [](const char *name) {
            return Request{QStringLiteral("press"), {{QStringLiteral("name"), QString::fromLatin1(name)}}};
        };
        const QPoint row = step.playlist < 0
            ? QPoint()
            : playlistRow(std::distance(model.titles.cbegin(), model.titles.constFind(step.playlist)));
        const auto ofMenu
            = [&](const char *entry) { return hold(row) ? std::optional(press(entry)) : std::nullopt; };
        switch (step.action) {
        case WorkflowWalk::Open:
            return touch(row);
        case WorkflowWalk::Create:
            return doesSoon(press("New playlist")) && writeTitle(step.text) ? std::optional(press("Continue"))
                                                                            : std::nullopt;
        case WorkflowWalk::Rename:
            return hold(row) && doesSoon(press("Rename")) && writeTitle(step.text)
                ? std::optional(press("OK"))
                : std::nullopt;
        case WorkflowWalk::LeaveMenu:
            return hold(row) ? std::optional(touch({379, 50})) : std::nullopt;
        case WorkflowWalk::AddByMenu:
            return ofMenu("Add pictures to playlist");
        case WorkflowWalk::DeleteByMenu:
            return ofMenu("Delete");
        case WorkflowWalk::Back:
            return press("Back");
        case WorkflowWalk::Plus:
            return press("Add pictures");
        case WorkflowWalk::SelectSeveral:
            return hold(cell(step, model)) ? std::optional(press("Select multiple")) : std::nullopt;
        case WorkflowWalk::DeletePicture:
            return hold(cell(step, model)) ? std::optional(press("Delete")) : std::nullopt;
        case WorkflowWalk::DeleteSelected:
            return press("Delete");
        case WorkflowWalk::Toggle:
        case WorkflowWalk::ChangeFolder:
            return touch(cell(step, model));
        case WorkflowWalk::PressBox:
            return touch(placeOf("All"));
        case WorkflowWalk::Cancel:
            return press("Cancel");
        case WorkflowWalk::AddSelected:
            return press(model.mode == WorkflowModel::CreateMode ? "Create playlist" : "Add pictures");
        case WorkflowWalk::PressCrumb:
            return touch(rectangleOf(rowButtons().at(step.number)).center());
        case WorkflowWalk::MoveMedium: {
            const auto medium = static_cast<WorkflowWorld::Medium>(step.number);
            return Request{medium == WorkflowWorld::Card ? QStringLiteral("card") : QStringLiteral("usb"),
                           {{QStringLiteral("in"), !model.world.isIn(medium)}}};
        }
        case WorkflowWalk::VanishOrReturn:
            return Request{QStringLiteral("idle"), {{QStringLiteral("ms"), 20}}};
        case WorkflowWalk::SetInterval:
        case WorkflowWalk::LookAtStorages:
            break;
        }
        return std::nullopt;
    }

    bool doesSoon(const Request &request)
    {
        const bool done = does(request.command, request.members) && rests();
        look();
        return done;
    }

    /// Waits until the screen shows what the model has; what is wrong if it does not come to that.
    QString difference(const WorkflowModel &model, bool withCounts)
    {
        QString wrong;
        const auto asExpected = [&] {
            rests();
            look();
            wrong = model.mode == WorkflowModel::AllViewMode ? differenceOfOverview(model, withCounts)
                                                             : differenceOfPictures(model);
            return wrong.isEmpty();
        };
        return QTest::qWaitFor(asExpected, 10'000) ? QString() : wrong;
    }

    void pullMedia(WorkflowWorld &world)
    {
        for (const auto medium : {WorkflowWorld::Card, WorkflowWorld::Usb}) {
            ask(medium == WorkflowWorld::Card ? QStringLiteral("card") : QStringLiteral("usb"),
                {{QStringLiteral("in"), false}});
            world.setIn(medium, false);
        }
    }

    /// Reads the screen anew.
    void look() { m_items = items(); }

private:
    static constexpr qsizetype reach = 9; ///< cells above the button at the foot

    bool rests() { return does(QStringLiteral("idle"), {{QStringLiteral("ms"), 40}}); }

    static QString nameOf(const QJsonObject &item) { return item.value(QLatin1String("name")).toString(); }
    static bool isButton(const QJsonObject &item)
    {
        return item.value(QLatin1String("role")) == QLatin1String("Button");
    }
    static bool isEnabled(const QJsonObject &item)
    {
        return item.value(QLatin1String("enabled")).toBool(true);
    }
    const QJsonObject *find(const QString &name) const
    {
        const auto found = std::ranges::find(m_items, name, nameOf);
        return found != m_items.cend() ? &*found : nullptr;
    }
    QPoint placeOf(const char *name) const
    {
        const QJsonObject *const found = find(QString::fromLatin1(name));
        return found ? rectangleOf(*found).center() : QPoint();
    }

    static Request touch(QPoint at)
    {
        return {QStringLiteral("tap"), {{QStringLiteral("x"), at.x()}, {QStringLiteral("y"), at.y()}}};
    }
    bool hold(QPoint at)
    {
        return doesSoon(
            {QStringLiteral("hold"), {{QStringLiteral("x"), at.x()}, {QStringLiteral("y"), at.y()}}});
    }
    /// In place of what is selected.
    bool writeTitle(const QString &title)
    {
        if (title.isEmpty())
            return doesSoon({QStringLiteral("press"), {{QStringLiteral("name"), QStringLiteral("Delete")}}});
        return doesSoon({QStringLiteral("type"), {{QStringLiteral("text"), title}}});
    }

    /// What is left of the play sign of each playlist, from above.
    QList<QJsonObject> playSigns() const
    {
        QList<QJsonObject> found = m_items;
        found.removeIf(
            [](const QJsonObject &item) { return nameOf(item) != QLatin1String("Start playback"); });
        return found;
    }
    QPoint playlistRow(qsizetype row) const
    {
        const QList<QJsonObject> signs = playSigns();
        return row < signs.size() ? QPoint(300, rectangleOf(signs.at(row)).center().y()) : QPoint();
    }

    /// Crumbs, folders and pictures, in reading order.
    QList<QJsonObject> rowButtons() const
    {
        static const QStringList others{QStringLiteral("Back"),         QStringLiteral("Cancel"),
                                        QStringLiteral("Add pictures"), QStringLiteral("Slideshow settings"),
                                        QStringLiteral("Show as list"), QStringLiteral("Previous page"),
                                        QStringLiteral("Next page"),    QStringLiteral("Play"),
                                        QStringLiteral("Delete"),       QStringLiteral("Create playlist")};
        QList<QJsonObject> found = m_items;
        found.removeIf(
            [](const QJsonObject &item) { return !isButton(item) || others.contains(nameOf(item)); });
        return found;
    }
    static QString shownName(const QString &path)
    {
        static const QMap<QString, QString> names{
            {QString(), QStringLiteral("Storage")},
            {QStringLiteral("/mnt/ext1"), QStringLiteral("This device")},
            {QStringLiteral("/mnt/ext2"), QStringLiteral("SD card")},
            {QStringLiteral("/mnt/ext3"), QStringLiteral("USB drive")}};
        return names.value(path, path.section(u'/', -1));
    }
    static QStringList expectedButtons(const WorkflowModel &model, qsizetype rows)
    {
        QStringList names;
        if (model.isPicking())
            std::ranges::transform(model.crumbs, std::back_inserter(names), shownName);
        for (const WorkflowModel::Row &row : model.rows.first(qMin(rows, model.rows.size()))) {
            if (row.kind != WorkflowModel::Filler)
                names.append(shownName(row.path));
        }
        return names;
    }
    /// A picture or folder among the first rows.
    QPoint cell(const WorkflowWalk::Step &step, const WorkflowModel &model) const
    {
        qsizetype at = model.isPicking() ? model.crumbs.size() : 0;
        for (const WorkflowModel::Row &row : model.rows) {
            const bool isFolder = row.kind <= WorkflowModel::Folder;
            if (row.path == step.text && isFolder == (step.action == WorkflowWalk::ChangeFolder))
                break;
            at += row.kind != WorkflowModel::Filler ? 1 : 0;
        }
        const QList<QJsonObject> buttons = rowButtons();
        return at < buttons.size() ? rectangleOf(buttons.at(at)).center() : QPoint();
    }

    QString differenceOfOverview(const WorkflowModel &model, bool withCounts) const
    {
        QStringList names;
        for (const QJsonObject &item : m_items) {
            if (isButton(item) && rectangleOf(item).left() > 150 && rectangleOf(item).right() < 650)
                names.append(nameOf(item));
        }
        QStringList expected;
        for (auto each = model.titles.cbegin(); each != model.titles.cend(); ++each)
            expected.append(
                (each.value() == QLatin1String("@DefaultPlaylist") ? QStringLiteral("Photos") : each.value())
                + QStringLiteral(". %1").arg(model.countThere(each.key())));
        if (!withCounts) {
            const auto cut = [](QString &name) { name.truncate(name.lastIndexOf(QLatin1String(". "))); };
            std::ranges::for_each(names, cut);
            std::ranges::for_each(expected, cut);
        }
        return names == expected && find(QStringLiteral("New playlist"))
            ? QString()
            : names.join(u'|') + QStringLiteral(" instead of ") + expected.join(u'|');
    }

    QString differenceOfPictures(const WorkflowModel &model) const
    {
        QStringList names;
        const QList<QJsonObject> buttons = rowButtons();
        // Storages tell their size as well.
        std::ranges::transform(buttons, std::back_inserter(names), [](const QJsonObject &item) {
            return nameOf(item).section(QLatin1String(". "), 0, 0);
        });
        const QStringList all = expectedButtons(model, model.rows.size());
        const qsizetype least = expectedButtons(model, reach).size();
        if (names.size() < least || names != all.first(qMin(names.size(), all.size())))
            return names.join(u'|') + QStringLiteral(" instead of ") + all.join(u'|');

        const bool needsSelection = model.isPicking() || model.selecting;
        const QString action = model.mode == WorkflowModel::CreateMode ? QStringLiteral("Create playlist")
            : model.mode == WorkflowModel::AddMode                     ? QStringLiteral("Add pictures")
            : model.selecting                                          ? QStringLiteral("Delete")
                                                                       : QStringLiteral("Play");
        const QJsonObject *const button = find(action);
        if (!button || isEnabled(*button) != (!needsSelection || !model.selected.isEmpty()))
            return action;
        const QString count = model.selected.size() > model.countFiles
            ? QString::number(model.selected.size())
            : QStringLiteral("%1 / %2").arg(model.selected.size()).arg(model.countFiles);
        return !needsSelection || find(count) ? QString() : count;
    }

    QList<QJsonObject> m_items;
};
