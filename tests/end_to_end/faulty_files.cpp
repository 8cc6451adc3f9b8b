// A library that is loaded before those of a program, and fails one of its calls for files as a plan says.

#include "fault_plan.h"
#include "file_calls.h"

#include <cstdlib>

namespace {

/// To the very end of the program.
[[gnu::constructor]] void takeCalls()
{
    const char *const path = std::getenv(FaultPlan::pathVariable);
    const char *const folder = std::getenv(FaultPlan::folderVariable);
    FaultPlan *const plan = path && folder ? FaultPlan::at(path) : nullptr;
    if (!plan)
        std::abort(); // it would find no faults
    [[maybe_unused]] static const auto *const calls = new FileCalls(folder, [plan](FileCall &call) {
        const int error = plan->error;
        if ((error != EMFILE || call.kind == FileCall::Open) && plan->calls++ == plan->position) {
            call.error = error;
            plan->failed = true;
        }
    });
}

} // namespace
