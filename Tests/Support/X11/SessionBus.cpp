#include "Tests/Support/X11/SessionBus.h"

#include <stdexcept>

namespace tarvex::test {
namespace {

// Everybody of this user may own and send everything, and no folder of services is named.
std::string configuration(const std::string& socket) {
    return R"(<!DOCTYPE busconfig PUBLIC "-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN"
 "http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd">
<busconfig>
  <type>session</type>
  <listen>unix:path=)" +
           socket + R"(</listen>
  <auth>EXTERNAL</auth>
  <policy context="default">
    <allow send_destination="*" eavesdrop="true"/>
    <allow eavesdrop="true"/>
    <allow own="*"/>
  </policy>
</busconfig>
)";
}

} // namespace

SessionBus::SessionBus() {
    const std::string socket = (scratch_.path() / "socket").string();
    const auto file = scratch_.write("bus.conf", configuration(socket));
    process_ = std::make_unique<ChildProcess>(Command{
        {"dbus-daemon", "--config-file=" + file.string(), "--nofork", "--nopidfile", "--print-address"},
        {},
        std::nullopt});
    if (!process_->waitForOutput([this] { return process_->standardOutput().ends_with('\n'); })) {
        throw std::runtime_error("the session bus did not start: " + process_->standardError());
    }
    address_ = process_->standardOutput().substr(0, process_->standardOutput().find('\n'));
}

} // namespace tarvex::test
