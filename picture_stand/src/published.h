// A value that many threads read while one replaces it.

#pragma once

#include <atomic>
#include <memory>
#include <utility>
#include <vector>

namespace lindenreed::picture_stand {

/**
 * A value that is replaced whole and read without a lock.
 *
 * Writers must exclude each other; readers need nothing. An old value is freed by the first replacement that
 * finds no reader at work, for a reader that comes later can only see the new one. (A
 * std::atomic<std::shared_ptr> would do the same, but the thread sanitizer of GCC 12 does not understand it.)
 */
template <typename T>
class Published
{
public:
    Published()
        : m_current(new T())
    {
    }
    ~Published() { delete m_current.load(); }
    Published(const Published &) = delete;
    Published &operator=(const Published &) = delete;

    /// What `read` makes of the value; the reference it gets is not to be kept. Any thread.
    template <typename Read>
    auto read(const Read &reader) const
    {
        const Reading reading(m_readers);
        return reader(*m_current.load());
    }

    /// One writer at a time.
    void replace(T value)
    {
        m_old.emplace_back(m_current.exchange(new T(std::move(value))));
        // Sequentially consistent like the rest: whoever is not counted yet will load the new value.
        if (m_readers.load() == 0)
            m_old.clear();
    }

private:
    class Reading
    {
    public:
        explicit Reading(std::atomic<int> &readers)
            : m_readers(readers)
        {
            m_readers.fetch_add(1);
        }
        ~Reading() { m_readers.fetch_sub(1); }
        Reading(const Reading &) = delete;
        Reading &operator=(const Reading &) = delete;

    private:
        std::atomic<int> &m_readers;
    };

    mutable std::atomic<int> m_readers = 0;
    std::atomic<const T *> m_current;
    std::vector<std::unique_ptr<const T>> m_old; ///< replaced while somebody was reading
};

} // namespace lindenreed::picture_stand
