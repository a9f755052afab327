// The order in which studies, series and objects stand in a file set.
#pragma once

#include <vector>

#include "fileset/dicom_dir_processor.h"

namespace quillon {

// What came first stands first.
template <typename Item, typename List>
std::vector<const Item*> AsAdded(const List& list) {
  std::vector<const Item*> items;
  items.reserve(list.GetCount());
  for (std::size_t i = 0; i < list.GetCount(); ++i) items.push_back(list.At(i));
  return items;
}

// The order that people look for, whatever order the files came in: studies by date and time,
// series by number, objects by Instance Number, and what is equal in that by UID. What says nothing
// stands last.
std::vector<const CStudy*> InOrder(const CStudyList& studies);
std::vector<const CSeries*> InOrder(const CSeriesList& series);
std::vector<const CDicomObjectProperties*> InOrder(const CDicomObjectList& objects);

// The order that the options ask for.
template <typename Item, typename List>
std::vector<const Item*> Ordered(const List& list, const FileSetOptions& options) {
  return options.currentPractice ? InOrder(list) : AsAdded<Item>(list);
}

}  // namespace quillon
