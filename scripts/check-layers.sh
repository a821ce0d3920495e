#!/usr/bin/env bash
# The portable layers know no window system: no native header and no condition on the platform stands outside
# Platform/. Exits 1 and names the lines where one does.
set -euo pipefail
cd "$(dirname "$0")/.."

native_headers='#[[:space:]]*(include|import)[[:space:]]*[<"](Q[A-Z]|xcb|X11/|xkbcommon|AppKit|Cocoa|Carbon|CoreGraphics|CoreFoundation|ApplicationServices|IOKit|Foundation|ServiceManagement|os/log|objc/|dispatch/|unistd\.h|fcntl\.h|sys/|poll\.h)'
platform_conditions='#[[:space:]]*(if|ifdef|ifndef|elif).*(__APPLE__|__linux__|__unix__|__MACH__|_WIN32|Q_OS_|TARGET_OS_)'
upward_includes_core='#[[:space:]]*include[[:space:]]*"(App|Platform|Tests)/'
upward_includes_app='#[[:space:]]*include[[:space:]]*"(Platform|Tests)/'

failed=0
forbid() {
    local what=$1 pattern=$2
    shift 2
    local lines
    lines=$(grep -rnE --include='*.h' --include='*.cpp' "$pattern" "$@" || true)
    if [ -n "$lines" ]; then
        printf '%s:\n%s\n' "$what" "$lines" >&2
        failed=1
    fi
}

portable=(Core App Tests/Unit Tests/Support/Simulated)
forbid "Native headers outside Platform/" "$native_headers" Core App Tests/Support/Simulated
forbid "Conditions on the platform outside Platform/" "$platform_conditions" "${portable[@]}"
forbid "Core/ includes a layer above it" "$upward_includes_core" Core
forbid "App/ includes a layer above it" "$upward_includes_app" App
exit "$failed"
