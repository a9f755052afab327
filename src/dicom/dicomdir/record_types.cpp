#include "record_types.h"

#include <array>
#include <cstddef>
#include <span>
#include <string>
#include <string_view>

#include "dicom/log.h"

namespace quillon {

namespace {

using enum DcDirRecType;

template <typename... Types>
constexpr DcDirTypeSet types(Types... each) {
  return (DcDirTypeSet{0} | ... | dirTypeBit(each));
}

// PRIVATE may stand below every type that may have lower levels at all.
constexpr DcDirTypeSet kNone = 0;
constexpr DcDirTypeSet kPrivate = types(Private);

constexpr DcDirTypeSet kBelowDicomDir =
    types(HangingProtocol, Mrdr, Patient, PrintQueue, Topic, Private, Palette, Implant,
          ImplantGroup, ImplantAssembly, Inventory);
constexpr DcDirTypeSet kBelowPatient = types(Hl7StrucDoc, Study, Private);
constexpr DcDirTypeSet kBelowStudy =
    types(BasicFilmSession, Results, Series, StudyComponent, Visit, Private);
constexpr DcDirTypeSet kBelowSeries =
    types(Curve, EncapDoc, Fiducial, Image, KeyObjectDoc, ModalityLut, Overlay, Presentation,
          RawData, Registration, RtDose, RtPlan, RtStructureSet, RtTreatRecord, Spectroscopy,
          SrDocument, Stereometric, StoredPrint, ValueMap, VoiLut, Waveform, Private,
          EncapsulatedDocument, Plan, Measurement, Surface, SurfaceScan, Tract, Assessment,
          Radiotherapy, Annotation, WaveformPresentation);
constexpr DcDirTypeSet kBelowTopic =
    types(Curve, Fiducial, BasicFilmSession, Image, KeyObjectDoc, ModalityLut, Overlay,
          Presentation, RawData, Registration, RtDose, RtPlan, RtStructureSet, RtTreatRecord,
          Series, Spectroscopy, SrDocument, StoredPrint, Study, VoiLut, Waveform, Private);

// clang-format off
constexpr std::array kRows{
    //           type              name                  file   may stand below it
    DcDirTypeRow{Unknown,          "UNKNOWN",            false, kNone},
    DcDirTypeRow{BasicImageBox,    "BASIC IMAGE BOX",    true,  kPrivate},
    DcDirTypeRow{BasicFilmBox,     "BASIC FILM BOX",     true,  types(BasicImageBox, Private)},
    DcDirTypeRow{BasicFilmSession, "BASIC FILM SESSION", true,  types(BasicFilmBox, Private)},
    DcDirTypeRow{Curve,            "CURVE",              true,  kPrivate},
    DcDirTypeRow{DicomDir,         "DICOMDIR",           false, kBelowDicomDir},
    DcDirTypeRow{EncapDoc,         "ENCAP_DOC",          true,  kPrivate},
    DcDirTypeRow{Fiducial,         "FIDUCIAL",           true,  kPrivate},
    DcDirTypeRow{HangingProtocol,  "HANGING PROTOCOL",   true,  kPrivate},
    DcDirTypeRow{Hl7StrucDoc,      "HL7 STRUC DOC",      true,  kPrivate},
    DcDirTypeRow{Image,            "IMAGE",              true,  kPrivate},
    DcDirTypeRow{Interpretation,   "INTERPRETATION",     true,  kPrivate},
    DcDirTypeRow{KeyObjectDoc,     "KEY OBJECT DOC",     true,  kPrivate},
    DcDirTypeRow{ModalityLut,      "MODALITY LUT",       true,  kPrivate},
    DcDirTypeRow{Mrdr,             "MRDR",               true,  kNone},
    DcDirTypeRow{Overlay,          "OVERLAY",            true,  kPrivate},
    DcDirTypeRow{Patient,          "PATIENT",            false, kBelowPatient},
    DcDirTypeRow{Presentation,     "PRESENTATION",       true,  kPrivate},
    DcDirTypeRow{PrintQueue,       "PRINT QUEUE",        false, types(BasicFilmSession, Private)},
    DcDirTypeRow{Private,          "PRIVATE",            false, kPrivate},
    DcDirTypeRow{RawData,          "RAW DATA",           true,  kPrivate},
    DcDirTypeRow{Registration,     "REGISTRATION",       true,  kPrivate},
    DcDirTypeRow{Results,          "RESULTS",            false, types(Interpretation, Private)},
    DcDirTypeRow{RtTreatRecord,    "RT TREAT RECORD",    true,  kPrivate},
    DcDirTypeRow{RtPlan,           "RT PLAN",            true,  kPrivate},
    DcDirTypeRow{RtStructureSet,   "RT STRUCTURE SET",   true,  kPrivate},
    DcDirTypeRow{RtDose,           "RT DOSE",            true,  kPrivate},
    DcDirTypeRow{Series,           "SERIES",             false, kBelowSeries},
    DcDirTypeRow{Spectroscopy,     "SPECTROSCOPY",       true,  kPrivate},
    DcDirTypeRow{SrDocument,       "SR DOCUMENT",        true,  kPrivate},
    DcDirTypeRow{Stereometric,     "STEREOMETRIC",       true,  kPrivate},
    DcDirTypeRow{StoredPrint,      "STORED PRINT",       true,  kPrivate},
    DcDirTypeRow{StudyComponent,   "STUDY COMPONENT",    false, kPrivate},
    DcDirTypeRow{Study,            "STUDY",              false, kBelowStudy},
    DcDirTypeRow{Topic,            "TOPIC",              false, kBelowTopic},
    DcDirTypeRow{ValueMap,         "VALUE MAP",          true,  kPrivate},
    DcDirTypeRow{Visit,            "VISIT",              false, kPrivate},
    DcDirTypeRow{VoiLut,           "VOI LUT",            true,  kPrivate},
    DcDirTypeRow{Waveform,         "WAVEFORM",           true,  kPrivate},
};
constexpr std::array kYoungerRows{
    DcDirTypeRow{EncapsulatedDocument, "ENCAP DOC",      true,  kPrivate},
    DcDirTypeRow{Palette,          "PALETTE",            true,  kPrivate},
    DcDirTypeRow{Implant,          "IMPLANT",            true,  kPrivate},
    DcDirTypeRow{ImplantGroup,     "IMPLANT GROUP",      true,  kPrivate},
    DcDirTypeRow{ImplantAssembly,  "IMPLANT ASSY",       true,  kPrivate},
    DcDirTypeRow{Plan,             "PLAN",               true,  kPrivate},
    DcDirTypeRow{Measurement,      "MEASUREMENT",        true,  kPrivate},
    DcDirTypeRow{Surface,          "SURFACE",            true,  kPrivate},
    DcDirTypeRow{SurfaceScan,      "SURFACE SCAN",       true,  kPrivate},
    DcDirTypeRow{Tract,            "TRACT",              true,  kPrivate},
    DcDirTypeRow{Assessment,       "ASSESSMENT",         true,  kPrivate},
    DcDirTypeRow{Radiotherapy,     "RADIOTHERAPY",       true,  kPrivate},
    DcDirTypeRow{Annotation,       "ANNOTATION",         true,  kPrivate},
    DcDirTypeRow{Inventory,        "INVENTORY",          true,  kPrivate},
    DcDirTypeRow{WaveformPresentation, "WF PRESENTATION", true, kPrivate},
};
// clang-format on
constexpr auto kFirstYounger = static_cast<std::size_t>(EncapsulatedDocument);

template <typename Rows>
constexpr bool rowsStandAtTheirTypes(const Rows& rows, std::size_t first) {
  for (std::size_t i = 0; i < rows.size(); ++i) {
    if (static_cast<std::size_t>(rows[i].type) != first + i) return false;
  }
  return true;
}
static_assert(rowsStandAtTheirTypes(kRows, 0) && rowsStandAtTheirTypes(kYoungerRows, kFirstYounger),
              "the type is the index of its row");
static_assert(kRows.size() == static_cast<std::size_t>(Waveform) + 1 &&
                  kFirstYounger + kYoungerRows.size() ==
                      static_cast<std::size_t>(WaveformPresentation) + 1 &&
                  kFirstYounger + kYoungerRows.size() <= 64,
              "every type has a row and a bit");

}  // namespace

const DcDirTypeRow& dirTypeRow(DcDirRecType type) {
  const auto index = static_cast<std::size_t>(type);
  if (index >= kFirstYounger && index - kFirstYounger < kYoungerRows.size()) {
    return kYoungerRows[index - kFirstYounger];
  }
  return index < kRows.size() ? kRows[index] : kRows[0];
}

DcCode dirGetDesc(DcDirRecType type, std::string* name) {
  if (name == nullptr) {
    dcLog(DcLogLevel::Error, "dirGetDesc", "Null argument passed");
    return kDcFileNullArgument;
  }
  *name = dirTypeRow(type).name;
  return kDcOk;
}

DcDirRecType dirGetType(std::string_view name) {
  for (const std::span<const DcDirTypeRow> rows :
       {std::span<const DcDirTypeRow>(kRows), {kYoungerRows}}) {
    for (const DcDirTypeRow& row : rows) {
      if (name == row.name) return row.type;
    }
  }
  return Unknown;
}

bool dirRefersToFile(DcDirRecType type) { return dirTypeRow(type).refersToFile; }

}  // namespace quillon
