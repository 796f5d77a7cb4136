# SPDX-FileCopyrightText: 2026 The Pixpress authors
# SPDX-License-Identifier: GPL-3.0-or-later

# What ./run, ./test and ./bench share: find the root, install what is missing, build a preset.
# Source it; it changes into the project's root and remembers the caller's folder in $caller.

set -euo pipefail
caller=$PWD
cd "$(dirname "${BASH_SOURCE[0]}")/.."

build_packages=(
    g++ cmake ninja-build pkg-config ccache
    qt6-base-dev qcoro-qt6-dev libcurl4-openssl-dev libvips-dev libcpp-httplib-dev
    libexif-dev libpng-dev libjpeg-dev libwebp-dev libimagequant-dev
    qt6-declarative-dev qt6-svg-dev libgl-dev
    qml6-module-qtquick qml6-module-qtquick-window qml6-module-qtquick-layouts
    qml6-module-qtquick-templates qml6-module-qtquick-controls qml6-module-qtquick-dialogs
    qml6-module-qtqml qml6-module-qtqml-workerscript qml6-module-qt-labs-folderlistmodel
    qt6-wayland fonts-inter fonts-jetbrains-mono fonts-noto-color-emoji
)
test_packages=(
    clang-19 clang-tidy-19 clang-format-19 libclang-rt-19-dev
    openssl libimage-exiftool-perl
    qml6-module-qttest qml6-module-qtqml-models qt6-declarative-dev-tools
    xvfb xauth openbox xdotool dbus libgl1-mesa-dri libxcb1-dev
)
bench_packages=(
    pngquant jpegoptim webp libavif-bin libjxl-devtools
    converseen xvfb openbox dbus libgl1-mesa-dri libxcb1-dev
)

# Installs Debian packages that are missing. Elsewhere it says what is needed and ends.
install_missing() {
    if ! command -v apt-get >/dev/null || ! command -v dpkg-query >/dev/null; then
        # Without Debian's package manager there is no saying what is here: CMake will tell.
        if [[ ! -e build/.told ]]; then
            printf 'This is not Debian or Ubuntu, so nothing is installed. Needed are:\n' >&2
            printf '  a compiler for C++23 (GCC 12 or Clang 19 and later), CMake 3.25, Ninja, ccache, pkg-config,\n' >&2
            printf '  Qt 6.4 (Core, Gui, Network, Qml, Quick, Quick Controls, Quick Dialogs, Svg, DBus, Test), QCoro 0.8 for Qt 6, libcurl 7.84, libvips 8.14, cpp-httplib 0.11\n' >&2
            mkdir -p build && touch build/.told
        fi
        return
    fi
    local missing=() package
    for package in "$@"; do
        [[ $(dpkg-query -W -f '${db:Status-Status}' "$package" 2>/dev/null) == installed ]] || missing+=("$package")
    done
    ((${#missing[@]})) || return 0
    local as_root=()
    if ((EUID != 0)); then
        command -v sudo >/dev/null || {
            printf 'Please install as root: %s\n' "${missing[*]}" >&2
            exit 1
        }
        as_root=(sudo)
    fi
    printf 'Installing %s\n' "${missing[*]}" >&2
    "${as_root[@]}" apt-get update -q >&2
    "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive \
        apt-get install -y -q --no-install-recommends "${missing[@]}" >&2
}

# Configures a preset if that has not been done, and builds it (or the targets named after it).
build_preset() {
    local preset=$1
    shift
    [[ -e build/$preset/build.ninja ]] || cmake --preset "$preset" >&2
    cmake --build --preset "$preset" ${1:+--target "$@"} >&2
}
