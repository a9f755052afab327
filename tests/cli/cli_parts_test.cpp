#include <gtest/gtest.h>

#include "json_output.h"
#include "label_dates.h"
#include "patient_key.h"
#include "root_guard.h"
#include "support/temp_dir.h"

namespace quillon::cli {
namespace {

namespace fs = std::filesystem;

TEST(JsonOutput, EveryByteStringBecomesValidJson) {
  struct Case {
    std::string text;
    std::string json;
  };
  const std::string bad = "\xEF\xBF\xBD";
  const Case cases[] = {
      {"", "\"\""},
      {"a\"b\\c/d", R"("a\"b\\c/d")"},
      {"\n\r\t\x01\x1F\x7F", "\"\\n\\r\\t\\u0001\\u001f\x7F\""},
      {std::string("\0", 1), "\"\\u0000\""},
      {"caf\xC3\xA9 \xE2\x82\xAC \xF0\x9F\x98\x80",
       "\"caf\xC3\xA9 \xE2\x82\xAC \xF0\x9F\x98\x80\""},
      {"\xFF", "\"" + bad + "\""},
      {"\xC3", "\"" + bad + "\""},                                // cut
      {"\xC3(", "\"" + bad + "(\""},                              // no continuation
      {"\xC0\xAF", "\"" + bad + bad + "\""},                      // overlong
      {"\xE0\x80\xAF", "\"" + bad + bad + bad + "\""},            // overlong
      {"\xED\xA0\x80", "\"" + bad + bad + bad + "\""},            // a surrogate
      {"\xF4\x90\x80\x80", "\"" + bad + bad + bad + bad + "\""},  // above U+10FFFF
      {"\xE2\x82", "\"" + bad + bad + "\""},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.json);
    EXPECT_EQ(jsonString(c.text), c.json);
  }
}

TEST(LabelDates, OnlyDatesThatTheLabelWouldShowCount) {
  struct Case {
    const char* what;
    std::vector<ObjectFields> objects;
    std::vector<const char*> keys;
    bool isFit;
  };
  const auto object = [](const char* study, const char* birthDate, const char* studyDate) {
    ObjectFields fields;
    fields.studyUid = study;
    fields.patientBirthDate = birthDate;
    fields.studyDate = studyDate;
    return fields;
  };
  const Case cases[] = {
      {"good dates", {object("1", "19500102", "20090305")}, {"a"}, true},
      {"no dates", {object("1", "", "")}, {"a"}, true},
      {"another length", {object("1", "1950.13.99", "2009")}, {"a"}, true},
      {"a month too many", {object("1", "19501301", "")}, {"a"}, false},
      {"no leap year", {object("1", "19000229", "")}, {"a"}, false},
      {"a leap year", {object("1", "20000229", "")}, {"a"}, true},
      {"letters", {object("1", "ABCDEFGH", "")}, {"a"}, false},
      {"the last year before the calendar", {object("1", "16001231", "")}, {"a"}, false},
      {"the first day of the calendar", {object("1", "16010101", "")}, {"a"}, true},
      {"a study date", {object("1", "", "20090230")}, {"a"}, false},
      {"two studies: no study date",
       {object("1", "", "20090230"), object("2", "", "")},
       {"a", "a"},
       true},
      {"two studies: the birth date still",
       {object("1", "19501301", ""), object("2", "", "")},
       {"a", "a"},
       false},
      {"two patients: no dates",
       {object("1", "19501301", ""), object("2", "", "")},
       {"a", "b"},
       true},
      {"the first object speaks for the patient",
       {object("1", "19500102", ""), object("1", "19501301", "")},
       {"a", "a"},
       true},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.what);
    LabelDates dates;
    for (std::size_t i = 0; i < c.objects.size(); ++i) dates.add(c.keys[i], c.objects[i]);
    EXPECT_EQ(!dates.problem().has_value(), c.isFit);
  }
}

TEST(PatientKey, NameAndIdCannotRunIntoEachOther) {
  const auto key = [](const char* name, const char* id) {
    ObjectFields fields;
    fields.patientName = name;
    fields.patientId = id;
    return patientKey(fields);
  };
  EXPECT_NE(key("DOE", "1"), key("DOE1", ""));
  EXPECT_NE(key("DOE 1", "2"), key("DOE", "1 2"));
  EXPECT_EQ(key("DOE^JOHN", "1"), key("DOE^JOHN^^^", "1"));
  EXPECT_NE(key("DOE^JOHN", "1"), key("DOE^^JOHN", "1"));
  EXPECT_FALSE(key("", "").empty());
}

TEST(RootGuard, WhatIsNoMereFileSetIsNotWiped) {
  const test::TempDir directory;
  fs::create_directories(directory / "a/b");
  fs::create_directories(directory / "ab");
  fs::create_directory_symlink(directory / "a", directory / "link");
  fs::create_directory_symlink("/", directory / "slash");
  const auto at = [&directory](const char* name) { return (directory / name).string(); };
  struct Case {
    const char* what;
    std::string root;
    std::vector<std::string> sources;
    bool isWiped;
  };
  const Case cases[] = {
      {"the file system", "/", {}, false},
      {"the file system by another name", "/usr/..", {}, false},
      {"the file system through a link", at("slash"), {}, false},
      {"above the current directory", fs::current_path().parent_path().string(), {}, false},
      {"beside the source", at("a"), {at("ab")}, true},
      {"below the source", at("a/b"), {at("a")}, true},
      {"the source", at("a"), {at("a")}, false},
      {"above the source", at("a"), {at("a/b/file that need not exist")}, false},
      {"above the source, with a separator", at("a/"), {at("a/b")}, false},
      {"a link to what holds the source", at("link"), {at("a/b")}, false},
      {"holds the source, which is named through a link", at("a"), {at("link/b")}, false},
      {"holds a link that is a source", directory.path().string(), {at("link")}, false},
      {"no such directory", at("new"), {at("a")}, true},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.what);
    EXPECT_EQ(!reasonNotToWipe(c.root, c.sources).has_value(), c.isWiped);
  }
}

}  // namespace
}  // namespace quillon::cli
