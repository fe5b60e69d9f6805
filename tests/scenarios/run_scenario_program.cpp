// run_scenario_program DATA-FOLDER FILE... -- PROGRAM ARGS...: runs each scenario with a program that speaks the script language,
// over pipes, and says what came otherwise than expected. Exit status 0 when nothing did.
//   All requests are written at once, each with a question behind it whose answer tells that nothing more comes of it: the
//   program must keep lines in order however fast they come.
#include "Play.h"

#include <windows.h>

#include <algorithm>
#include <array>
#include <iostream>
#include <stdexcept>
#include <thread>
#include <vector>

namespace vardo {
namespace {

constexpr DWORD kPatience = 60'000;  // milliseconds for the whole scenario

[[noreturn]] void Fail(const std::string& what) {
  throw std::runtime_error(what + " (Windows error " + std::to_string(GetLastError()) + ")");
}

class Handle {
 public:
  Handle() = default;
  ~Handle() { Close(); }
  Handle(const Handle&) = delete;
  Handle& operator=(const Handle&) = delete;
  HANDLE get() const { return handle_; }
  HANDLE* Receive() { return &handle_; }
  void Close() {
    if (handle_) CloseHandle(std::exchange(handle_, nullptr));
  }

 private:
  HANDLE handle_ = nullptr;
};

// A program of which one end of each pipe is here. Ended by force when it takes too long.
class Program {
 public:
  explicit Program(std::wstring commandLine) {
    Handle input, output;
    MakePipe(input, toProgram_, toProgram_);
    MakePipe(fromProgram_, output, fromProgram_);
    STARTUPINFOW startup = {};
    startup.cb = sizeof startup;
    startup.dwFlags = STARTF_USESTDHANDLES;
    startup.hStdInput = input.get();
    startup.hStdOutput = output.get();
    startup.hStdError = GetStdHandle(STD_ERROR_HANDLE);
    PROCESS_INFORMATION started = {};
    if (!CreateProcessW(nullptr, commandLine.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr, &startup, &started))
      Fail("the program cannot be started");
    CloseHandle(started.hThread);
    *process_.Receive() = started.hProcess;
    watchdog_ = std::jthread([process = started.hProcess] {
      if (WaitForSingleObject(process, kPatience) == WAIT_TIMEOUT) TerminateProcess(process, ERROR_TIMEOUT);
    });
  }

  Program(const Program&) = delete;
  Program& operator=(const Program&) = delete;

  // All that the program is to read. Once, and does not wait for it.
  void Write(std::string input) {
    writer_ = std::jthread([this, input = std::move(input)] {
      DWORD written = 0;
      WriteFile(toProgram_.get(), input.data(), static_cast<DWORD>(input.size()), &written, nullptr);
      toProgram_.Close();
    });
  }

  std::optional<std::string> ReadLine() {
    for (;;) {
      if (const size_t end = waiting_.find('\n'); end != std::string::npos) {
        std::string line = waiting_.substr(0, end);
        waiting_.erase(0, end + 1);
        return line;
      }
      std::array<char, 4096> bytes;
      DWORD count = 0;
      if (!ReadFile(fromProgram_.get(), bytes.data(), bytes.size(), &count, nullptr) || count == 0) return std::nullopt;
      waiting_.append(bytes.data(), count);
    }
  }

  int Status() {
    WaitForSingleObject(process_.get(), INFINITE);
    DWORD status = 0;
    GetExitCodeProcess(process_.get(), &status);
    return static_cast<int>(status);
  }

 private:
  static void MakePipe(Handle& reading, Handle& writing, const Handle& own) {
    SECURITY_ATTRIBUTES inherited = {sizeof inherited, nullptr, TRUE};
    if (!CreatePipe(reading.Receive(), writing.Receive(), &inherited, 0)) Fail("no pipe can be made");
    SetHandleInformation(own.get(), HANDLE_FLAG_INHERIT, 0);
  }

  Handle toProgram_, fromProgram_, process_;
  std::string waiting_;
  std::jthread watchdog_, writer_;
};

// Puts the scenario's values into the user's registry while it lives.
class RegistryValues {
 public:
  explicit RegistryValues(const Scenario& scenario) {
    for (const auto& [place, text] : scenario.registry) {
      const auto& [key, name] = place;
      RegSetKeyValueA(HKEY_CURRENT_USER, key.c_str(), name.c_str(), REG_SZ, text.c_str(), static_cast<DWORD>(text.size() + 1));
      keys_.push_back(key);
    }
  }
  ~RegistryValues() {
    for (const std::string& key : keys_) RegDeleteTreeA(HKEY_CURRENT_USER, key.c_str());
  }
  RegistryValues(const RegistryValues&) = delete;
  RegistryValues& operator=(const RegistryValues&) = delete;

 private:
  std::vector<std::string> keys_;
};

constexpr const char* kMark = "nothing more";

bool IsMarked(const std::string& line) {
  const auto reply = ScenarioJson::parse(line, nullptr, false);
  return reply.is_object() && reply.contains("id") && reply["id"] == kMark;
}

// A question behind the last request would be the last command, which decides on the exit status.
std::string InputOf(const Scenario& scenario) {
  const std::string question = ScenarioJson{{"do", "page.active"}, {"id", kMark}}.dump() + "\n";
  std::string input;
  for (const auto& request : scenario.requests) input += (input.empty() ? "" : question) + request.text + "\n";
  return input;
}

void PlayWith(Program& program, Play& play) {
  while (play.NextRequest())
    while (const auto line = program.ReadLine()) {
      if (IsMarked(*line)) break;
      play.output() << *line << '\n';
    }
  play.End(program.Status());
}

// As programs take their command line apart; no word ends in a backslash or has one before a quotation mark.
std::wstring Quoted(const std::wstring& word) {
  std::wstring quoted = L" \"";
  for (const wchar_t character : word) quoted += character == L'"' ? L"\\\"" : std::wstring(1, character);
  return quoted + L"\"";
}

std::wstring CommandLine(const std::vector<std::wstring>& command, const Scenario& scenario) {
  std::wstring line;
  for (const std::wstring& word : command) line += Quoted(word);
  if (!scenario.withAddin) line += L" --no-addin";
  for (const std::string& addOn : scenario.addOns) line += L" --addon" + Quoted(std::filesystem::u8path(addOn).wstring());
  return line.substr(1);
}

bool Succeeds(const std::vector<std::wstring>& command, const Scenario& scenario) {
  const RegistryValues registry(scenario);
  Program program(CommandLine(command, scenario));
  program.Write(InputOf(scenario));
  Play play(scenario);
  PlayWith(program, play);
  return !play.Failed();
}

}  // namespace
}  // namespace vardo

int wmain(int argc, wchar_t** argv) try {
  const std::vector<std::wstring> words(argv + 1, argv + argc);
  const auto end = std::find(words.begin(), words.end(), L"--");
  if (end - words.begin() < 2 || words.end() - end < 2)
    throw std::runtime_error("usage: run_scenario_program DATA-FOLDER FILE... -- PROGRAM ARGS...");
  const std::vector<std::wstring> command(end + 1, words.end());
  return vardo::PlayAll({words.begin() + 1, end}, words[0],
                        [&command](const vardo::Scenario& scenario) { return vardo::Succeeds(command, scenario); });
} catch (const std::exception& error) {
  std::cerr << error.what() << '\n';
  return 2;
}
