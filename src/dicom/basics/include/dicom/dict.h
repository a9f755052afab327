// What the toolkit knows of the DICOM standard: value representations, data elements, UIDs and
// command names, and the generator of new UIDs. There is one dictionary in the process.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "dicom/types.h"

namespace quillon {

// Root under which the toolkit makes its own UIDs.
inline constexpr const char* kDcToolkitRoot = "1.3.6.1.4.1.64021";

// One data element of the tag dictionary. vm: n > 0 exactly n values, 0 one or more without
// bound, -k one to k values. name is "T_gggg_eeee_" and the keyword, at most 63 characters.
struct DcDictElemDef {
  DcTag tag = 0;
  DcVr vr = DcVr::UN;
  std::int32_t vm = 1;
  DcTag tag2 = 0;
  char name[64] = {};
};

struct DcDictUidDef {
  DcUid id = DcUid::None;
  std::string uid;
  DcUidKind kind = DcUidKind::Other;
  std::string description;
};

class DcDict {
 public:
  DcDict();
  ~DcDict();
  DcDict(const DcDict&) = delete;
  DcDict& operator=(const DcDict&) = delete;

  // Tags. def may be null to test only. kDcNotFound leaves the default entry in def (VR UN, VM 1,
  // name "T_gggg_eeee"). Group lengths and private creators are known in every group.
  DcCode getElemDef(std::uint16_t group, std::uint16_t element, DcDictElemDef* def) const;
  DcCode getElemDef(DcTag tag, DcDictElemDef* def) const;
  // VR of a tag; None when it is unknown.
  DcCode getElemVr(std::uint16_t group, std::uint16_t element, DcVr* vrOut) const;
  // VR and VM without copying a name: what the parser asks for every element.
  DcCode getElemVrVm(DcTag tag, DcVr& vr, std::int32_t& vm) const;
  // Name of a tag, cut to 60 characters.
  DcCode getDesc(std::uint16_t group, std::uint16_t element, std::string* name) const;
  DcCode getDesc(DcTag tag, std::string* name) const;
  static DcCode getDesc(DcCommandField command, std::string* name);
  DcCode getDesc(DcUid id, std::string* description) const;

  // Value representations.
  DcCode getVr(DcVr vr, std::string* code) const;
  DcCode getVr(std::uint16_t group, std::uint16_t element, std::string* code) const;
  DcCode getVr(DcTag tag, std::string* code) const;
  DcCode getVrDef(const char* code, DcVr* vrOut) const;  // first two characters count
  static DcCode getVrLen(DcVr vr, std::uint32_t* lenOut);
  static DcCode getVrSize(DcVr vr, DcSizeClass* classOut);

  // UIDs.
  DcCode getUid(DcUid id, std::string* uid) const;
  DcCode getUidDef(const char* uid, DcUid* idOut) const;
  DcCode getUidType(DcUid id, DcUidKind* kindOut) const;
  // 1 for big endian, 0 for every other transfer syntax, 2 (and a code) for other ids.
  DcCode getEndian(DcUid transferSyntax, int* orderOut) const;
  // Registers a UID for the life of the process; idOut may be null.
  DcCode add(const char* uid, const char* description, DcUid* idOut, DcUidKind kind);
  // Makes a new UID. The text may hold a root to use: the toolkit root and one component of five
  // characters; anything else in it is ignored.
  void genUid(std::string* uid);

 private:
  struct Impl;
  std::unique_ptr<Impl> impl_;
};

// The process's dictionary, made with its log sink on first use.
DcDict& theDictionary();

// The same questions for those to whom the default will do: of a tag the VR UN and the name
// "T_gggg_eeee", of a UID an empty text and None.
DcVr dcTagVr(DcTag tag);
std::string dcTagName(DcTag tag);
// The standard's name of the attribute, in UTF-8: "Patient's Name". Empty for what the dictionary
// does not know.
std::string_view dcTagTitle(DcTag tag);
std::string dcUidText(DcUid id);
DcUid dcUidOf(const std::string& uid);

}  // namespace quillon
