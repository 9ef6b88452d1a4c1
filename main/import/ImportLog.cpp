#include "import/ImportLog.h"

namespace tessary {
Q_LOGGING_CATEGORY(lcImport, "tessary.import", QtWarningMsg)
} // namespace tessary
