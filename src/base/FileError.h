// A drawing file that cannot be opened or saved.
#pragma once

#include "base/Text.h"

#include <exception>
#include <string>
#include <string_view>
#include <utility>

namespace vardo {

// One sentence for the person at the screen: it names the file, the part where one is to blame, and what to do.
class FileError : public std::exception {
 public:
  explicit FileError(std::string sentence) : sentence_(std::move(sentence)) {}
  const char* what() const noexcept override { return sentence_.c_str(); }

  // The file is not as its writer left it.
  static FileError Damaged(const std::string& file, const std::string& what) {
    return FileError(file + " is damaged: " + what + "; restore it from a backup.");
  }
  // The file is whole, but built in a way that no drawing needs and that does harm.
  static FileError Unsafe(const std::string& file, const std::string& what) {
    return FileError(file + " is not safe to open: " + what + "; ask its maker for a clean copy.");
  }
  // The file is of another kind.
  static FileError NotADrawing(const std::string& file, const std::string& what) {
    return FileError(file + " is " + what + "; choose a Visio drawing, stencil or template.");
  }
  // Opening or saving it takes more memory than there is.
  static FileError NeedsMemory(const std::string& file) {
    return FileError(file + " needs more memory than this machine has free; close other programs and try again.");
  }

 private:
  std::string sentence_;
};

// How a sentence speaks of a part.
inline std::string PartInWords(std::string_view part) { return "part " + InWords(part); }

}  // namespace vardo
