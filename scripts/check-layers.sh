#!/usr/bin/env bash
# The portable layers and their tests know no window system: no header of one and no condition on the platform
# stands outside Platform/ and the folders that drive an X server (X11/ in the tests, Tests/EndToEnd,
# Benchmarks). Headers of macOS stand in Platform/MacOS and Tests/MacOS alone, those of Linux not there. Tests may
# use POSIX headers, since they run on POSIX systems alone; Core/ and App/ may not. Exits 1
# and names the lines where a rule is broken.
set -euo pipefail
cd "$(dirname "$0")/.."

include='#[[:space:]]*(include|import)[[:space:]]*[<"]'
window_system_headers="$include"'(Q[A-Z]|xcb|X11/|xkbcommon|AppKit|Cocoa|Carbon|CoreGraphics|CoreFoundation|ApplicationServices|IOKit|Foundation|ServiceManagement|os/log|objc/|dispatch/)'
macos_headers="$include"'(AppKit|Cocoa|Carbon|CoreGraphics|CoreFoundation|ApplicationServices|IOKit|Foundation|ServiceManagement|MacTypes|mach|os|objc|dispatch)[/.]'
linux_headers="$include"'(Q[A-Z]|xcb|X11/|xkbcommon|linux/)'
posix_headers="$include"'(unistd\.h|fcntl\.h|sys/|poll\.h|pthread\.h|signal\.h|pwd\.h)'
platform_conditions='#[[:space:]]*(if|elif).*(__APPLE__|__linux__|__unix__|__MACH__|__FreeBSD__|_WIN32|Q_OS_|TARGET_OS_)'
upward_includes_core='#[[:space:]]*include[[:space:]]*"(App|Platform|Tests)/'
upward_includes_app='#[[:space:]]*include[[:space:]]*"(Platform|Tests)/'

failed=0
excluded=X11
forbid() {
    local what=$1 pattern=$2
    shift 2
    local lines
    lines=$(grep -rnE --exclude-dir="$excluded" --include='*.h' --include='*.cpp' --include='*.mm' "$pattern" "$@" || true)
    if [ -n "$lines" ]; then
        printf '%s:\n%s\n' "$what" "$lines" >&2
        failed=1
    fi
}

portable=(Core App Demo Tests/Unit Tests/Support Tests/Contract Tests/Fuzz)
forbid "Headers of a window system outside Platform/" "$window_system_headers" "${portable[@]}"
forbid "POSIX headers in a portable layer" "$posix_headers" Core App
forbid "Core/ includes a layer above it" "$upward_includes_core" Core
forbid "App/ includes a layer above it" "$upward_includes_app" App

# What drives an X server and what stands in for macOS is of one platform each and needs no condition either.
excluded=Platform
forbid "Conditions on the platform outside Platform/" "$platform_conditions" Core App Demo Tests Benchmarks

excluded=MacOS
forbid "Headers of macOS outside Platform/MacOS and Tests/MacOS" "$macos_headers" \
    Core App Demo Platform Tests Benchmarks
excluded=GNUstep
forbid "Headers of Linux in the adapters for macOS" "$linux_headers" Platform/MacOS Tests/MacOS
exit "$failed"
