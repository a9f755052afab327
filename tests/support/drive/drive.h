#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "disc.h"
#include "faults.h"
#include "sense.h"
#include "text_table.h"

namespace emulated {

// What the host has set for writing (mode page 05).
struct WriteParameters {
  bool isTest = false;
  std::uint8_t writeType = 0;  // 0 incremental, 1 track at once, 2 session at once
  bool isMultiSession = false;
  bool isData = true;
};

// A drive during one command: read from its directory when the command begins, stored when it ends.
// The directory's lock, held meanwhile, keeps other threads and processes out.
//   drive.txt     kind = burner | reader, simulates, vendor, product, revision, speeds
//   disc.txt      the disc (disc.h); no file: none is in the drive
//   disc.bin      its sectors
//   faults.txt    what goes wrong (faults.h)
//   state.txt     what the drive itself remembers: tray, lock, write parameters, cue sheet ...
//   simulated.txt the disc as the host sees it while a test write goes on
//   commands.log  one line a command
class Drive {
 public:
  explicit Drive(std::string directory);
  ~Drive();
  Drive(const Drive&) = delete;
  Drive& operator=(const Drive&) = delete;
  // Whether the directory could be locked and read.
  bool isThere() const { return lock_ >= 0; }
  // False: the files could not be written.
  [[nodiscard]] bool store();

  bool isBurner() const { return settings.text("kind", "burner") != "reader"; }
  bool simulates() const { return settings.isYes("simulates", true); }
  std::string product() const { return settings.text("product", "EMULATED BURNER"); }
  std::string vendor() const { return settings.text("vendor", "QUILLON"); }
  std::string revision() const { return settings.text("revision", "1.00"); }
  // kB/s, ascending.
  std::vector<int> speeds() const;
  bool isTrayOpen() const { return state.text("tray", settings.text("tray")) == "open"; }
  // Whether a disc is in the closed drive.
  bool hasMedium() const { return disc.has_value() && !isTrayOpen() && !state.isYes("pulled"); }
  Sense noMedium() const;
  // The profile that the drive recognises its disc by; 0 for none.
  std::uint16_t currentProfile() const;

  WriteParameters writeParameters() const;
  bool isSimulating() const { return state.isYes("simulating"); }
  // From now on, until endSimulation, the host sees a copy of the disc.
  void beginSimulation();
  void endSimulation();
  // A transfer that would end there: does it find the disc, or the whole drive, gone?
  bool isTakenAway(std::int64_t end);
  // What becomes of a recording whose program is gone, or whose disc leaves the drive.
  void breakOff();

  [[nodiscard]] bool writeSectors(std::int64_t first, const std::uint8_t* data, std::int64_t count);
  [[nodiscard]] bool readSectors(std::int64_t first, std::uint8_t* data, std::int64_t count);
  void eraseContents();
  void log(std::string_view line) const;
  std::string pathOf(std::string_view name) const { return directory_ + "/" + std::string(name); }

  TextTable settings;
  TextTable plan;
  TextTable state;
  std::optional<Disc> disc;
  Faults faults{plan, state};

 private:
  std::string directory_;
  int lock_ = -1;
  TextTable discTable_;
  TextTable storedState_;
};

std::string hexOf(const std::vector<std::uint8_t>& bytes);
std::vector<std::uint8_t> bytesOfHex(std::string_view text);

}  // namespace emulated
