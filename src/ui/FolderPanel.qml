// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick.Dialogs

/// Qt's panel for picking a folder, which Panels creates and fills in.
FolderDialog {
    id: root

    /// Qt's own selects the first subfolder. Where there is none it cannot be accepted.
    function selectSomething(): void {
        if (String(root.selectedFolder) === "")
            root.selectedFolder = root.currentFolder;
    }

    onSelectedFolderChanged: Qt.callLater(selectSomething)
    onCurrentFolderChanged: Qt.callLater(selectSomething)
}
