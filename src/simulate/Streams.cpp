#include "simulate/Streams.h"

#include <Random123/philox.h>

namespace vardo {

RandomBlock PhiloxBlock(const RandomBlock& counter, const std::array<uint64_t, 2>& key) {
  const r123::Philox4x64::ctr_type at = {{counter[0], counter[1], counter[2], counter[3]}};
  const r123::Philox4x64::key_type with = {{key[0], key[1]}};
  const auto block = r123::Philox4x64()(at, with);
  return {block[0], block[1], block[2], block[3]};
}

void Stream::Fill(uint64_t attempt) {
  numbers_ = PhiloxBlock({block_, replication_, attempt, phase_}, {seed_, source_});
  left_ = 4;
}

}  // namespace vardo
