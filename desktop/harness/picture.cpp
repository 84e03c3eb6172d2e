#include "harness/picture.h"

#include "harness/x_display.h"

#include <X11/Xlib.h>
#include <X11/Xutil.h>

#include <algorithm>
#include <cstring>
#include <memory>

namespace corvandi::harness {
namespace {

struct DestroyImage {
    void operator()(XImage* image) const { XDestroyImage(image); }
};

} // namespace

Picture::Picture()
{
    const XDisplay display;
    const Window root = DefaultRootWindow(display.get());
    XWindowAttributes attributes{};
    ::XGetWindowAttributes(display.get(), root, &attributes);
    width_ = attributes.width;
    height_ = attributes.height;
    const std::unique_ptr<XImage, DestroyImage> image(
        ::XGetImage(display.get(), root, 0, 0, static_cast<unsigned>(width_), static_cast<unsigned>(height_),
                    AllPlanes, ZPixmap));
    if (!image)
        throw HarnessError("the screen can't be read");
    if (image->bits_per_pixel != 32)
        throw HarnessError("the screen has an unusual depth");
    pixels_.resize(static_cast<size_t>(width_) * static_cast<size_t>(height_));
    for (int y = 0; y < height_; ++y) {
        std::memcpy(pixels_.data() + static_cast<ptrdiff_t>(y) * width_,
                    image->data + static_cast<ptrdiff_t>(y) * image->bytes_per_line,
                    static_cast<size_t>(width_) * sizeof(uint32_t));
    }
}

std::vector<uint32_t> Picture::pixels(const Area& area) const
{
    const int left = std::clamp(area.x, 0, width_);
    const int right = std::clamp(area.x + area.width, left, width_);
    const int top = std::clamp(area.y, 0, height_);
    const int bottom = std::clamp(area.y + area.height, top, height_);
    std::vector<uint32_t> part;
    for (int y = top; y < bottom; ++y) {
        const auto row = pixels_.begin() + static_cast<std::ptrdiff_t>(y) * width_;
        part.insert(part.end(), row + left, row + right);
    }
    return part;
}

} // namespace corvandi::harness
