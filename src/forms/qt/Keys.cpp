#include "forms/qt/Keys.h"

#include <algorithm>
#include <iterator>

namespace vardo {
namespace {

struct NamedKey {
  std::string_view name;
  QKeyCombination key;
};

// Of several keys of one name the first is the one that is sent.
constexpr NamedKey kNamedKeys[] = {
    {"Enter", Qt::Key_Return},
    {"Enter", Qt::Key_Enter},
    {"Escape", Qt::Key_Escape},
    {"Tab", Qt::Key_Tab},
    {"Shift+Tab", Qt::ShiftModifier | Qt::Key_Backtab},
    {"Shift+Tab", Qt::ShiftModifier | Qt::Key_Tab},
    {"Space", Qt::Key_Space},
    {"Up", Qt::Key_Up},
    {"Down", Qt::Key_Down},
    {"PageUp", Qt::Key_PageUp},
    {"PageDown", Qt::Key_PageDown},
    {"Home", Qt::Key_Home},
    {"End", Qt::Key_End},
    {"F4", Qt::Key_F4},
    {"Alt+Down", Qt::AltModifier | Qt::Key_Down},
};

constexpr std::string_view kAlt = "Alt+";

bool IsAccessKey(int key) { return key > Qt::Key_Space && key <= Qt::Key_AsciiTilde; }

}  // namespace

std::string NameOfKey(const QKeyEvent& event) {
  const Qt::KeyboardModifiers modifiers = event.modifiers() & ~Qt::KeypadModifier;
  const QKeyCombination pressed(modifiers, static_cast<Qt::Key>(event.key()));
  const auto named =
      std::find_if(std::begin(kNamedKeys), std::end(kNamedKeys), [&](const NamedKey& k) { return k.key == pressed; });
  if (named != std::end(kNamedKeys)) return std::string(named->name);
  if (modifiers == Qt::AltModifier && IsAccessKey(event.key())) return std::string(kAlt) + static_cast<char>(event.key());
  return {};
}

std::optional<QKeyCombination> KeyOfName(std::string_view name) {
  const auto named =
      std::find_if(std::begin(kNamedKeys), std::end(kNamedKeys), [&](const NamedKey& k) { return k.name == name; });
  if (named != std::end(kNamedKeys)) return named->key;
  if (name.size() != kAlt.size() + 1 || !name.starts_with(kAlt)) return std::nullopt;
  const int letter = QChar(QLatin1Char(name.back())).toUpper().unicode();
  if (!IsAccessKey(letter)) return std::nullopt;
  return QKeyCombination(Qt::AltModifier, static_cast<Qt::Key>(letter));
}

}  // namespace vardo
