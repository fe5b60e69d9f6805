// The parts of new drawings, stencils and templates other than masters, each as XML.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace vardo {

inline constexpr std::string_view kFirstPageName = "Page-1";

// The document with its styles and settings. When it is opened or created, the host starts the add-in.
std::string DocumentPart();
// The window that shows the first page, and beside it, unless empty, the stencil of that file name.
std::string WindowsPart(std::string_view stencil);
enum class PageContents { InPart, None };
// The list of pages: one, landscape Letter, that carries the bookkeeping rows; contents in a part are reached by the relationship
// "rId1".
std::string PageListPart(PageContents contents);
// A page without shapes.
std::string EmptyPagePart();

// title: empty for a drawing, of which nobody knows yet what it will be.
std::string CorePropertiesPart(std::string_view title);
// pages and masters: their names, for those who list what is in a file without reading it.
std::string ApplicationPropertiesPart(const std::vector<std::string>& pages, const std::vector<std::string>& masters);

}  // namespace vardo
