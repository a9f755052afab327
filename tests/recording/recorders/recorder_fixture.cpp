#include "recorder_fixture.h"

#include <sys/wait.h>
#include <unistd.h>

#include <cstring>

namespace quillon::test {

std::vector<std::uint8_t> patternBytes(std::uint64_t sectors, unsigned seed) {
  std::vector<std::uint8_t> bytes(sectors * kSector);
  for (std::uint64_t i = 0; i < bytes.size(); ++i) {
    bytes[i] = static_cast<std::uint8_t>(i / kSector * 7 + i % 251 + seed);
  }
  return bytes;
}

HRESULT STDMETHODCALLTYPE PatternStream::Read(void* buffer, ULONG length, ULONG* read) {
  if (onRead) {
    if (const HRESULT hr = onRead(position_); hr != S_OK) return hr;
  }
  const std::uint64_t count = std::min<std::uint64_t>(length, bytes_.size() - position_);
  std::memcpy(buffer, bytes_.data() + position_, count);
  position_ += count;
  if (read != nullptr) *read = static_cast<ULONG>(count);
  return count == length ? S_OK : S_FALSE;
}

HRESULT STDMETHODCALLTYPE PatternStream::Seek(LARGE_INTEGER move, DWORD origin, ULARGE_INTEGER*) {
  if (origin != STREAM_SEEK_SET) return E_NOTIMPL;
  position_ = static_cast<std::uint64_t>(move.QuadPart);
  return S_OK;
}

HRESULT STDMETHODCALLTYPE PatternStream::Stat(STATSTG* stat, DWORD) {
  *stat = STATSTG{};
  stat->type = STGTY_STREAM;
  stat->cbSize.QuadPart = toldBytes_;
  return S_OK;
}

namespace {

template <typename Interface>
ComPtr<Interface> create(const CLSID& clsid, const IID& iid) {
  ComPtr<Interface> object;
  EXPECT_EQ(CoCreateInstance(clsid, nullptr, CLSCTX_INPROC_SERVER | CLSCTX_LOCAL_SERVER, iid,
                             object.PutVoid()),
            S_OK);
  return object;
}

}  // namespace

Client::Client(std::u16string_view name)
    : recorder(create<IDiscRecorder2>(CLSID_MsftDiscRecorder2, IID_IDiscRecorder2)),
      data(create<IDiscFormat2Data>(CLSID_MsftDiscFormat2Data, IID_IDiscFormat2Data)),
      erase(create<IDiscFormat2Erase>(CLSID_MsftDiscFormat2Erase, IID_IDiscFormat2Erase)) {
  const auto master = create<IDiscMaster2>(CLSID_MsftDiscMaster2, IID_IDiscMaster2);
  ComPtr<IEnumVARIANT> recorders;
  VARIANT identifier{};
  EXPECT_EQ(master->get__NewEnum(recorders.Put()), S_OK);
  EXPECT_EQ(recorders->Next(1, &identifier, nullptr), S_OK);
  EXPECT_EQ(recorder->InitializeDiscRecorder(identifier.bstrVal), S_OK);
  VariantClear(&identifier);
  const Bstr clientName(name);
  EXPECT_EQ(data->put_Recorder(recorder.Get()), S_OK);
  EXPECT_EQ(data->put_ClientName(clientName), S_OK);
  EXPECT_EQ(erase->put_Recorder(recorder.Get()), S_OK);
  EXPECT_EQ(erase->put_ClientName(clientName), S_OK);
}

HRESULT Client::write(std::uint64_t sectors, unsigned seed) {
  ComPtr<PatternStream> stream;
  stream.Attach(new PatternStream(sectors, seed));
  return writeStream(*stream);
}

HRESULT Client::eraseDisc(bool full) const {
  EXPECT_EQ(erase->put_FullErase(full ? VARIANT_TRUE : VARIANT_FALSE), S_OK);
  return erase->EraseMedia();
}

LONG Client::status() const {
  IMAPI_FORMAT2_DATA_MEDIA_STATE state = IMAPI_FORMAT2_DATA_MEDIA_STATE_UNKNOWN;
  return data->get_CurrentMediaStatus(&state) == S_OK ? static_cast<LONG>(state) : -1;
}

LONG Client::freeSectors() const {
  LONG sectors = -1;
  return data->get_FreeSectorsOnMedia(&sectors) == S_OK ? sectors : -1;
}

bool Client::isUsable() const {
  VARIANT_BOOL value = VARIANT_FALSE;
  EXPECT_EQ(data->IsCurrentMediaSupported(recorder.Get(), &value), S_OK);
  return value != VARIANT_FALSE;
}

bool Client::isBlank(bool physically) const {
  VARIANT_BOOL value = VARIANT_FALSE;
  EXPECT_EQ(physically ? data->get_MediaPhysicallyBlank(&value)
                       : data->get_MediaHeuristicallyBlank(&value),
            S_OK);
  return value != VARIANT_FALSE;
}

void RecorderTest::insertBlank(const std::string& media, std::uint32_t capacitySectors) {
  std::string leftAt;
  ASSERT_EQ(platform::ejectVirtualDisc("one", leftAt).code, S_OK);
  platform::DiscToInsert disc;
  disc.media = media;
  disc.capacitySectors = capacitySectors;
  ASSERT_EQ(platform::insertVirtualDisc("one", disc).code, S_OK);
}

void RecorderTest::insertImage(const std::string& media, std::uint64_t sectors, bool isProtected) {
  std::string leftAt;
  ASSERT_EQ(platform::ejectVirtualDisc("one", leftAt).code, S_OK);
  writeBytes(dir_ / "image.iso", patternBytes(sectors, 9));
  platform::DiscToInsert disc;
  disc.media = media;
  disc.image = (dir_ / "image.iso").string();
  disc.isProtected = isProtected;
  ASSERT_EQ(platform::insertVirtualDisc("one", disc).code, S_OK);
}

platform::VirtualRecorderStatus RecorderTest::discStatus() {
  platform::VirtualRecorderStatus status;
  EXPECT_EQ(platform::virtualRecorderStatus("one", status).code, S_OK);
  return status;
}

std::string errorDescription() {
  ComPtr<IErrorInfo> info;
  if (GetErrorInfo(0, info.Put()) != S_OK) return {};
  BSTR text = nullptr;
  EXPECT_EQ(info->GetDescription(&text), S_OK);
  std::string description = narrow({text, SysStringLen(text)});
  SysFreeString(text);
  return description;
}

pid_t startProcess(const std::function<int()>& body) {
  const pid_t process = ::fork();
  if (process == 0) ::_exit(body());
  return process;
}

int endOf(pid_t process) {
  int status = 0;
  EXPECT_EQ(::waitpid(process, &status, 0), process);
  return WIFEXITED(status) ? WEXITSTATUS(status) : 1000 + WTERMSIG(status);
}

int inProcess(const std::function<int()>& body) { return endOf(startProcess(body)); }

}  // namespace quillon::test
