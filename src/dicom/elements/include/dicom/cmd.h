// The element list of a command set.
#pragma once

#include <memory>

#include "dicom/elem_list.h"

namespace quillon {

class DcCmd : public DcElemList {
 public:
  using DcElemList::add;
  // Moves every element of the list into this one, as add does one by one, and deletes the list.
  // Null is logged and changes nothing.
  void add(std::unique_ptr<DcElemList> list);
};

}  // namespace quillon
