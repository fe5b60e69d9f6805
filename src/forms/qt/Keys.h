// The keys of a dialog by the names that forms know them by.
#pragma once

#include <QKeyCombination>
#include <QKeyEvent>

#include <optional>
#include <string>
#include <string_view>

namespace vardo {

// Empty for a key that means nothing special in a dialog.
std::string NameOfKey(const QKeyEvent& event);
// None for a name that no key has.
std::optional<QKeyCombination> KeyOfName(std::string_view name);

}  // namespace vardo
