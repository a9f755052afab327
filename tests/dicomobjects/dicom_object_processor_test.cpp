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
    processor.GetErrorMessage(message);
  }
  const CDicomImageProperties& image() { return *properties.Image(); }

  TempDir directory;
  Text path;
  CDicomUtil util;
  CDicomObjectProperties properties;
  bool succeeded = false;
  Text message;
};

TEST(ObjectProperties, TellEverythingOfAnImage) {
  Reading reading(test::imageElements().us(0x00280120, {0xF830}).text(0x00280008, "IS", "12"),
                  false);
  ASSERT_TRUE(reading.succeeded) << std::string(reading.message.begin(), reading.message.end());
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
  struct {
    std::string_view vr;
    Text message;  // "@" stands for the path
    std::uint32_t tag;
    bool emptyIsMissing;
  } const cases[] = {
      {"UI", OLESTR("The SOP class UID from @ is invalid."), 0x00080016, true},
      {"UI", OLESTR("The instance UID is invalid."), 0x00080018, true},
      {"CS", OLESTR("The modality property value (0008, 0060) in the image is invalid."),
       0x00080060, true},
      {"IS", OLESTR("The image number from @ is invalid."), 0x00200013, false},
      {"US", OLESTR("The bits allocated property value (0028, 0100) in the image is invalid."),
       0x00280100, true},
      {"US", OLESTR("The rows property value (0028, 0010) in the image is invalid."), 0x00280010,
       true},
      {"US", OLESTR("The columns property value (0028, 0011) in the image is invalid."), 0x00280011,
       true},
      {"US", OLESTR("The bits stored property value (0028, 0101) in the image is invalid."),
       0x00280101, true},
      {"CS",
       OLESTR(
           "The photometric interpretation property value (0028, 0004) in the image is invalid."),
       0x00280004, true},
      {"US",
       OLESTR("The pixel representation property value (0028, 0103) in the image is invalid."),
       0x00280103, true},
      {"US", OLESTR("The samples per pixel property value (0028, 0002) in the image is invalid."),
       0x00280002, true},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.tag);
    Reading strict(test::imageElements().without(c.tag), false);
    EXPECT_FALSE(strict.succeeded);
    Text expected = c.message;
    if (const std::size_t at = expected.find(OLESTR('@')); at != Text::npos) {
      expected.replace(at, 1, strict.path);
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
  constexpr std::string_view kJpeg = "1.2.840.10008.1.2.4.50";
  const auto with = [](auto change) {
    ElementMap map = test::imageElements();
    change(map);
    return map;
  };
  {
    Reading r(with([](ElementMap& m) {
                m.us(0x00280002, {3}).text(0x00280004, "CS", "RGB").us(0x00280006, {1});
              }),
              false);
    EXPECT_EQ(r.image().PhotometricInterpretation(), OLESTR("RGB/1"));
  }
  {
    Reading r(with([](ElementMap& m) { m.us(0x00280002, {3}).text(0x00280004, "CS", "RGB"); }),
              false);
    EXPECT_EQ(r.image().PhotometricInterpretation(), OLESTR("RGB/0"));
  }
  struct {
    const char* value;
    std::uint32_t frames;
  } const frames[] = {{"0", 0}, {"", 1}, {"24", 24}, {"-3", 0}};
  for (const auto& c : frames) {
    SCOPED_TRACE(c.value);
    Reading r(with([&](ElementMap& m) { m.text(0x00280008, "IS", c.value); }), false);
    EXPECT_EQ(r.image().numberOfFrames, c.frames);
  }
  {
    Reading r(with([](ElementMap& m) {
                m.put(0x7FE00010, test::DataSetBytes().encapsulated({{}, {1, 2, 3, 4}}));
              }),
              false, kJpeg);
    ASSERT_TRUE(r.succeeded);
    EXPECT_TRUE(r.image().isCompressed);
    EXPECT_EQ(r.properties.TransferSyntaxName(),
              OLESTR("JPEG Baseline (Process 1) Lossy JPEG 8 Bit Image Compression"));
  }
  {
    Reading r(test::imageElements(Syntax::ExplicitBig), false);
    EXPECT_FALSE(r.image().isCompressed);
    EXPECT_EQ(r.image().rows, 2);
  }
  {
    // Signed or unsigned is not known in implicit VR; the bits are the same.
    Reading r(test::imageElements(Syntax::ImplicitLittle).us(0x00280120, {0xF830}), false);
    EXPECT_EQ(r.image().pixelPaddingValue, 0xF830);
  }
  {
    Reading r(with([](ElementMap& m) {
                m.text(0x00080016, "UI", "1.2.392.876543.9125.1.1.2").without(0x00280120);
              }),
              false);
    EXPECT_TRUE(r.image().isMakerCr);
    EXPECT_EQ(r.properties.SopClassCode(), OLESTR("TARNCR"));
    EXPECT_FALSE(r.image().hasPixelPaddingValue);
  }
  {
    Reading r(with([](ElementMap& m) { m.text(0x00080016, "UI", "1.2.3"); }), false);
    EXPECT_TRUE(r.succeeded);
    EXPECT_EQ(r.properties.SopClassUid(), OLESTR("1.2.3"));
    EXPECT_EQ(r.properties.SopClassName(), OLESTR(""));
  }
  {
    Reading r(with([](ElementMap& m) { m.without(0x7FE00010).without(0x00280010); }), false);
    EXPECT_TRUE(r.succeeded);
    EXPECT_EQ(r.image().bitsAllocated, 0);
    EXPECT_EQ(r.properties.InstanceNumber(), OLESTR("7"));
  }
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
  EXPECT_EQ(first.properties.SopClassName(), OLESTR(""));
  EXPECT_EQ(first.properties.Modality(), OLESTR(""));
  EXPECT_EQ(first.properties.InstanceKey(), OLESTR(""));
  EXPECT_EQ(first.properties.FrameKey(), OLESTR(""));
  EXPECT_EQ(first.properties.InstanceUid(), OLESTR(""));
  EXPECT_EQ(first.properties.InstanceNumber(), OLESTR(""));
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
  dcSetValueChecking(false);
  const Reading longUid(test::imageElements().text(0x00080018, "UI", std::string(300, '1')), true);
  EXPECT_FALSE(longUid.succeeded);
  EXPECT_EQ(longUid.message, OLESTR("The given image key is invalid."));
  const Reading longNumber(test::imageElements().text(0x00200013, "IS", std::string(1025, '1')),
                           true);
  dcSetValueChecking(true);
  EXPECT_FALSE(longNumber.succeeded);
  EXPECT_EQ(longNumber.message,
            OLESTR("The image number from ") + longNumber.path + OLESTR(" is invalid."));

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
    Text key, frameKey;
    std::uint32_t frameNumber;
    bool isMakerForm;
  } const cases[] = {
      {"another's", "1.2.826.0.1.3680043.1", Taken::Always, OLESTR("1.2.826.0.1.3680043.1"),
       OLESTR("1.2.826.0.1.3680043.1"), 1, false},
      {"frame 4", root + "123.4", Taken::Always, OLESTR("123"), OLESTR("123.4"), 5, true},
      {"frame 0", root + "123.0", Taken::Always, OLESTR("123"), OLESTR("123"), 1, true},
      {"key of components", root + "1.2.3.07", Taken::Always, OLESTR("1.2.3"), OLESTR("1.2.3.7"), 8,
       true},
      {"root, not the last dot", "1.2.840.987654.991.2.3", Taken::Always,
       OLESTR("1.2.840.987654.991.2.3"), OLESTR("1.2.840.987654.991.2.3"), 1, false},
      {"longer than the root by one", "1.2.826.0.1.3680.55", Taken::Always,
       OLESTR("1.2.826.0.1.3680.55"), OLESTR("1.2.826.0.1.3680.55"), 1, false},
      {"as long as the root", "1.2.826.0.1.3680.5", Taken::WhenLenient,
       OLESTR("1.2.826.0.1.3680.5"), OLESTR("1.2.826.0.1.3680.5"), 1, false},
      {"short", "1.2.3.4", Taken::WhenLenient, OLESTR("1.2.3.4"), OLESTR("1.2.3.4"), 1, false},
      {"the root itself", root, Taken::Never, OLESTR(""), OLESTR(""), 0, false},
      {"no dot", root + "123", Taken::Never, OLESTR(""), OLESTR(""), 0, false},
      {"nothing before the dot", root + ".4", Taken::Never, OLESTR(""), OLESTR(""), 0, false},
      {"nothing behind the dot", root + "123.", Taken::Never, OLESTR(""), OLESTR(""), 0, false},
      {"root in the middle", "9." + root + "123.4", Taken::Never, OLESTR(""), OLESTR(""), 0, false},
  };
  for (const auto& c : cases) {
    for (const bool lenient : {false, true}) {
      SCOPED_TRACE(std::string(c.what) + (lenient ? ", lenient" : ""));
      Reading r(test::imageElements().text(0x00080018, "UI", c.uid), lenient);
      const bool taken = c.taken == Taken::Always || (c.taken == Taken::WhenLenient && lenient);
      EXPECT_EQ(r.succeeded, taken);
      if (!taken) {
        EXPECT_EQ(r.message, OLESTR("The instance UID is invalid."));
        continue;
      }
      EXPECT_EQ(r.properties.InstanceKey(), c.key);
      EXPECT_EQ(r.properties.FrameKey(), c.frameKey);
      EXPECT_EQ(r.properties.InstanceUid(), Text(c.uid.begin(), c.uid.end()));
      EXPECT_EQ(r.image().frameNumber, c.frameNumber);
      EXPECT_EQ(r.image().isMakerInstanceUid, c.isMakerForm);
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
