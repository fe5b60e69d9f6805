// The numbers of sources of randomness: they follow from where in the drawing something is drawn, so that nothing that is
// renamed, moved or added changes the draws of others.
#pragma once

#include <cstdint>

namespace vardo {

// A shape's page and ID, which of its fields, which call within the field, and who follows it when several do.
std::uint64_t SourceOf(std::uint64_t page, std::uint64_t shape, std::uint64_t field, std::uint64_t call, std::uint64_t user = 0);
// That of a stream that expressions name by its number, shared by all who name it.
std::uint64_t SourceOfNamedStream(std::uint64_t number);

}  // namespace vardo
