// SPDX-FileCopyrightText: 2026 The Pixpress authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "pipeline/appstate.h"

#include <QQmlEngine>

/// What the views see of the classes below, which know nothing of views.
namespace pixpress::qml {

struct AppStateType
{
    Q_GADGET
    QML_FOREIGN(pixpress::AppState)
    QML_NAMED_ELEMENT(AppState)
    QML_UNCREATABLE("The application has one.")
};

struct CompressionQueueType
{
    Q_GADGET
    QML_FOREIGN(pixpress::CompressionQueue)
    QML_NAMED_ELEMENT(CompressionQueue)
    QML_UNCREATABLE("The application state has one.")
};

struct QuotaTrackerType
{
    Q_GADGET
    QML_FOREIGN(pixpress::QuotaTracker)
    QML_NAMED_ELEMENT(QuotaTracker)
    QML_UNCREATABLE("The application state has one.")
};

} // namespace pixpress::qml
