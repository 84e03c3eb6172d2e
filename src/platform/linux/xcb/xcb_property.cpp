#include "platform/linux/xcb/xcb_property.h"

namespace corvandi {
namespace {

XcbPtr<xcb_get_property_reply_t> answer(const XcbConnection& x, PropertyRequest request, uint8_t format)
{
    auto reply = x.reply(xcb_get_property_reply, request.cookie);
    if (reply && reply->format != format)
        reply.reset();
    return reply;
}

} // namespace

PropertyRequest requestProperty(const XcbConnection& x, xcb_window_t window, xcb_atom_t property,
                                uint32_t maxBytes)
{
    constexpr uint8_t keep = 0;
    constexpr uint32_t fromTheStart = 0;
    constexpr uint32_t bytesPerWord = 4;
    return {xcb_get_property(x.get(), keep, window, property, XCB_GET_PROPERTY_TYPE_ANY, fromTheStart,
                             (maxBytes + bytesPerWord - 1) / bytesPerWord)};
}

std::string textOf(const XcbConnection& x, PropertyRequest request)
{
    const auto reply = answer(x, request, 8);
    if (!reply)
        return {};
    const auto* bytes = static_cast<const char*>(xcb_get_property_value(reply.get()));
    return {bytes, static_cast<size_t>(xcb_get_property_value_length(reply.get()))};
}

std::vector<uint32_t> wordsOf(const XcbConnection& x, PropertyRequest request)
{
    const auto reply = answer(x, request, 32);
    if (!reply)
        return {};
    const auto* words = static_cast<const uint32_t*>(xcb_get_property_value(reply.get()));
    return {words, words + xcb_get_property_value_length(reply.get()) / static_cast<int>(sizeof(uint32_t))};
}

} // namespace corvandi
