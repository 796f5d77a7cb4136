// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ui/intake.h"

#include "pipeline/appstate.h"
#include "ui/droppedfiles.h"

namespace pixpress {

void handleDrop(AppState &appState, const QList<QUrl> &dropped)
{
    const QList<QUrl> accepted = supportedFiles(dropped);
    if (!accepted.isEmpty())
        appState.compressionQueue()->addFiles(accepted, appState.options());
}

} // namespace pixpress
