# SPDX-FileCopyrightText: 2026 The Pixpress authors
# SPDX-License-Identifier: GPL-3.0-or-later

# Writes the releases of CHANGELOG.md as AppStream has them, the newest first. What stands under
# "Unreleased" is not among them.

function closeList() {
    if (entry) print "          <li>" entry "</li>\n        </ul>"
    entry = ""
}

function closeRelease() {
    closeList()
    if (released) print "      </description>\n    </release>"
    released = 0
}

# Text of Markdown as text of XML; code is marked.
function marked(text) {
    gsub(/&/, "\\&amp;", text)
    gsub(/</, "\\&lt;", text)
    while (match(text, /`[^`]*`/))
        text = substr(text, 1, RSTART - 1) "<code>" substr(text, RSTART + 1, RLENGTH - 2) "</code>" \
            substr(text, RSTART + RLENGTH)
    return text
}

/^## / { closeRelease() }

/^## [0-9.]+ - [0-9-]+$/ {
    released = 1
    printf "    <release version=\"%s\" date=\"%s\">\n      <description>\n", $2, $4
}

!released { next }

/^### / {
    closeList()
    printf "        <p>%s:</p>\n", substr($0, 5)
}

/^- / {
    print entry ? "          <li>" entry "</li>" : "        <ul>"
    entry = marked(substr($0, 3))
}

/^  / { entry = entry " " marked(substr($0, 3)) }

END { closeRelease() }
