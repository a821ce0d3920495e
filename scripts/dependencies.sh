# Installs what building, running or testing needs. Sourced by run and test.
# shellcheck shell=bash

build_packages=(
    build-essential cmake ninja-build pkg-config nlohmann-json3-dev qt6-base-dev libgl-dev
    libxcb1-dev libxcb-xinput-dev libxcb-randr0-dev libxcb-record0-dev libxcb-shape0-dev libxcb-xfixes0-dev
    libxcb-xkb-dev libxkbcommon-dev libxkbcommon-x11-dev
)
demonstration_packages=(
    libgtest-dev libgmock-dev libxcb-xtest0-dev libxcb-image0-dev libgtk-3-dev
    xvfb x11-xkb-utils openbox picom xterm xfonts-base fonts-dejavu-core imagemagick dbus-daemon dbus-x11
    trayer gtk-3-examples adwaita-icon-theme librsvg2-common
)
test_packages=(
    "${demonstration_packages[@]}"
    git clang-16 libclang-rt-16-dev clang-format-16 xfwm4 i3-wm metacity kwin-x11 kwin-style-breeze
    desktop-file-utils groff-base dpkg-dev file
    lld-16 libc++-16-dev musl-dev gnustep-make libgnustep-gui-dev gobjc libblocksruntime-dev
)

as_root() {
    if [ "$(id -u)" -eq 0 ]; then
        "$@"
    else
        sudo "$@"
    fi
}

is_installed() {
    # The provider of a virtual package counts as well.
    [ "$(dpkg-query -W -f '${db:Status-Status}' "$1" 2>/dev/null)" = installed ]
}

# Some packages carry their version in their name: prints the newest whose name fits, or nothing.
newest_package() {
    apt-cache pkgnames | grep -E "^$1\$" | sort -V | tail -n 1
}

# What draws for GNUstep.
gnustep_backend() {
    local pattern='gnustep-back[0-9.]+-cairo'
    if [ -z "$(newest_package "$pattern")" ]; then
        # A fresh machine knows no packages yet.
        as_root apt-get update -qq
    fi
    newest_package "$pattern"
}

install_debian_packages() {
    local missing=() package
    for package in "$@"; do
        is_installed "$package" || missing+=("$package")
    done
    if [ "${#missing[@]}" -eq 0 ]; then
        return 0
    fi
    echo "Installing: ${missing[*]}"
    as_root apt-get update -qq
    as_root env DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends "${missing[@]}"
}

# Only what is missing: Homebrew refuses to install a formula again that is pinned, or whose command came from
# elsewhere.
install_homebrew_formulas() {
    local missing=() formula formulas=(nlohmann-json)
    [ "$1" = build ] || formulas+=(googletest)
    command -v cmake >/dev/null || missing+=(cmake)
    command -v ninja >/dev/null || missing+=(ninja)
    if command -v brew >/dev/null; then
        for formula in "${formulas[@]}"; do
            brew list --formula "$formula" >/dev/null 2>&1 || missing+=("$formula")
        done
        if [ "${#missing[@]}" -gt 0 ]; then
            brew install --quiet "${missing[@]}"
        fi
    elif [ "${#missing[@]}" -gt 0 ]; then
        echo "No Homebrew here to install ${missing[*]}: install them yourself, with ${formulas[*]}." >&2
        return 1
    else
        echo "No Homebrew here: install ${formulas[*]} yourself if the build stops." >&2
    fi
}

# install_dependencies build|demonstration|test
install_dependencies() {
    case "$(uname -s)" in
    Linux)
        if ! command -v apt-get >/dev/null; then
            echo "No apt-get here: install the counterparts of these packages yourself if the build stops." >&2
            echo "  ${build_packages[*]}" >&2
            return 0
        fi
        local packages=("${build_packages[@]}")
        case "$1" in
        demonstration) packages+=("${demonstration_packages[@]}") ;;
        test) packages+=("${test_packages[@]}" "$(gnustep_backend)") ;;
        esac
        install_debian_packages "${packages[@]}"
        ;;
    Darwin)
        install_homebrew_formulas "$1"
        ;;
    esac
}
