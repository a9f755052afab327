#include "foundation/base_item.h"

#include "foundation/base_list.h"
#include "foundation_test_support.h"
#include "support/system_sentence.h"

namespace quillon {
namespace {

using test::ErrorOf;
using test::Plain;
using test::systemSentence;
using test::WideOf;

constexpr UINT kNoSuchMessage = 65000;
constexpr DWORD kCodeWithoutText = 0x2FFFFFFF;

TEST(ErrorMessage, ComesFromTheTableAndIsFilledIn) {
  CBaseItem item;
  const struct {
    UINT id;
    std::initializer_list<TextArg> args;
    std::string expected;
  } cases[] = {
      {55028, {OLESTR("a"), OLESTR("b")}, "Cannot rename a to b."},
      {55028, {OLESTR("a")}, "Cannot rename a to ."},
      {55000, {OLESTR("unused")}, "The source filename is invalid."},
      {1911,
       {OLESTR("1"), OLESTR("2"), OLESTR("3"), OLESTR("4"), OLESTR("5")},
       "Cannot add the image 1 to the series 2 in the study 3 for the patient 4 from 5."},
      {820, {OLESTR("http://a")}, "Cannot load the current XML document from \"http://a.\""},
      {801, {OLESTR("CStorage"), OLESTR("Open")}, "CStorage::Open failed for this reason:  "},
      {kNoSuchMessage, {OLESTR("a")}, ""},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.id);
    EXPECT_FALSE(item.Fail(c.id, c.args));
    EXPECT_EQ(ErrorOf(item), c.expected);
  }
  item.SetErrorMessage(UINT{55042});
  EXPECT_EQ(ErrorOf(item), "The operation failed.");
  item.SetErrorMessage(kNoSuchMessage);
  EXPECT_EQ(ErrorOf(item), "");
}

TEST(ErrorMessage, IsCutAtItsLimitAndStartsUncut) {
  CBaseItem item;
  const Text name(3000, OLESTR('n'));
  item.SetErrorMessage(kMsgCannotDeleteFile, {name});
  EXPECT_EQ(item.ErrorMessage(), (OLESTR("Cannot delete the file ") + name).substr(0, 1024));
  Text out;
  item.FormatClassMessage(out, kMsgMethodFailed, name, OLESTR("Open"));
  EXPECT_EQ(out, name.substr(0, 2048));
}

TEST(ErrorMessage, OfTheLastSystemErrorIsOneSentence) {
  CBaseItem item;
  const std::pair<DWORD, std::string> cases[] = {
      {ERROR_ACCESS_DENIED, systemSentence(ERROR_ACCESS_DENIED, "Access is denied.")},
      {ERROR_SUCCESS, "The operation failed."},
      {kCodeWithoutText, ""},
  };
  for (const auto& [code, expected] : cases) {
    SCOPED_TRACE(code);
    SetLastError(code);
    EXPECT_TRUE(item.SetErrorFromLastError());
    EXPECT_EQ(ErrorOf(item), expected);
  }
}

TEST(ErrorMessage, ComposesClassMessagesAndSystemTexts) {
  CBaseItem item;
  Text out = OLESTR("old");
  item.FormatClassMessage(out, kMsgMethodThrew, OLESTR("CStorage"), {});
  EXPECT_EQ(Plain(out), "CStorage:: threw an exception for this reason:  ");
  item.FormatClassMessage(out, kNoSuchMessage, OLESTR("CStorage"), OLESTR("Open"));
  EXPECT_EQ(Plain(out), "The operation failed.");

  out = OLESTR("old ");
  EXPECT_TRUE(item.AppendSystemText(out, ERROR_DIR_NOT_EMPTY, {}));
  EXPECT_EQ(Plain(out),
            "old " + systemSentence(ERROR_DIR_NOT_EMPTY, "The directory is not empty."));
  EXPECT_TRUE(item.AppendSystemText(out, ERROR_DISK_FULL, OLESTR("new ")));
  EXPECT_EQ(Plain(out),
            "new " + systemSentence(ERROR_DISK_FULL, "There is not enough space on the disk."));
  EXPECT_TRUE(item.AppendSystemText(out, kCodeWithoutText, OLESTR("only")));
  EXPECT_EQ(Plain(out), "only");
}

TEST(ErrorMessage, TellsReasonsFromTextsThatGiveNone) {
  const struct {
    Text text;
    bool isSuccess;
    bool isFailure;
  } cases[] = {
      {OLESTR(""), true, true},
      {OLESTR(" \r\n"), true, true},
      {OLESTR("The operation succeeded."), true, false},
      {WideOf(systemSentence(ERROR_SUCCESS, "The operation completed successfully.") + "\r\n"),
       true, false},
      {OLESTR(" The operation failed. "), false, true},
      {OLESTR("Unknown error #"), false, true},
      {OLESTR("IDispatch error #"), false, true},
      {OLESTR("IDispatch error #5"), false, false},
      {OLESTR("Unknown error 0x80041234"), false, false},
      {OLESTR("the operation failed."), false, false},
      {OLESTR("The operation failed. The disc is gone."), false, false},
      {OLESTR("Access is denied."), false, false},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(Plain(c.text));
    EXPECT_EQ(CBaseItem::IsSuccessText(c.text), c.isSuccess);
    EXPECT_EQ(CBaseItem::IsFailureText(c.text), c.isFailure);
    EXPECT_EQ(CBaseItem::IsUninformativeText(c.text), c.isSuccess || c.isFailure);
  }
}

TEST(ErrorMessage, SaysWhereItCameFromWhenDetailed) {
  const struct {
    const char* what;
    bool detailed;
    Text file;
    Text method;
    int line;
    Text text;
    std::string expected;
  } cases[] = {
      {"everything", true, OLESTR("f.cpp"), OLESTR("Open"), 12, OLESTR("x"),
       "Line: 12\nMethod: Open\nFile: f.cpp\nx\n"},
      {"text alone", true, OLESTR(""), OLESTR(""), 0, OLESTR("x"), "x\n"},
      {"no text", true, OLESTR("f.cpp"), OLESTR(""), -1, OLESTR(""), "File: f.cpp\n"},
      {"nothing", true, OLESTR(""), OLESTR(""), 0, OLESTR(""), ""},
      {"not detailed", false, OLESTR("f.cpp"), OLESTR("Open"), 12, OLESTR("x"), "x"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    CBaseItem item;
    item.SetDetailedMessages(c.detailed);
    EXPECT_TRUE(item.SetErrorLocation(c.file, c.method, c.line, c.text));
    EXPECT_EQ(ErrorOf(item), c.expected);
  }
}

TEST(BaseItem, TakesAndCopiesAllButEmptyNames) {
  CBaseItem from;
  from.SetErrorMessage(OLESTR("new"));
  from.SetItemValue(7);
  from.SetDetailedMessages(false);
  CBaseItem to;
  to.SetClassName(OLESTR("CKept"));
  to.SetItemText(OLESTR("\t kept \r\n"));
  EXPECT_FALSE(to.SetClassName({}));
  EXPECT_FALSE(to.SetItemText(OLESTR("  ")));
  to.SetErrorMessage(OLESTR("old"));
  to = from;
  Text text;
  to.GetItemText(text);
  EXPECT_EQ(Plain(text), "kept");
  EXPECT_EQ(Plain(to.ClassName()), "CKept");
  EXPECT_EQ(ErrorOf(to), "new");
  EXPECT_EQ(to.GetItemValue(), 7u);
  to.SetErrorLocation(OLESTR("f"), OLESTR("m"), 1, OLESTR("x"));
  EXPECT_EQ(ErrorOf(to), "x");
  EXPECT_EQ(ErrorOf(CBaseItem(from)), "new");
}

class Counted : public CBaseItem {
 public:
  explicit Counted(std::uint32_t value, int* alive) : alive_(alive) {
    SetItemValue(value);
    ++*alive_;
  }
  ~Counted() override { --*alive_; }

 private:
  int* alive_;
};

TEST(BaseList, KeepsOrderAndRefusesNull) {
  COwningList<Counted> list;
  int alive = 0;
  EXPECT_FALSE(list.Add(nullptr));
  EXPECT_EQ(list.GetCount(), 0u);
  for (std::uint32_t value : {21, 11, 22, 12}) EXPECT_TRUE(list.Add(new Counted(value, &alive)));
  EXPECT_EQ(list.GetAt(4), nullptr);

  const auto byUnits = [](const CBaseItem& a, const CBaseItem& b) {
    return a.GetItemValue() % 10 < b.GetItemValue() % 10;
  };
  list.Sort(nullptr, true);
  list.Sort(byUnits, true);
  std::vector<std::uint32_t> order;
  for (std::size_t i = 0; i < list.GetCount(); ++i) order.push_back(list.At(i)->GetItemValue());
  EXPECT_EQ(order, (std::vector<std::uint32_t>{21, 11, 22, 12}));

  const auto byValue = [](const CBaseItem& a, const CBaseItem& b) {
    return a.GetItemValue() < b.GetItemValue();
  };
  list.Sort(byValue, /*stable=*/false);
  for (std::size_t i = 1; i < list.GetCount(); ++i) {
    EXPECT_LT(list.At(i - 1)->GetItemValue(), list.At(i)->GetItemValue());
  }
  while (list.GetCount() > 1) list.RemoveLast();
  list.Sort([](const CBaseItem&, const CBaseItem&) { return ADD_FAILURE(), false; }, true);

  list.RemoveAll();
  EXPECT_EQ(alive, 0);
  EXPECT_EQ(list.GetCount(), 0u);
}

TEST(BaseList, DestroysItemsOnlyWhenItOwnsThem) {
  int alive = 0;
  Counted item(1, &alive);
  {
    CBaseList forgets;
    EXPECT_TRUE(forgets.Add(&item));
    forgets.RemoveAll();
    EXPECT_EQ(forgets.GetCount(), 0u);
    EXPECT_TRUE(forgets.Add(&item));
    COwningList<Counted> owns;
    EXPECT_TRUE(owns.Add(new Counted(2, &alive)));
    EXPECT_EQ(alive, 2);
  }
  EXPECT_EQ(alive, 1);
}

}  // namespace
}  // namespace quillon
