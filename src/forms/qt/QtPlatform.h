// The services of the machine that a program with Qt windows answers itself: message boxes, the screen and the help.
#pragma once

#include "platform/Platform.h"

#include <QString>

namespace vardo {

class QtPlatform : public ForwardingPlatform {
 public:
  // helpFolder holds the help topics as HTML files; by default it is the installed one.
  explicit QtPlatform(Platform& target, QString helpFolder = InstalledHelpFolder());

  void ShowMessage(std::string_view text, std::string_view title, int style) override;
  TwipsSize ScreenSize() override;
  // Every help file is a folder of topics here, so the topic alone says which.
  void ShowHelp(std::string_view file, std::string_view topic) override;

  static QString InstalledHelpFolder();

 private:
  QString helpFolder_;
};

}  // namespace vardo
