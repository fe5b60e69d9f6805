// The fields of a module as the model takes them: each text with what it says.
#pragma once

#include "model/FieldTable.h"
#include "model/ModelSource.h"

#include <cstdint>
#include <string_view>
#include <vector>

namespace vardo {

struct FieldValue {
  // All but the first: the text is the default.
  enum class Origin : std::uint8_t {
    Given,
    Missing,    // the shape has no such property
    Empty,      // and an empty text means nothing there
    ShortList,  // the row is behind the column's last value
  };
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
  std::int32_t expression = -1;  // among the model's expressions; of fields that count, unless they are Infinite
  Reference reference = {};      // of fields that count; none for a name that nothing has
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

inline constexpr int kMostRows = 32767;

// The places of a kind's columns among its properties, and of its properties among the columns, -1 for those that are none.
struct ColumnPlaces {
  std::vector<std::uint8_t> places;
  std::vector<std::int8_t> columns;
};
const ColumnPlaces& ColumnPlacesOf(const ModuleSchema& schema);

// Of one module. Refers to the texts of its source.
class ModuleFields {
 public:
  explicit ModuleFields(const SourceModule& module);

  const ModuleSchema& schema() const { return *schema_; }
  // A field of the module itself. The field has to be one of its kind.
  const FieldValue& operator[](Field field) const { return single_[field.place]; }
  const FieldValue& At(size_t place) const { return single_[place]; }
  // A column's field in a row, both counted from 0.
  const FieldValue& operator()(Field field, int row) const { return At(field.place, row); }
  const FieldValue& At(size_t place, int row) const {
    return rows_[static_cast<size_t>(row) * columns_->places.size() + static_cast<size_t>(columns_->columns[place])];
  }
  int rows() const { return rowCount_; }
  bool IsColumn(size_t place) const { return columns_->columns[place] >= 0; }

  // Each field once, with its place and row (-1 for the module's own).
  template <class Visit>
  void ForEach(const Visit& visit) {
    VisitAll(*this, visit);
  }
  template <class Visit>
  void ForEach(const Visit& visit) const {
    VisitAll(*this, visit);
  }

 private:
  template <class Fields, class Visit>
  static void VisitAll(Fields& fields, const Visit& visit) {
    for (size_t place = 0; place < fields.single_.size(); ++place)
      if (!fields.IsColumn(place)) visit(fields.single_[place], place, -1);
    size_t at = 0;
    for (int row = 0; row < fields.rowCount_; ++row)
      for (const std::uint8_t place : fields.columns_->places) visit(fields.rows_[at++], place, row);
  }
  void ReadRows(const SourceModule& module);
  bool Counts(const FieldMeaning& meaning, int row) const;

  const ModuleSchema* schema_;
  const ColumnPlaces* columns_;
  std::vector<FieldValue> single_;
  std::vector<FieldValue> rows_;  // row by row
  int rowCount_ = 0;
};

}  // namespace vardo
