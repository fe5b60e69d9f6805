#include "picture/TextReader.h"

#include <pugixml.hpp>

#include <string_view>

namespace vardo::picture {
namespace {

void AppendWithLineEnds(std::string& text, std::string_view raw) {
  for (size_t i = 0; i < raw.size(); ++i) {
    if (raw[i] != '\r')
      text += raw[i];
    else if (i + 1 >= raw.size() || raw[i + 1] != '\n')
      text += '\n';
  }
}

}  // namespace

std::vector<TextPiece> ReadText(XmlNode node) {
  std::vector<TextPiece> pieces;
  TextPiece now;
  const auto finish = [&] {
    if (!now.text.empty()) pieces.push_back(now);
    now.text.clear();
  };
  for (const pugi::xml_node child : pugi::xml_node(node).children()) {
    const std::string_view name = child.name();
    if (child.type() == pugi::node_pcdata || child.type() == pugi::node_cdata) AppendWithLineEnds(now.text, child.value());
    if (name == "fld") AppendWithLineEnds(now.text, child.text().get());
    int* const row = name == "cp" ? &now.character : name == "pp" ? &now.paragraph : name == "tp" ? &now.tabs : nullptr;
    if (!row) continue;
    finish();
    *row = child.attribute("IX").as_int();
  }
  finish();
  if (!pieces.empty() && pieces.back().text.ends_with('\n')) pieces.back().text.pop_back();
  if (!pieces.empty() && pieces.back().text.empty()) pieces.pop_back();
  return pieces;
}

}  // namespace vardo::picture
