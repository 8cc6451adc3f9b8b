// Each instruction set that the pixels' code is compiled for and this processor has, forced one by one.

#pragma once

#include <hwy/targets.h>

#include <string>
#include <vector>

namespace lindenreed::pixels {

inline std::vector<std::int64_t> instructionSets()
{
    std::vector<std::int64_t> sets;
    // What needs none runs anywhere, whether or not the library counts it among what is supported.
    std::int64_t left = HWY_TARGETS & (hwy::SupportedTargets() | HWY_SCALAR | HWY_EMU128);
    for (; left != 0; left &= left - 1)
        sets.push_back(left & -left);
    return sets;
}

inline std::string instructionSetName(std::int64_t set)
{
    return set == HWY_SCALAR || set == HWY_EMU128 ? "baseline" : hwy::TargetName(set);
}

/// While it lives, the pixels' code runs as on a processor that has this one alone.
class ForcedInstructionSet
{
public:
    explicit ForcedInstructionSet(std::int64_t set) { force(set); }
    ~ForcedInstructionSet() { force(0); }
    ForcedInstructionSet(const ForcedInstructionSet &) = delete;
    ForcedInstructionSet &operator=(const ForcedInstructionSet &) = delete;

private:
    static void force(std::int64_t set)
    {
        hwy::SetSupportedTargetsForTest(set);
        hwy::GetChosenTarget().Update(hwy::SupportedTargets());
    }
};

} // namespace lindenreed::pixels
