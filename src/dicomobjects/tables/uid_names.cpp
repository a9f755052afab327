#include "tables/uid_names.h"

#include <algorithm>
#include <array>

#include "dicom/dict.h"
#include "tables/sop_classes.h"
#include "tables/transfer_syntaxes.h"

namespace quillon {

namespace {

struct UidNameRow {
  TextView uid;
  TextView name;
};

// What the other tables lack or shorten. In the order of the characters of the UIDs.
// clang-format off
constexpr std::array kUidNames{
    UidNameRow{OLESTR("1.2.840.10008.1.2.1.98"), OLESTR("Encapsulated Uncompressed Explicit VR Little Endian")},
    UidNameRow{OLESTR("1.2.840.10008.1.2.4.101"), OLESTR("MPEG2 Main Profile / High Level")},
    UidNameRow{OLESTR("1.2.840.10008.1.2.4.102"), OLESTR("MPEG-4 AVC/H.264 High Profile / Level 4.1")},
    UidNameRow{OLESTR("1.2.840.10008.1.2.4.103"), OLESTR("MPEG-4 AVC/H.264 BD-compatible High Profile / Level 4.1")},
    UidNameRow{OLESTR("1.2.840.10008.1.2.4.104"), OLESTR("MPEG-4 AVC/H.264 High Profile / Level 4.2 For 2D Video")},
    UidNameRow{OLESTR("1.2.840.10008.1.2.4.105"), OLESTR("MPEG-4 AVC/H.264 High Profile / Level 4.2 For 3D Video")},
    UidNameRow{OLESTR("1.2.840.10008.1.2.4.106"), OLESTR("MPEG-4 AVC/H.264 Stereo High Profile / Level 4.2")},
    UidNameRow{OLESTR("1.2.840.10008.1.2.4.107"), OLESTR("HEVC/H.265 Main Profile / Level 5.1")},
    UidNameRow{OLESTR("1.2.840.10008.1.2.4.108"), OLESTR("HEVC/H.265 Main 10 Profile / Level 5.1")},
    UidNameRow{OLESTR("1.2.840.10008.1.3.10"), OLESTR("Media Storage Directory Storage")},
    UidNameRow{OLESTR("1.2.840.10008.5.1.4.1.1.104.3"), OLESTR("Encapsulated STL Storage")},
    UidNameRow{OLESTR("1.2.840.10008.5.1.4.1.1.104.4"), OLESTR("Encapsulated OBJ Storage")},
    UidNameRow{OLESTR("1.2.840.10008.5.1.4.1.1.104.5"), OLESTR("Encapsulated MTL Storage")},
    UidNameRow{OLESTR("1.2.840.10008.5.1.4.1.1.11.1"), OLESTR("Grayscale Softcopy Presentation State Storage")},
    UidNameRow{OLESTR("1.2.840.10008.5.1.4.1.1.11.10"), OLESTR("Segmented Volume Rendering Volumetric Presentation State Storage")},
    UidNameRow{OLESTR("1.2.840.10008.5.1.4.1.1.11.11"), OLESTR("Multiple Volume Rendering Volumetric Presentation State Storage")},
    UidNameRow{OLESTR("1.2.840.10008.5.1.4.1.1.11.2"), OLESTR("Color Softcopy Presentation State Storage")},
    UidNameRow{OLESTR("1.2.840.10008.5.1.4.1.1.11.3"), OLESTR("Pseudo-Color Softcopy Presentation State Storage")},
    UidNameRow{OLESTR("1.2.840.10008.5.1.4.1.1.11.4"), OLESTR("Blending Softcopy Presentation State Storage")},
    UidNameRow{OLESTR("1.2.840.10008.5.1.4.1.1.11.5"), OLESTR("XA/XRF Grayscale Softcopy Presentation State Storage")},
    UidNameRow{OLESTR("1.2.840.10008.5.1.4.1.1.11.6"), OLESTR("Grayscale Planar MPR Volumetric Presentation State Storage")},
    UidNameRow{OLESTR("1.2.840.10008.5.1.4.1.1.11.7"), OLESTR("Compositing Planar MPR Volumetric Presentation State Storage")},
    UidNameRow{OLESTR("1.2.840.10008.5.1.4.1.1.11.8"), OLESTR("Advanced Blending Presentation State Storage")},
    UidNameRow{OLESTR("1.2.840.10008.5.1.4.1.1.11.9"), OLESTR("Volume Rendering Volumetric Presentation State Storage")},
    UidNameRow{OLESTR("1.2.840.10008.5.1.4.1.1.12.1.1"), OLESTR("Enhanced XA Image Storage")},
    UidNameRow{OLESTR("1.2.840.10008.5.1.4.1.1.12.2.1"), OLESTR("Enhanced XRF Image Storage")},
    UidNameRow{OLESTR("1.2.840.10008.5.1.4.1.1.128.1"), OLESTR("Legacy Converted Enhanced PET Image Storage")},
    UidNameRow{OLESTR("1.2.840.10008.5.1.4.1.1.13.1.1"), OLESTR("X-Ray 3D Angiographic Image Storage")},
    UidNameRow{OLESTR("1.2.840.10008.5.1.4.1.1.13.1.2"), OLESTR("X-Ray 3D Craniofacial Image Storage")},
    UidNameRow{OLESTR("1.2.840.10008.5.1.4.1.1.13.1.3"), OLESTR("Breast Tomosynthesis Image Storage")},
    UidNameRow{OLESTR("1.2.840.10008.5.1.4.1.1.13.1.4"), OLESTR("Breast Projection X-Ray Image Storage - For Presentation")},
    UidNameRow{OLESTR("1.2.840.10008.5.1.4.1.1.13.1.5"), OLESTR("Breast Projection X-Ray Image Storage - For Processing")},
    UidNameRow{OLESTR("1.2.840.10008.5.1.4.1.1.130"), OLESTR("Enhanced PET Image Storage")},
    UidNameRow{OLESTR("1.2.840.10008.5.1.4.1.1.131"), OLESTR("Basic Structured Display Storage")},
    UidNameRow{OLESTR("1.2.840.10008.5.1.4.1.1.14.1"), OLESTR("Intravascular Optical Coherence Tomography Image Storage - For Presentation")},
    UidNameRow{OLESTR("1.2.840.10008.5.1.4.1.1.14.2"), OLESTR("Intravascular Optical Coherence Tomography Image Storage - For Processing")},
    UidNameRow{OLESTR("1.2.840.10008.5.1.4.1.1.2.1"), OLESTR("Enhanced CT Image Storage")},
    UidNameRow{OLESTR("1.2.840.10008.5.1.4.1.1.2.2"), OLESTR("Legacy Converted Enhanced CT Image Storage")},
    UidNameRow{OLESTR("1.2.840.10008.5.1.4.1.1.200.1"), OLESTR("CT Defined Procedure Protocol Storage")},
    UidNameRow{OLESTR("1.2.840.10008.5.1.4.1.1.200.2"), OLESTR("CT Performed Procedure Protocol Storage")},
    UidNameRow{OLESTR("1.2.840.10008.5.1.4.1.1.200.3"), OLESTR("Protocol Approval Storage")},
    UidNameRow{OLESTR("1.2.840.10008.5.1.4.1.1.200.7"), OLESTR("XA Defined Procedure Protocol Storage")},
    UidNameRow{OLESTR("1.2.840.10008.5.1.4.1.1.200.8"), OLESTR("XA Performed Procedure Protocol Storage")},
    UidNameRow{OLESTR("1.2.840.10008.5.1.4.1.1.30"), OLESTR("Parametric Map Storage")},
    UidNameRow{OLESTR("1.2.840.10008.5.1.4.1.1.4.1"), OLESTR("Enhanced MR Image Storage")},
    UidNameRow{OLESTR("1.2.840.10008.5.1.4.1.1.4.3"), OLESTR("Enhanced MR Color Image Storage")},
    UidNameRow{OLESTR("1.2.840.10008.5.1.4.1.1.4.4"), OLESTR("Legacy Converted Enhanced MR Image Storage")},
    UidNameRow{OLESTR("1.2.840.10008.5.1.4.1.1.481.10"), OLESTR("RT Physician Intent Storage")},
    UidNameRow{OLESTR("1.2.840.10008.5.1.4.1.1.481.11"), OLESTR("RT Segment Annotation Storage")},
    UidNameRow{OLESTR("1.2.840.10008.5.1.4.1.1.481.12"), OLESTR("RT Radiation Set Storage")},
    UidNameRow{OLESTR("1.2.840.10008.5.1.4.1.1.481.13"), OLESTR("C-Arm Photon-Electron Radiation Storage")},
    UidNameRow{OLESTR("1.2.840.10008.5.1.4.1.1.481.14"), OLESTR("Tomotherapeutic Radiation Storage")},
    UidNameRow{OLESTR("1.2.840.10008.5.1.4.1.1.481.15"), OLESTR("Robotic-Arm Radiation Storage")},
    UidNameRow{OLESTR("1.2.840.10008.5.1.4.1.1.481.16"), OLESTR("RT Radiation Record Set Storage")},
    UidNameRow{OLESTR("1.2.840.10008.5.1.4.1.1.481.17"), OLESTR("RT Radiation Salvage Record Storage")},
    UidNameRow{OLESTR("1.2.840.10008.5.1.4.1.1.481.18"), OLESTR("Tomotherapeutic Radiation Record Storage")},
    UidNameRow{OLESTR("1.2.840.10008.5.1.4.1.1.481.19"), OLESTR("C-Arm Photon-Electron Radiation Record Storage")},
    UidNameRow{OLESTR("1.2.840.10008.5.1.4.1.1.481.20"), OLESTR("Robotic Radiation Record Storage")},
    UidNameRow{OLESTR("1.2.840.10008.5.1.4.1.1.481.21"), OLESTR("RT Radiation Set Delivery Instruction Storage")},
    UidNameRow{OLESTR("1.2.840.10008.5.1.4.1.1.481.22"), OLESTR("RT Treatment Preparation Storage")},
    UidNameRow{OLESTR("1.2.840.10008.5.1.4.1.1.481.4"), OLESTR("RT Beams Treatment Record Storage")},
    UidNameRow{OLESTR("1.2.840.10008.5.1.4.1.1.6.2"), OLESTR("Enhanced US Volume Storage")},
    UidNameRow{OLESTR("1.2.840.10008.5.1.4.1.1.66.5"), OLESTR("Surface Segmentation Storage")},
    UidNameRow{OLESTR("1.2.840.10008.5.1.4.1.1.66.6"), OLESTR("Tractography Results Storage")},
    UidNameRow{OLESTR("1.2.840.10008.5.1.4.1.1.68.1"), OLESTR("Surface Scan Mesh Storage")},
    UidNameRow{OLESTR("1.2.840.10008.5.1.4.1.1.68.2"), OLESTR("Surface Scan Point Cloud Storage")},
    UidNameRow{OLESTR("1.2.840.10008.5.1.4.1.1.7.1"), OLESTR("Multi-frame Single Bit Secondary Capture Image Storage")},
    UidNameRow{OLESTR("1.2.840.10008.5.1.4.1.1.77.1.5.1"), OLESTR("Ophthalmic Photography 8 Bit Image Storage")},
    UidNameRow{OLESTR("1.2.840.10008.5.1.4.1.1.77.1.5.2"), OLESTR("Ophthalmic Photography 16 Bit Image Storage")},
    UidNameRow{OLESTR("1.2.840.10008.5.1.4.1.1.77.1.5.3"), OLESTR("Stereometric Relationship Storage")},
    UidNameRow{OLESTR("1.2.840.10008.5.1.4.1.1.77.1.5.5"), OLESTR("Wide Field Ophthalmic Photography Stereographic Projection Image Storage")},
    UidNameRow{OLESTR("1.2.840.10008.5.1.4.1.1.77.1.5.6"), OLESTR("Wide Field Ophthalmic Photography 3D Coordinates Image Storage")},
    UidNameRow{OLESTR("1.2.840.10008.5.1.4.1.1.77.1.5.7"), OLESTR("Ophthalmic Optical Coherence Tomography En Face Image Storage")},
    UidNameRow{OLESTR("1.2.840.10008.5.1.4.1.1.77.1.5.8"), OLESTR("Ophthalmic Optical Coherence Tomography B-scan Volume Analysis Storage")},
    UidNameRow{OLESTR("1.2.840.10008.5.1.4.1.1.77.1.6"), OLESTR("VL Whole Slide Microscopy Image Storage")},
    UidNameRow{OLESTR("1.2.840.10008.5.1.4.1.1.77.1.7"), OLESTR("Dermoscopic Photography Image Storage")},
    UidNameRow{OLESTR("1.2.840.10008.5.1.4.1.1.78.1"), OLESTR("Lensometry Measurements Storage")},
    UidNameRow{OLESTR("1.2.840.10008.5.1.4.1.1.78.2"), OLESTR("Autorefraction Measurements Storage")},
    UidNameRow{OLESTR("1.2.840.10008.5.1.4.1.1.78.3"), OLESTR("Keratometry Measurements Storage")},
    UidNameRow{OLESTR("1.2.840.10008.5.1.4.1.1.78.4"), OLESTR("Subjective Refraction Measurements Storage")},
    UidNameRow{OLESTR("1.2.840.10008.5.1.4.1.1.78.5"), OLESTR("Visual Acuity Measurements Storage")},
    UidNameRow{OLESTR("1.2.840.10008.5.1.4.1.1.78.6"), OLESTR("Spectacle Prescription Report Storage")},
    UidNameRow{OLESTR("1.2.840.10008.5.1.4.1.1.78.7"), OLESTR("Ophthalmic Axial Measurements Storage")},
    UidNameRow{OLESTR("1.2.840.10008.5.1.4.1.1.78.8"), OLESTR("Intraocular Lens Calculations Storage")},
    UidNameRow{OLESTR("1.2.840.10008.5.1.4.1.1.79.1"), OLESTR("Macular Grid Thickness and Volume Report Storage")},
    UidNameRow{OLESTR("1.2.840.10008.5.1.4.1.1.80.1"), OLESTR("Ophthalmic Visual Field Static Perimetry Measurements Storage")},
    UidNameRow{OLESTR("1.2.840.10008.5.1.4.1.1.81.1"), OLESTR("Ophthalmic Thickness Map Storage")},
    UidNameRow{OLESTR("1.2.840.10008.5.1.4.1.1.82.1"), OLESTR("Corneal Topography Map Storage")},
    UidNameRow{OLESTR("1.2.840.10008.5.1.4.1.1.88.11"), OLESTR("Basic Text SR Storage")},
    UidNameRow{OLESTR("1.2.840.10008.5.1.4.1.1.88.22"), OLESTR("Enhanced SR Storage")},
    UidNameRow{OLESTR("1.2.840.10008.5.1.4.1.1.88.33"), OLESTR("Comprehensive SR Storage")},
    UidNameRow{OLESTR("1.2.840.10008.5.1.4.1.1.88.34"), OLESTR("Comprehensive 3D SR Storage")},
    UidNameRow{OLESTR("1.2.840.10008.5.1.4.1.1.88.35"), OLESTR("Extensible SR Storage")},
    UidNameRow{OLESTR("1.2.840.10008.5.1.4.1.1.88.50"), OLESTR("Mammography CAD SR Storage")},
    UidNameRow{OLESTR("1.2.840.10008.5.1.4.1.1.88.59"), OLESTR("Key Object Selection Document Storage")},
    UidNameRow{OLESTR("1.2.840.10008.5.1.4.1.1.88.65"), OLESTR("Chest CAD SR Storage")},
    UidNameRow{OLESTR("1.2.840.10008.5.1.4.1.1.88.67"), OLESTR("X-Ray Radiation Dose SR Storage")},
    UidNameRow{OLESTR("1.2.840.10008.5.1.4.1.1.88.68"), OLESTR("Radiopharmaceutical Radiation Dose SR Storage")},
    UidNameRow{OLESTR("1.2.840.10008.5.1.4.1.1.88.69"), OLESTR("Colon CAD SR Storage")},
    UidNameRow{OLESTR("1.2.840.10008.5.1.4.1.1.88.70"), OLESTR("Implantation Plan SR Storage")},
    UidNameRow{OLESTR("1.2.840.10008.5.1.4.1.1.88.71"), OLESTR("Acquisition Context SR Storage")},
    UidNameRow{OLESTR("1.2.840.10008.5.1.4.1.1.88.72"), OLESTR("Simplified Adult Echo SR Storage")},
    UidNameRow{OLESTR("1.2.840.10008.5.1.4.1.1.88.73"), OLESTR("Patient Radiation Dose SR Storage")},
    UidNameRow{OLESTR("1.2.840.10008.5.1.4.1.1.88.74"), OLESTR("Planned Imaging Agent Administration SR Storage")},
    UidNameRow{OLESTR("1.2.840.10008.5.1.4.1.1.88.75"), OLESTR("Performed Imaging Agent Administration SR Storage")},
    UidNameRow{OLESTR("1.2.840.10008.5.1.4.1.1.88.76"), OLESTR("Enhanced X-Ray Radiation Dose SR Storage")},
    UidNameRow{OLESTR("1.2.840.10008.5.1.4.1.1.9.1.1"), OLESTR("12-lead ECG Waveform Storage")},
    UidNameRow{OLESTR("1.2.840.10008.5.1.4.1.1.9.1.2"), OLESTR("General ECG Waveform Storage")},
    UidNameRow{OLESTR("1.2.840.10008.5.1.4.1.1.9.1.3"), OLESTR("Ambulatory ECG Waveform Storage")},
    UidNameRow{OLESTR("1.2.840.10008.5.1.4.1.1.9.2.1"), OLESTR("Hemodynamic Waveform Storage")},
    UidNameRow{OLESTR("1.2.840.10008.5.1.4.1.1.9.3.1"), OLESTR("Cardiac Electrophysiology Waveform Storage")},
    UidNameRow{OLESTR("1.2.840.10008.5.1.4.1.1.9.4.1"), OLESTR("Basic Voice Audio Waveform Storage")},
    UidNameRow{OLESTR("1.2.840.10008.5.1.4.1.1.9.4.2"), OLESTR("General Audio Waveform Storage")},
    UidNameRow{OLESTR("1.2.840.10008.5.1.4.1.1.9.5.1"), OLESTR("Arterial Pulse Waveform Storage")},
    UidNameRow{OLESTR("1.2.840.10008.5.1.4.1.1.9.6.1"), OLESTR("Respiratory Waveform Storage")},
    UidNameRow{OLESTR("1.2.840.10008.5.1.4.1.1.9.6.2"), OLESTR("Multi-channel Respiratory Waveform Storage")},
    UidNameRow{OLESTR("1.2.840.10008.5.1.4.1.1.9.7.1"), OLESTR("Routine Scalp Electroencephalogram Waveform Storage")},
    UidNameRow{OLESTR("1.2.840.10008.5.1.4.1.1.9.7.2"), OLESTR("Electromyogram Waveform Storage")},
    UidNameRow{OLESTR("1.2.840.10008.5.1.4.1.1.9.7.3"), OLESTR("Electrooculogram Waveform Storage")},
    UidNameRow{OLESTR("1.2.840.10008.5.1.4.1.1.9.7.4"), OLESTR("Sleep Electroencephalogram Waveform Storage")},
    UidNameRow{OLESTR("1.2.840.10008.5.1.4.1.1.9.8.1"), OLESTR("Body Position Waveform Storage")},
    UidNameRow{OLESTR("1.2.840.10008.5.1.4.1.1.90.1"), OLESTR("Content Assessment Results Storage")},
    UidNameRow{OLESTR("1.2.840.10008.5.1.4.1.1.91.1"), OLESTR("Microscopy Bulk Simple Annotations Storage")},
    UidNameRow{OLESTR("1.2.840.10008.5.1.4.34.10"), OLESTR("RT Brachy Application Setup Delivery Instruction Storage")},
    UidNameRow{OLESTR("1.2.840.10008.5.1.4.34.7"), OLESTR("RT Beams Delivery Instruction Storage")},
    UidNameRow{OLESTR("1.2.840.10008.5.1.4.39.1"), OLESTR("Color Palette Storage")},
    UidNameRow{OLESTR("1.2.840.10008.5.1.4.43.1"), OLESTR("Generic Implant Template Storage")},
    UidNameRow{OLESTR("1.2.840.10008.5.1.4.44.1"), OLESTR("Implant Assembly Template Storage")},
    UidNameRow{OLESTR("1.2.840.10008.5.1.4.45.1"), OLESTR("Implant Template Group Storage")},
};
// clang-format on
static_assert(std::ranges::is_sorted(kUidNames, {}, &UidNameRow::uid));

}  // namespace

Text UidName(TextView uid) {
  // All of the standard's own begin so.
  if (!uid.starts_with(OLESTR("1.2.840.10008."))) return {};
  const auto* const row = std::ranges::lower_bound(kUidNames, uid, {}, &UidNameRow::uid);
  if (row != kUidNames.end() && row->uid == uid) return Text(row->name);
  if (const SopClassRow* const sopClass = FindSopClass(uid)) return Text(sopClass->name);
  if (const TransferSyntaxRow* const syntax = FindTransferSyntax(uid)) return Text(syntax->name);
  const DcUid id = dcUidOf(NarrowText(uid, CP_ACP));
  std::string description;
  if (id == DcUid::None || theDictionary().getDesc(id, &description) != kDcOk) return {};
  return WidenText(description, CP_ACP);
}

}  // namespace quillon
