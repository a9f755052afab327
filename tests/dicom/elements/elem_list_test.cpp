#include "dicom/elem_list.h"

#include <algorithm>
#include <array>

#include "dicom/cmd.h"
#include "toolkit_test_tools.h"

namespace quillon::test {
namespace {

using ElementList = ToolkitTest;

std::vector<DcTag> tagsOf(const DcElemList& list) {
  std::vector<DcTag> tags;
  for (std::size_t i = 0; i < list.size(); ++i) tags.push_back(list.at(i)->tag());
  return tags;
}

TEST_F(ElementList, ElementsStandInTagOrderHoweverTheyCome) {
  const std::vector<DcTag> ascending{0x00080016, 0x00080018, 0x00100010, 0x00100020, 0x80010010};
  std::vector<std::size_t> order{0, 1, 2, 3, 4};
  do {
    DcElemList list;
    for (const std::size_t i : order) list.add(elem(ascending[i]));
    ASSERT_EQ(tagsOf(list), ascending);
    for (std::size_t i = 0; i < ascending.size(); ++i) {
      ASSERT_EQ(list.position(ascending[i]), static_cast<int>(i));
    }
  } while (std::next_permutation(order.begin(), order.end()));
}

TEST_F(ElementList, ASecondElementOfATagReplacesTheFirst) {
  DcElemList list;
  list.add(elem(0x00100010, "First"));
  list.add(elem(0x00100020, "ID"));
  DcElem* const second = list.add(elem(0x00100010, "Second"));
  EXPECT_EQ(logged(), "Element (0010,0010) added again, previous instance deleted");
  EXPECT_EQ(lastFunction(), "DcElemList::add");
  EXPECT_EQ(list.find(0x00100010), second);
  // At the end as well.
  list.add(elem(0x00100020, "Other"));
  EXPECT_EQ(list.add(nullptr), nullptr);
  EXPECT_EQ(describe(list), "00100010 PN Second\n00100020 LO Other");
}

TEST_F(ElementList, WhatIsNotThereHasACodeOfItsOwn) {
  DcElemList list;
  list.add(elem(0x00100010, "Name"));
  DcElem* element = list.at(0);
  EXPECT_EQ(list.getElem(0x00100020, &element), 0x1802U);
  EXPECT_EQ(element, nullptr);
  EXPECT_EQ(list.position(0x00100020), -1);
  std::array<char, 8> buffer{'o', 'l', 'd', 0};
  EXPECT_EQ(list.getValue(0x00100020, buffer.data(), buffer.size()), 0x1802U);
  EXPECT_STREQ(buffer.data(), "");
  EXPECT_EQ(list.getValue(0x00100010, buffer.data(), buffer.size()), kDcOk);
  EXPECT_STREQ(buffer.data(), "Name");
  std::uint16_t us = 0;
  std::int32_t l = 0;
  std::uint32_t ul = 0;
  DcUid uid{};
  DcElemValueBuf segment;
  EXPECT_EQ(list.getValue(0x00280010, us), 0x1802U);
  EXPECT_EQ(list.getValue(0x00280010, l), 0x1802U);
  EXPECT_EQ(list.getValue(0x00280010, ul), 0x1802U);
  EXPECT_EQ(list.getValue(0x00080016, uid), 0x1802U);
  EXPECT_EQ(list.getValue(kPixelData, segment), 0x1802U);
  DcElemSq* sequence = nullptr;
  EXPECT_EQ(list.getElem(0x00081140, &sequence), 0x1802U);
  EXPECT_EQ(logged(), "");
  EXPECT_EQ(list.getElem(0x00100010, &sequence), 0x1625U);
  EXPECT_EQ(sequence, nullptr);
  EXPECT_EQ(logged(), "Element 0x00100010 is not a Sequence");
  EXPECT_EQ(list.getElem(0x00100010, static_cast<DcElemSq**>(nullptr)), 0x1606U);
  EXPECT_EQ(list.getElem(0x00100010, static_cast<DcElem**>(nullptr)), 0x1606U);
  EXPECT_EQ(list.at(0)->getValue(static_cast<char*>(nullptr), 8), 0x1606U);
  EXPECT_EQ(logged(), "Null argument passed\nNull argument passed\nNull argument passed");
}

TEST_F(ElementList, RemovingAGroupCostsNoQuadraticTime) {
  // Removing one by one would move 90 gigabytes.
  constexpr DcTag kOfGroup = 60'000;
  constexpr DcTag kBehind = 190'000;
  std::vector<std::unique_ptr<DcElem>> elements;
  elements.push_back(elem(0x0002FFFF));
  for (DcTag i = 0; i < kOfGroup; ++i) elements.push_back(elem(0x00040000 + i));
  for (DcTag i = 0; i < kBehind; ++i) elements.push_back(elem(0x00060000 + i));
  DcElemList list;
  list.addAll(std::move(elements));
  list.removeGroup(0x0004);
  list.removeGroup(0x0005);
  ASSERT_EQ(list.size(), 1U + kBehind);
  EXPECT_EQ(list.at(0)->tag(), 0x0002FFFFU);
  EXPECT_EQ(list.at(1)->tag(), 0x00060000U);
}

TEST_F(ElementList, SequencesAreFoundAsSuch) {
  DcElemList list;
  auto given = sequenceOf(0x00081140, itemWith(elem(0x00081155, "1.2")), itemWith());
  EXPECT_EQ(given->addItem(nullptr), nullptr);
  const DcElem* const added = list.add(std::move(given));
  DcElemSq* found = nullptr;
  ASSERT_EQ(list.getElem(0x00081140, &found), kDcOk);
  EXPECT_EQ(found, added);
  EXPECT_EQ(describe(list), "00081140 SQ\n>item\n>00081155 UI 1.2\n>item");
  // A tag that is flagged as a sequence, but is none.
  list.add(std::make_unique<DcElem>(0x00081199, nullptr, 0, kExplicit, DcVr::SQ, true));
  EXPECT_EQ(list.getElem(0x00081199, &found), 0x1625U);
}

TEST_F(ElementList, ASequenceUnderAStandardTagOfAnotherVrIsWarnedAbout) {
  const struct {
    DcTag tag;
    DcVr vr;
    const char* message;
  } cases[] = {{0x00081140, DcVr::IM, ""},
               {kPrivate, DcVr::IM, ""},
               {0x00100010, DcVr::SQ, ""},
               {0x00100010, DcVr::IM, "Element 0x00100010 is not of type SQ"},
               {0x00100011, DcVr::IM, "Element 0x00100011 is not of type SQ"}};
  for (const auto& c : cases) {
    const DcElemSq sequence(c.tag, c.vr);
    EXPECT_EQ(sequence.resolvedVr(), DcVr::SQ);
    EXPECT_TRUE(sequence.isSequence());
    EXPECT_EQ(logged(), c.message);
  }
}

TEST_F(ElementList, RemovingUnlinksThisVeryElement) {
  DcElemList list;
  DcElem* const name = list.add(elem(0x00100010, "Name"));
  list.add(elem(0x00100020, "ID"));
  DcElem stranger(0x00100010);
  EXPECT_EQ(list.remove(&stranger), nullptr);
  EXPECT_EQ(list.remove(nullptr), nullptr);
  EXPECT_EQ(list.size(), 2U);
  const std::unique_ptr<DcElem> removed = list.remove(name);
  EXPECT_EQ(removed.get(), name);
  EXPECT_EQ(tagsOf(list), std::vector<DcTag>{0x00100020});
}

TEST_F(ElementList, ACommandTakesTheElementsOfAnotherList) {
  DcCmd command;
  command.add(elem(0x00000002, "1.2.840.10008.1.1"));
  command.add(elem(0x00000600, "OLD"));
  auto other = std::make_unique<DcElemList>();
  other->add(elem(0x00000600, "NEW"));
  other->add(elem(0x00000001, "7"));
  command.add(std::move(other));
  EXPECT_EQ(describe(command), "00000001 UL 7\n00000002 UI 1.2.840.10008.1.1\n00000600 AE NEW");
  EXPECT_EQ(logged(), "Element (0000,0600) added again, previous instance deleted");
  command.add(std::unique_ptr<DcElemList>());
  EXPECT_EQ(logged(), "Null argument passed for element list");
  EXPECT_EQ(lastFunction(), "DcCmd::add");
  EXPECT_EQ(command.size(), 3U);
}

TEST_F(ElementList, AllIteratorsAreReset) {
  DcElemList list;
  DcElem* const outer = list.add(elem(0x00080008, "A\\B"));
  auto item = itemWith(elem(0x00080008, "C\\D"));
  DcElem* const inner = item->at(0);
  list.add(sequenceOf(0x00081140, std::move(item)));
  int position = 0;
  for (DcElem* const element : {outer, inner}) EXPECT_EQ(element->nextPosition(position), kDcOk);
  list.resetIterators();
  for (DcElem* const element : {outer, inner}) {
    EXPECT_EQ(element->nextPosition(position), kDcOk);
    EXPECT_EQ(position, 1);
  }
}

TEST_F(ElementList, TheHookReachesOnlyElementsAddedAfterwards) {
  static_cast<void>(dcSetValueChecking(false));
  DcElemList lenient;
  static_cast<void>(dcSetValueChecking(true));
  DcElemList strict;
  DcElem* const before = lenient.add(elem(0x00100030));
  lenient.setStringHook({});
  DcElem* const after = lenient.add(elem(0x00100032, DcVr::DA));
  DcElem* const checked = strict.add(elem(0x00100030));
  EXPECT_EQ(before->addValue("19990229"), kDcOk);
  EXPECT_EQ(after->addValue("19990229"), 0x4402U);
  EXPECT_EQ(checked->addValue("19990229"), 0x4402U);
}

}  // namespace
}  // namespace quillon::test
