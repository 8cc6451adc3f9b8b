// A long show on the real program: what happens to it, which picture it has to show, and what it must not
// say.

#pragma once

#include "named_screen.h"
#include "ran_out.h"
#include "soak_library.h"
#include "stored_show.h"

#include <QElapsedTimer>
#include <QThread>

#include <algorithm>
#include <cstdlib>
#include <vector>

class SoakShow
{
public:
    /// Writes the pictures, and a playlist of all of them that plays in an order at random. False where the
    /// show does not come to run.
    bool start()
    {
        // A file takes what comes while nobody reads; a pipe that is full holds the program.
        m_errors.setFileName(QStringLiteral("/devroot/tmp/errors"));
        m_device.program().setStandardErrorFile(m_errors.fileName());
        if (!QDir().rename(QStringLiteral("/mnt/.unplugged/sd"), QStringLiteral("/mnt/ext2"))
            || !m_library.make() || !store() || !m_device.start() || !m_errors.open(QIODevice::ReadOnly))
            return false;
        m_order = m_library.pictures();
        return m_device.play() && begun();
    }

    /// Lets the timer run out by hand, and waits until its picture is on the panel.
    bool change()
    {
        return m_device.does(QStringLiteral("fire"), {{QStringLiteral("name"), timer}}) && isShown();
    }

    /// Waits until no picture is being read.
    bool rests() { return m_device.does(QStringLiteral("idle"), {{QStringLiteral("ms"), 20}}) && isShown(); }

    /// Waits for a change that nobody fires.
    bool changesByItself()
    {
        const int before = m_unfired;
        return waitFor([&] { return m_unfired > before; }) && isShown();
    }

    /// Steps as a finger does.
    bool touches()
    {
        const auto tap = [this](double across, int by) {
            const QSize size = m_device.screenshot().size();
            m_position += by;
            ++m_changes;
            return m_device.does(QStringLiteral("tap"),
                                 {{QStringLiteral("x"), int(size.width() * across)},
                                  {QStringLiteral("y"), size.height() / 2}})
                && isShown();
        };
        return tap(0.9, 1) && tap(0.1, -1);
    }

    bool plugs(const char *medium)
    {
        const bool isCard = qstrcmp(medium, "card") == 0;
        bool &in = isCard ? m_cardIn : m_usbIn;
        if (!m_device.does(QString::fromLatin1(medium), {{QStringLiteral("in"), !in}}) || !catchUp())
            return false;
        in = !in;
        if (isCard) // what is on show by now may have been asked for while it was out
            m_cardOutUntil = m_changes;
        return isShown();
    }

    bool goesAway()
    {
        return m_device.does(QStringLiteral("background")) && catchUp()
            && m_device.does(QStringLiteral("foreground")) && isShown();
    }

    /// The screen follows a while later.
    bool turns(int orientation)
    {
        const bool upright = orientation == 0;
        return m_device.does(QStringLiteral("orientation"), {{QStringLiteral("value"), orientation}})
            && waitFor([&] {
                   const QRect screen = ShowDevice::rectangleOf(m_device.items().value(0));
                   return upright == (screen.height() > screen.width());
               })
            && isShown();
    }

    bool opensMenu()
    {
        return m_device.walk({QStringLiteral("press #wrapper")}) && catchUp()
            && m_device.does(
                QStringLiteral("event"),
                {{QStringLiteral("type"), 25}, {QStringLiteral("par1"), 23}, {QStringLiteral("par2"), 0}})
            && isShown();
    }

    bool changesDisplayMode()
    {
        m_fills = !m_fills; // the row of the present one cannot be chosen
        return changesSettings(
            {QStringLiteral("touch Display mode"),
             m_fills ? QStringLiteral("touch Fill screen") : QStringLiteral("touch Fit on black")});
    }
    /// Of the show, off and on again: sorted by path, then mixed.
    bool mixesAnew()
    {
        sort();
        shuffle();
        return changesSettings({QStringLiteral("touch Shuffle"), QStringLiteral("touch Shuffle")});
    }

    /// Leaves the show, makes a playlist, looks into the large one, takes the new one away, and starts anew.
    bool editsPlaylists()
    {
        if (!m_cardIn && !plugs("card"))
            return false;
        const bool done = m_device.walk(
            {QStringLiteral("press #wrapper"), QStringLiteral("press Stop slideshow"),
             QStringLiteral("touch New playlist"), QStringLiteral("touch Continue"),
             QStringLiteral("touch All"), QStringLiteral("touch Create playlist"),
             QStringLiteral("press Back"), QStringLiteral("touch Photos. 2000"), QStringLiteral("key next"),
             QStringLiteral("key next"), QStringLiteral("press Back"),
             QStringLiteral("hold New playlist. 10"), QStringLiteral("touch Delete")});
        if (!done)
            qWarning() << m_device.names();
        m_order = m_library.pictures();
        return done && m_device.play() && begun();
    }

    /// Lines that nobody expects, since the last call: only pictures that are black may be called failed.
    QByteArrayList unexpectedLines()
    {
        m_text += m_errors.readAll();
        const qsizetype whole = m_text.lastIndexOf('\n') + 1;
        const QByteArrayList lines = m_text.first(whole).split('\n');
        m_text.remove(0, whole);
        QByteArrayList unexpected;
        for (const QByteArray &each : lines) {
            const QByteArray line = each.trimmed();
            constexpr QByteArrayView failed = "Failed to get image from provider: image://image_provider/";
            const qsizetype at = line.indexOf(failed);
            const bool known = line.isEmpty() || ShowDevice::isDiagnostic(line)
                || line.startsWith("libpng error: ")
                || (at >= 0 && m_library.mayBeBlack(QString::fromUtf8(line.sliced(at + failed.size()))));
            if (!known)
                unexpected.append(line);
        }
        return unexpected;
    }

