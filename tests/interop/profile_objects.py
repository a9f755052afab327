"""Objects that meet an application profile, or miss it by one thing."""
from pydicom.dataset import Dataset, FileDataset, FileMetaDataset
from pydicom.encaps import encapsulate
from pydicom.sequence import Sequence

ROOT = "1.2.840.10008.5.1.4.1.1."
SYNTAX = "1.2.840.10008.1.2."
IMPLICIT, PLAIN, BIG = "1.2.840.10008.1.2", SYNTAX + "1", SYNTAX + "2"
BASELINE, EXTENDED, LOSSLESS = SYNTAX + "4.50", SYNTAX + "4.51", SYNTAX + "4.70"
LS, J2K_LOSSLESS, J2K = SYNTAX + "4.80", SYNTAX + "4.90", SYNTAX + "4.91"
MPEG2, RLE = SYNTAX + "4.100", SYNTAX + "5"


def image(sop_class, modality, syntax=PLAIN, rows=64, columns=64, photometric="MONOCHROME2",
          bits=(16, 12), **more):
    """bits: allocated and stored, with the high bit where it is not the usual one."""
    allocated, stored, high = (*bits, bits[1] - 1)[:3]
    samples = 1 if photometric.startswith("MONO") or photometric.startswith("PALETTE") else 3
    return {"class": sop_class, "syntax": syntax, "Modality": modality, "Rows": rows,
            "Columns": columns, "PhotometricInterpretation": photometric,
            "SamplesPerPixel": samples, "BitsAllocated": allocated, "BitsStored": stored,
            "HighBit": high, "PixelRepresentation": 0, "ImageType": ["ORIGINAL", "PRIMARY", "AXIAL"],
            **({"PlanarConfiguration": 0} if samples == 3 else {}), **more}


def palette(**more):
    tables = {}
    for color in ("Red", "Green", "Blue"):
        tables[color + "PaletteColorLookupTableDescriptor"] = [256, 0, 16]
        tables[color + "PaletteColorLookupTableData"] = bytes(512)
    return {**tables, **more}


def regions(has_components):
    region = Dataset()
    region.RegionSpatialFormat, region.RegionDataType, region.RegionFlags = 1, 1, 0
    region.RegionLocationMinX0 = region.RegionLocationMinY0 = 0
    region.RegionLocationMaxX1 = region.RegionLocationMaxY1 = 63
    region.PhysicalUnitsXDirection = region.PhysicalUnitsYDirection = 3
    region.PhysicalDeltaX = region.PhysicalDeltaY = 0.1
    if has_components:
        region.PixelComponentOrganization = 0
        region.PixelComponentMask = 255
        region.PixelComponentPhysicalUnits = 0
        region.PixelComponentDataType = 1
        region.NumberOfTableBreakPoints = 1
        region.TableOfXBreakPoints = [0]
        region.TableOfYBreakPoints = 0.0
    return Sequence([region])


def referenced():
    image_item = Dataset()
    image_item.ReferencedSOPClassUID, image_item.ReferencedSOPInstanceUID = CT, "2.25.9.1.1"
    return Sequence([image_item])


def with_all_keys():
    """What directories take from an image where it is there."""
    return {"InstitutionName": "HOSPITAL", "InstitutionAddress": "STREET 1",
            "PerformingPhysicianName": "DOC^TOR", "ReferencedImageSequence": referenced(),
            "CalibrationImage": "NO", "LossyImageCompressionRatio": 5,
            "FrameOfReferenceUID": "2.25.9.7", "SynchronizationFrameOfReferenceUID": "2.25.9.8",
            "AcquisitionTimeSynchronized": "Y", "AcquisitionDateTime": "20240101101010",
            "ImagePositionPatient": [1, 2, 3], "ImageOrientationPatient": [1, 0, 0, 0, 1, 0],
            "PixelSpacing": [0.5, 0.5]}


def shared_groups():
    """The same of an enhanced image, in the groups that its frames share."""
    groups = Dataset()
    for sequence, values in (("PlanePositionSequence", {"ImagePositionPatient": [1, 2, 3]}),
                             ("PlaneOrientationSequence",
                              {"ImageOrientationPatient": [1, 0, 0, 0, 1, 0]}),
                             ("PixelMeasuresSequence", {"PixelSpacing": [0.5, 0.5]})):
        group = Dataset()
        for name, value in values.items():
            setattr(group, name, value)
        setattr(groups, sequence, Sequence([group]))
    groups.ReferencedImageSequence = referenced()
    return Sequence([groups])


