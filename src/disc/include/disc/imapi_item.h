// Base of the wrappers of the current disc-mastering service. One shape serves every operation: the
// platform object is made when it is needed, the call's HRESULT becomes the last result, and a
// failing or throwing call leaves one composed text that names file, line, method and reason.
// Nothing is thrown out of a wrapper.
#pragma once

#include <concepts>
#include <functional>

#include "disc/automation.h"
#include "foundation/com_base.h"
#include "platform/imapi2.h"
#include "platform/imapi2_errors.h"

namespace quillon {

// The name of an operation, with the line that gives it, as std::source_location has it, which
// Clang 14 lacks.
struct OperationName {
  OperationName(const OLECHAR* name, int lineOfName = __builtin_LINE())
      : text(name), line(lineOfName) {}

  TextView text;
  int line;
};

class CImapiItem : public CComBase {
 protected:
  explicit CImapiItem(TextView className) { SetClassName(className); }

  // What a wrapper is made of, and what is said when it cannot be made.
  struct Creation {
    const CLSID* clsid;  // null for an object that only another operation hands out
    const IID* iid;
    UINT message;  // takes the class name and "Create" when it has a place for them
  };

  // Makes one platform call: its HRESULT becomes the last result.
  template <typename Call>
  [[nodiscard]] bool CallObject(const OperationName& name, const Call& call) {
    try {
      SetErrorInfo(0, nullptr);  // an error object that is there afterwards is this call's own
      lastResult_ = call();
      return SUCCEEDED(lastResult_) || FailCall(name, lastResult_);
    } catch (...) {
      return FailThrown(name);
    }
  }

  // A call that succeeded with a value that is not what it must be: false, with the composed text;
  // the last result stays.
  template <typename Out, typename Value>
  [[nodiscard]] bool StoreOutput(const OperationName& name, Out& out, Value& value) {
    try {
      const HRESULT hr = out.TakeTo(value);
      return SUCCEEDED(hr) || FailCall(name, hr);
    } catch (...) {
      return FailThrown(name);
    }
  }

  // Answer false, with the composed text.
  bool FailCall(const OperationName& name, HRESULT hr);
  bool FailThrown(const OperationName& name);  // only while an exception is handled

  [[nodiscard]] bool CreateObject(const Creation& creation, void** object, int line);

  // What a text operation ends with: the operation's default message serves when it fails without
  // a message of its own.
  [[nodiscard]] bool DoneOr(UINT defaultMessage, bool isDone) {
    if (!isDone && ErrorMessage().empty()) SetErrorMessage(defaultMessage);
    return isDone;
  }

 private:
  [[nodiscard]] bool ComposeFailure(TextView method, int line, TextView prefix, HRESULT hr,
                                    IErrorInfo* info);
};

// A drive that has just taken a disc refuses calls until it has looked at it: such a call is made
// again, at most ten times, five seconds apart. call makes one call through the wrapper; false
// leaves the wrapper's error text.
template <typename Call>
[[nodiscard]] bool CallUntilReady(const CImapiItem& wrapper, const Call& call) {
  constexpr int kReadyCalls = 10;
  constexpr DWORD kReadyWaitMs = 5000;
  bool done = false;
  for (int calls = 0; calls < kReadyCalls; ++calls) {
    done = call();
    if (wrapper.GetLastResult() != E_IMAPI_RECORDER_MEDIA_BECOMING_READY) break;
    Sleep(kReadyWaitMs);
  }
  return done;
}

// A wrapper that holds one counted reference to a platform interface.
template <typename Interface>
class CImapiWrapper : public CImapiItem {
 public:
  using Held = Interface;

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

  [[nodiscard]] bool EnsureObject(int line = __builtin_LINE()) {
    return !IsEmpty() || CreateObject(creation_, object_.PutVoid(), line);
  }

  // Each takes a method of the interface, or what is called with the Interface& in its place, and
  // the arguments that go in: a bool becomes a VARIANT_BOOL, a wrapper what it holds.
  template <typename Method, typename... In>
  [[nodiscard]] bool Call(const OperationName& name, const Method& method, const In&... in) {
    return EnsureObject(name.line) &&
           CallObject(name, [&] { return std::invoke(method, *object_, AutomationIn(in)...); });
  }
  // For a method whose last parameter goes out. Nothing is stored unless it succeeds.
  template <typename Method, typename Value, typename... In>
  [[nodiscard]] bool Take(const OperationName& name, const Method& method, Value& value,
                          const In&... in) {
    AutomationOut<Value> out;
    const auto call = [&](Interface& object, const auto&... args) {
      return std::invoke(method, object, args..., out.Put());
    };
    return Call(name, call, in...) && StoreOutput(name, out, value);
  }
  // For a method that takes a text, or hands one out, in both forms.
  template <typename Method>
  [[nodiscard]] bool PassText(const OperationName& name, const Method& method, UINT,
                              const BSTR& text) {
    return Call(name, method, text);
  }
  template <typename Method>
  [[nodiscard]] bool PassText(const OperationName& name, const Method& method, UINT defaultMessage,
                              const Text& text) {
    ClearError();
    ScopedBstr bstr;
    return DoneOr(defaultMessage, bstr.Assign(text) && Call(name, method, bstr.Get()));
  }
  template <typename Method>
  [[nodiscard]] bool TakeText(const OperationName& name, const Method& method, UINT, BSTR& text) {
    return Take(name, method, text);
  }
  template <typename Method>
  [[nodiscard]] bool TakeText(const OperationName& name, const Method& method, UINT defaultMessage,
                              Text& text) {
    ClearError();
    ScopedBstr bstr;
    return DoneOr(defaultMessage,
                  Take(name, method, *bstr.Put()) && AssignText(text, bstr.View(), 0));
  }

 private:
  Creation creation_;
  ComPtr<Interface> object_;
};

}  // namespace quillon
