// A host in its smallest form: makes a DICOM file set of a directory with DICOM files, by the
// server that is registered on this machine.
//
//   host_example SOURCE ROOT PATIENT_KEY [TARGET]
//
// The files in SOURCE are moved into the file set below ROOT. With TARGET the set is then copied to
// that directory, and goes from ROOT only when it is there.
//
// An object can be called in two ways. Late binding asks for an operation by its name and passes
// variants, as scripts do; early binding calls through the interface that quillon_media_rw.h
// declares. Here the settings are made in the first way, the job is done in the second.
#include <cstdio>
#include <string>

#include "server/com_server/quillon_media_rw.h"

namespace {

using quillon::ComPtr;
using quillon::IQuillonMediaRW;

// A BSTR that is freed at the end.
class Bstr {
 public:
  Bstr() = default;
  explicit Bstr(const std::string& utf8) {
    const int bytes = static_cast<int>(utf8.size());
    const int units = MultiByteToWideChar(CP_UTF8, 0, utf8.data(), bytes, nullptr, 0);
    text_ = SysAllocStringLen(nullptr, static_cast<UINT>(units));
    MultiByteToWideChar(CP_UTF8, 0, utf8.data(), bytes, text_, units);
  }
  ~Bstr() { SysFreeString(text_); }
  Bstr(const Bstr&) = delete;
  Bstr& operator=(const Bstr&) = delete;

  [[nodiscard]] BSTR Get() const { return text_; }
  [[nodiscard]] BSTR* Put() { return &text_; }
  [[nodiscard]] std::string Utf8() const {
    const int units = static_cast<int>(SysStringLen(text_));
    if (units == 0) return {};
    const int bytes = WideCharToMultiByte(CP_UTF8, 0, text_, units, nullptr, 0, nullptr, nullptr);
    std::string utf8(static_cast<std::size_t>(bytes), '\0');
    WideCharToMultiByte(CP_UTF8, 0, text_, units, utf8.data(), bytes, nullptr, nullptr);
    return utf8;
  }

 private:
  BSTR text_ = nullptr;
};

// Late binding: the property's identifier by its name, then the value as the one argument.
HRESULT putByName(IDispatch& object, const OLECHAR* name, VARIANT value) {
  DISPID id = DISPID_UNKNOWN;
  auto* names = const_cast<LPOLESTR>(name);
  const HRESULT hr = object.GetIDsOfNames(IID_NULL, &names, 1, LOCALE_USER_DEFAULT, &id);
  if (FAILED(hr)) return hr;
  DISPID isTheValue = DISPID_PROPERTYPUT;
  DISPPARAMS params{&value, &isTheValue, 1, 1};
  return object.Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_PROPERTYPUT, &params, nullptr,
                       nullptr, nullptr);
}

HRESULT putByName(IDispatch& object, const OLECHAR* name, const std::string& text) {
  const Bstr value(text);
  VARIANT variant;
  VariantInit(&variant);
  variant.vt = VT_BSTR;
  variant.bstrVal = value.Get();
  return putByName(object, name, variant);
}

HRESULT putByName(IDispatch& object, const OLECHAR* name, bool flag) {
  VARIANT variant;
  VariantInit(&variant);
  variant.vt = VT_BOOL;
  variant.boolVal = flag ? VARIANT_TRUE : VARIANT_FALSE;
  return putByName(object, name, variant);
}

int fail(const char* step, HRESULT hr) {
  std::fprintf(stderr, "host_example: %s: 0x%08X\n", step, static_cast<unsigned>(hr));
  return 1;
}

// The reason of a failure stands in the object.
int fail(IQuillonMediaRW& media) {
  Bstr reason;
  media.get_ErrMessageText(reason.Put());
  std::fprintf(stderr, "host_example: %s\n", reason.Utf8().c_str());
  return 1;
}

// Keeps the set in its root until it is delivered; a failure can be tried again.
int deliver(IQuillonMediaRW& media, const std::string& target) {
  if (media.put_ClearAfterWrite(VARIANT_FALSE) != S_OK ||
      media.put_PerformDirectCopy(VARIANT_TRUE) != S_OK ||
      media.put_DirectCopyDirectory(Bstr(target).Get()) != S_OK) {
    return fail(media);
  }
  VARIANT_BOOL done = VARIANT_FALSE;
  if (media.Write(&done) != S_OK || done != VARIANT_TRUE) return fail(media);
  media.Wipe();
  std::printf("delivered to %s\n", target.c_str());
  return 0;
}

int run(const std::string& source, const std::string& root, const std::string& patientKey,
        const std::string& target) {
  CLSID clsid{};
  HRESULT hr = CLSIDFromProgID(quillon::kProgId, &clsid);
  if (FAILED(hr)) return fail("the server is not registered", hr);
  ComPtr<IDispatch> late;
  hr = CoCreateInstance(clsid, nullptr, CLSCTX_INPROC_SERVER, IID_IDispatch, late.PutVoid());
  if (FAILED(hr)) return fail("the server cannot be loaded", hr);

  hr = putByName(*late, OLESTR("DicomRootDirectory"), root);
  if (SUCCEEDED(hr)) hr = putByName(*late, OLESTR("UniquePatientId"), patientKey);
  if (SUCCEEDED(hr)) hr = putByName(*late, OLESTR("AllowAddHierarchyTree"), true);
  if (FAILED(hr)) return fail("the settings cannot be made", hr);

  // The same object, early bound.
  ComPtr<IQuillonMediaRW> media;
  hr = late.As(quillon::IID_IQuillonMediaRW, media);
  if (FAILED(hr)) return fail("the object has another interface", hr);
  VARIANT_BOOL done = VARIANT_FALSE;
  if (media->AddDirectory(Bstr(source).Get(), &done) != S_OK || done != VARIANT_TRUE) {
    return fail(*media);
  }
  ULONG files = 0;
  if (media->get_TotalNumberOfFilesInFileSet(&files) != S_OK) return fail(*media);
  if (media->CreateDicomFileSet(&done) != S_OK || done != VARIANT_TRUE) return fail(*media);
  Bstr label;
  media->get_IheLabel(label.Put());
  std::printf("%u files in %s\n%s\n", static_cast<unsigned>(files), root.c_str(),
              label.Utf8().c_str());
  return target.empty() ? 0 : deliver(*media, target);
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 4 && argc != 5) {
    std::fputs("usage: host_example SOURCE ROOT PATIENT_KEY [TARGET]\n", stderr);
    return 2;
  }
  CoInitialize(nullptr);
  const int status = run(argv[1], argv[2], argv[3], argc == 5 ? argv[4] : "");
  CoUninitialize();
  return status;
}
