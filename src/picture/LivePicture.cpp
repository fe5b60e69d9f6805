#include "picture/LivePicture.h"

#include "document/Drawing.h"
#include "picture/PageBuilder.h"

#include <algorithm>
#include <iterator>
#include <unordered_map>
#include <unordered_set>

namespace vardo::picture {
namespace {

// Sections whose cells nobody sees.
bool IsUnseen(const CellAddress& cell) {
  constexpr std::string_view kUnseen[] = {"Property", "User", "Connection", "Actions", "Hyperlink", "Scratch", "Control"};
  return cell.section && std::find(std::begin(kUnseen), std::end(kUnseen), cell.section->element) != std::end(kUnseen);
}

// The shape of the page that it is in.
int TopLevelOf(DrawingPage& page, int shape) {
  const DrawingShape* at = page.FindShape(shape);
  while (at && at->parent()) at = at->parent();
  return at ? at->id() : shape;
}

}  // namespace

LivePicture::LivePicture(Drawing& drawing, int pageId) : drawing_(drawing), pageId_(pageId) { BuildAll(); }
LivePicture::~LivePicture() = default;

DrawingPage& LivePicture::page() const { return *drawing_.FindPage(pageId_); }

void LivePicture::BuildAll() {
  builder_ = std::make_unique<PageBuilder>(drawing_);
  structure_ = drawing_.structure();
  picture_ = {};
  blocks_.clear();
  builder_->Begin(page(), picture_);
  background_ = picture_.slices.size();
  for (const DrawingShape* shape : page().TopLevel()) {
    const size_t first = picture_.slices.size();
    builder_->Add(*shape);
    blocks_.push_back({shape->id(), first, picture_.slices.size() - first});
  }
}

LivePicture::Change LivePicture::Touch(std::span<const TouchedCell> touched) {
  Change change;
  if (!drawing_.FindPage(pageId_)) return change;
  std::vector<int> shapes;
  bool places = false;
  for (const TouchedCell& one : touched) {
    if (IsUnseen(one.cell)) continue;
    const DrawingPage* const other = one.page == pageId_ ? nullptr : drawing_.FindPage(one.page);
    const bool behind = background_ > 0 && other && other->IsBackground();
    if (behind || (one.page == pageId_ && one.kind == SheetKind::Page)) {
      BuildAll();
      return {true};
    }
    if (one.page != pageId_) continue;
    shapes.push_back(TopLevelOf(page(), one.shape));
    places = places || one.cell == CellAddress();
  }
  if (shapes.empty()) return change;
  std::sort(shapes.begin(), shapes.end());
  shapes.erase(std::unique(shapes.begin(), shapes.end()), shapes.end());

  if (structure_ != drawing_.structure()) {
    // What has gone may be what the builder remembers.
    PagePicture begun;
    builder_ = std::make_unique<PageBuilder>(drawing_);
    builder_->Begin(page(), begun);
    structure_ = drawing_.structure();
  }
  const auto isInPlace = [](const DrawingShape* shape, const Block& block) { return shape->id() == block.shape; };
  const auto& topLevel = page().TopLevel();
  if (places && !std::equal(topLevel.begin(), topLevel.end(), blocks_.begin(), blocks_.end(), isInPlace)) {
    BringInOrder(shapes);
    return {true};
  }
  builder_->SetPicture(picture_);
  for (Block& block : blocks_)
    if (std::binary_search(shapes.begin(), shapes.end(), block.shape) && !Renew(block, change)) {
      BringInOrder(shapes);
      return {true};
    }
  return change;
}

void LivePicture::ForgetNotes(const Block& block) {
  std::unordered_set<int> shapes{block.shape};
  for (size_t i = block.first; i < block.first + block.count; ++i) shapes.insert(picture_.slices[i].shape);
  std::erase_if(picture_.notes, [&](const Note& note) { return shapes.contains(note.shape); });
}

// False when it has more or fewer slices than before; the picture is as it was then.
bool LivePicture::Renew(Block& block, Change& change) {
  const size_t end = picture_.slices.size();
  if (!picture_.notes.empty()) ForgetNotes(block);
  builder_->Add(*page().FindShape(block.shape));
  const bool asMany = picture_.slices.size() - end == block.count;
  for (size_t i = 0; asMany && i < block.count; ++i) {
    change.renewed.push_back({block.first + i, picture_.slices[block.first + i].box});
    picture_.slices[block.first + i] = std::move(picture_.slices[end + i]);
  }
  picture_.slices.resize(end);
  return asMany;
}

// What has not been touched is taken over.
void LivePicture::BringInOrder(const std::vector<int>& touched) {
  PagePicture before = std::move(picture_);
  std::unordered_map<int, Block> known;
  for (const Block& block : blocks_) known.emplace(block.shape, block);
  const auto from = [&](size_t slice) { return std::make_move_iterator(before.slices.begin() + static_cast<ptrdiff_t>(slice)); };

  picture_ = {before.name, before.width, before.height, before.scale, before.paper, {}, {}};
  picture_.slices.assign(from(0), from(background_));
  std::unordered_set<int> kept;
  blocks_.clear();
  builder_->SetPicture(picture_);
  for (const DrawingShape* shape : page().TopLevel()) {
    const size_t first = picture_.slices.size();
    const auto block = known.find(shape->id());
    if (block == known.end() || std::binary_search(touched.begin(), touched.end(), shape->id())) {
      builder_->Add(*shape);
    } else {
      picture_.slices.insert(picture_.slices.end(), from(block->second.first), from(block->second.first + block->second.count));
      for (size_t i = first; i < picture_.slices.size(); ++i) kept.insert(picture_.slices[i].shape);
    }
    blocks_.push_back({shape->id(), first, picture_.slices.size() - first});
  }
  for (Note& note : before.notes)
    if (note.shape == 0 || kept.contains(note.shape)) picture_.notes.push_back(std::move(note));
}

}  // namespace vardo::picture
