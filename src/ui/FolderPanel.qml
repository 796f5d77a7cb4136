// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick.Dialogs

/// The toolkit's panel for picking a folder, which Panels makes and fills in.
FolderDialog {}
