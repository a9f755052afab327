#include "span_options.h"

#include <array>
#include <charconv>
#include <cstdint>
#include <limits>
#include <string>
#include <string_view>

namespace quillon::cli {

namespace {

struct Unit {
  std::string_view name;
  std::uint64_t bytes;
};
// As the makers of media count, and as programs do.
constexpr std::array kUnits{
    Unit{"", 1},
    Unit{"KB", 1'000},
    Unit{"MB", 1'000'000},
    Unit{"GB", 1'000'000'000},
    Unit{"KiB", std::uint64_t{1} << 10},
    Unit{"MiB", std::uint64_t{1} << 20},
    Unit{"GiB", std::uint64_t{1} << 30},
};

std::optional<std::uint64_t> bytesOf(std::string_view text) {
  double number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc() || !(number > 0)) return std::nullopt;
  const std::string_view name = text.substr(static_cast<std::size_t>(end - text.data()));
  for (const Unit& unit : kUnits) {
    constexpr double kMost = 1e15;  // of more nobody can say how much it is exactly
    const double bytes = number * static_cast<double>(unit.bytes);
    if (unit.name == name && bytes < kMost) return static_cast<std::uint64_t>(bytes);
  }
  return std::nullopt;
}

}  // namespace

void addSpanOptions(CLI::App& command, SpanOptions& span) {
  CLI::Option* wanted =
      command
          .add_flag("--span", span.isWanted,
                    "Divide what does not fit one medium over several: by study, what is larger "
                    "by series, then by object")
          ->excludes("--move")
          ->excludes("--keep")
          ->excludes("--simulate")
          ->excludes("--copies");
  command
      .add_option_function<std::string>(
          "--capacity", [&span](const std::string& text) { span.capacityBytes = bytesOf(text); },
          "Of each medium, in bytes or with KB, MB, GB (powers of 1000), KiB, MiB or GiB (default: "
          "that of the disc in the recorder)")
      ->check([](const std::string& text) {
        return bytesOf(text) ? std::string() : "\"" + text + "\" is no size, such as 700MB";
      })
      ->type_name("SIZE")
      ->needs(wanted);
  command
      .add_option_function<std::string>(
          "--viewer-on",
          [&span](const std::string& media) { span.hasContentOnFirstOnly = media == "first"; },
          "Put the non-DICOM content on the first medium only, or on all (default)")
      ->check(CLI::IsMember({"first", "all"}))
      ->type_name("MEDIA")
      ->needs(wanted);
  command
      .add_flag("--resume", span.isResuming,
                "Make the media that an interrupted job on several media did not come to")
      ->needs(wanted);
}

void checkSpanOptions(SpanOptions& span, const WriteOptions& write) {
  if (!span.isWanted) return;
  if (write.isStreaming()) throw CLI::ExcludesError("--span", "standard output");
  const bool isOnDisc = !write.target && !write.image && !write.zip;
  if (!isOnDisc && !span.capacityBytes) throw CLI::RequiresError("--span", "--capacity");
}

}  // namespace quillon::cli
