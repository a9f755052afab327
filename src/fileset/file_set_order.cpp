#include "file_set_order.h"

#include <algorithm>
#include <compare>
#include <cstdint>
#include <limits>
#include <tuple>
#include <utility>

namespace quillon {

namespace {

constexpr OLECHAR kDot = OLESTR('.');

// A UID by its components as numbers.
struct UidKey {
  TextView uid;

  bool operator==(const UidKey& other) const { return uid == other.uid; }
  std::strong_ordering operator<=>(const UidKey& other) const {
    TextView left = uid;
    TextView right = other.uid;
    while (!left.empty() && !right.empty()) {
      const TextView a = left.substr(0, left.find(kDot));
      const TextView b = right.substr(0, right.find(kDot));
      if (a.size() != b.size()) return a.size() <=> b.size();
      if (a != b) return a < b ? std::strong_ordering::less : std::strong_ordering::greater;
      left.remove_prefix(std::min(a.size() + 1, left.size()));
      right.remove_prefix(std::min(b.size() + 1, right.size()));
    }
    return left.size() <=> right.size();
  }
};

// Of an integer string; what is none comes last.
std::int64_t NumberKey(TextView text) {
  constexpr std::int64_t kNone = std::numeric_limits<std::int64_t>::max();
  text = TrimmedView(text);
  const bool isNegative = text.starts_with(OLESTR('-'));
  if (isNegative || text.starts_with(OLESTR('+'))) text.remove_prefix(1);
  constexpr std::size_t kMostDigits = 18;
  if (text.empty() || text.size() > kMostDigits) return kNone;
  std::int64_t number = 0;
  for (const OLECHAR unit : text) {
    if (unit < OLESTR('0') || unit > OLESTR('9')) return kNone;
    number = number * 10 + (unit - OLESTR('0'));
  }
  return isNegative ? -number : number;
}

// An empty text comes last.
auto TextKey(TextView text) { return std::pair(text.empty(), text); }

// keyOf(item) is made once for each.
template <typename Item, typename List, typename KeyOf>
std::vector<const Item*> SortedBy(const List& list, KeyOf keyOf) {
  using Key = decltype(keyOf(std::declval<const Item&>()));
  std::vector<std::pair<Key, const Item*>> keyed;
  keyed.reserve(list.GetCount());
  for (const Item* item : AsAdded<Item>(list)) keyed.emplace_back(keyOf(*item), item);
  std::ranges::stable_sort(keyed, [](const auto& a, const auto& b) { return a.first < b.first; });
  std::vector<const Item*> items;
  items.reserve(keyed.size());
  for (const auto& [key, item] : keyed) items.push_back(item);
  return items;
}

}  // namespace

std::vector<const CStudy*> InOrder(const CStudyList& studies) {
  return SortedBy<CStudy>(studies, [](const CStudy& study) {
    return std::tuple(TextKey(study.StudyDate()), TextKey(study.StudyTime()),
                      UidKey{study.StudyInstanceUid()});
  });
}

std::vector<const CSeries*> InOrder(const CSeriesList& series) {
  return SortedBy<CSeries>(series, [](const CSeries& one) {
    return std::tuple(NumberKey(one.SeriesNumber()), UidKey{one.SeriesInstanceUid()});
  });
}

std::vector<const CDicomObjectProperties*> InOrder(const CDicomObjectList& objects) {
  return SortedBy<CDicomObjectProperties>(objects, [](const CDicomObjectProperties& object) {
    const CDicomImageProperties* image = object.ImageIfAny();
    return std::tuple(NumberKey(image == nullptr ? TextView() : TextView(image->InstanceNumber())),
                      UidKey{object.InstanceUid()});
  });
}

}  // namespace quillon
