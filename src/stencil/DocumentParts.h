// A new drawing's parts other than its masters, each as XML.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace vardo {

inline constexpr std::string_view kFirstPageName = "Page-1";

// The document with its styles and settings.
std::string DocumentPart();
// The one window, which shows the first page.
std::string WindowsPart();
// The list of pages: one, landscape Letter, that carries the bookkeeping rows and is reached by the relationship "rId1".
std::string PageListPart();
// A page without shapes.
std::string EmptyPagePart();

std::string CorePropertiesPart();
// pages and masters: their names, for those who list what is in a file without reading it.
std::string ApplicationPropertiesPart(const std::vector<std::string>& pages, const std::vector<std::string>& masters);

}  // namespace vardo
