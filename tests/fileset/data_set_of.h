// A data set of a few texts.
#pragma once

#include <memory>
#include <vector>

#include "dicom/elem_list.h"

namespace quillon::test {

struct Element {
  DcTag tag;
  const char* value;
};

inline DcElemList dataSetOf(const std::vector<Element>& elements) {
  DcElemList list;
  for (const Element& element : elements) {
    list.add(std::make_unique<DcElem>(element.tag, element.value));
  }
  return list;
}

}  // namespace quillon::test