def detector(**more):
    values = {"InstitutionName": "", "ManufacturerModelName": "M", "DetectorID": "1",
              "DetectorManufacturerName": "D", "DetectorManufacturerModelName": "D1"}
    return {name: value for name, value in {**values, **more}.items() if value is not None}


def document(sop_class, modality, syntax=PLAIN, **more):
    title = Dataset()
    title.CodeValue, title.CodingSchemeDesignator, title.CodeMeaning = "113701", "DCM", "Title"
    return {"class": sop_class, "syntax": syntax, "Modality": modality, "CompletionFlag": "COMPLETE",
            "VerificationFlag": "UNVERIFIED", "ContentDate": "20240101", "ContentTime": "101010",
            "ConceptNameCodeSequence": Sequence([title]), "ContentLabel": "LABEL",
            "PresentationCreationDate": "20240101", "PresentationCreationTime": "101010", **more}


CT, MR, SC, XA, US = ROOT + "2", ROOT + "4", ROOT + "7", ROOT + "12.1", ROOT + "6.1"
US_FRAMES, DX, INTRA_ORAL = ROOT + "3.1", ROOT + "1.1", ROOT + "1.3"
BYTE = (8, 8)

OBJECTS = {
    "ct": image(CT, "CT"),
    "ct full": image(CT, "CT", **with_all_keys()),
    "enhanced ct": image(CT + ".1", "CT", NumberOfFrames=2, ContentDate="20240101",
                         ContentTime="101010", SharedFunctionalGroupsSequence=shared_groups()),
    "ct implicit": image(CT, "CT", IMPLICIT),
    "ct big": image(CT, "CT", BIG),
    "ct lossless": image(CT, "CT", LOSSLESS),
    "ct 2000": image(CT, "CT", J2K_LOSSLESS),
    "ct lossy 2000": image(CT, "CT", J2K),
    "ct ls": image(CT, "CT", LS),
    "ct extended": image(CT, "CT", EXTENDED),
    "ct monochrome1": image(CT, "CT", photometric="MONOCHROME1"),
    "ct as mr": image(CT, "MR"),
    "mr": image(MR, "MR"),
    "mr 10 bits": image(MR, "MR", bits=(16, 10)),
    "mr high bit": image(MR, "MR", bits=(16, 12, 15)),
    "cr": image(ROOT + "1", "CR"),
    "cr baseline": image(ROOT + "1", "CR", BASELINE, bits=BYTE),
    "sc": image(SC, "OT", bits=BYTE),
    "sc 16 bits": image(SC, "OT", bits=(16, 16)),
    "sc 12 bits": image(SC, "OT", bits=(16, 12)),
    "sc palette": image(SC, "OT", photometric="PALETTE COLOR", bits=BYTE, **palette()),
    "sc palette of 16 bits": image(SC, "OT", photometric="PALETTE COLOR", bits=(16, 16),
                                   **palette()),
    "sc monochrome1": image(SC, "OT", photometric="MONOCHROME1", bits=BYTE),
    "sc colors": image(SC, "OT", photometric="RGB", bits=BYTE),
    "sc large": image(SC, "OT", rows=1100, bits=BYTE),
    "sc overlay": image(SC, "OT", bits=BYTE, OverlayRows=64),
    "sc lossless": image(SC, "OT", LOSSLESS, bits=BYTE),
    "presentation": document(ROOT + "11.1", "PR"),
    "dose report": document(ROOT + "88.67", "SR"),
    "report": document(ROOT + "88.22", "SR"),
    "xa 512": image(XA, "XA", LOSSLESS, 512, 512, bits=BYTE),
    "xa biplane": image(XA, "XA", LOSSLESS, 512, 512, bits=BYTE,
                        ImageType=["ORIGINAL", "PRIMARY", "BIPLANE A"],
                        ReferencedImageSequence=referenced()),
    "xa 1024": image(XA, "XA", LOSSLESS, 1024, 1024, bits=BYTE),
    "xa 12 bits": image(XA, "XA", LOSSLESS, 512, 512, bits=(16, 12)),
    "xa 16 bits": image(XA, "XA", LOSSLESS, 512, 512, bits=(16, 16)),
    "xa 2048": image(XA, "XA", LOSSLESS, 2048, 1024, bits=BYTE),
    "xa plain": image(XA, "XA", bits=BYTE),
    "xa baseline": image(XA, "XA", BASELINE, 512, 512, bits=BYTE),
    "xa extended": image(XA, "XA", EXTENDED, 512, 512, bits=(16, 12)),
    "rf": image(ROOT + "12.2", "RF", LOSSLESS, 512, 512, bits=BYTE),
    "us": image(US, "US", bits=BYTE),
    "us colors": image(US, "US", RLE, photometric="RGB", bits=BYTE),
    "us baseline": image(US, "US", BASELINE, photometric="YBR_FULL_422", bits=BYTE),
    "us baseline rgb": image(US, "US", BASELINE, photometric="RGB", bits=BYTE),
    "us ybr rle": image(US, "US", RLE, photometric="YBR_FULL", bits=BYTE),
    "us ybr baseline": image(US, "US", BASELINE, photometric="YBR_FULL", bits=BYTE),
    "us monochrome1": image(US, "US", photometric="MONOCHROME1", bits=BYTE),
    "us partial ybr": image(US, "US", BASELINE, photometric="YBR_PARTIAL_420", bits=BYTE),
    "us lossless": image(US, "US", LOSSLESS, bits=BYTE),
    "us spatial": image(US, "US", bits=BYTE, SequenceOfUltrasoundRegions=regions(False)),
    "us combined": image(US, "US", bits=BYTE, SequenceOfUltrasoundRegions=regions(True)),
    "us frames": image(US_FRAMES, "US", bits=BYTE, NumberOfFrames=2),
    "us frames combined": image(US_FRAMES, "US", bits=BYTE, NumberOfFrames=2,
                                SequenceOfUltrasoundRegions=regions(True)),
    "us retired": image(ROOT + "6", "US", bits=BYTE),
    "dx": image(DX, "DX", **detector()),
    "dx 14 bits": image(DX, "DX", bits=(16, 14), **detector()),
    "dx wide": image(DX, "DX", bits=(16, 8), **detector()),
    "dx without detector": image(DX, "DX", **detector(DetectorID=None)),
    "intra-oral": image(INTRA_ORAL, "IO", bits=BYTE, **detector()),
    "intra-oral lossless": image(INTRA_ORAL, "IO", LOSSLESS, bits=BYTE, **detector()),
    "video": image(ROOT + "77.1.1.1", "ES", MPEG2, 480, 640, "YBR_PARTIAL_420", BYTE,
                   NumberOfFrames=25),
    "video of one frame": image(SC, "OT", MPEG2, photometric="RGB", bits=BYTE),
    "video of captures": image(SC + ".4", "OT", MPEG2, photometric="RGB", bits=BYTE,
                               NumberOfFrames=2),
    "private": image("1.2.3.4.5", "OT", bits=BYTE),
}


