#pragma once

#include "Core/Geometry.h"
#include "Tests/MacOS/Fakes/FakeMac.h"

#include <string>
#include <vector>

namespace tarvex {

/// A window of another program, with the elements that it consists of.
struct MacWindow {
    int program = 0;
    fake::ElementId application;
    fake::ElementId window;
    /// Each within the one before; only the first names its window.
    std::vector<fake::ElementId> parts;
};

/// Opens a window of a program of its own, in front of the others.
/// @param frame in the system's own space: origin at the top-left of the primary display, y down
/// @param depth how many parts lie one within the other
inline MacWindow openMacWindow(int program, const Rect& frame, int depth = 3) {
    fake::FakeAccessibility& tree = fake::mac().accessibility;
    MacWindow opened;
    opened.program = program;
    opened.application = tree.add({.program = program, .attributes = {{"AXRole", "AXApplication"}}});
    opened.window = tree.add({.program = program,
                              .attributes = {{"AXParent", opened.application},
                                             {"AXPosition", CGPoint{frame.x, frame.y}},
                                             {"AXSize", CGSize{frame.width, frame.height}}},
                              .settable = {"AXPosition", "AXSize"}});
    fake::ElementId parent = opened.window;
    for (int step = 0; step < depth; ++step) {
        fake::ElementState part{.program = program, .attributes = {{"AXParent", parent}}};
        if (step == 0) {
            part.attributes.emplace("AXWindow", opened.window);
        }
        parent = tree.add(part);
        opened.parts.push_back(parent);
    }
    tree.show({opened.window, parent});
    return opened;
}

/// Something that can be hit and belongs to no window, as a menu or the menu bar.
inline void openMacPanel(int program, const Rect& frame, bool ignoresMouseEvents = false) {
    fake::FakeAccessibility& tree = fake::mac().accessibility;
    const fake::ElementId application =
        tree.add({.program = program, .attributes = {{"AXRole", "AXApplication"}}});
    const fake::ElementId panel = tree.add({.program = program,
                                            .attributes = {{"AXParent", application},
                                                           {"AXPosition", CGPoint{frame.x, frame.y}},
                                                           {"AXSize", CGSize{frame.width, frame.height}}}});
    tree.show({panel, panel, ignoresMouseEvents});
}

} // namespace tarvex
