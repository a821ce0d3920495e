#include "App/Shell/AboutWindowController.h"

#include <utility>

namespace tarvex {

namespace {

FormWindowAttributes makeAttributes() {
    FormWindowAttributes attributes;
    attributes.title = "About Tarvex";
    attributes.styleMask = 3;
    attributes.contentSize = {420, 200};
    attributes.level = 3;
    return attributes;
}

} // namespace

AboutWindowController::AboutWindowController(std::unique_ptr<AboutViewController> aboutViewController,
                                             FormWindowPlatform& windows)
    : aboutViewController_(std::move(aboutViewController)),
      window_(windows.makeFormWindow(makeAttributes(), *aboutViewController_)) {}

} // namespace tarvex