    int changes() const { return m_changes; }
    int unfired() const { return m_unfired; }
    double latestMs() const { return m_latestMs; } ///< of the timers that ran out by themselves
    NamedScreen &device() { return m_device; }

    /// What is not as it should be.
    QString trouble() const { return m_trouble; }

private:
    static inline const QString timer = QStringLiteral("nextImageEvent");

    /// The way the settings go from the show and back.
    bool changesSettings(const QStringList &steps)
    {
        const bool done = m_device.walk(
            QStringList{QStringLiteral("press #wrapper"), QStringLiteral("press Slideshow settings")} + steps
            + QStringList{QStringLiteral("press Back")});
        return done && isShown();
    }

    bool store()
    {
        QStringList paths;
        for (const SoakPicture &picture : m_library.pictures())
            paths.append(picture.path);
        return stored_show::store(paths,
                                  {{QStringLiteral("shuffle"), QStringLiteral("1")},
                                   {QStringLiteral("change_picture_time"), QStringLiteral("2")}});
    }

    bool begun()
    {
        sort();
        shuffle();
        m_position = 0;
        return catchUp() && isShown();
    }

    void sort() { std::ranges::sort(m_order, {}, &SoakPicture::path); }
    /// As the program does, which is the only one to call rand() in its process as this is in its own.
    void shuffle()
    {
        for (std::size_t i = 1; i < m_order.size(); ++i) {
            const std::size_t j = std::size_t(std::rand()) % (i + 1); // NOLINT(cert-msc30-c,cert-msc50-cpp)
            if (j != i)
                std::swap(m_order[i], m_order[j]);
        }
    }

    /// Counts what ran out since the last look.
    bool catchUp()
    {
        const QList<RanOut> lately = RanOut::lately(m_device);
        for (const RanOut &ran : lately) {
            if (ran.number <= m_seen)
                continue;
            if (ran.number != m_seen + 1)
                m_trouble = QStringLiteral("Timers ran out unseen.");
            m_seen = ran.number;
            if (!ran.fired)
                m_latestMs = std::max(m_latestMs, ran.lateMs());
            if (ran.name == timer) {
                ++m_position;
                ++m_changes;
                m_unfired += ran.fired ? 0 : 1;
            }
        }
        return !lately.isEmpty() || m_seen == 0;
    }

    template <typename Condition>
    bool waitFor(const Condition &condition)
    {
        QElapsedTimer clock;
        clock.start();
        while (clock.elapsed() < 20'000) {
            if (!catchUp())
                return false;
            if (condition())
                return true;
            QThread::msleep(1);
        }
        return false;
    }

    const SoakPicture &expected() const
    {
        const auto count = qint64(m_order.size());
        return m_order[std::size_t(((m_position % count) + count) % count)];
    }

    /// Waits until the panel has what is due.
    bool isShown()
    {
        QString seen;
        const bool shown = waitFor([&] {
            const QImage panel = m_device.screenshot();
            const SoakMark mark = markOf(panel);
            seen = QStringLiteral("%1 %2 %3 %4").arg(mark[0]).arg(mark[1]).arg(mark[2]).arg(mark[3]);
            const SoakPicture &picture = expected();
            const bool wasOut = picture.onCard && (!m_cardIn || m_changes <= m_cardOutUntil);
            return fits(mark, picture, picture.mayBeBlack || wasOut);
        });
        if (!shown)
            m_trouble = QStringLiteral("Not shown: %1 at %2, but %3")
                            .arg(expected().path)
                            .arg(m_position)
                            .arg(seen);
        return shown && m_trouble.isEmpty();
    }

    static bool fits(const SoakMark &seen, const SoakPicture &picture, bool mayBeBlack)
    {
        constexpr int tolerance = 10;
        const auto like = [&](const SoakMark &mark) {
            for (std::size_t i = 0; i < mark.size(); ++i) {
                if (std::abs(seen[i] - mark[i]) > tolerance)
                    return false;
            }
            return true;
        };
        const bool black = like({0, 0, 0, 0});
        return picture.mark ? like(*picture.mark) || (mayBeBlack && black) : black;
    }

    static SoakMark markOf(const QImage &panel)
    {
        const int x = panel.width() / 2;
        const int y = panel.height() / 2;
        const auto grey = [&panel](int left, int top) {
            constexpr int side = 16;
            int sum = 0;
            for (int row = top; row < top + side; ++row) {
                for (int column = left; column < left + side; ++column)
                    sum += qGray(panel.pixel(column, row));
            }
            return sum / (side * side);
        };
        return {grey(x - 28, y - 28), grey(x + 12, y - 28), grey(x + 12, y + 12), grey(x - 28, y + 12)};
    }

    SoakLibrary m_library;
    NamedScreen m_device;
    std::vector<SoakPicture> m_order;
    qint64 m_position = 0;
    qint64 m_seen = 0; ///< number of the last timer that ran out
    int m_changes = 0;
    int m_unfired = 0;
    double m_latestMs = 0;
    bool m_cardIn = true;
    int m_cardOutUntil = 0; ///< the last of m_changes that may have met no card
    bool m_usbIn = false;
    bool m_fills = true;
    QString m_trouble;
    QFile m_errors;
    QByteArray m_text; ///< of them, up to now without an end of line
};
