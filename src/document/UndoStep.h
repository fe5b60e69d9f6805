// One command of the user: all edits while it lives are one step. When it is left by an exception, the step is taken back - by
// the outermost one, for what is done inside a command is the command's.
#pragma once

#include "document/EditLog.h"

#include <exception>
#include <string_view>

namespace vardo {

class UndoStep {
 public:
  UndoStep(EditLog& log, std::string_view label) : log_(log) { log_.BeginStep(label); }
  ~UndoStep() {
    if (log_.IsOutermost() && std::uncaught_exceptions() > exceptions_) log_.RollBack();
    log_.EndStep();
  }
  UndoStep(const UndoStep&) = delete;
  UndoStep& operator=(const UndoStep&) = delete;

 private:
  EditLog& log_;
  const int exceptions_ = std::uncaught_exceptions();
};

}  // namespace vardo
