// Carries out what a person wants: each deed is one command of the host, with the label by which it is undone.
#pragma once

#include "canvas/Alignment.h"
#include "canvas/Deed.h"
#include "script/AddinSession.h"

namespace vardo {

class Deeds {
 public:
  explicit Deeds(AddinSession& session) : session_(session) {}

  // Throws AutomationError with a sentence when the host refuses; nothing has changed then.
  void Do(const Deed& deed);

 private:
  void Run(const deeds::Select& deed);
  void Run(const deeds::Drop& deed);
  void Run(const deeds::Connect& deed);
  void Run(const deeds::Reglue& deed);
  void Run(const deeds::Move& deed);
  void Run(const deeds::Paste& deed);
  void Run(const deeds::Resize& deed);
  void Run(const deeds::SetField& deed);
  void Run(const deeds::Align& deed);
  void Run(const deeds::Distribute& deed);
  void Run(const deeds::SameSize& deed);
  void Run(const deeds::Order& deed);
  void Run(const deeds::Delete& deed);
  void Run(const deeds::Type& deed);
  void Run(const deeds::Undo& deed);
  void Run(const deeds::Redo& deed);
  void Run(const deeds::ShowPage& deed);
  void Run(const deeds::AddPage& deed);
  void Run(const deeds::RenamePage& deed);
  void Run(const deeds::DeletePage& deed);
  void Run(const deeds::OpenDialog& deed);
  void Run(const deeds::OpenSubmodel& deed);
  void Run(const deeds::CloseSubmodel& deed);
  void Run(const deeds::RunAction& deed);

  DrawingHost& host() { return session_.host(); }
  DrawingPage& page() { return host().ActivePage(); }
  SheetRef RefTo(int shape) { return host().RefTo(page(), shape); }
  double scale();
  std::string NameOf(const std::vector<int>& shapes);
  void Put(int shape, std::string_view cell, double inches);
  void MoveOne(int shape, PagePoint by);
  // Those with a frame of their own: no connectors.
  std::vector<FramedShape> Framed(const std::vector<int>& shapes);
  void MoveAll(const std::vector<FramedShape>& shapes, const std::vector<PagePoint>& by);
  void PutEnd(int connector, bool isBegin, PagePoint to);

  AddinSession& session_;
};

}  // namespace vardo
