#include "document/ShapeNames.h"

#include <algorithm>

namespace vardo {
namespace {

constexpr std::string_view kWithoutMaster = "Sheet";

// Of a shape of which nothing is said.
std::string PlainName(int id) { return std::string(kWithoutMaster) + "." + std::to_string(id); }

}  // namespace

void ShapeNames::Forget() {
  known_ = false;
  names_.clear();
  ids_.clear();
  derived_.clear();
  wanted_.clear();
}

void ShapeNames::Learn(std::vector<Claim> claims) {
  Forget();
  known_ = true;
  std::sort(claims.begin(), claims.end(), [](const Claim& a, const Claim& b) { return a.id < b.id; });
  std::vector<const Claim*> nameless;
  for (const Claim& claim : claims) {
    if (claim.stored.empty() || ids_.contains(claim.stored))
      nameless.push_back(&claim);
    else
      GiveName(claim.id, claim.stored);
  }
  for (const Claim* claim : nameless) {
    const std::string wanted = claim->master.empty() ? std::string(kWithoutMaster) : claim->master;
    const std::string name = FreeName(wanted, claim->id);
    GiveName(claim->id, name);
    if (claim->stored.empty() && name == PlainName(claim->id)) continue;
    derived_.emplace(claim->id, wanted);
    ++wanted_[wanted];
    ++wanted_[wanted + "." + std::to_string(claim->id)];
    if (!claim->stored.empty()) ++wanted_[claim->stored];
  }
}

void ShapeNames::GiveName(int id, std::string name) {
  ids_.emplace(name, id);
  names_[id] = std::move(name);
}

bool ShapeNames::OthersHangOn(const Claim& claim) const {
  if (wanted_.empty()) return false;
  const auto name = names_.find(claim.id);
  return derived_.contains(claim.id) || wanted_.contains(claim.stored) ||
         (name != names_.end() && wanted_.contains(name->second));
}

void ShapeNames::Add(const Claim& claim) {
  if (!known_) return;
  const bool isPlain = claim.stored.empty() && claim.master.empty();
  const std::string name = isPlain ? PlainName(claim.id) : claim.stored;
  if (name.empty() || ids_.contains(name) || OthersHangOn(claim)) return Forget();
  GiveName(claim.id, name);
}

void ShapeNames::Remove(const Claim& claim) {
  if (!known_) return;
  if (OthersHangOn(claim)) return Forget();
  const auto name = names_.find(claim.id);
  if (name == names_.end()) return;
  if (const auto id = ids_.find(name->second); id != ids_.end() && id->second == claim.id) ids_.erase(id);
  names_.erase(name);
}

int ShapeNames::IdOf(std::string_view name) const {
  const auto found = ids_.find(std::string(name));
  return found == ids_.end() ? -1 : found->second;
}

std::string ShapeNames::FreeName(std::string_view wanted, int id) const {
  std::string name(wanted);
  while (name == kWithoutMaster || ids_.contains(name)) name += "." + std::to_string(id);
  return name;
}

std::vector<std::pair<int, std::string>> ShapeNames::DerivedNames() const {
  std::vector<std::pair<int, std::string>> names;
  for (const auto& [id, wanted] : derived_) names.emplace_back(id, names_.at(id));
  std::sort(names.begin(), names.end());
  return names;
}

}  // namespace vardo
