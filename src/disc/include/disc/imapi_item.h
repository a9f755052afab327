// Base of the wrappers of the current disc-mastering service. One shape serves every operation: the
// platform object is made when it is needed, the call's HRESULT becomes the last result, and a
// failing or throwing call leaves one composed text that names file, line, method and reason.
// Nothing is thrown out of a wrapper.
#pragma once

#include <functional>

#include "foundation/com_base.h"
#include "platform/imapi2.h"

namespace quillon {

// Takes what the platform hands out as a Value (automation.h).
template <typename Value>
class AutomationOut;

class CImapiItem : public CComBase {
 protected:
  explicit CImapiItem(TextView className) { SetClassName(className); }

  // The line that calls current(), as std::source_location has it, which Clang 14 lacks.
  class SourceLine {
   public:
    static constexpr SourceLine current(int line = __builtin_LINE()) { return SourceLine(line); }
    [[nodiscard]] int line() const { return line_; }

   private:
    explicit constexpr SourceLine(int line) : line_(line) {}
    int line_;
  };

  // What a wrapper is made of, and what is said when it cannot be made.
  struct Creation {
    const CLSID* clsid;  // null for an object that only another operation hands out
    const IID* iid;
    UINT message;  // takes the class name and "Create" when it has a place for them
  };

  // Makes one platform call: its HRESULT becomes the last result.
  template <typename Call>
  [[nodiscard]] bool CallObject(TextView method, const SourceLine& where, const Call& call) {
    try {
      SetErrorInfo(0, nullptr);  // an error object that is there afterwards is this call's own
      lastResult_ = call();
      return SUCCEEDED(lastResult_) || FailCall(method, where, lastResult_);
    } catch (...) {
      return FailThrown(method, where);
    }
  }

  // A call that succeeded with a value that is not what it must be: false, with the composed text;
  // the last result stays.
  template <typename Out, typename Value>
  [[nodiscard]] bool StoreOutput(TextView method, Out& out, Value& value, const SourceLine& where) {
    try {
      const HRESULT hr = out.TakeTo(value);
      return SUCCEEDED(hr) || FailCall(method, where, hr);
    } catch (...) {
      return FailThrown(method, where);
    }
  }

  // Answer false, with the composed text.
  bool FailCall(TextView method, const SourceLine& where, HRESULT hr);
  bool FailThrown(TextView method, const SourceLine& where);  // only while an exception is handled

  [[nodiscard]] bool CreateObject(const Creation& creation, void** object, const SourceLine& where);

 private:
  [[nodiscard]] bool ComposeFailure(TextView method, const SourceLine& where, TextView prefix,
                                    HRESULT hr, IErrorInfo* info);
};

// A wrapper that holds one counted reference to a platform interface.
template <typename Interface>
class CImapiWrapper : public CImapiItem {
 public:
  // Null until the first operation, or the operation that hands the object out, has filled it.
  [[nodiscard]] Interface* Get() const { return object_.Get(); }
  [[nodiscard]] bool IsEmpty() const { return object_ == nullptr; }
  void Attach(Interface* object) { object_.Attach(object); }  // takes the reference over
  void Release() {
    object_.Reset();
    createdHere_ = false;
  }

 protected:
  CImapiWrapper(TextView className, const Creation& creation)
      : CImapiItem(className), creation_(creation) {}

  // call takes the Interface& and answers an HRESULT.
  template <typename Call>
  [[nodiscard]] bool Invoke(TextView method, const Call& call,
                            const SourceLine& where = SourceLine::current()) {
    return EnsureObject(where) && CallObject(method, where, [&] { return call(*object_); });
  }
  [[nodiscard]] bool EnsureObject(const SourceLine& where) {
    return !IsEmpty() || CreateObject(creation_, object_.PutVoid(), where);
  }

  // Reads a property and converts it: read is a getter of the interface, or takes the Interface&
  // and the address for the platform's value.
  template <typename Read, typename Value>
  [[nodiscard]] bool GetProperty(TextView name, const Read& read, Value& value,
                                 const SourceLine& where = SourceLine::current()) {
    AutomationOut<Value> out;
    return Invoke(
               name, [&](Interface& object) { return std::invoke(read, object, out.Put()); },
               where) &&
           StoreOutput(name, out, value, where);
  }

 private:
  Creation creation_;
  ComPtr<Interface> object_;
};

}  // namespace quillon
