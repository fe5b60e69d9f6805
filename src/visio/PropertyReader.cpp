#include "visio/PropertyReader.h"

#include "addin/host/HostConstants.h"
#include "addin/host/IVShape.h"
#include "base/Errors.h"

#include <algorithm>
#include <climits>
#include <numeric>

namespace vardo {
namespace {

// VisSelectionTypes and VisSelectMode: all shapes, or the instances of a master; and of groups not what is inside.
constexpr int kSelectAll = 1;
constexpr int kSelectByMaster = 5;
constexpr int kSkipSub = 0x0400;

std::vector<int> IdsOf(const LateBound& page, int type, const Variant& of) {
  auto selected = page.Call<ComPtr<IDispatch>>(L"CreateSelection", type, kSkipSub, of);
  if (!selected) throw HostError(kHostNotAllowed, "The drawing host has nothing for CreateSelection.");
  const LateBound selection(HostClass::Selection, std::move(selected), page.dispids());
  Variant ids = Variant::NoArray(VT_I4);
  selection.Call(L"GetIDs", Variant::ReferenceTo(ids));
  return AsInt32Array(ids.get());
}

// The reference does not promise the order of the IDs, so it is looked at in some places.
bool AreInOrder(const std::vector<int>& ids, IVShapes& shapes) {
  const auto count = static_cast<int>(ids.size());
  for (const int position : {1, (count + 1) / 2, count})
    if (shapes.Item(position)->ID() != ids[static_cast<size_t>(position - 1)]) return false;
  return true;
}

std::string TextOrNothing(const Variant& value) { return value.get().vt == VT_EMPTY ? std::string() : AsText(value.get()); }

}  // namespace

std::optional<std::vector<int>> ShapeIdsByPosition(const LateBound& page, IVShapes& shapes) try {
  std::vector<int> ids = IdsOf(page, kSelectAll, Variant::Missing());
  if (ids.empty() || static_cast<size_t>(shapes.Count()) != ids.size() || !AreInOrder(ids, shapes)) return std::nullopt;
  return ids;
} catch (const AutomationError&) {
  return std::nullopt;
}

std::vector<int> InstancesOnPage(const LateBound& page, const ComPtr<IDispatch>& master) {
  return IdsOf(page, kSelectByMaster, Variant(master));
}

// None where there is no label to prove it by, and of a host that does not tell.
std::optional<PropertyReader::Row> PropertyReader::RowOf(IVShape& shape, const std::string& cell) try {
  Row row = {shape.CellsRowIndex(cell), shape.Cells(cell + ".Label")->Formula()};
  return row.label.empty() ? std::nullopt : std::optional(std::move(row));
} catch (const HostError&) {
  return std::nullopt;
}

std::vector<std::optional<std::string>> PropertyReader::Read(std::span<const int> positions, std::string_view field) {
  positions_ = positions;
  formulas_.assign(positions.size(), std::nullopt);
  const std::string cell = "Prop." + std::string(field);
  Indexes unread(positions.size());
  std::iota(unread.begin(), unread.end(), size_t{0});
  bool readsRows = true;
  while (!unread.empty()) {
    const size_t first = unread.front();
    unread.erase(unread.begin());
    const IVShapePtr shape = shapes_.Item(positions[first]);
    formulas_[first] = FormulaIfThere(*shape, cell);
    const auto row = formulas_[first] && readsRows && !unread.empty() ? RowOf(*shape, cell) : std::nullopt;
    if (!row) continue;
    // Where not even this one can be read so, the others are not tried.
    Indexes unproven;
    readsRows = TryRow(std::span(&first, 1), *row, unproven);
    if (readsRows) unread = ReadRow(unread, *row);
  }
  return std::move(formulas_);
}

// Returns those that have something else in that row. One shape without the row has the host refuse all, so a refused read is
// tried by halves.
PropertyReader::Indexes PropertyReader::ReadRow(std::span<const size_t> indexes, const Row& row) {
  Indexes unproven;
  if (indexes.empty() || TryRow(indexes, row, unproven)) return unproven;
  if (indexes.size() == 1) return {indexes.front()};
  const size_t half = indexes.size() / 2;
  unproven = ReadRow(indexes.first(half), row);
  const Indexes behind = ReadRow(indexes.subspan(half), row);
  unproven.insert(unproven.end(), behind.begin(), behind.end());
  return unproven;
}

bool PropertyReader::TryRow(std::span<const size_t> indexes, const Row& row, Indexes& unproven) try {
  std::vector<std::int16_t> stream;
  Indexes asked;
  for (const size_t index : indexes) {
    const int id = ids_[static_cast<size_t>(positions_[index] - 1)];
    if (id > SHRT_MAX) {
      unproven.push_back(index);
      continue;
    }
    asked.push_back(index);
    for (const short column : {kCellPropLabel, kCellPropValue})
      stream.insert(stream.end(), {static_cast<std::int16_t>(id), kSectionProp, row.number, column});
  }
  if (asked.empty()) return true;
  Variant cells = Variant::ArrayOf(stream), texts = Variant::NoArray(VT_VARIANT);
  page_.Call(L"GetFormulas", Variant::ReferenceTo(cells), Variant::ReferenceTo(texts));
  const std::vector<Variant> read = AsVariantArray(texts.get());
  if (read.size() != 2 * asked.size()) return false;
  for (size_t i = 0; i < asked.size(); ++i) {
    if (TextOrNothing(read[2 * i]) == row.label)
      formulas_[asked[i]] = TextOrNothing(read[2 * i + 1]);
    else
      unproven.push_back(asked[i]);
  }
  return true;
} catch (const AutomationError&) {
  unproven.clear();
  return false;
}

}  // namespace vardo
