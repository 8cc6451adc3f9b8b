#include "shared_tools/cfg_wrapper.h"

#include <slateview.h>

#include <limits>
#include <utility>

namespace lindenreed::utilities {

CfgWrapper::CfgWrapper(const std::string &path, int openMode)
    : m_config(sv_config_open(path.c_str(), openMode))
{
}

CfgWrapper::~CfgWrapper()
{
    closeNoSave();
}

template <>
int CfgWrapper::read<int>(const std::string &key, const int &fallback)
{
    return ReadInt(m_config, key.c_str(), fallback);
}

template <>
std::string CfgWrapper::read<std::string>(const std::string &key, const std::string &fallback)
{
    return ReadString(m_config, key.c_str(), fallback.c_str());
}

template <>
boost::optional<int> CfgWrapper::readIfExists<int>(const std::string &key)
{
    // The value may be the fallback itself: only a missing one follows the second fallback as well.
    constexpr int rare = std::numeric_limits<int>::min();
    const int value = ReadInt(m_config, key.c_str(), rare);
    if (value == rare && ReadInt(m_config, key.c_str(), 0) == 0)
        return boost::none;
    return value;
}

template <>
boost::optional<std::string> CfgWrapper::readIfExists<std::string>(const std::string &key)
{
    const char *const value = ReadString(m_config, key.c_str(), nullptr);
    if (!value)
        return boost::none;
    return std::string(value);
}

void CfgWrapper::closeNoSave()
{
    if (m_config)
        sv_config_close(std::exchange(m_config, nullptr));
}

} // namespace lindenreed::utilities
