// Diagnostics of the window: category "tessary.window". Warnings and above
// show by default; information messages with
// QT_LOGGING_RULES="tessary.window.info=true".
#pragma once

#include <QLoggingCategory>

namespace tessary {
Q_DECLARE_LOGGING_CATEGORY(lcWindow)
} // namespace tessary
