// Virtual recorders in a temporary directory, driven through the disc-mastering classes.
#pragma once

#include <algorithm>
#include <functional>
#include <string>
#include <vector>

#include "layer_fixture.h"
#include "platform/com.h"
#include "platform/com/com_object.h"
#include "platform/imapi2.h"
#include "platform/imapi2_errors.h"
#include "recording/disc_progress.h"
#include "recording/virtual_discs.h"
#include "support/stub_stream.h"
#include "text_argument.h"

namespace quillon::test {

inline constexpr std::uint64_t kSector = 2048;

// Bytes that differ from sector to sector and from stream to stream.
std::vector<std::uint8_t> patternBytes(std::uint64_t sectors, unsigned seed);

// Serves a pattern. onRead is called before each reading with the position; what it answers other
// than S_OK is the reading's result.
class PatternStream final : public StubStream {
 public:
  explicit PatternStream(std::uint64_t sectors, unsigned seed = 1)
      : bytes_(patternBytes(sectors, seed)), toldBytes_(bytes_.size()) {}

  std::function<HRESULT(std::uint64_t position)> onRead;
  void tellBytes(std::uint64_t bytes) { toldBytes_ = bytes; }
  [[nodiscard]] const std::vector<std::uint8_t>& bytes() const { return bytes_; }

  HRESULT STDMETHODCALLTYPE Read(void* buffer, ULONG length, ULONG* read) override;
  HRESULT STDMETHODCALLTYPE Seek(LARGE_INTEGER move, DWORD, ULARGE_INTEGER*) override;
  HRESULT STDMETHODCALLTYPE Stat(STATSTG* stat, DWORD) override;

 private:
  std::vector<std::uint8_t> bytes_;
  std::uint64_t toldBytes_;
  std::uint64_t position_ = 0;
};

// One client: the objects that a program uses, on the first recorder.
struct Client {
  explicit Client(std::u16string_view name = u"Recorder test");

  HRESULT write(std::uint64_t sectors, unsigned seed = 1);
  HRESULT writeStream(PatternStream& stream) const { return data->Write(&stream); }
  HRESULT eraseDisc(bool full) const;
  // What the data format says; -1 when there is no answer.
  [[nodiscard]] LONG status() const;
  [[nodiscard]] LONG freeSectors() const;
  [[nodiscard]] bool isUsable() const;
  [[nodiscard]] bool isBlank(bool physically) const;

  ComPtr<IDiscRecorder2> recorder;
  ComPtr<IDiscFormat2Data> data;
  ComPtr<IDiscFormat2Erase> erase;
};

class RecorderTest : public LayerTest {
 protected:
  RecorderTest() : recorders_("QUILLON_RECORDERS", (dir_ / "recorders").string()) {
    EXPECT_GE(CoInitialize(nullptr), 0);
    EXPECT_EQ(platform::createVirtualRecorder("one").code, S_OK);
  }
  ~RecorderTest() override {
    platform::SetDiscProgress({});
    CoUninitialize();
  }

  [[nodiscard]] std::filesystem::path file(std::string_view name) const {
    return dir_ / "recorders" / "one" / name;
  }
  // A blank disc of that kind takes the place of what is in the recorder.
  static void insertBlank(const std::string& media, std::uint32_t capacitySectors);
  // The same with an image of that many sectors on it.
  void insertImage(const std::string& media, std::uint64_t sectors, bool isProtected = false);
  void plan(std::string_view faults) const { writeText(file("faults.txt"), faults); }
  [[nodiscard]] static platform::VirtualRecorderStatus discStatus();

 private:
  ScopedEnvironment recorders_;
};

// The description of the thread's error object, which is taken; empty for none.
std::string errorDescription();

// Runs the body in a process of its own and answers how that ended: its exit code, or 1000 and the
// number of the signal.
int inProcess(const std::function<int()>& body);
// The same in two steps.
pid_t startProcess(const std::function<int()>& body);
int endOf(pid_t process);

}  // namespace quillon::test
