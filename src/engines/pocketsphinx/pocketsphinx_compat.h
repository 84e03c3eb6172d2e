#pragma once

// The recognition library in both of its shapes: 0.8 (with its base library) and 5. Its headers define
// names such as int16 and TRUE for everybody, so this one is included in a single source file.

#include <pocketsphinx.h>
#if __has_include(<pocketsphinx/endpointer.h>)
#define CORVANDI_POCKETSPHINX_5 1
#include <pocketsphinx/err.h>
#else
#define CORVANDI_POCKETSPHINX_5 0
#include <sphinxbase/ckd_alloc.h>
#include <sphinxbase/cmd_ln.h>
#include <sphinxbase/err.h>
#endif

#include <csetjmp>
#include <memory>
#include <string>

namespace corvandi::sphinx {

struct DecoderDeleter {
    void operator()(ps_decoder_t* decoder) const { ps_free(decoder); }
};
using Decoder = std::unique_ptr<ps_decoder_t, DecoderDeleter>;

#if CORVANDI_POCKETSPHINX_5

struct ConfigDeleter {
    void operator()(ps_config_t* config) const { ps_config_free(config); }
};
using Config = std::unique_ptr<ps_config_t, ConfigDeleter>;

inline Config makeConfig()
{
    return Config(ps_config_init(nullptr));
}
inline void setText(const Config& config, const char* name, const char* value)
{
    ps_config_set_str(config.get(), name, value);
}
inline void setInteger(const Config& config, const char* name, long value)
{
    ps_config_set_int(config.get(), name, value);
}
inline void switchOff(const Config& config, const char* name)
{
    // Version 5 has dropped some switches together with what they switched.
    if (ps_config_typeof(config.get(), name) != 0)
        ps_config_set_bool(config.get(), name, 0);
}
/// Where the library goes when it runs out of memory: version 5 keeps that to itself.
inline void setAllocationFailureTarget(std::jmp_buf*) {}

#else

struct ConfigDeleter {
    void operator()(cmd_ln_t* config) const { cmd_ln_free_r(config); }
};
using Config = std::unique_ptr<cmd_ln_t, ConfigDeleter>;

inline std::string optionName(const char* name)
{
    return std::string("-") + name;
}
inline Config makeConfig()
{
    return Config(cmd_ln_init(nullptr, ps_args(), FALSE, nullptr));
}
inline void setText(const Config& config, const char* name, const char* value)
{
    cmd_ln_set_str_r(config.get(), optionName(name).c_str(), value);
}
inline void setInteger(const Config& config, const char* name, long value)
{
    cmd_ln_set_int_r(config.get(), optionName(name).c_str(), value);
}
inline void switchOff(const Config& config, const char* name)
{
    cmd_ln_set_boolean_r(config.get(), optionName(name).c_str(), FALSE);
}
/// Where the library goes when it runs out of memory, instead of ending the program.
inline void setAllocationFailureTarget(std::jmp_buf* target)
{
    ckd_set_jump(target, FALSE);
}

#endif

} // namespace corvandi::sphinx
