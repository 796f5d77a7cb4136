# SPDX-FileCopyrightText: 2026 The Pixpress authors
# SPDX-License-Identifier: GPL-3.0-or-later

# Who publishes the programs, and the names that desktops know them by. Whoever publishes packages
# gives a name, a page and an address of their own, with -D.
set(PIXPRESS_AUTHOR_NAME "The Pixpress authors" CACHE STRING "Who is named in the credits")
set(PIXPRESS_AUTHOR_PAGE "https://pixpress.example/" CACHE STRING "The home page; ends with a slash")
set(PIXPRESS_AUTHOR_MAIL "authors@pixpress.example" CACHE STRING "Who maintains the packages")
set(PIXPRESS_DOMAIN "example.pixpress" CACHE STRING "The home page's domain, the other way round")

# The desktop entry, the icons and the metadata of an application are named like this, and its
# windows carry it.
set(pixpress_id ${PIXPRESS_DOMAIN}.pixpress)
set(pixpress-offline_id ${PIXPRESS_DOMAIN}.offline)
