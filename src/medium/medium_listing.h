// Everything on a medium, gathered entry by entry: names that lead elsewhere are kept out, and
// there is an end of all.
#pragma once

#include <unordered_set>
#include <vector>

#include "medium/medium_source.h"

namespace quillon {

class MediumListing {
 public:
  static constexpr std::size_t kMostEntries = 1'000'000;
  static constexpr std::size_t kMostLevels = 64;

  // The first fault that is told is the one that stays in errors, which outlives this.
  explicit MediumListing(CBaseItem& errors) : errors_(errors) {}
  MediumListing(const MediumListing&) = delete;
  MediumListing& operator=(const MediumListing&) = delete;

  // Whether the entry of that name in a directory ("" for the root) was added: not one with a name
  // that is none, or that is there already, nor one too many. Says so.
  [[nodiscard]] bool Add(TextView directory, TextView name, MediumEntry::Kind kind,
                         std::uint64_t sizeBytes);
  // No more are taken.
  [[nodiscard]] bool IsFull() const { return isFull_; }
  [[nodiscard]] std::size_t Room() const { return kMostEntries - entries_.size(); }

  void Tell(UINT id, std::initializer_list<TextArg> args);
  [[nodiscard]] bool IsSound() const { return fault_.empty(); }
  // Puts the entries where List wants them, and says again what it said.
  [[nodiscard]] bool Answer(std::vector<MediumEntry>& entries) const;

  [[nodiscard]] const MediumEntry& At(std::size_t index) const { return entries_[index]; }
  [[nodiscard]] std::size_t Count() const { return entries_.size(); }
  // The index of the entry of that path; Count() for none.
  [[nodiscard]] std::size_t Find(TextView path) const;

  static Text Join(TextView directory, TextView name);

 private:
  // The entries by their paths, which stand in the entries alone.
  struct ByPath {
    using is_transparent = void;
    const std::vector<MediumEntry>* entries;
    [[nodiscard]] TextView PathOf(TextView path) const { return path; }
    [[nodiscard]] TextView PathOf(std::uint32_t index) const { return (*entries)[index].path; }
    std::size_t operator()(const auto& key) const { return std::hash<TextView>()(PathOf(key)); }
    bool operator()(const auto& a, const auto& b) const { return PathOf(a) == PathOf(b); }
  };

  CBaseItem& errors_;
  Text fault_;
  std::vector<MediumEntry> entries_;
  std::unordered_set<std::uint32_t, ByPath, ByPath> byPath_{0, ByPath{&entries_},
                                                            ByPath{&entries_}};
  std::size_t textUnits_ = 0;
  bool isFull_ = false;
};

}  // namespace quillon
