# SPDX-FileCopyrightText: 2026 The Pixpress authors
# SPDX-License-Identifier: GPL-3.0-or-later

# What ./run, ./test, ./bench and tools/ share: find the root, install what is missing, build a preset.
# Source it; it changes into the project's root and remembers the caller's folder in $caller.

set -euo pipefail
caller=$PWD
cd "$(dirname "${BASH_SOURCE[0]}")/.."

# Ends with the script's opening comment when --help is its first argument.
help_is_comment() {
    [[ ${1-} == --help || ${1-} == -h ]] || return 0
    cd "$caller"
    awk 'NR > 4 && !/^#/ { exit } NR > 4 { sub(/^# ?/, ""); print }' "$0"
    exit
}

build_packages=(
    g++ cmake pkg-config
    qt6-base-dev qcoro-qt6-dev libcurl4-openssl-dev libvips-dev libseccomp-dev
    libexif-dev libheif-dev libjpeg-dev libwebp-dev libimagequant-dev
    libdeflate-dev liblcms2-dev zlib1g-dev
    qt6-declarative-dev qt6-svg-dev libgl-dev
    qt6-tools-dev qt6-l10n-tools qt6-translations-l10n
    qml6-module-qtquick qml6-module-qtquick-window qml6-module-qtquick-layouts
    qml6-module-qtquick-templates qml6-module-qtquick-controls qml6-module-qtquick-dialogs
    qml6-module-qtqml qml6-module-qtqml-workerscript qml6-module-qt-labs-folderlistmodel
    qt6-wayland fonts-inter fonts-jetbrains-mono fonts-noto-color-emoji
    libnautilus-extension-dev
)
test_packages=(
    clang-19 clang-tidy-19 clang-format-19 libclang-rt-19-dev
    openssl librapidcheck-dev
    qml6-module-qttest qml6-module-qtqml-models qt6-declarative-dev-tools fonts-droid-fallback
    xvfb xauth openbox sway xdotool dbus at-spi2-core libgl1-mesa-dri libxcb1-dev
    parallel dpkg-dev file lintian desktop-file-utils appstream man-db mmdebstrap uidmap
)
bench_packages=(
    pngquant jpegoptim webp libavif-bin libjxl-devtools
    converseen xvfb openbox xdotool dbus libgl1-mesa-dri libxcb1-dev
)
# Builds are faster with them and do without them: never asked for on their own.
optional_packages=(ninja-build ccache)

# Releases differ only here. Since libheif 1.17 each of its codecs is in a package of its own, and
# so are the plugins of Qt SVG since Debian 13.
# shellcheck disable=SC1091
if [[ $(source /etc/os-release 2>/dev/null && printf '%s' "${VERSION_CODENAME-}") != bookworm ]]; then
    build_packages+=(libheif-plugin-aomenc libheif-plugin-dav1d qt6-svg-plugins)
fi
# CMake builds with make when there is no Ninja.
command -v ninja >/dev/null || build_packages+=(make)

# What build_packages, test_packages and bench_packages bring, for other systems.
tell_needs() {
    cat >&2 <<'END'
This is not Debian or Ubuntu, so nothing is installed. To build, install
  a compiler for C++23 (GCC 12, Clang 19 or later), CMake 3.25, Ninja or make, pkg-config, and
  ccache if you like;
  Qt 6.4 (Core, Gui, Network, Qml, Quick, Quick Controls, Quick Dialogs, Svg, DBus, Test,
  the Wayland plugin) with the headers of OpenGL, its Linguist tools and translations, and
  QCoro 0.8 for Qt 6;
  libcurl 7.87, libseccomp 2.5;
  libvips 8.14 with its C++ binding, able to read and write PNG, JPEG, WebP and AVIF;
  libexif, libheif, libjpeg, libwebp with libwebpmux, libimagequant 2.17, libdeflate, Little CMS 2,
  zlib;
  and for the window the fonts Inter, JetBrains Mono and Noto Color Emoji;
  optionally libnautilus-extension 4, for the items in the context menu of Nautilus.
For ./test also
  Clang 19 with libFuzzer, clang-format 19, clang-tidy 19, the sanitizers' libraries of the
  compiler, OpenSSL's command, RapidCheck;
  a font with Chinese and Japanese; Qt Quick Test, qmllint; and for the tests of
  the desktop Xvfb, xauth, openbox, sway, xdotool, dbus-daemon, at-spi2-core, Mesa's
  software renderer, libxcb.
For ./bench also
  pngquant, jpegoptim, cwebp, avifenc, butteraugli_main (libjxl), converseen,
  Xvfb, openbox, xdotool, dbus-daemon, Mesa's software renderer, libxcb.
END
}

