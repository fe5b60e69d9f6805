// The script language at its edges: requests as large as they may be, and answers that do not arrive.
#include "script/ScriptRunner.h"

#include "base/Errors.h"
#include "forms/Forms.h"
#include "forms/headless/HeadlessPresenter.h"
#include "platform/NativePlatform.h"
#include "script/InputLines.h"
#include "script/ModelDesktop.h"
#include "script/Request.h"

#include <gtest/gtest.h>

#include <functional>
#include <iostream>
#include <memory>
#include <optional>
#include <ostream>
#include <sstream>
#include <streambuf>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace vardo {
namespace {

const std::vector<std::string> kScript = {
    R"({"do":"new"})",
    R"({"do":"drop","master":"Create"})",
    R"({"do":"addin.ShowEditor","shape":"Create"})",
    R"({"do":"type","control":"txtValue","text":"5"})",
    R"({"do":"click","control":"cmdOK"})",
    R"({"do":"drop","master":"Dispose"})",
};

// Takes so many lines and then no more. Each is taken when it is flushed.
class ShortOutput : public std::streambuf {
 public:
  ShortOutput(size_t room, std::function<void()> lineCame) : room_(room), lineCame_(std::move(lineCame)) {}

 private:
  int_type overflow(int_type byte) override { return byte; }
  std::streamsize xsputn(const char*, std::streamsize count) override { return count; }
  int sync() override {
    lineCame_();
    return room_-- == 0 ? -1 : 0;
  }
  size_t room_;
  std::function<void()> lineCame_;
};

struct Course {
  std::vector<size_t> requestsTaken;  // when each line of output came
  size_t requests = 0;                // at the end
  int status = 0;
  bool aFormIsLeft = false;
};

Course RunWithRoomFor(size_t lines) {
  const std::unique_ptr<Platform> machine = MakeNativePlatform();
  AddinSession session(true);
  std::optional<ScriptRunner> runner;
  HeadlessPresenter presenter([&runner](Form&) { runner->Serve(); });
  ModelDesktop desktop(*machine, presenter, presenter);
  Course course;
  ShortOutput room(lines, [&course] { course.requestsTaken.push_back(course.requests); });
  std::ostream output(&room);
  const auto nextLine = [&course]() -> std::optional<std::string> {
    if (course.requests == kScript.size()) return std::nullopt;
    return kScript[course.requests++];
  };
  runner.emplace(session, desktop, nextLine, output);
  runner->Serve();
  course.status = runner->Status();
  course.aFormIsLeft = TopForm() != nullptr;
  return course;
}

TEST(ScriptRunner, GoesOnOnlyWhileItCanAnswer) {
  constexpr size_t kMuch = 100;
  const Course whole = RunWithRoomFor(kMuch);
  ASSERT_EQ(whole.requests, kScript.size());
  ASSERT_EQ(whole.status, 0);
  for (size_t lines = 0; lines < whole.requestsTaken.size(); ++lines) {
    const Course course = RunWithRoomFor(lines);
    EXPECT_EQ(course.requests, whole.requestsTaken[lines]) << "after the line that did not arrive, number " << lines;
    EXPECT_EQ(course.status, 1) << lines;
    EXPECT_FALSE(course.aFormIsLeft) << lines;
  }
}

std::string Repeated(std::string_view text, size_t times) {
  std::string repeated;
  while (times-- > 0) repeated += text;
  return repeated;
}

TEST(Request, IsTakenUpToItsLimitsAndNotBeyond) {
  const auto nested = [](size_t depth) { return R"({"a":)" + Repeated("[", depth - 1) + Repeated("]", depth - 1) + "}"; };
  const auto members = [](size_t count) {
    std::string request = R"({"0":0)";
    for (size_t i = 1; i < count; ++i) request += ",\"" + std::to_string(i) + "\":0";
    return request + "}";
  };
  const auto ofLength = [](size_t length) { return "{}" + std::string(length - 2, ' '); };
  const struct {
    std::string most, tooMuch;
    const char* why;
  } cases[] = {{nested(64), nested(65), "nested deeper"},
               {members(256), members(257), "of more than 256 members"},
               {ofLength(kLongestRequest), ofLength(kLongestRequest + 1), "longer than 16 MiB"}};
  for (const auto& c : cases) {
    EXPECT_NO_THROW(ParseRequest(c.most)) << c.why;
    try {
      ParseRequest(c.tooMuch);
      ADD_FAILURE() << c.why;
    } catch (const RuntimeError& error) {
      EXPECT_NE(error.description().find(c.why), std::string::npos) << error.description();
    }
  }
}

TEST(InputLines, OfALineThatIsTooLongEnoughIsReadToSaySo) {
  std::stringbuf text(std::string(kLongestRequest + 5, 'a') + "\nnext");
  std::streambuf* const before = std::cin.rdbuf(&text);
  const auto tooLong = ReadInputLine(), next = ReadInputLine(), none = ReadInputLine();
  std::cin.rdbuf(before);
  ASSERT_TRUE(tooLong && next);
  EXPECT_EQ(tooLong->size(), kLongestRequest + 1);
  EXPECT_EQ(*next, "next");
  EXPECT_FALSE(none);
}

}  // namespace
}  // namespace vardo
