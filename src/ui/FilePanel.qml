// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

import QtQuick.Dialogs

FileDialog {
    readonly property list<url> picked: result === FileDialog.Accepted ? selectedFiles : []

    fileMode: FileDialog.OpenFiles
}