# What stands for these packages and is missing, as far as it can be asked for; CMake looks for Qt,
# QCoro, libcurl and RapidCheck.
missing_elsewhere() {
    local need commands=(c++ cmake pkg-config)
    if [[ " $* " == *" ${test_packages[*]}"* ]]; then
        commands+=(clang-format-19 clang++-19 openssl)
        commands+=(Xvfb openbox sway xdotool dbus-daemon)
    fi
    if [[ " $* " == *" ${bench_packages[*]}"* ]]; then
        commands+=(pngquant jpegoptim cwebp avifenc butteraugli_main
            converseen Xvfb openbox xdotool dbus-daemon)
    fi
    for need in "${commands[@]}"; do
        command -v "$need" >/dev/null || printf '%s\n' "$need"
    done
    command -v ninja >/dev/null || command -v make >/dev/null || printf 'ninja\n'
    command -v pkg-config >/dev/null || return 0
    for need in 'vips-cpp >= 8.14' 'libseccomp >= 2.5' libexif libheif libjpeg \
        libwebp libwebpmux libdeflate lcms2 'imagequant >= 2.17' zlib; do
        pkg-config --exists "$need" || printf '%s\n' "$need"
    done
}

is_debian() {
    command -v apt-get >/dev/null && command -v dpkg-query >/dev/null
}

# Runs a command as root, with variables before it as in `env`.
as_root() {
    if ((EUID == 0)); then
        env "$@"
    else
        sudo "$@"
    fi
}

# Ends without root or sudo, and prints what root would have to run.
need_root() {
    ((EUID != 0)) && ! command -v sudo >/dev/null || return 0
    printf 'This needs root, and there is no sudo. Run as root:\n\n    %s\n\n' "$*" >&2
    exit 1
}

# Installs Debian packages that are missing. Elsewhere it says what is needed, and ends when
# something is missing.
install_missing() {
    if ! is_debian; then
        local lacking
        lacking=$(missing_elsewhere "$@")
        [[ $lacking ]] || return 0
        tell_needs
        printf 'Missing are: %s\n' "${lacking//$'\n'/, }" >&2
        exit 1
    fi
    local missing=() package
    for package in "$@"; do
        [[ $(dpkg-query -W -f '${db:Status-Status}' "$package" 2>/dev/null) == installed ]] || missing+=("$package")
    done
    ((${#missing[@]})) || return 0
    [[ " $* " != *' cmake '* ]] || missing+=("${optional_packages[@]}")
    local install=(apt-get install --yes --quiet --no-install-recommends "${missing[@]}")
    need_root "apt-get update && ${install[*]}"
    printf 'Installing %s\n' "${missing[*]}" >&2
    as_root apt-get update --quiet >&2
    as_root DEBIAN_FRONTEND=noninteractive "${install[@]}" >&2
}

# Calls cmake with a preset and more arguments.
configure() {
    local generator=()
    command -v ninja >/dev/null || generator=(-G 'Unix Makefiles')
    cmake "${generator[@]}" --preset "$@"
}

# Configures a preset if that has not been done, and builds it (or the targets named after it).
build_preset() {
    local preset=$1 folder=build/$1 jobs=()
    shift
    if [[ ! -e $folder/build.ninja && ! -e $folder/Makefile ]] && ! configure "$preset" >&2; then
        is_debian || tell_needs
        exit 1
    fi
    [[ ! -e $folder/Makefile ]] || jobs=(--parallel "$(nproc)")
    cmake --build --preset "$preset" "${jobs[@]}" ${1:+--target "$@"} >&2
}
