// Names of parts: as in the archive, "visio/pages/page1.xml", without a leading slash. They are equal without regard to the case
// of ASCII letters.
#pragma once

#include <string>
#include <string_view>

namespace vardo {

// The part that holds a part's relationships; that of the package itself is asked for with "".
std::string RelationshipsPartOf(std::string_view part);

// The part that a relationship's target names, seen from `part`. A target that climbs out of the package comes back as it is.
std::string ResolveTarget(std::string_view part, std::string_view target);

// The target that names `to`, seen from `part`: "../masters/master1.xml".
std::string RelativeTarget(std::string_view part, std::string_view to);

}  // namespace vardo
