// A counted reference to a COM object; the same on both systems.
#pragma once

#include <cstddef>
#include <utility>

namespace quillon {

template <typename Interface>
class ComPtr {
 public:
  ComPtr() = default;
  ComPtr(std::nullptr_t) {}
  ComPtr(Interface* object) : object_(object) { acquire(); }
  ComPtr(const ComPtr& other) : object_(other.object_) { acquire(); }
  ComPtr(ComPtr&& other) noexcept : object_(std::exchange(other.object_, nullptr)) {}
  ~ComPtr() { Reset(); }
  ComPtr& operator=(ComPtr other) noexcept {
    std::swap(object_, other.object_);
    return *this;
  }

  // Takes over a reference that the caller owns.
  void Attach(Interface* object) {
    Reset();
    object_ = object;
  }
  // Gives the reference to the caller.
  [[nodiscard]] Interface* Detach() { return std::exchange(object_, nullptr); }
  void Reset() {
    if (Interface* old = std::exchange(object_, nullptr)) old->Release();
  }

  [[nodiscard]] Interface* Get() const { return object_; }
  // The analyzer takes any Release for the last one.
  Interface* operator->() const { return object_; }  // NOLINT(clang-analyzer-cplusplus.NewDelete)
  Interface& operator*() const { return *object_; }
  explicit operator bool() const { return object_ != nullptr; }
  friend bool operator==(const ComPtr& a, const ComPtr& b) { return a.object_ == b.object_; }
  friend bool operator==(const ComPtr& a, std::nullptr_t) { return a.object_ == nullptr; }

  // Where a call stores its result; what was held is released first.
  [[nodiscard]] Interface** Put() {
    Reset();
    return &object_;
  }
  [[nodiscard]] void** PutVoid() { return reinterpret_cast<void**>(Put()); }

  // Another interface of the same object; E_NOINTERFACE when it has none, E_POINTER for null.
  template <typename Other>
  [[nodiscard]] HRESULT As(REFIID riid, ComPtr<Other>& other) const {
    other.Reset();
    if (object_ == nullptr) return E_POINTER;
    return object_->QueryInterface(riid, other.PutVoid());
  }

 private:
  void acquire() {
    if (object_ != nullptr) object_->AddRef();
  }

  Interface* object_ = nullptr;
};

}  // namespace quillon
