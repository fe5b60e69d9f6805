// The names that a drawing's parts are written with ([MS-VSDX], and ECMA-376 part 2 for the package).
#pragma once

namespace vardo {

inline constexpr const char* kPageRelationship = "http://schemas.microsoft.com/visio/2010/relationships/page";
inline constexpr const char* kMasterRelationship = "http://schemas.microsoft.com/visio/2010/relationships/master";
inline constexpr const char* kMastersRelationship = "http://schemas.microsoft.com/visio/2010/relationships/masters";

inline constexpr const char* kPageContentType = "application/vnd.ms-visio.page+xml";
inline constexpr const char* kMasterContentType = "application/vnd.ms-visio.master+xml";
inline constexpr const char* kMastersContentType = "application/vnd.ms-visio.masters+xml";

inline constexpr const char* kEmptyPage =
    "<?xml version='1.0' encoding='utf-8' ?>\r\n<PageContents xmlns='http://schemas.microsoft.com/office/visio/2012/main' "
    "xmlns:r='http://schemas.openxmlformats.org/officeDocument/2006/relationships' xml:space='preserve'/>";
inline constexpr const char* kEmptyMasters =
    "<?xml version='1.0' encoding='utf-8' ?>\r\n<Masters xmlns='http://schemas.microsoft.com/office/visio/2012/main' "
    "xmlns:r='http://schemas.openxmlformats.org/officeDocument/2006/relationships' xml:space='preserve'/>";

}  // namespace vardo
