// The platform's codes with their names: file systems, media states, physical media types and so
// on. A code is a value and the name that stands for it in the message table.
#pragma once

#include <cstdint>
#include <span>

#include "disc/copied_list.h"

namespace quillon {

struct EnumeratorRow {
  std::int32_t value;
  UINT name;  // message
};

struct EnumeratorKind {
  TextView className;
  bool isBitSet;  // the name of a value is that of all rows whose bits it has, joined by ", "
  std::span<const EnumeratorRow> rows;
};

class CImapi2Enumerator : public CBaseItem, public CKeyedItem {
 public:
  static constexpr std::int32_t kUndefined = -1;

  explicit CImapi2Enumerator(const EnumeratorKind& kind);

  void Reset();  // value -1, name "Undefined"
  // The value must be -1 or not negative; fallbackName (trimmed) serves a value that no row names.
  // False resets.
  [[nodiscard]] bool Set(std::int32_t value, TextView fallbackName);
  // With the decimal text of the value as the fallback name.
  [[nodiscard]] bool Set(std::int32_t value);
  [[nodiscard]] std::int32_t Value() const { return value_; }
  void GetName(Text& out) const { GetItemText(out); }

 private:
  [[nodiscard]] Text NameOf(std::int32_t value) const;

  const EnumeratorKind* kind_;
  std::int32_t value_ = kUndefined;
};

class CFsiFileSystems : public CImapi2Enumerator {
 public:
  CFsiFileSystems();
  explicit CFsiFileSystems(std::int32_t mask);
};
class CMediaState : public CImapi2Enumerator {
 public:
  CMediaState();
};
class CWriteProtectState : public CImapi2Enumerator {
 public:
  CWriteProtectState();
};
class CPhysicalMediaType : public CImapi2Enumerator {
 public:
  CPhysicalMediaType();
};
class CPageType : public CImapi2Enumerator {
 public:
  CPageType();
};
class CProfileType : public CImapi2Enumerator {
 public:
  CProfileType();
};
class CFeaturePageType : public CImapi2Enumerator {
 public:
  CFeaturePageType();
};

class CImapi2EnumList : public CCopiedList<CImapi2Enumerator> {
 public:
  // Replaces the content by one enumerator like kind for each value. False for a value that no
  // enumerator takes; the list is then empty.
  bool SetValues(const CImapi2Enumerator& kind, std::span<const LONG> values);
};

}  // namespace quillon
