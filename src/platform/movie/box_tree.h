#pragma once

#include <cstdint>
#include <span>
#include <stdexcept>
#include <vector>

#include "platform/movie/box_bytes.h"

namespace vantrel {

/// Boxes of a movie header make no sense. what() says which, for the user.
class DamagedBoxes final : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// A box of a movie header that can be changed. One that is made of boxes, down to the sample
/// tables, has them as `children`; any other has its bytes as `payload`.
struct BoxTree {
  uint32_t type = 0;
  std::vector<uint8_t> payload;
  std::vector<BoxTree> children;

  /// Throws DamagedBoxes.
  [[nodiscard]] static BoxTree parse(const BoxView& box);
  /// Appends the whole box.
  void write(BoxWriter& writer) const;
  /// Bytes of the whole box.
  [[nodiscard]] uint64_t size() const;

  /// The first child of this type; null if there is none.
  [[nodiscard]] BoxTree* child(uint32_t childType);
  /// The same, but throws DamagedBoxes if there is none.
  [[nodiscard]] BoxTree& need(uint32_t childType);
  void remove(uint32_t childType);
  /// Puts `box` behind the first child of the type `after`, or in front of all.
  void insertBehind(uint32_t after, BoxTree box);
};

}  // namespace vantrel
