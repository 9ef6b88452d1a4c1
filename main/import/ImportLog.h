// Diagnostics of the import (the session and the import dialog): category
// "tessary.import". Warnings and above show by default; the import's
// information messages with QT_LOGGING_RULES="tessary.import.info=true".
#pragma once

#include <QLoggingCategory>

namespace tessary {
Q_DECLARE_LOGGING_CATEGORY(lcImport)
} // namespace tessary
