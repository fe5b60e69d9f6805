// The program's standard streams, any of which may be full, closed, or a pipe that nobody holds the other end of.
#pragma once

#include <ostream>
#include <streambuf>
#include <string>
#include <string_view>

namespace vardo {

// To be called first. From then on a write that fails ends no program, and no file is opened in the place of a closed stream.
void PrepareStandardStreams();

// Standard output that remembers why it could not be written. After a failure it takes no more.
class StandardOutput : public std::ostream {
 public:
  StandardOutput() : std::ostream(nullptr) { rdbuf(&bytes_); }
  // Writes what is on its way. True when everything has arrived.
  bool Finish() { return !flush().fail(); }
  // The machine's words for what went wrong.
  std::string Failure() const { return bytes_.Failure(); }

 private:
  class Bytes : public std::streambuf {
   public:
    std::string Failure() const;

   protected:
    int_type overflow(int_type byte) override;
    std::streamsize xsputn(const char* bytes, std::streamsize count) override;
    int sync() override;

   private:
    bool Check(bool written);
    int error_ = 0;
  };
  Bytes bytes_;
};

// A sentence on standard error. Throws nothing, and takes no memory.
void Tell(std::string_view sentence);

}  // namespace vardo
