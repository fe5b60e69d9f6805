// What the add-in writes in one go is undone in one go.
#pragma once

#include "addin/host/IVApplication.h"

#include <exception>
#include <string_view>
#include <utility>

namespace vardo {

// Its writes are kept, also when it is left by a failure: what was written by then is told of, not hidden. A host that refuses
// the scope may still take the writes.
class UndoScope {
 public:
  UndoScope(IVApplicationPtr host, std::string_view name) : host_(std::move(host)) {
    try {
      scope_ = host_->BeginUndoScope(name);
    } catch (const std::exception&) {
    }
  }
  ~UndoScope() {
    try {
      host_->EndUndoScope(scope_, true);
    } catch (const std::exception&) {
    }
  }
  UndoScope(const UndoScope&) = delete;
  UndoScope& operator=(const UndoScope&) = delete;

 private:
  IVApplicationPtr host_;
  int scope_ = 0;
};

}  // namespace vardo
