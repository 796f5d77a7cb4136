# SPDX-FileCopyrightText: 2026 The Pixpress authors
# SPDX-License-Identifier: GPL-3.0-or-later

# What the tests of the package share: the package in $package, and what is in it in $unpacked, which
# is gone afterwards. Source it.

source "$(dirname "${BASH_SOURCE[0]}")/../../tools/prepare.sh"

package=$(realpath build/packages/*.deb)
unpacked=$(mktemp -d)
trap 'rm -rf "$unpacked"' EXIT
dpkg-deb -x "$package" "$unpacked"

fail() {
    printf '%s\n' "$*" >&2
    exit 1
}
