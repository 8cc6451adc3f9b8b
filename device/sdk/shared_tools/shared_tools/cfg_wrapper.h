// Reading configuration files by key.

#pragma once

#include <boost/optional.hpp>

#include <string>

struct sv_config;

namespace lindenreed::utilities {

/// A configuration file as it was when it was opened. Never null, never writes; a file that cannot be read is
/// empty. Works before the device has started. Main thread.
class CfgWrapper
{
public:
    /// Open modes: 0 and 1 both read.
    CfgWrapper(const std::string &path, int openMode);
    ~CfgWrapper();
    CfgWrapper(const CfgWrapper &) = delete;
    CfgWrapper &operator=(const CfgWrapper &) = delete;

    /// The value of a key, `fallback` where it is missing. T is int or std::string.
    template <typename T>
    T read(const std::string &key, const T &fallback);

    /// The value of a key, nothing where it is missing or, for int, not wholly a decimal int. T is int or
    /// std::string.
    template <typename T>
    boost::optional<T> readIfExists(const std::string &key);

    /// Releases the file; from here on every key is missing.
    void closeNoSave();

private:
    sv_config *m_config;
};

template <>
int CfgWrapper::read<int>(const std::string &key, const int &fallback);
template <>
std::string CfgWrapper::read<std::string>(const std::string &key, const std::string &fallback);
template <>
boost::optional<int> CfgWrapper::readIfExists<int>(const std::string &key);
template <>
boost::optional<std::string> CfgWrapper::readIfExists<std::string>(const std::string &key);

/// Reads one key of a file and closes it again.
template <typename T>
T readFromConfig(const std::string &path, const std::string &key, const T &fallback)
{
    CfgWrapper config(path, 0);
    return config.read<T>(key, fallback);
}

} // namespace lindenreed::utilities
