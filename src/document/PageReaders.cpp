#include "document/PageReaders.h"

#include <set>

namespace vardo {
namespace {

template <class Map, class Key>
void Count(Map& counts, const Key& key, int by) {
  const auto at = counts.try_emplace(key, 0).first;
  if ((at->second += by) == 0) counts.erase(at);
}

}  // namespace

void PageReaders::Forget() {
  known_ = false;
  sheets_.clear();
  ofAnySheet_.clear();
  gone_.clear();
}

void PageReaders::ReaderGone(int reader, size_t left) {
  constexpr size_t kFew = 1000;
  if (!known_) return;
  gone_.insert(reader);
  if (gone_.size() > left + kFew) Forget();
}

bool PageReaders::ReaderIsBack(int reader) { return gone_.erase(reader) > 0; }

void PageReaders::Note(int reader, std::string_view text, int by) {
  if (!known_ || !NamesSheet(text)) return;
  std::set<Symbol> named;
  for (const CellCall& call : CallsOf(Formula(text))) {
    if (call.sheet.empty()) continue;
    named.insert(call.sheet);
    Count(sheets_[call.sheet].cells, call, by);
    Count(ofAnySheet_, call.Of({}), by);
  }
  for (const Symbol sheet : named) {
    Count(sheets_[sheet].readers, reader, by);
    if (sheets_[sheet].readers.empty()) sheets_.erase(sheet);
  }
}

bool PageReaders::Reads(const CellCall& call) const {
  const auto called = sheets_.find(call.sheet);
  return called != sheets_.end() && called->second.cells.contains(call);
}

bool PageReaders::ReadsOfAnySheet(const CellCall& call) const { return ofAnySheet_.contains(call.Of({})); }

std::vector<int> PageReaders::ReadersOf(Symbol sheet) const {
  std::vector<int> readers;
  const auto called = sheets_.find(sheet);
  if (called == sheets_.end()) return readers;
  for (const auto& [reader, count] : called->second.readers) readers.push_back(reader);
  return readers;
}

}  // namespace vardo
