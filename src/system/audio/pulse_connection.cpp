#include "system/audio/pulse_connection.h"

#include <utility>

namespace corvandi {
namespace {

PulseContext makeContext(pa_mainloop_api& loop)
{
    const PulseProperties properties(pa_proplist_new());
    pa_proplist_sets(properties.get(), PA_PROP_APPLICATION_NAME, "Corvandi");
    pa_proplist_sets(properties.get(), PA_PROP_APPLICATION_ID, "io.corvandi.Corvandi");
    pa_proplist_sets(properties.get(), PA_PROP_APPLICATION_ICON_NAME, "io.corvandi.Corvandi");
    return PulseContext(pa_context_new_with_proplist(&loop, nullptr, properties.get()));
}

bool meansRefused(int error)
{
    return error == PA_ERR_ACCESS || error == PA_ERR_AUTHKEY;
}

} // namespace

PulseConnection::PulseConnection(pa_mainloop_api& loop, Changed changed)
    : changed_(std::move(changed))
    , context_(makeContext(loop))
{
    pa_context_set_state_callback(
        context_.get(), [](pa_context*, void* self) { static_cast<PulseConnection*>(self)->stateChanged(); },
        this);
    if (pa_context_connect(context_.get(), nullptr, PA_CONTEXT_NOAUTOSPAWN, nullptr) < 0)
        fail();
}

pa_context* PulseConnection::context() const
{
    return state_.phase == PulseConnectionState::Phase::ready ? context_.get() : nullptr;
}

void PulseConnection::stateChanged()
{
    const pa_context_state_t state = pa_context_get_state(context_.get());
    if (state == PA_CONTEXT_READY)
        watchSource();
    else if (!PA_CONTEXT_IS_GOOD(state))
        fail();
}

void PulseConnection::fail()
{
    if (state_.phase == PulseConnectionState::Phase::failed)
        return;
    const int error = pa_context_errno(context_.get());
    state_ = {PulseConnectionState::Phase::failed, meansRefused(error), QString::fromUtf8(pa_strerror(error)),
              AudioFormat(), false};
    source_.reset();
    publish();
}

void PulseConnection::watchSource()
{
    pa_context_set_subscribe_callback(
        context_.get(),
        [](pa_context*, pa_subscription_event_type_t, uint32_t, void* self) {
            static_cast<PulseConnection*>(self)->querySource();
        },
        this);
    constexpr auto changes =
        static_cast<pa_subscription_mask_t>(PA_SUBSCRIPTION_MASK_SOURCE | PA_SUBSCRIPTION_MASK_SERVER);
    subscription_.reset(pa_context_subscribe(context_.get(), changes, nullptr, nullptr));
    querySource();
}

void PulseConnection::querySource()
{
    // Changes come in bursts: one question at a time, and one more when its answer may be outdated.
    if (query_) {
        isQueryOutdated_ = true;
        return;
    }
    queried_.reset();
    const auto answered = [](pa_context*, const pa_source_info* info, int end, void* self) {
        auto* connection = static_cast<PulseConnection*>(self);
        if (end != 0) {
            connection->sourceQueried();
            return;
        }
        // The server names a sink's monitor as the default source when there is no microphone at all;
        // recording the speakers would be worse than refusing.
        if (info->monitor_of_sink == PA_INVALID_INDEX)
            connection->queried_ = SoundSource{info->name, info->sample_spec, info->channel_map,
                                               info->mute != 0 || pa_cvolume_is_muted(&info->volume) != 0};
    };
    query_.reset(pa_context_get_source_info_by_name(context_.get(), "@DEFAULT_SOURCE@", answered, this));
}

void PulseConnection::sourceQueried()
{
    query_.reset();
    if (isQueryOutdated_) {
        isQueryOutdated_ = false;
        querySource();
        return;
    }
    source_ = queried_;
    PulseConnectionState state{PulseConnectionState::Phase::ready, false, {}, {}, false};
    if (source_) {
        state.sourceFormat = source_->format();
        state.isSourceMuted = source_->isMuted;
    }
    if (std::exchange(state_, state) != state)
        publish();
}

void PulseConnection::publish()
{
    changed_(state_);
}

} // namespace corvandi
