#include "dicomobjects/dicom_object_processor.h"

#include <gtest/gtest.h>

#include <string>

#include "dicomobjects/dicom_object_list.h"
#include "element_map.h"
#include "support/text.h"

namespace quillon {
namespace {

using test::Bytes;
using test::ElementMap;
using test::Plain;
using test::Syntax;
using test::TempDir;

constexpr std::string_view kMakerRoot = "1.2.840.987654.99.";

// One read of a file of these elements.
struct Reading {
  Reading(const ElementMap& elements, bool optional, std::string_view transferSyntax = {})
      : path(elements.write(directory, "a.dcm", transferSyntax)) {
    CDicomObjectProcessor processor;
    processor.SetInstanceUidOptional(optional);
    succeeded = processor.ReadObjectProperties(path, util, properties);
    message = Plain(processor.ErrorMessage());
  }
  const CDicomImageProperties& image() { return *properties.Image(); }

  TempDir directory;
  Text path;
  CDicomUtil util;
  CDicomObjectProperties properties;
  bool succeeded = false;
  std::string message;
};

TEST(ObjectProperties, TellEverythingOfAnImage) {
  Reading reading(test::imageElements().us(0x00280120, {0xF830}).text(0x00280008, "IS", "12"),
                  false);
  ASSERT_TRUE(reading.succeeded) << reading.message;
  const CDicomObjectProperties& p = reading.properties;
  EXPECT_EQ(p.FileName(), reading.path);
  EXPECT_EQ(p.FileSize(), test::readBytes(std::filesystem::path(reading.path)).size());
  EXPECT_EQ(p.SopClassUid(), OLESTR("1.2.840.10008.5.1.4.1.1.7"));
  EXPECT_EQ(p.SopClassCode(), OLESTR("SC"));
  EXPECT_EQ(p.SopClassName(), OLESTR("Secondary Capture Image Storage"));
  EXPECT_EQ(p.TransferSyntaxUid(), OLESTR("1.2.840.10008.1.2.1"));
  EXPECT_EQ(p.TransferSyntaxName(), OLESTR("Explicit VR Little Endian"));
  EXPECT_EQ(p.DataSetTransferSyntaxUid(), OLESTR("1.2.840.10008.1.2.1"));
  EXPECT_EQ(p.Modality(), OLESTR("OT"));
  EXPECT_EQ(p.InstanceKey(), OLESTR("1.2.826.0.1.3680043.2.1545.1"));
  EXPECT_EQ(p.FrameKey(), OLESTR("1.2.826.0.1.3680043.2.1545.1"));
  EXPECT_EQ(p.InstanceNumber(), OLESTR("7"));
  const CDicomImageProperties& image = reading.image();
  EXPECT_EQ(image.bitsAllocated, 16);
  EXPECT_EQ(image.bitsStored, 12);
  EXPECT_EQ(image.rows, 2);
  EXPECT_EQ(image.columns, 3);
  EXPECT_EQ(image.samplesPerPixel, 1);
  EXPECT_EQ(image.pixelRepresentation, 1);
  EXPECT_EQ(image.PhotometricInterpretation(), OLESTR("MONOCHROME2"));
  EXPECT_TRUE(image.hasPixelPaddingValue);
  EXPECT_EQ(image.pixelPaddingValue, 0xF830);
  EXPECT_EQ(image.numberOfFrames, 12U);
  EXPECT_EQ(image.frameNumber, 1U);
  EXPECT_FALSE(image.isCompressed);
  EXPECT_FALSE(image.isMakerCr);
  EXPECT_EQ(image.pixelDataLength, 12U);
  EXPECT_EQ(image.pixelDataOffset + 12, p.FileSize());
}

TEST(ObjectProperties, NeedEachAttributeUnlessTheReadIsLenient) {
  const auto inImage = [](const std::string& what) {
    const std::size_t tag = what.find('(');
    return "The " + what.substr(0, tag) + "property value " + what.substr(tag) +
           " in the image is invalid.";
  };
  struct {
    std::uint32_t tag;
    std::string_view vr;
    std::string message;  // "@" stands for the path
    bool emptyIsMissing = true;
  } const cases[] = {
      {0x00080016, "UI", "The SOP class UID from @ is invalid."},
      {0x00080018, "UI", "The instance UID is invalid."},
      {0x00080060, "CS", inImage("modality (0008, 0060)")},
      {0x00200013, "IS", "The image number from @ is invalid.", false},
      {0x00280100, "US", inImage("bits allocated (0028, 0100)")},
      {0x00280010, "US", inImage("rows (0028, 0010)")},
      {0x00280011, "US", inImage("columns (0028, 0011)")},
      {0x00280101, "US", inImage("bits stored (0028, 0101)")},
      {0x00280004, "CS", inImage("photometric interpretation (0028, 0004)")},
      {0x00280103, "US", inImage("pixel representation (0028, 0103)")},
      {0x00280002, "US", inImage("samples per pixel (0028, 0002)")},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.tag);
    Reading strict(test::imageElements().without(c.tag), false);
    EXPECT_FALSE(strict.succeeded);
    std::string expected = c.message;
    if (const std::size_t at = expected.find('@'); at != std::string::npos) {
      expected.replace(at, 1, Plain(strict.path));
    }
    EXPECT_EQ(strict.message, expected);
    EXPECT_EQ(Reading(test::imageElements().raw(c.tag, c.vr, {}), false).succeeded,
              !c.emptyIsMissing);

    Reading lenient(test::imageElements().without(c.tag), true);
    EXPECT_TRUE(lenient.succeeded);
    // What stands behind the missing attribute is read all the same.
    EXPECT_EQ(lenient.image().pixelDataLength, 12U);
  }
}

TEST(ObjectProperties, FollowTheOddImages) {
  for (const std::uint16_t planar : {std::uint16_t{1}, std::uint16_t{0}}) {
    ElementMap colours = test::imageElements().us(0x00280002, {3}).text(0x00280004, "CS", "RGB");
    if (planar != 0) colours.us(0x00280006, {planar});
    Reading r(colours, false);
    EXPECT_EQ(Plain(r.image().PhotometricInterpretation()), "RGB/" + std::to_string(planar));
  }
  const std::pair<const char*, std::uint32_t> frames[] = {{"0", 0}, {"", 1}, {"24", 24}, {"-3", 0}};
  for (const auto& [value, count] : frames) {
    SCOPED_TRACE(value);
    Reading r(test::imageElements().text(0x00280008, "IS", value), false);
    EXPECT_EQ(r.image().numberOfFrames, count);
  }
  Reading jpeg(
      test::imageElements().put(0x7FE00010, test::DataSetBytes().encapsulated({{}, {1, 2, 3, 4}})),
      false, "1.2.840.10008.1.2.4.50");
  ASSERT_TRUE(jpeg.succeeded);
  EXPECT_TRUE(jpeg.image().isCompressed);
  EXPECT_EQ(jpeg.properties.TransferSyntaxName(),
            OLESTR("JPEG Baseline (Process 1) Lossy JPEG 8 Bit Image Compression"));
  Reading big(test::imageElements(Syntax::ExplicitBig), false);
  EXPECT_FALSE(big.image().isCompressed);
  EXPECT_EQ(big.image().rows, 2);
  // Signed or unsigned is not known in implicit VR; the bits are the same.
  Reading implicit(test::imageElements(Syntax::ImplicitLittle).us(0x00280120, {0xF830}), false);
  EXPECT_EQ(implicit.image().pixelPaddingValue, 0xF830);
  Reading makers(test::imageElements().text(0x00080016, "UI", "1.2.392.876543.9125.1.1.2"), false);
  EXPECT_TRUE(makers.image().isMakerCr);
  EXPECT_EQ(makers.properties.SopClassCode(), OLESTR("TARNCR"));
  EXPECT_FALSE(makers.image().hasPixelPaddingValue);
  Reading unknown(test::imageElements().text(0x00080016, "UI", "1.2.3"), false);
  EXPECT_TRUE(unknown.succeeded);
  EXPECT_EQ(unknown.properties.SopClassUid(), OLESTR("1.2.3"));
  EXPECT_EQ(unknown.properties.SopClassName(), OLESTR(""));
  Reading noPixels(test::imageElements().without(0x7FE00010).without(0x00280010), false);
  EXPECT_TRUE(noPixels.succeeded);
  EXPECT_EQ(noPixels.image().bitsAllocated, 0);
  EXPECT_EQ(noPixels.properties.InstanceNumber(), OLESTR("7"));
}

TEST(ObjectProperties, OfOneFileDoNotStayForTheNext) {
  Reading first(test::imageElements(), false);
  ASSERT_TRUE(first.succeeded);
  const TempDir directory;
  CDicomObjectProcessor processor;
  processor.SetInstanceUidOptional(true);
  CDicomUtil util;
  ElementMap bare;
  bare.text(0x00080016, "UI", "1.2.3");
  ASSERT_TRUE(
      processor.ReadObjectProperties(bare.write(directory, "b.dcm"), util, first.properties));
  const CDicomObjectProperties& p = first.properties;
  EXPECT_EQ(p.SopClassName() + p.Modality() + p.InstanceKey() + p.FrameKey() + p.InstanceUid() +
                p.InstanceNumber(),
            OLESTR(""));
  EXPECT_EQ(first.image().rows, 0);
  EXPECT_EQ(first.image().frameNumber, 1U);
}

TEST(ObjectProperties, CannotBeReadWithoutAReadableFile) {
  const TempDir directory;
  CDicomObjectProcessor processor;
  CDicomUtil util;
  CDicomObjectProperties properties;
  EXPECT_FALSE(processor.ReadObjectProperties({}, util, properties));
  EXPECT_EQ(processor.ErrorMessage(), OLESTR("The filename is invalid."));
  EXPECT_FALSE(processor.ReadProperties(util, properties));
  EXPECT_EQ(processor.ErrorMessage(), OLESTR("The filename is invalid."));
  const Text path = test::WideOf(directory / "none");
  EXPECT_FALSE(processor.ReadObjectProperties(path, util, properties));
  EXPECT_EQ(processor.ErrorMessage(),
            OLESTR("Cannot read the DICOM file \"") + path + OLESTR("\" for processing."));
}

TEST(ObjectProperties, CannotHoldEveryText) {
  // Keys and names have limits of their own, which a file need not keep to.
  const test::UncheckedValues asInTheProgram;
  const Reading longUid(test::imageElements().text(0x00080018, "UI", std::string(300, '1')), true);
  EXPECT_FALSE(longUid.succeeded);
  EXPECT_EQ(longUid.message, "The given image key is invalid.");
  const Reading longNumber(test::imageElements().text(0x00200013, "IS", std::string(1025, '1')),
                           true);
  EXPECT_FALSE(longNumber.succeeded);
  EXPECT_EQ(longNumber.message, "The image number from " + Plain(longNumber.path) + " is invalid.");
  // The second has no room for the planar configuration that is put behind it.
  for (const auto& [length, samples] : {std::pair{1025, 1}, std::pair{1024, 3}}) {
    const ElementMap named =
        test::imageElements()
            .text(0x00280004, "CS", std::string(static_cast<std::size_t>(length), 'M'))
            .us(0x00280002, {static_cast<std::uint16_t>(samples)});
    const Reading longName(named, false);
    EXPECT_FALSE(longName.succeeded);
    EXPECT_EQ(longName.message,
              "The photometric interpretation property value (0028, 0004) in the image is "
              "invalid.");
    EXPECT_TRUE(Reading(named, true).succeeded);
  }

  const TempDir directory;
  std::filesystem::path below = directory.path();
  while (below.string().size() <= 260) below /= std::string(40, 'd');
  std::filesystem::create_directories(below);
  const Text path = test::imageElements().write(directory, "image.dcm");
  std::filesystem::rename(path, below / "image.dcm");
  CDicomUtil util;
  CDicomObjectProcessor processor;
  CDicomObjectProperties properties;
  const Text longPath = test::WideOf(below / "image.dcm");
  EXPECT_FALSE(processor.ReadObjectProperties(longPath, util, properties));
#ifdef _WIN32  // whose toolkit does not even open such a file
  EXPECT_EQ(processor.ErrorMessage(),
            OLESTR("Cannot read the DICOM file \"") + longPath + OLESTR("\" for processing."));
#else
  EXPECT_EQ(processor.ErrorMessage(),
            OLESTR("Cannot set the image filename to ") + longPath + OLESTR("."));
#endif
}

TEST(InstanceUids, GiveKeysAndFramesByTheirForm) {
  const std::string root(kMakerRoot);
  enum class Taken { Never, WhenLenient, Always };
  struct {
    const char* what;
    std::string uid;
    Taken taken;
    // Of the maker's form; of another, and of what is not taken, there are none.
    std::string key = {};
    std::string frameKey = {};
    std::uint32_t frameNumber = 1;
  } const cases[] = {
      {"another's", "1.2.826.0.1.3680043.1", Taken::Always},
      {"frame 4", root + "123.4", Taken::Always, "123", "123.4", 5},
      {"frame 0", root + "123.0", Taken::Always, "123", "123", 1},
      {"key of components", root + "1.2.3.07", Taken::Always, "1.2.3", "1.2.3.7", 8},
      {"root, not the last dot", "1.2.840.987654.991.2.3", Taken::Always},
      {"longer than the root by one", "1.2.826.0.1.3680.55", Taken::Always},
      {"as long as the root", "1.2.826.0.1.3680.5", Taken::WhenLenient},
      {"short", "1.2.3.4", Taken::WhenLenient},
      {"the root itself", root, Taken::Never},
      {"no dot", root + "123", Taken::Never},
      {"nothing before the dot", root + ".4", Taken::Never},
      {"nothing behind the dot", root + "123.", Taken::Never},
      {"root in the middle", "9." + root + "123.4", Taken::Never},
  };
  for (const auto& c : cases) {
    for (const bool lenient : {false, true}) {
      SCOPED_TRACE(std::string(c.what) + (lenient ? ", lenient" : ""));
      Reading r(test::imageElements().text(0x00080018, "UI", c.uid), lenient);
      const bool taken = c.taken == Taken::Always || (c.taken == Taken::WhenLenient && lenient);
      EXPECT_EQ(r.succeeded, taken);
      EXPECT_EQ(r.message, taken ? "" : "The instance UID is invalid.");
      if (!taken) continue;
      EXPECT_EQ(Plain(r.properties.InstanceKey()), c.key.empty() ? c.uid : c.key);
      EXPECT_EQ(Plain(r.properties.FrameKey()), c.key.empty() ? c.uid : c.frameKey);
      EXPECT_EQ(Plain(r.properties.InstanceUid()), c.uid);
      EXPECT_EQ(r.image().frameNumber, c.frameNumber);
      EXPECT_EQ(r.image().isMakerInstanceUid, !c.key.empty());
    }
  }
}

TEST(OverlayMasks, SumTheBitsOfAllSixteenGroups) {
  struct {
    const char* what;
    std::vector<std::pair<std::uint32_t, std::uint16_t>> positions;
    std::uint16_t expected;
  } const cases[] = {
      {"none", {}, 0},
      {"two", {{0x60000102, 12}, {0x60020102, 13}}, 0x3000},
      {"position 0 is no overlay bit", {{0x60000102, 0}}, 0},
      {"first after the digits", {{0x60100102, 1}}, 0x0002},
      {"last", {{0x601E0102, 15}}, 0x8000},
      {"not an overlay group", {{0x60010102, 3}, {0x60200102, 4}}, 0},
      {"beyond the mask", {{0x60000102, 16}, {0x60020102, 40}}, 0},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    ElementMap map = test::imageElements();
    for (const auto& [tag, position] : c.positions) map.us(tag, {position});
    Reading r(map, false);
    ASSERT_TRUE(r.succeeded);
    EXPECT_EQ(r.image().overlayMask, c.expected);
  }
}

}  // namespace
}  // namespace quillon
