#pragma once

#include "Platform/Linux/X11/XConnection.h"

#include <cstdint>
#include <optional>

namespace tarvex {

/// Selects further events on a window other than the root, beside those that this connection has selected
/// there before: X keeps one mask per window and client, and setting it anew would take other parts' events
/// away. Waits for the server once. A window that has gone is left alone.
void addEventMask(XConnection& connection, xcb_window_t window, std::uint32_t mask);

/// Listens to events of the root window for as long as it lives, beside what other parts of the program
/// listen to there over the same connection. Waits for nobody. The root window's mask is set in this way
/// alone.
class RootEventSelection {
public:
    /// The connection must outlive it.
    RootEventSelection(XConnection& connection, std::uint32_t mask);

    RootEventSelection(const RootEventSelection&) = delete;
    RootEventSelection& operator=(const RootEventSelection&) = delete;
    RootEventSelection(RootEventSelection&&) = delete;
    RootEventSelection& operator=(RootEventSelection&&) = delete;
    ~RootEventSelection();

private:
    XConnection* connection_;
    std::uint32_t mask_;
};

/// Hears of the changes of a window's properties and of its place and size (PropertyNotify, ConfigureNotify)
/// for as long as it lives, beside what this connection listens to there anyway. It waits for nobody when it
/// is made: what is asked of the server afterwards is answered with the changes already listened to.
class XWindowWatch {
public:
    /// The connection must outlive the watch. A window that has gone is left alone.
    XWindowWatch(XConnection& connection, xcb_window_t window);

    XWindowWatch(const XWindowWatch&) = delete;
    XWindowWatch& operator=(const XWindowWatch&) = delete;
    XWindowWatch(XWindowWatch&&) = delete;
    XWindowWatch& operator=(XWindowWatch&&) = delete;
    ~XWindowWatch();

    /// Brings back what was listened to before, beside the changes. Waits for the server unless an answer to
    /// a later question is in already.
    void keepEarlierEvents();

private:
    XConnection* connection_;
    xcb_window_t window_;
    xcb_get_window_attributes_cookie_t attributes_;
    std::optional<std::uint32_t> earlierMask_;
};

} // namespace tarvex
