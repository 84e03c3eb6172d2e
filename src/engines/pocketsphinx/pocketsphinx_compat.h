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
#include <sphinxbase/cmn.h>
#include <sphinxbase/err.h>
#include <sphinxbase/feat.h>
#endif

#include <csetjmp>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

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
/// What the decoder holds for the mean of the sound's cepstrum, which it takes off.
inline std::vector<double> cepstralMean(ps_decoder_t* decoder)
{
    std::istringstream text(ps_get_cmn(decoder, FALSE));
    std::vector<double> mean;
    for (std::string each; std::getline(text, each, ',');)
        mean.push_back(std::stod(each));
    return mean;
}
/// `mean` has as many values as `cepstralMean`.
inline void setCepstralMean(ps_decoder_t* decoder, const std::vector<double>& mean)
{
    std::ostringstream text;
    for (size_t i = 0; i < mean.size(); ++i)
        text << (i == 0 ? "" : ",") << mean[i];
    ps_set_cmn(decoder, text.str().c_str());
}

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
/// What the decoder holds for the mean of the sound's cepstrum, which it takes off.
inline std::vector<double> cepstralMean(ps_decoder_t* decoder)
{
    cmn_t* normalisation = ps_get_feat(decoder)->cmn_struct;
    std::vector<mfcc_t> values(static_cast<size_t>(normalisation->veclen));
    cmn_live_get(normalisation, values.data());
    std::vector<double> mean;
    for (const mfcc_t value : values)
        mean.push_back(MFCC2FLOAT(value));
    return mean;
}
/// `mean` has as many values as `cepstralMean`.
inline void setCepstralMean(ps_decoder_t* decoder, const std::vector<double>& mean)
{
    std::vector<mfcc_t> values;
    for (const double value : mean)
        values.push_back(FLOAT2MFCC(static_cast<float>(value)));
    cmn_live_set(ps_get_feat(decoder)->cmn_struct, values.data());
}

#endif

} // namespace corvandi::sphinx
