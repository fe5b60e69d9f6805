// The desktop of an add-in that is part of this program: seen through the forms themselves, used through their toolkit.
#pragma once

#include "forms/FormPresenter.h"
#include "script/Desktop.h"

#include <memory>

namespace vardo {

class ModelDesktop : public Desktop {
 public:
  // Answers for the machine's screen, messages and help while it lives, and has the forms shown by a toolkit. All must outlive
  // it.
  ModelDesktop(Platform& machine, FormPresenter& presenter, FormDriver& driver);
  ~ModelDesktop() override;

  void SetListener(DesktopListener& listener) override { listener_ = &listener; }
  TwipsSize ScreenSize() override { return screen_; }
  void SetScreenSize(const TwipsSize& size) override { screen_ = size; }
  std::vector<std::string> LoadedForms() override;
  std::string TopForm() override;
  FormSeen SeeForm() override;
  std::optional<ControlSeen> SeeControl(const std::string& name) override;
  void Focus(const std::string& control) override;
  void Type(const std::string& control, const std::string& text) override;
  void Pick(const std::string& control, int index) override;
  void Check(const std::string& control, bool checked) override;
  void Click(const std::string& control) override;
  void DblClick(const std::string& control) override;
  void Key(const std::string& key) override;
  void Screenshot(const std::string& file) override;

 private:
  class OwnPlatform;
  class OwnPresenter;

  DesktopListener* listener_ = nullptr;
  TwipsSize screen_ = kUsualScreen;
  std::unique_ptr<OwnPlatform> platform_;
  std::unique_ptr<OwnPresenter> presenter_;
  FormDriver& driver_;
};

}  // namespace vardo
