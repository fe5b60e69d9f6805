// The failures that the program throws on purpose.
#pragma once

#include <cstdint>
#include <exception>
#include <string>
#include <utility>

namespace vardo {

// A failure with the number and the description an automation caller sees.
class AutomationError : public std::exception {
 public:
  AutomationError(std::int32_t number, std::string description) : number_(number), description_(std::move(description)) {}
  std::int32_t number() const { return number_; }
  const std::string& description() const { return description_; }
  const char* what() const noexcept override { return description_.c_str(); }

 private:
  std::int32_t number_;
  std::string description_;
};

// An operation that the drawing host refused.
class HostError : public AutomationError {
 public:
  using AutomationError::AutomationError;
};

// A failure of the program's own arithmetic or arguments, numbered as Basic numbers it.
class RuntimeError : public AutomationError {
 public:
  using AutomationError::AutomationError;
  static RuntimeError InvalidArgument(std::string what) { return {5, "Invalid procedure call or argument: " + what}; }
  static RuntimeError Overflow() { return {6, "Overflow"}; }
  static RuntimeError OutOfMemory() { return {7, "Out of memory"}; }
  static RuntimeError TypeMismatch() { return {13, "Type mismatch"}; }
};

// The numbers that the drawing hosts put on their refusals (HRESULTs in the automation facility, as the host has them).
inline constexpr std::int32_t kHostBadIndex = -2032465753;    // 0x86DB08A7: an item, name or index that is not there
inline constexpr std::int32_t kHostNoSuchCell = -2032465660;  // 0x86DB0904: a cell name that is not there
inline constexpr std::int32_t kHostNotAllowed = -2032465766;  // 0x86DB089A: the operation does not fit the object's state
inline constexpr std::int32_t kHostGuarded = -2032466648;     // 0x86DB0528: the cell's formula is guarded
inline constexpr std::int32_t kHostObjectGone = -2032465756;  // 0x86DB08A4: the object behind the reference was deleted

}  // namespace vardo
