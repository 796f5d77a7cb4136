# SPDX-FileCopyrightText: 2026 The Pixpress authors
# SPDX-License-Identifier: GPL-3.0-or-later

# Makes root file systems of Debian releases. Source it.

# Prints what apt is set up for on this system: ARCHIVE RELEASE COMPONENT per line.
own_sources() {
    apt-get indextargets --format '$(REPO_URI) $(RELEASE) $(COMPONENT)' 'Created-By: Packages' | sort -u
}

# Prints the name of this system's release, as archives have it. On unstable, os-release has the
# name of the next release.
own_release() {
    # shellcheck disable=SC1091
    own_sources | awk -v name="$(source /etc/os-release && printf '%s' "${VERSION_CODENAME-}")" '
        $2 == name || $2 == "sid" || $2 == "unstable" { print $2; exit }'
}

# Prints the lines of sources.list for a release, with the archives of this system's release.
sources_of() {
    own_sources | awk -v own="$(own_release)" -v release="$1" '
        $2 == own { print "deb", $1, release, $3 }
        index($2, own "-") == 1 && release !~ /^(sid|unstable)$/ {
            print "deb", $1, release substr($2, length(own) + 1), $3
        }'
}

# make_root RELEASE TARGET [OPTION]...   calls mmdebstrap, with the given options besides its own
make_root() {
    local release=$1 target=$2
    shift 2
    local options=(--dpkgopt=force-unsafe-io '--aptopt=APT::Install-Recommends "false"')
    if [[ $release == sid || $release == unstable ]]; then
        # Its index expires after a week, which mirrors that are updated less often exceed.
        options+=('--aptopt=Acquire::Check-Valid-Until "false"')
    fi
    sources_of "$release" | mmdebstrap "${options[@]}" "$@" "$release" "$target" -
}
