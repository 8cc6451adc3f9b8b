// Faults of the files of a program that runs beside a test: what the two of them share.

#pragma once

#include <QByteArray>

#include <atomic>
#include <limits>

#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

/// Which call fails. It lies in a file that both have mapped.
struct FaultPlan
{
    static constexpr int never = std::numeric_limits<int>::max();
    static constexpr const char *pathVariable = "SLATE_FAULT_PLAN";
    static constexpr const char *folderVariable = "SLATE_FAULTY_FOLDER"; ///< whose files it is about

    std::atomic<int> calls; ///< since it was armed
    std::atomic<int> position; ///< how many calls go well before
    std::atomic<int> error; ///< "no more handles" counts openings alone
    std::atomic<bool> failed; ///< the call has come

    /// The program may call meanwhile: nothing fails before all of the new plan is there.
    void arm(int newPosition, int newError)
    {
        position = never;
        failed = false;
        error = newError;
        calls = 0;
        position = newPosition;
    }
    bool hasFailed() const { return failed; }

    /// Made where it is not there; null where it cannot be mapped. Nobody unmaps it.
    static FaultPlan *at(const char *path)
    {
        const int file = ::open(path, O_RDWR | O_CREAT | O_CLOEXEC, 0600);
        if (file < 0)
            return nullptr;
        void *memory = MAP_FAILED;
        if (::ftruncate(file, sizeof(FaultPlan)) == 0)
            memory = ::mmap(nullptr, sizeof(FaultPlan), PROT_READ | PROT_WRITE, MAP_SHARED, file, 0);
        ::close(file);
        return memory == MAP_FAILED ? nullptr : static_cast<FaultPlan *>(memory);
    }
};
