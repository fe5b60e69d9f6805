#include "app/StandardStreams.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <system_error>

namespace vardo {

void PrepareStandardStreams() {
  // Handlers, as programs that are started from here would inherit a signal that is ignored.
  for (const int signal : {SIGPIPE, SIGXFSZ}) std::signal(signal, [](int) {});
  // The lowest free number is the stream's own. Opened the wrong way round, it cannot be used either.
  for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO})
    if (fcntl(stream, F_GETFD) < 0) open("/dev/null", stream == STDIN_FILENO ? O_WRONLY : O_RDONLY);
}

std::string StandardOutput::Bytes::Failure() const { return std::generic_category().message(error_); }

StandardOutput::int_type StandardOutput::Bytes::overflow(int_type byte) {
  return Check(std::putc(byte, stdout) != EOF) ? byte : traits_type::eof();
}

std::streamsize StandardOutput::Bytes::xsputn(const char* bytes, std::streamsize count) {
  const auto size = static_cast<size_t>(count);
  return Check(std::fwrite(bytes, 1, size, stdout) == size) ? count : 0;
}

int StandardOutput::Bytes::sync() { return Check(std::fflush(stdout) == 0) ? 0 : -1; }

bool StandardOutput::Bytes::Check(bool written) {
  if (!written) error_ = errno;
  return written;
}

void Tell(std::string_view sentence) {
  std::fputs("vardo: ", stderr);
  std::fwrite(sentence.data(), 1, sentence.size(), stderr);
  std::fputc('\n', stderr);
}

}  // namespace vardo
