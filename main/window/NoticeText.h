// A notice in the window's language; the core keeps English sentences for the
// command line and logs.
#pragma once

#include <QString>

#include "core/Notices.h"

namespace tessary {

QString NoticeText(const TNotice& notice);

} // namespace tessary
