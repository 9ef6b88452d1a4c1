#include "window/MessageDialog.h"

namespace tessary {

TdlgMsg::TdlgMsg(int buttons, QWidget* parent, Qt::WindowFlags flags) : QDialog(parent, flags), buttons_(buttons) {}

} // namespace tessary
