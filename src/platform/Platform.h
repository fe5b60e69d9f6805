// What the add-in asks of the machine it runs on.
//   Text is UTF-8. One implementation is installed for the whole process; tests install one that records.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace vardo {

// Message box styles: icon and an OK button.
inline constexpr int kStyleCritical = 16;
inline constexpr int kStyleExclamation = 48;

// The title of every message box, and the help file of every dialog.
inline constexpr std::string_view kProductTitle = "Quellis";
inline constexpr std::string_view kHelpFile = "Quellis.chm";

struct TwipsSize {
  double width;
  double height;
};

class Platform {
 public:
  virtual ~Platform() = default;

  // Returns when the user has pressed OK.
  virtual void ShowMessage(std::string_view text, std::string_view title, int style) = 0;
  // Of the screen that shows the forms, in twips (1/1440 inch; 15 to a pixel at 96 dots per inch).
  virtual TwipsSize ScreenSize() = 0;
  // Opens a topic of a help file beside the program or the library that shows it. A viewer that cannot be started is no failure
  // of the caller.
  virtual void ShowHelp(std::string_view file, std::string_view topic) = 0;
  // Starts a program of the folder of add-ons by its file name and does not wait for it. False when there is none: the name may
  // come from anybody's drawing, so no other program of the machine is ever started.
  virtual bool RunAddOn(std::string_view name) = 0;

  // A string value of the current user's registry; empty when there is none or it is no string.
  virtual std::string ReadRegistryString(std::string_view key, std::string_view valueName) = 0;

  // True when the two are equal as the user reads them: case does not count.
  virtual bool EqualTextIgnoringCase(std::string_view a, std::string_view b) = 0;
  // A key that is equal for two texts exactly when EqualTextIgnoringCase holds; for counting in linear time. That of printable
  // ASCII, and of what equals such a text, is the text in lower case; any other begins with a character that does not print.
  virtual std::string CaseFoldKey(std::string_view text) = 0;

  // Whether a character (UTF-8) is a letter, or a letter or digit, in the ANSI code page. One that the code page has not is
  // neither.
  virtual bool IsAnsiAlpha(std::string_view character) = 0;
  virtual bool IsAnsiAlphaNumeric(std::string_view character) = 0;

  // The number a whole text stands for in the user's locale (sign, blanks around, exponent, decimal separator); none when it is
  // no number.
  virtual std::optional<double> ParseReal(std::string_view text) = 0;
};

// The one in force. SetPlatform keeps no ownership; it returns the one before. Using none is a programming error.
Platform& ThePlatform();
Platform* SetPlatform(Platform* platform);

// Passes everything on; a base for an edge that answers some of the calls itself.
class ForwardingPlatform : public Platform {
 public:
  explicit ForwardingPlatform(Platform& target) : target_(target) {}
  void ShowMessage(std::string_view text, std::string_view title, int style) override { target_.ShowMessage(text, title, style); }
  TwipsSize ScreenSize() override { return target_.ScreenSize(); }
  void ShowHelp(std::string_view file, std::string_view topic) override { target_.ShowHelp(file, topic); }
  bool RunAddOn(std::string_view name) override { return target_.RunAddOn(name); }
  std::string ReadRegistryString(std::string_view key, std::string_view valueName) override {
    return target_.ReadRegistryString(key, valueName);
  }
  bool EqualTextIgnoringCase(std::string_view a, std::string_view b) override { return target_.EqualTextIgnoringCase(a, b); }
  std::string CaseFoldKey(std::string_view text) override { return target_.CaseFoldKey(text); }
  bool IsAnsiAlpha(std::string_view character) override { return target_.IsAnsiAlpha(character); }
  bool IsAnsiAlphaNumeric(std::string_view character) override { return target_.IsAnsiAlphaNumeric(character); }
  std::optional<double> ParseReal(std::string_view text) override { return target_.ParseReal(text); }

 protected:
  Platform& target_;
};

}  // namespace vardo
