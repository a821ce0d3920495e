#include "Platform/MacOS/AppKit/SceneRenderer.h"

#include "Platform/MacOS/AppKit/NativeColors.h"
#include "Platform/MacOS/AppKit/NativeFonts.h"
#include "Platform/MacOS/AppKit/NativeGeometry.h"

#import <AppKit/AppKit.h>
#include <variant>

namespace tarvex {

namespace {

void fill(NSBezierPath* path, const Color& color) {
    [nativeColor(color) setFill];
    [path fill];
}

void stroke(NSBezierPath* path, const Color& color, double lineWidth) {
    [nativeColor(color) setStroke];
    [path setLineWidth:lineWidth];
    [path stroke];
}

struct PrimitiveRenderer {
    void operator()(const FillRect& primitive) const {
        fill([NSBezierPath bezierPathWithRect:nativeRect(primitive.rect)], primitive.color);
    }

    void operator()(const StrokeRect& primitive) const {
        stroke([NSBezierPath bezierPathWithRect:nativeRect(primitive.rect)], primitive.color,
               primitive.lineWidth);
    }

    void operator()(const StrokeLine& primitive) const {
        NSBezierPath* const path = [NSBezierPath bezierPath];
        [path moveToPoint:nativePoint(primitive.start)];
        [path lineToPoint:nativePoint(primitive.end)];
        stroke(path, primitive.color, primitive.lineWidth);
    }

    void operator()(const FillEllipse& primitive) const {
        fill([NSBezierPath bezierPathWithOvalInRect:nativeRect(primitive.rect)], primitive.color);
    }

    void operator()(const StrokeEllipse& primitive) const {
        stroke([NSBezierPath bezierPathWithOvalInRect:nativeRect(primitive.rect)], primitive.color,
               primitive.lineWidth);
    }

    void operator()(const FillRoundedRect& primitive) const {
        fill([NSBezierPath bezierPathWithRoundedRect:nativeRect(primitive.rect)
                                             xRadius:primitive.radii.width
                                             yRadius:primitive.radii.height],
             primitive.color);
    }

    void operator()(const TextLabel& primitive) const {
        const auto text = makeAttributedString(primitive.text, primitive.font, nativeColor(primitive.color));
        [text.get() drawAtPoint:nativePoint(primitive.origin)];
    }
};

} // namespace

void drawScene(const Scene& scene) {
    @autoreleasepool {
        for (const ScenePrimitive& primitive : scene.primitives) {
            std::visit(PrimitiveRenderer{}, primitive);
        }
    }
}

} // namespace tarvex