def write_object(path, values, number=1):
    values = dict(values)
    meta = FileMetaDataset()
    meta.MediaStorageSOPClassUID = values.pop("class")
    meta.MediaStorageSOPInstanceUID = f"2.25.7.{number}.1.1"
    meta.TransferSyntaxUID = values.pop("syntax")
    meta.ImplementationClassUID = "2.25.1"
    data_set = FileDataset(None, {}, preamble=bytes(128), file_meta=meta)
    data_set.is_little_endian = meta.TransferSyntaxUID != BIG
    data_set.is_implicit_VR = meta.TransferSyntaxUID == IMPLICIT
    data_set.SOPClassUID = meta.MediaStorageSOPClassUID
    data_set.SOPInstanceUID = meta.MediaStorageSOPInstanceUID
    everyones = {
        "StudyInstanceUID": f"2.25.7.{number}", "SeriesInstanceUID": f"2.25.7.{number}.1",
        "PatientName": "NAME^FIRST", "PatientID": f"ID{number}", "PatientBirthDate": "19500102",
        "PatientSex": "O", "StudyDate": "20240101", "StudyTime": "101010", "StudyID": "1",
        "AccessionNumber": "", "StudyDescription": "STUDY", "SeriesNumber": "1",
        "InstanceNumber": "1", "ReferringPhysicianName": "", "Manufacturer": "MAKER"}
    overlay_rows = values.pop("OverlayRows", None)
    if overlay_rows is not None:
        data_set.add_new(0x60000010, "US", overlay_rows)
    for name, value in {**everyones, **values}.items():
        setattr(data_set, name, value)
    if "Rows" in values:
        frame = bytes(values["Rows"] * values["Columns"] * values["SamplesPerPixel"] *
                      values["BitsAllocated"] // 8)
        if meta.TransferSyntaxUID in (IMPLICIT, PLAIN, BIG):
            data_set.PixelData = frame * int(values.get("NumberOfFrames", 1))
        else:
            # Nobody looks into it: what counts is the header.
            data_set.PixelData = encapsulate([b"\xff\xd8\xff\xd9"])
            data_set["PixelData"].is_undefined_length = True
        data_set["PixelData"].VR = "OW" if values["BitsAllocated"] > 8 else "OB"
    data_set.save_as(path, write_like_original=False)
