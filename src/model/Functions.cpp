#include "model/Expression.h"

#include "base/Text.h"

#include <array>
#include <iterator>

namespace vardo {
namespace {

constexpr FunctionInfo Distribution(std::string_view name, int arguments) {
  return {name, arguments, arguments, true, false, {}};
}
constexpr FunctionInfo Table(std::string_view name) { return {name, 2, kAnyNumber, true, true, {}}; }
constexpr FunctionInfo Of(std::string_view name, Thing object, int arguments = 1) {
  return {name, arguments, arguments, false, false, object};
}
constexpr FunctionInfo Plain(std::string_view name, int arguments = 1) { return {name, arguments, arguments, false, false, {}}; }
constexpr FunctionInfo Any(std::string_view name) { return {name, 1, kAnyNumber, false, false, {}}; }

// In the order of the enumeration.
constexpr FunctionInfo kFunctions[] = {
    Distribution("EXPO", 1),
    Distribution("NORM", 2),
    Distribution("TRIA", 3),
    Distribution("UNIF", 2),
    Distribution("ERLA", 2),
    Distribution("GAMM", 2),
    Distribution("WEIB", 2),
    Distribution("LOGN", 2),
    Distribution("BETA", 2),
    Distribution("POIS", 1),
    Distribution("JOHN", 4),
    Table("DISC"),
    Table("CONT"),
    Plain("Now", 0),
    Plain("Replication", 0),
    Of("Length", Thing::Queue),
    Of("Busy", Thing::Resource),
    Of("Capacity", Thing::Resource),
    Of("Free", Thing::Resource),
    Of("InSystem", Thing::EntityType),
    Of("Inside", Thing::Module),
    Of("Entered", Thing::Module),
    Of("Left", Thing::Module),
    Of("Count", Thing::Counter),
    Of("Average", Thing::Tally),
    Of("Observations", Thing::Tally),
    Of("ScheduleValue", Thing::Schedule),
    Of("Member", Thing::Set, 2),
    Of("Members", Thing::Set),
    Plain("ABS"),
    Any("MIN"),
    Any("MAX"),
    Plain("ROUND"),
    Plain("INT"),
    Plain("FLOOR"),
    Plain("CEIL"),
    Plain("MOD", 2),
    Plain("SQRT"),
    Plain("EXP"),
    Plain("LN"),
    Plain("LOG10"),
    Plain("POW", 2),
    Plain("SIGN"),
    Plain("IF", 3),
};
static_assert(std::size(kFunctions) == static_cast<size_t>(Function::If) + 1);

}  // namespace

const FunctionInfo& InfoOf(Function function) { return kFunctions[static_cast<size_t>(function)]; }

std::optional<Function> FindFunction(std::string_view name) {
  for (size_t i = 0; i < std::size(kFunctions); ++i)
    if (EqualAsciiIgnoringCase(kFunctions[i].name, name)) return static_cast<Function>(i);
  return std::nullopt;
}

}  // namespace vardo
