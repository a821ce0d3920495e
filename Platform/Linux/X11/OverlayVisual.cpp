#include "Platform/Linux/X11/OverlayVisual.h"

#include <bit>

namespace tarvex {

namespace {

constexpr std::uint8_t alphaDepth = 32;

/// The wanted true-colour visual of that depth, or the first one.
const xcb_visualtype_t* findTrueColor(const xcb_screen_t& screen, std::uint8_t depth, xcb_visualid_t wanted) {
    const xcb_visualtype_t* first = nullptr;
    for (auto depths = xcb_screen_allowed_depths_iterator(&screen); depths.rem > 0; xcb_depth_next(&depths)) {
        if (depths.data->depth != depth) {
            continue;
        }
        for (auto types = xcb_depth_visuals_iterator(depths.data); types.rem > 0;
             xcb_visualtype_next(&types)) {
            if (types.data->_class != XCB_VISUAL_CLASS_TRUE_COLOR) {
                continue;
            }
            if (types.data->visual_id == wanted) {
                return types.data;
            }
            first = first == nullptr ? types.data : first;
        }
    }
    return first;
}

/// An eight-bit channel in the place, and at the width, that the mask names.
std::uint32_t placed(std::uint32_t channel, std::uint32_t mask) {
    if (mask == 0) {
        return 0;
    }
    const int shift = std::countr_zero(mask);
    const std::uint32_t highest = mask >> shift;
    return (channel * highest + 127) / 255 << shift;
}

} // namespace

std::unique_ptr<OverlayVisual> OverlayVisual::choose(XConnection& connection, OverlayStyle style) {
    const xcb_screen_t& screen = connection.screen();
    const std::uint8_t depth = style == OverlayStyle::blended ? alphaDepth : screen.root_depth;
    const xcb_visualtype_t* type = findTrueColor(screen, depth, screen.root_visual);
    return type == nullptr ? nullptr
                           : std::unique_ptr<OverlayVisual>(new OverlayVisual(connection, depth, *type));
}

OverlayVisual::OverlayVisual(XConnection& connection, std::uint8_t depth, const xcb_visualtype_t& type)
    : connection_(&connection), depth_(depth), type_(type), colormap_(xcb_generate_id(connection.get())) {
    connection.discard(xcb_create_colormap_checked(connection.get(), XCB_COLORMAP_ALLOC_NONE, colormap_,
                                                   connection.root(), type_.visual_id));
}

OverlayVisual::~OverlayVisual() {
    connection_->discard(xcb_free_colormap_checked(connection_->get(), colormap_));
}

std::uint32_t OverlayVisual::pixelOf(PixelColor color) const {
    const std::uint32_t red = placed(color >> 16U & 0xFFU, type_.red_mask);
    const std::uint32_t green = placed(color >> 8U & 0xFFU, type_.green_mask);
    const std::uint32_t blue = placed(color & 0xFFU, type_.blue_mask);
    const std::uint32_t alphaMask =
        depth_ == alphaDepth ? ~(type_.red_mask | type_.green_mask | type_.blue_mask) : 0;
    return red | green | blue | placed(color >> 24U, alphaMask);
}

} // namespace tarvex
