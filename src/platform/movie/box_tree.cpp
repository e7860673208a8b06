#include "platform/movie/box_tree.h"

#include <QtGlobal>
#include <algorithm>
#include <array>
#include <string>
#include <utility>

namespace vantrel {
namespace {

constexpr std::array kParents = {fourCC("moov"), fourCC("trak"), fourCC("edts"),
                                 fourCC("mdia"), fourCC("minf"), fourCC("stbl")};

}  // namespace

BoxTree BoxTree::parse(const BoxView& box) {
  BoxTree tree{box.type, {}, {}};
  // No parent stands within one of its own type: that limits the depth.
  const auto level = std::find(kParents.begin(), kParents.end(), box.type);
  if (level == kParents.end()) {
    tree.payload.assign(box.payload.begin(), box.payload.end());
    return tree;
  }
  std::span<const uint8_t> rest = box.payload;
  while (const std::optional<BoxView> child = takeBox(rest)) {
    const auto inner = std::find(kParents.begin(), kParents.end(), child->type);
    if (inner <= level)
      throw DamagedBoxes(QT_TRANSLATE_NOOP("Failure", "The movie header is damaged"));
    tree.children.push_back(parse(*child));
  }
  if (!rest.empty())
    throw DamagedBoxes(QT_TRANSLATE_NOOP("Failure", "The movie header is damaged"));
  return tree;
}

void BoxTree::write(BoxWriter& writer) const {
  writer.begin(type);
  writer.append(payload);
  for (const BoxTree& each : children)
    each.write(writer);
  writer.end();
}

uint64_t BoxTree::size() const {
  uint64_t sum = BoxHeader::kShortSize + payload.size();
  for (const BoxTree& each : children)
    sum += each.size();
  return sum;
}

BoxTree* BoxTree::child(uint32_t childType) {
  const auto found = std::find_if(children.begin(), children.end(),
                                  [childType](const auto& each) { return each.type == childType; });
  return found == children.end() ? nullptr : &*found;
}

BoxTree& BoxTree::need(uint32_t childType) {
  BoxTree* found = child(childType);
  if (!found) throw DamagedBoxes(QT_TRANSLATE_NOOP("Failure", "The movie header is incomplete"));
  return *found;
}

void BoxTree::remove(uint32_t childType) {
  std::erase_if(children, [childType](const BoxTree& each) { return each.type == childType; });
}

void BoxTree::insertBehind(uint32_t after, BoxTree box) {
  auto place = std::find_if(children.begin(), children.end(),
                            [after](const BoxTree& each) { return each.type == after; });
  place = place == children.end() ? children.begin() : place + 1;
  children.insert(place, std::move(box));
}

}  // namespace vantrel
