// Plain line icons for where the desktop has no theme of its own.
#pragma once

#include <QColor>
#include <QIcon>

#include <string_view>

namespace vardo {

// Of an action; none for an action that has no picture.
QIcon OwnIcon(std::string_view action, const QColor& colour);

}  // namespace vardo
