#include "dicom/elem_list.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <memory>
#include <string>
#include <vector>

#include "dicom/cmd.h"
#include "dicom/elem_sq.h"
#include "dir_test_tools.h"

namespace quillon {
namespace {

using test::LoggedLines;
using Lines = std::vector<std::string>;

std::vector<DcTag> tagsOf(const DcElemList& list) {
  std::vector<DcTag> tags;
  for (std::size_t i = 0; i < list.size(); ++i) tags.push_back(list.at(i)->tag());
  return tags;
}

std::string textOf(const DcElemList& list, DcTag tag) {
  std::array<char, 128> buffer{};
  EXPECT_EQ(list.getValue(tag, buffer.data(), buffer.size()), kDcOk);
  return buffer.data();
}

std::unique_ptr<DcElem> text(DcTag tag, const char* value) {
  return std::make_unique<DcElem>(tag, value);
}

TEST(ElementList, ElementsStandInTagOrderHoweverTheyCome) {
  const std::vector<DcTag> ascending{0x00080016, 0x00080018, 0x00100010, 0x00100020, 0x80010010};
  std::vector<std::size_t> order{0, 1, 2, 3, 4};
  do {
    DcElemList list;
    for (const std::size_t i : order) list.add(std::make_unique<DcElem>(ascending[i]));
    ASSERT_EQ(tagsOf(list), ascending);
    for (std::size_t i = 0; i < ascending.size(); ++i) {
      ASSERT_EQ(list.position(ascending[i]), static_cast<int>(i));
    }
  } while (std::next_permutation(order.begin(), order.end()));
}

TEST(ElementList, ASecondElementOfATagReplacesTheFirst) {
  LoggedLines log;
  DcElemList list;
  list.add(text(0x00100010, "First"));
  list.add(text(0x00100020, "ID"));
  DcElem* const second = list.add(text(0x00100010, "Second"));
  EXPECT_EQ(log.take(), Lines{"Element (0010,0010) added again, previous instance deleted"});
  EXPECT_EQ(log.lastFunction(), "DcElemList::add");
  EXPECT_EQ(list.size(), 2U);
  EXPECT_EQ(list.find(0x00100010), second);
  EXPECT_EQ(textOf(list, 0x00100010), "Second");
  // At the end as well.
  list.add(text(0x00100020, "Other"));
  EXPECT_EQ(list.size(), 2U);
  EXPECT_EQ(textOf(list, 0x00100020), "Other");
  EXPECT_EQ(list.add(nullptr), nullptr);
  EXPECT_EQ(list.size(), 2U);
}

TEST(ElementList, WhatIsNotThereHasACodeOfItsOwn) {
  LoggedLines log;
  DcElemList list;
  list.add(text(0x00100010, "Name"));
  DcElem* element = list.at(0);
  EXPECT_EQ(list.getElem(0x00100020, &element), 0x1802U);
  EXPECT_EQ(element, nullptr);
  EXPECT_EQ(list.position(0x00100020), -1);
  std::array<char, 8> buffer{'o', 'l', 'd', 0};
  EXPECT_EQ(list.getValue(0x00100020, buffer.data(), buffer.size()), 0x1802U);
  EXPECT_STREQ(buffer.data(), "");
  std::uint16_t us = 0;
  std::int32_t l = 0;
  std::uint32_t ul = 0;
  DcUid uid{};
  DcElemValueBuf segment;
  EXPECT_EQ(list.getValue(0x00280010, us), 0x1802U);
  EXPECT_EQ(list.getValue(0x00280010, l), 0x1802U);
  EXPECT_EQ(list.getValue(0x00280010, ul), 0x1802U);
  EXPECT_EQ(list.getValue(0x00080016, uid), 0x1802U);
  EXPECT_EQ(list.getValue(0x7FE00010, segment), 0x1802U);
  DcElemSq* sequence = nullptr;
  EXPECT_EQ(list.getElem(0x00081140, &sequence), 0x1802U);
  EXPECT_EQ(log.take(), Lines{});
  EXPECT_EQ(list.getElem(0x00100010, &sequence), 0x1625U);
  EXPECT_EQ(sequence, nullptr);
  EXPECT_EQ(log.take(), Lines{"Element 0x00100010 is not a Sequence"});
  EXPECT_EQ(list.getElem(0x00100010, static_cast<DcElemSq**>(nullptr)), 0x1606U);
  EXPECT_EQ(log.take(), Lines{"Null argument passed"});
}

TEST(ElementList, SequencesAreFoundAsSuch) {
  LoggedLines log;
  DcElemList list;
  auto* const added = static_cast<DcElemSq*>(list.add(std::make_unique<DcElemSq>(0x00081140)));
  auto item = std::make_unique<DcElemSqItem>();
  item->add(text(0x00081155, "1.2"));
  DcElemSqItem* const first = added->addItem(std::move(item));
  DcElemSqItem* const second = added->addItem(std::make_unique<DcElemSqItem>());
  EXPECT_EQ(added->addItem(nullptr), nullptr);
  DcElemSq* found = nullptr;
  ASSERT_EQ(list.getElem(0x00081140, &found), kDcOk);
  EXPECT_EQ(found, added);
  ASSERT_EQ(found->itemCount(), 2U);
  EXPECT_EQ(found->item(0), first);
  EXPECT_EQ(found->item(1), second);
  // A tag that is flagged as a sequence, but is none.
  list.add(std::make_unique<DcElem>(0x00081199, nullptr, 0, DcUid{173}, DcVr::SQ, true));
  EXPECT_EQ(list.getElem(0x00081199, &found), 0x1625U);
}

TEST(ElementList, ASequenceUnderAStandardTagOfAnotherVrIsWarnedAbout) {
  struct Case {
    const char* what;
    DcTag tag;
    DcVr vr;
    Lines lines;
  };
  const std::vector<Case> cases{
      {"sequence", 0x00081140, DcVr::IM, {}},
      {"private", 0x00091010, DcVr::IM, {}},
      {"VR given", 0x00100010, DcVr::SQ, {}},
      {"name", 0x00100010, DcVr::IM, {"Element 0x00100010 is not of type SQ"}},
      {"unknown", 0x00100011, DcVr::IM, {"Element 0x00100011 is not of type SQ"}},
  };
  LoggedLines log;
  for (const Case& c : cases) {
    SCOPED_TRACE(c.what);
    const DcElemSq sequence(c.tag, c.vr);
    EXPECT_EQ(sequence.resolvedVr(), DcVr::SQ);
    EXPECT_TRUE(sequence.isSequence());
    EXPECT_EQ(log.take(), c.lines);
  }
}

TEST(ElementList, RemovingUnlinksThisVeryElement) {
  DcElemList list;
  DcElem* const name = list.add(text(0x00100010, "Name"));
  list.add(text(0x00100020, "ID"));
  DcElem stranger(0x00100010);
  EXPECT_EQ(list.remove(&stranger), nullptr);
  EXPECT_EQ(list.remove(nullptr), nullptr);
  EXPECT_EQ(list.size(), 2U);
  const std::unique_ptr<DcElem> removed = list.remove(name);
  EXPECT_EQ(removed.get(), name);
  EXPECT_EQ(tagsOf(list), std::vector<DcTag>{0x00100020});
}

TEST(ElementList, ACommandTakesTheElementsOfAnotherList) {
  LoggedLines log;
  DcCmd command;
  command.add(text(0x00000002, "1.2.840.10008.1.1"));
  command.add(text(0x00000600, "OLD"));
  auto other = std::make_unique<DcElemList>();
  other->add(text(0x00000600, "NEW"));
  other->add(text(0x00000001, "7"));
  command.add(std::move(other));
  EXPECT_EQ(tagsOf(command), (std::vector<DcTag>{0x00000001, 0x00000002, 0x00000600}));
  EXPECT_EQ(textOf(command, 0x00000600), "NEW");
  EXPECT_EQ(log.take(), Lines{"Element (0000,0600) added again, previous instance deleted"});
  command.add(std::unique_ptr<DcElemList>());
  EXPECT_EQ(log.take(), Lines{"Null argument passed for element list"});
  EXPECT_EQ(log.lastFunction(), "DcCmd::add");
  EXPECT_EQ(command.size(), 3U);
}

TEST(ElementList, AllIteratorsAreReset) {
  DcElemList list;
  DcElem* const outer = list.add(text(0x00080008, "A\\B"));
  auto sequence = std::make_unique<DcElemSq>(0x00081140);
  auto item = std::make_unique<DcElemSqItem>();
  DcElem* const inner = item->add(text(0x00080008, "C\\D"));
  sequence->addItem(std::move(item));
  list.add(std::move(sequence));
  int position = 0;
  EXPECT_EQ(outer->nextPosition(position), kDcOk);
  EXPECT_EQ(inner->nextPosition(position), kDcOk);
  list.resetIterators();
  for (DcElem* const element : {outer, inner}) {
    EXPECT_EQ(element->nextPosition(position), kDcOk);
    EXPECT_EQ(position, 1);
  }
}

TEST(ElementList, TheHookReachesOnlyElementsAddedAfterwards) {
  LoggedLines log;
  dcSetValueChecking(false);
  DcElemList lenient;
  dcSetValueChecking(true);
  DcElemList strict;
  DcElem* const before = lenient.add(std::make_unique<DcElem>(0x00100030));
  lenient.setStringHook({});
  DcElem* const after = lenient.add(std::make_unique<DcElem>(0x00100032, DcVr::DA));
  DcElem* const checked = strict.add(std::make_unique<DcElem>(0x00100030));
  EXPECT_EQ(before->addValue("19990229"), kDcOk);
  EXPECT_EQ(after->addValue("19990229"), 0x4402U);
  EXPECT_EQ(checked->addValue("19990229"), 0x4402U);
}

}  // namespace
}  // namespace quillon
