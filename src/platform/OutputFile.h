// A file that a program writes piece by piece.
#pragma once

#include "platform/FileSystem.h"

#include <fstream>
#include <memory>
#include <ostream>
#include <streambuf>
#include <string>

namespace vardo {

// The file appears under its name, whole, when it is finished; destroyed before, it leaves what was there. A pipe or a device is
// written as it comes. Throws FileError when the file cannot be begun.
class OutputFile : public std::ostream {
 public:
  OutputFile(FileSystem& files, const std::filesystem::path& target);
  ~OutputFile() override;
  // Throws FileError when not all of it could be written.
  void Finish();

 private:
  // Passes pieces on, and remembers why it could not.
  class Pieces : public std::streambuf {
   public:
    std::unique_ptr<FileSystem::Temporary> temporary;
    std::string failure;

   protected:
    int_type overflow(int_type byte) override;
    std::streamsize xsputn(const char* bytes, std::streamsize count) override;
    int sync() override;

   private:
    std::string waiting_;
  };

  std::filesystem::path target_, file_;
  Pieces pieces_;
  std::filebuf device_;
};

}  // namespace vardo
