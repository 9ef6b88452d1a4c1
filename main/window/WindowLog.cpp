#include "window/WindowLog.h"

namespace tessary {
Q_LOGGING_CATEGORY(lcWindow, "tessary.window", QtWarningMsg)
} // namespace tessary
