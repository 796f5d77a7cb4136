// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick.Dialogs

/// The toolkit's panel for picking a folder, which Panels makes.
FolderDialog {
    title: qsTr("Choose where Pixpress should save compressed images")
    acceptLabel: qsTr("Select Folder")
}
