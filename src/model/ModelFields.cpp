#include "model/ModelFields.h"

#include "base/Numbers.h"
#include "base/Text.h"
#include "props/StringFunctions.h"

#include <algorithm>
#include <array>

namespace vardo {
namespace {

using Origin = FieldValue::Origin;
using Reading = FieldValue::Reading;

bool Equal(std::string_view a, std::string_view b) { return EqualAsciiIgnoringCase(a, b); }
std::string_view FirstWord(std::string_view text) { return text.substr(0, text.find(' ')); }

// The places of the choices that a test finds.
template <class Test>
int OnlyOne(std::span<const Choice> choices, const Test& test) {
  int found = -1;
  for (size_t i = 0; i < choices.size(); ++i) {
    if (!test(choices[i])) continue;
    if (found >= 0) return -1;
    found = static_cast<int>(i);
  }
  return found;
}

void ReadChoice(FieldValue& value, const FieldMeaning& meaning) {
  const auto found = std::ranges::find_if(meaning.choices, [&](const Choice& choice) {
    return Equal(choice.code, value.text) || (!choice.caption.empty() && Equal(choice.caption, value.text));
  });
  if (found != meaning.choices.end()) {
    value.choice = static_cast<std::int8_t>(found - meaning.choices.begin());
    return;
  }
  const int shortened = OnlyOne(meaning.choices, [&](const Choice& choice) {
    return Equal(FirstWord(choice.code), value.text) || Equal(FirstWord(choice.caption), value.text);
  });
  value.choice = static_cast<std::int8_t>(shortened >= 0 ? shortened : meaning.unknownChoice);
  value.reading = shortened >= 0 ? Reading::Shortened : value.choice >= 0 ? Reading::AsUnknown : Reading::Unreadable;
}

void ReadNumber(FieldValue& value) {
  auto number = ParseNumber(value.text);
  if (!number && std::ranges::count(value.text, ',') == 1 && value.text.find('.') == std::string_view::npos) {
    std::string withPoint(value.text);
    std::ranges::replace(withPoint, ',', '.');
    if ((number = ParseNumber(withPoint))) value.reading = Reading::DecimalComma;
  }
  if (number)
    value.number = *number;
  else if (!value.text.empty())
    value.reading = Reading::Unreadable;
}

void Read(FieldValue& value, const FieldMeaning& meaning) {
  switch (meaning.meaning) {
    case Meaning::Choice:
      ReadChoice(value, meaning);
      break;
    case Meaning::Real:
    case Meaning::Integer:
      ReadNumber(value);
      break;
    case Meaning::Expression:
      // Where codes are offered for some values, their captions stand for them, too.
      for (const Choice& choice : meaning.choices)
        if (Equal(choice.caption, value.text)) value.text = choice.code;
      break;
    default:
      break;
  }
}

FieldValue ValueOf(std::string_view text, Origin origin, const FieldMeaning& meaning, const ModuleProperty& property) {
  FieldValue value{.text = TrimBlanks(text), .origin = origin};
  const bool emptyMeansNothing = !meaning.mayBeEmpty && meaning.meaning != Meaning::Nothing && meaning.meaning != Meaning::Name;
  if (origin == Origin::Given && value.text.empty() && emptyMeansNothing) value.origin = Origin::Empty;
  if (value.origin != Origin::Given) value.text = property.defaultValue;
  Read(value, meaning);
  return value;
}

// One list's items one after the other.
class Items {
 public:
  explicit Items(const std::optional<std::string>& text)
      : rest_(text ? std::optional<std::string_view>(*text) : std::nullopt), atEnd_(text ? Origin::ShortList : Origin::Missing) {}
  Origin Next(std::string_view& item) {
    if (!rest_) return atEnd_;
    const size_t end = rest_->find(kListDelimiter);
    item = rest_->substr(0, end);
    if (end == std::string_view::npos)
      rest_.reset();
    else
      rest_->remove_prefix(end + 1);
    return Origin::Given;
  }

 private:
  std::optional<std::string_view> rest_;
  Origin atEnd_;
};

std::string_view FirstItem(std::string_view text) { return text.substr(0, text.find(kListDelimiter)); }

}  // namespace

const ColumnPlaces& ColumnPlacesOf(const ModuleSchema& schema) {
  static const auto kPlaces = [] {
    std::array<ColumnPlaces, std::size(kModules)> all;
    for (size_t kind = 0; kind < all.size(); ++kind) {
      const ModuleSchema& of = kModules[kind];
      all[kind].columns.assign(of.properties.size(), -1);
      // In the order of the properties, in which a choice stands before what depends on it.
      for (size_t place = 0; place < of.properties.size(); ++place) {
        const bool isColumn = std::ranges::any_of(
            of.rows.columns, [&](const RowColumn& column) { return column.field == of.properties[place].field; });
        if (!isColumn) continue;
        all[kind].columns[place] = static_cast<std::int8_t>(all[kind].places.size());
        all[kind].places.push_back(static_cast<std::uint8_t>(place));
      }
    }
    return all;
  }();
  return kPlaces[static_cast<size_t>(&schema - kModules)];
}

ModuleFields::ModuleFields(const SourceModule& module) : schema_(module.schema), columns_(&ColumnPlacesOf(*module.schema)) {
  const std::span<const FieldMeaning> meanings = MeaningsOf(*schema_);
  single_.resize(meanings.size());
  for (size_t place = 0; place < meanings.size(); ++place) {
    if (IsColumn(place)) continue;
    const std::optional<std::string>& text = module.values[place];
    FieldValue& value = single_[place];
    value = ValueOf(text ? FirstItem(*text) : "", text ? Origin::Given : Origin::Missing, meanings[place],
                    schema_->properties[place]);
    if (meanings[place].meaning == Meaning::Name) value.text = module.name;
    value.counts = Counts(meanings[place], -1);
  }
  if (!schema_->rows.count.empty()) ReadRows(module);
}

void ModuleFields::ReadRows(const SourceModule& module) {
  const std::span<const FieldMeaning> meanings = MeaningsOf(*schema_);
  for (size_t place = 0; place < meanings.size(); ++place) {
    if (meanings[place].meaning != Meaning::Rows) continue;
    const auto count = ParseInteger(single_[place].text);
    if (count && *count >= 0 && *count <= kMostRows)
      rowCount_ = *count;
    else
      single_[place].reading = Reading::Unreadable;
  }
  if (rowCount_ == 0) return;
  rows_.resize(static_cast<size_t>(rowCount_) * columns_->places.size());
  std::vector<Items> lists;
  for (const std::uint8_t place : columns_->places) lists.emplace_back(module.values[place]);
  size_t at = 0;
  for (int row = 0; row < rowCount_; ++row)
    for (size_t column = 0; column < lists.size(); ++column, ++at) {
      const size_t place = columns_->places[column];
      std::string_view text;
      const Origin origin = lists[column].Next(text);
      rows_[at] = ValueOf(text, origin, meanings[place], schema_->properties[place]);
      rows_[at].counts = Counts(meanings[place], row);
    }
}

bool ModuleFields::Counts(const FieldMeaning& meaning, int row) const {
  if (meaning.meaning == Meaning::Nothing) return false;
  return std::ranges::all_of(meaning.when, [&](const FieldCondition& condition) {
    if (condition.choices == ~0U) return true;
    const FieldValue& on = row >= 0 && IsColumn(condition.place) ? At(condition.place, row) : single_[condition.place];
    return on.choice >= 0 && (condition.choices >> on.choice & 1U) != 0;
  });
}

}  // namespace vardo
