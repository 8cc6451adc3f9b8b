// Configuration files.

#include "slateview.h"

#include "call.h"

#include <configuration.h>

using namespace lindenreed::device;
using namespace lindenreed::device::sdk;

struct sv_config
{
    Configuration values;
};

sv_config *sv_config_open(const char *path, int mode)
{
    note("sv_config_open", path, mode);
    return new sv_config{path ? Configuration::read(path) : Configuration()};
}

void sv_config_close(sv_config *config)
{
    note("sv_config_close", config ? "config" : "null");
    delete config;
}

int ReadInt(sv_config *config, const char *key, int fallback)
{
    const int value = config && key ? config->values.integer(key).value_or(fallback) : fallback;
    return answer("ReadInt", value, key, fallback);
}

const char *ReadString(sv_config *config, const char *key, const char *fallback)
{
    const std::optional<QByteArray> value = config && key ? config->values.text(key) : std::nullopt;
    // The configuration shares these bytes with the copy and keeps them.
    return answer("ReadString", value ? value->constData() : fallback, key, fallback);
}
