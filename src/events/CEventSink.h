// The listener for the host's events. It gives new pages their bookkeeping rows, renumbers and registers new module shapes, keeps
// a module's name in step with the text typed on it, and removes the submodel pages of Process shapes that go.
//   What the host refuses is left, and put right later where that is said.
#pragma once

#include "addin/host/IVEventList.h"
#include "catalog/NameCatalogues.h"
#include "events/PageRegisters.h"
#include "events/SubmodelPages.h"

#include <cstddef>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace vardo {

// Work that cannot be done while the host is inside the operation that raised an event; done at the next event of any kind.
extern std::vector<std::string> PagesToDelete;
extern std::vector<std::string> PagesToInitialise;

class CEventSink : public IVEventSink {
 public:
  // The host's entry point. Lets no failure out but std::bad_alloc; nothing new is put off then.
  void VisEventProc(std::int16_t eventCode, const IVApplicationPtr& source, std::int32_t eventId, std::int32_t eventSeqNum,
                    const EventSubject& subject, std::string_view moreInfo) override;

  // Gives the page its seventeen hidden rows. Ends silently on a host failure.
  void PageAdded(const IVPagePtr& page);
  // Queues the submodel pages of the Process shapes that are going, and takes all that goes out of the active page's registers.
  void BeforeSelectionDelete(const IVSelectionPtr& selection);
  // Renumbers a module shape whose name is in use and registers it on its page; of any other shape, checks the selected
  // connector. Ends silently on a host failure.
  void ShapeAdded(const IVShapePtr& shape);
  // Accepts any object and does nothing.
  void CopyAndPaste(const EventSubject&) {}
  // Queues the submodel pages of the Process shapes of a page that is going.
  void PageDeleted(const IVPagePtr& page);
  // Takes a text typed on a module shape as its name, or puts the old one back when the name is in use.
  // moreInfo names the shape: "... /shape=Sheet.3".
  void ShapeTextEdited(std::string_view moreInfo);

  // A drawing that was edited without the add-in may have registers that do not fit. Mends them in the active drawing, if it has
  // been opened from a file, and does it again when that was undone; what happens to them later is not looked at. To be called
  // before the registers are read; a shape just added, and those that come behind it, are in none yet. What the host refuses is
  // tried the next time.
  void MendRegisters(const IVShapePtr& added = nullptr);

  // One more event has been registered. The one that tells of deleted pages is switched off while queued pages are deleted, so
  // that their going does not come back here.
  void Advised(const IVEventPtr& event, bool isPageDeleted);
  size_t AdvisedEvents() const { return advisedEvents_; }

 private:
  void Answer(std::uint16_t eventCode, const EventSubject& subject, std::string_view moreInfo);
  void DrainQueues();
  void DeleteQueuedPage(const std::string& name);
  // Writes a text without hearing of it: a name that is refused as well would be put back without end.
  void PutText(const IVShapePtr& shape, std::string_view text);
  void ListenToPageDeleted(bool on);
  // Whether the shape is the next one of those that have come together.
  void FollowBurst(const IVShapePtr& added);
  void ModuleAdded(const IVShapePtr& shape, const std::string& kind);
  void OtherShapeAdded(const IVShapePtr& shape, const std::string& master);
  // Counts the page's modules without those that go, and those of all other pages when the registers are in doubt.
  void Recount(const IVPagePtr& page, const ShapeIndexes& goingAway);

  IVEventPtr pageDeletedEvent_;
  size_t advisedEvents_ = 0;
  bool pageDeletedIsOff_ = false;
  bool draining_ = false;
  bool puttingText_ = false;
  // A module could not be entered, or one that went not be taken out. The next module that comes or goes brings all in order.
  bool registersInDoubt_ = false;
  // What was mended in each open drawing, by its ID, if it has been looked at.
  std::map<int, std::vector<MendedRegister>> mended_;

  // Shapes that are pasted together are all there before the first of them is told of, and are told of from the lowest one on.
  struct Burst {
    int page = 0, shapes = 0, last = 0;  // its ID, how many shapes it has, and the position of the one told of last
    NamesInUse names;
  };
  Burst burst_;
};

}  // namespace vardo
