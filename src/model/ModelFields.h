// The fields of a module as the model takes them: each text with what it says.
#pragma once

#include "model/FieldTable.h"
#include "model/ModelSource.h"

#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

namespace vardo {

struct FieldValue {
  enum class Origin : std::uint8_t { Given, Missing, Empty };  // the latter two: the text is the default
  // How a text was understood: as it is, only after a second look, or not at all.
  enum class Reading : std::uint8_t {
    Plain,
    Shortened,     // a choice by its first word
    AsUnknown,     // a text that is no choice, which the dialog shows as a certain one
    DecimalComma,  // a number
    Unreadable,
  };

  std::string_view text;  // in force, without blanks around it
  Origin origin = Origin::Given;
  Reading reading = Reading::Plain;
  bool counts = false;           // the present choices make it visible
  std::int8_t choice = -1;       // among the choices; -1 when unreadable
  std::int32_t expression = -1;  // among the model's expressions; of fields that count
  Reference reference;           // of fields that count; none for a name that nothing has
  double number = 0;             // of a Real or an Integer

  template <class Enumeration>
  bool Is(Enumeration value) const {
    return choice == static_cast<std::int8_t>(value);
  }
  template <class Enumeration>
  Enumeration As() const {
    return static_cast<Enumeration>(choice);
  }
};

// Of one module.
class ModuleFields {
 public:
  explicit ModuleFields(const SourceModule& module);

  const ModuleSchema& schema() const { return *schema_; }
  // A field of the module itself. The field has to be one of its kind.
  const FieldValue& operator[](Field field) const { return single_[field.place]; }
  const FieldValue& At(size_t place) const { return single_[place]; }
  // A column's field in a row, both counted from 0.
  const FieldValue& operator()(Field field, int row) const { return rows_[PlaceOf(field.place, row)]; }
  const FieldValue& At(size_t place, int row) const { return rows_[PlaceOf(place, row)]; }
  int rows() const { return rowCount_; }

  // The place of a column among the kind's columns; -1 for a field of the module itself.
  int ColumnOf(size_t place) const;

  // For those who complete the fields: each field once, with its place and row (-1 for the module's own).
  template <class Visit>
  void ForEach(const Visit& visit) {
    for (size_t place = 0; place < single_.size(); ++place)
      if (ColumnOf(place) < 0) visit(single_[place], place, -1);
    for (int row = 0; row < rowCount_; ++row)
      for (size_t column = 0; column < schema_->rows.columns.size(); ++column) {
        const size_t place = columnPlaces_[column];
        visit(rows_[PlaceOf(place, row)], place, row);
      }
  }
  template <class Visit>
  void ForEach(const Visit& visit) const {
    const_cast<ModuleFields*>(this)->ForEach([&](const FieldValue& value, size_t place, int row) { visit(value, place, row); });
  }

 private:
  size_t PlaceOf(size_t place, int row) const;

  const ModuleSchema* schema_;
  std::span<const std::uint8_t> columnPlaces_;
  std::vector<FieldValue> single_;
  std::vector<FieldValue> rows_;  // row by row
  int rowCount_ = 0;
};

}  // namespace vardo
