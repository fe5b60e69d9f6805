#include "package/PartNames.h"

#include <algorithm>

namespace vardo {
namespace {

// The folder of a part with its slash, "" at the top.
std::string_view FolderOf(std::string_view part) { return part.substr(0, part.rfind('/') + 1); }

}  // namespace

std::string RelationshipsPartOf(std::string_view part) {
  const std::string_view folder = FolderOf(part);
  return std::string(folder) + "_rels/" + std::string(part.substr(folder.size())) + ".rels";
}

std::string ResolveTarget(std::string_view part, std::string_view target) {
  if (target.starts_with('/')) return std::string(target.substr(1));
  std::string folder(FolderOf(part));
  std::string_view rest = target;
  while (true) {
    if (rest.starts_with("./")) {
      rest.remove_prefix(2);
    } else if (rest.starts_with("../")) {
      if (folder.empty()) return std::string(target);
      folder = FolderOf(std::string_view(folder).substr(0, folder.size() - 1));
      rest.remove_prefix(3);
    } else {
      return folder + std::string(rest);
    }
  }
}

std::string RelativeTarget(std::string_view part, std::string_view to) {
  const std::string_view from = FolderOf(part);
  const size_t differ = std::mismatch(from.begin(), from.end(), to.begin(), to.end()).first - from.begin();
  const size_t common = FolderOf(from.substr(0, differ)).size();
  std::string target;
  for (char c : from.substr(common))
    if (c == '/') target += "../";
  return target + std::string(to.substr(common));
}

}  // namespace vardo
