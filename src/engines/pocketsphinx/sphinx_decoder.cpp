#include "engines/pocketsphinx/sphinx_decoder.h"

#include "base/error.h"
#include "engines/pocketsphinx/pocketsphinx_compat.h"

#include <QFile>
#include <QStringList>

#include <cmath>
#include <csetjmp>
#include <vector>

namespace corvandi {
namespace {

/// Set on a thread while it is in the library: where to go when the library gives up.
thread_local std::jmp_buf* wayOut = nullptr;

/// The library tells of a fatal error through this and then calls exit().
extern "C" void libraryReported(void*, err_lvl_t level, const char*, ...)
{
    if (level == ERR_FATAL && wayOut != nullptr)
        std::longjmp(*wayOut, 1); // NOLINT: only C functions lie in between
}

/// Calls into the library and throws where it would have ended the program. `call` must not hold
/// anything that has a destructor.
template<class Call>
void callLibrary(const Call& call)
{
    std::jmp_buf target;
    if (setjmp(target) != 0) { // NOLINT: see above
        wayOut = nullptr;
        sphinx::setAllocationFailureTarget(nullptr);
        throw Error(QStringLiteral("The speech engine failed."));
    }
    wayOut = &target;
    sphinx::setAllocationFailureTarget(&target);
    call();
    sphinx::setAllocationFailureTarget(nullptr);
    wayOut = nullptr;
}

/// Far above what any sound has.
constexpr double largestMean = 500;

/// Chosen by measuring word errors on human recordings, at all levels and in noise (bench/speech_conditions);
/// the second search pass costs more time after the end of speech than it is worth.
sphinx::Config makeConfig(const ModelFiles& files)
{
    sphinx::Config config = sphinx::makeConfig();
    sphinx::setText(config, "hmm", QFile::encodeName(files.acousticModel).constData());
    sphinx::setText(config, "dict", QFile::encodeName(files.dictionary).constData());
    sphinx::setText(config, "lm", QFile::encodeName(files.languageModel).constData());
    sphinx::switchOff(config, "fwdflat");
    sphinx::setInteger(config, "topn", 3);
    // Bounds the work on the few moments in which everything seems possible, such as the end of speech.
    sphinx::setInteger(config, "maxhmmpf", 10000);
    return config;
}

} // namespace

namespace {

/// Empty when `text` is none.
std::vector<double> parseMean(const QString& text)
{
    std::vector<double> mean;
    for (const QString& each : text.split(QLatin1Char(','))) {
        bool isNumber = false;
        mean.push_back(each.toDouble(&isNumber));
        if (!isNumber || !(std::abs(mean.back()) <= largestMean))
            return {};
    }
    return mean;
}

} // namespace

struct SphinxDecoder::State {
    sphinx::Decoder decoder;

    /// After a failure the library's own state is not fit to be freed.
    template<class Call>
    void run(const Call& call)
    {
        if (!decoder)
            throw Error(QStringLiteral("The speech engine has failed before."));
        try {
            callLibrary(call);
        } catch (...) {
            (void)decoder.release();
            throw;
        }
    }
};

SphinxDecoder::SphinxDecoder(const ModelFiles& files)
    : state_(std::make_unique<State>())
{
    err_set_logfp(nullptr);
    err_set_callback(&libraryReported, nullptr);
    const sphinx::Config config = makeConfig(files);
    ps_decoder_t* decoder = nullptr;
    callLibrary([&decoder, &config] { decoder = ps_init(config.get()); });
    if (decoder == nullptr)
        throw Error(QStringLiteral("The speech engine can't use its model."));
    state_->decoder.reset(decoder);
}

SphinxDecoder::~SphinxDecoder() = default;

void SphinxDecoder::beginStream()
{
    ps_decoder_t* decoder = state_->decoder.get();
    state_->run([decoder] { ps_start_stream(decoder); });
}

void SphinxDecoder::beginUtterance()
{
    ps_decoder_t* decoder = state_->decoder.get();
    int result = 0;
    state_->run([decoder, &result] { result = ps_start_utt(decoder); });
    if (result < 0)
        throw Error(QStringLiteral("The speech engine can't begin to recognise."));
}

void SphinxDecoder::feed(std::span<const int16_t> samples)
{
    ps_decoder_t* decoder = state_->decoder.get();
    int result = 0;
    state_->run([decoder, samples, &result] {
        result = ps_process_raw(decoder, samples.data(), samples.size(), FALSE, FALSE);
    });
    if (result < 0)
        throw Error(QStringLiteral("The speech engine can't recognise the sound."));
}

QString SphinxDecoder::endUtterance()
{
    ps_decoder_t* decoder = state_->decoder.get();
    const char* words = nullptr;
    state_->run([decoder, &words] {
        int32 score = 0;
        if (ps_end_utt(decoder) >= 0)
            words = ps_get_hyp(decoder, &score);
    });
    return QString::fromUtf8(words);
}

void SphinxDecoder::dropUtterance()
{
    ps_decoder_t* decoder = state_->decoder.get();
    // Without asking for the words, which takes the longest.
    state_->run([decoder] { ps_end_utt(decoder); });
}

QString SphinxDecoder::adaptation() const
{
    QStringList mean;
    for (const double each : sphinx::cepstralMean(state_->decoder.get()))
        mean << QString::number(each, 'f', 2);
    return mean.join(QLatin1Char(','));
}

bool SphinxDecoder::adapt(const QString& adaptation)
{
    const std::vector<double> mean = parseMean(adaptation);
    if (mean.size() != sphinx::cepstralMean(state_->decoder.get()).size())
        return false;
    sphinx::setCepstralMean(state_->decoder.get(), mean);
    return true;
}

void SphinxDecoder::returnTowards(const QString& usual, double share)
{
    const std::vector<double> target = parseMean(usual);
    std::vector<double> mean = sphinx::cepstralMean(state_->decoder.get());
    if (target.size() != mean.size())
        return;
    for (size_t i = 0; i < mean.size(); ++i)
        mean[i] += share * (target[i] - mean[i]);
    sphinx::setCepstralMean(state_->decoder.get(), mean);
}

} // namespace corvandi
