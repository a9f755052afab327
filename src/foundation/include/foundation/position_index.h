// Finds the items of a list by a hash of what they are known by. It holds no more than hashes and
// positions: some ten bytes an item.
#pragma once

#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

namespace quillon {

class PositionIndex {
 public:
  static constexpr std::uint32_t kNone = UINT32_MAX;

  // The position that was entered with this hash and that is(position) answers true for, else
  // kNone.
  template <typename Is>
  [[nodiscard]] std::uint32_t Find(std::size_t hash, Is is) const {
    if (slots_.empty()) return kNone;
    const std::uint32_t folded = Folded(hash);
    for (std::size_t at = HomeOf(folded); slots_[at].position != kNone; at = Behind(at)) {
      if (slots_[at].hash == folded && is(slots_[at].position)) return slots_[at].position;
    }
    return kNone;
  }
  // Of a position that is not in it, and below kNone. Without memory (it throws) the index is what
  // it was.
  void Add(std::size_t hash, std::uint32_t position) {
    if (count_ + 1 > slots_.size() / 8 * 7) Grow();
    Put({Folded(hash), position});
    ++count_;
  }
  // Takes it out if it is in it.
  void Remove(std::uint32_t position) {
    for (std::size_t at = 0; at < slots_.size(); ++at) {
      if (slots_[at].position == position) return Empty(at);
    }
  }
  void Clear() {
    slots_ = {};
    count_ = 0;
  }
  [[nodiscard]] std::size_t size() const { return count_; }

 private:
  struct Slot {
    std::uint32_t hash = 0;
    std::uint32_t position = kNone;  // none: it is free
  };
  static constexpr std::size_t kFewestSlots = 8;  // always a power of two

  static std::uint32_t Folded(std::size_t hash) {
    const std::uint64_t wide = hash;
    return static_cast<std::uint32_t>(wide ^ (wide >> 32));
  }
  [[nodiscard]] std::size_t HomeOf(std::uint32_t hash) const { return hash & (slots_.size() - 1); }
  [[nodiscard]] std::size_t Behind(std::size_t at) const { return (at + 1) & (slots_.size() - 1); }

  void Put(const Slot& slot) {
    std::size_t at = HomeOf(slot.hash);
    while (slots_[at].position != kNone) at = Behind(at);
    slots_[at] = slot;
  }
  void Grow() {
    std::vector<Slot> larger(slots_.empty() ? kFewestSlots : slots_.size() * 2);
    const std::vector<Slot> old = std::exchange(slots_, std::move(larger));
    for (const Slot& slot : old) {
      if (slot.position != kNone) Put(slot);
    }
  }
  // What stands behind it and would not be found across the gap moves up.
  void Empty(std::size_t gap) {
    --count_;
    const std::size_t mask = slots_.size() - 1;
    for (std::size_t at = Behind(gap); slots_[at].position != kNone; at = Behind(at)) {
      if (((at - HomeOf(slots_[at].hash)) & mask) < ((at - gap) & mask)) continue;
      slots_[gap] = slots_[at];
      gap = at;
    }
    slots_[gap] = Slot();
  }

  std::vector<Slot> slots_;
  std::size_t count_ = 0;
};

}  // namespace quillon
