#include "platform/linux/x11/modifier_masks.h"

#include "platform/key_codes.h"

#include <array>

namespace corvandi {
namespace {

struct Modifier {
    uint64_t flag;
    uint8_t mask;
};

constexpr std::array modifiers{
    Modifier{modifier_flags::command, x11_mask::super},
    Modifier{modifier_flags::option, x11_mask::alt},
    Modifier{modifier_flags::control, x11_mask::control},
    Modifier{modifier_flags::shift, x11_mask::shift},
};

} // namespace

uint8_t x11Mask(uint64_t flags)
{
    unsigned mask = 0;
    for (const Modifier& modifier : modifiers) {
        if (flags & modifier.flag)
            mask |= modifier.mask;
    }
    return static_cast<uint8_t>(mask);
}

uint64_t modifierFlags(uint8_t mask)
{
    uint64_t flags = 0;
    for (const Modifier& modifier : modifiers) {
        if (mask & modifier.mask)
            flags |= modifier.flag;
    }
    return flags;
}

uint8_t modifierOf(uint16_t virtualKey)
{
    switch (virtualKey) {
    case 54:
    case 55:
        return x11_mask::super;
    case 56:
    case 60:
        return x11_mask::shift;
    case 58:
    case 61:
        return x11_mask::alt;
    case 59:
    case 62:
        return x11_mask::control;
    default:
        return x11_mask::none;
    }
}

std::vector<uint32_t> masksContaining(uint8_t required)
{
    std::vector<uint32_t> masks;
    for (uint32_t mask = 0; mask <= x11_mask::all; ++mask) {
        if ((mask & required) == required)
            masks.push_back(mask);
    }
    return masks;
}

} // namespace corvandi
