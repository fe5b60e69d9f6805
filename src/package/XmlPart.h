// One XML part of a package as a tree that writes itself back as it was read.
#pragma once

#include "package/Deflate.h"

#include <pugixml.hpp>

#include <cstdint>
#include <string>
#include <string_view>

namespace vardo {

// The tree is edited through root() and pugixml; whoever does gives the part a new state. Values are UTF-8 without escapes. Line
// breaks in element text are as in the file, mostly CR LF; readers take CR LF, CR and LF as one line break. A raw line break in
// an attribute is a space, as XML has it.
//
// Serialise gives back the bytes read, but for what means nothing in XML: white space within tags, mixed quotes, <x></x> for
// <x/>, references where a plain character does. Parts written by Visio come back byte for byte.
class XmlPart {
 public:
  // Throws FileError, naming the file and the part, when the text is none that CheckXml takes, or when the drawing, whose other
  // parts take that many bytes already, exceeds kMaxMemoryBytes; and std::bad_alloc.
  XmlPart(const std::string& file, std::string name, ByteArray text, std::uint64_t memoryOfOthers = 0);
  XmlPart(const XmlPart&) = delete;
  XmlPart& operator=(const XmlPart&) = delete;

  const std::string& name() const { return name_; }
  // What the text and the tree take as they were read, in bytes.
  std::uint64_t memory() const { return memory_; }
  // The root element; good as long as the part.
  pugi::xml_node root() { return root_; }

  // Which of its contents the part holds: whoever edits the tree gives it a new state, and the old one back with the old content.
  std::uint64_t state() const { return state_; }
  void SetState(std::uint64_t state) { state_ = state; }
  // Whether the content is another than the one last saved.
  bool changed() const { return state_ != savedState_; }
  void MarkSaved() { savedState_ = state_; }

  // What stands around the root element verbatim, its attributes' kind of quotes, no white space added. Control characters, which
  // XML cannot hold, are left out.
  std::string Serialise() const;
  // One element of the part, written the same way.
  std::string Serialise(pugi::xml_node element) const;

 private:
  std::string name_, prolog_, epilog_;
  ByteArray text_;  // parsed in place: the tree points into it
  std::uint64_t memory_ = 0;
  pugi::xml_document document_;
  pugi::xml_node root_;
  char quote_ = '"';
  bool carriageReturnReferences_ = false;
  std::uint64_t state_ = 0, savedState_ = 0;
};

}  // namespace vardo
