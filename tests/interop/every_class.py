"""Makes one object of each storage SOP class, with all that any directory record has as a key."""
import os

from pydicom.dataelem import DataElement
from pydicom.dataset import Dataset, FileDataset, FileMetaDataset
from pydicom.sequence import Sequence
from pydicom.uid import UID_dictionary

ROOT = "1.2.840.10008.5.1."
# Classes that are younger than pydicom's dictionary.
YOUNGER = ["4.1.1.6.3", "4.1.1.9.1.4", "4.1.1.9.100.1", "4.1.1.9.100.2", "4.1.1.11.12", "4.1.1.66.7",
           "4.1.1.66.8", "4.1.1.77.1.8", "4.1.1.77.1.9", "4.1.1.88.77", "4.1.1.201.1",
           "4.1.1.481.23", "4.1.1.481.24", "4.1.1.481.25"]


def classes():
    """Their UIDs, in order."""
    known = {uid for uid, (name, kind, *_) in UID_dictionary.items()
             if kind == "SOP Class" and "Storage" in name and uid.startswith(ROOT)}
    return sorted(known | {ROOT + uid for uid in YOUNGER},
                  key=lambda uid: [int(part) for part in uid.split(".")])


def code():
    concept = Dataset()
    concept.CodeValue, concept.CodingSchemeDesignator, concept.CodeMeaning = "121181", "DCM", "Title"
    return Sequence([concept])


def data_set(sop_class, number=1, **changes):
    """A change to None leaves an element out."""
    image = Dataset()
    image.ReferencedSOPClassUID = ROOT + "4.1.1.7"
    image.ReferencedSOPInstanceUID = "2.25.9.1.1"
    series = Dataset()
    series.SeriesInstanceUID = "2.25.9.1"
    series.ReferencedImageSequence = Sequence([image])
    hanging = Dataset()
    hanging.Modality = "CT"
    hanging.ProcedureCodeSequence = code()
    hanging.ReasonForRequestedProcedureCodeSequence = code()
    values = {
        "SOPClassUID": sop_class, "SOPInstanceUID": f"2.25.7.{number}.1.1",
        "StudyInstanceUID": f"2.25.7.{number}", "SeriesInstanceUID": f"2.25.7.{number}.1",
        "PatientName": f"NAME{number:03d}^FIRST", "PatientID": f"ID{number:03d}",
        "PatientBirthDate": "19500102", "PatientSex": "O",
        "ImageType": ["ORIGINAL", "PRIMARY"], "InstanceCreationDate": "20230101",
        "InstanceCreationTime": "101010", "StudyDate": "20230102", "StudyTime": "111111",
        "SeriesDate": "20230102", "ContentDate": "20230103", "ContentTime": "121212",
        "AccessionNumber": "ACC", "Modality": "OT", "Manufacturer": "MAKER",
        "StudyDescription": "STUDY", "StudyID": "SID", "SeriesNumber": "7", "InstanceNumber": "11",
        "ReferencedSeriesSequence": Sequence([series]), "CompletionFlag": "COMPLETE",
        "VerificationFlag": "UNVERIFIED", "ConceptNameCodeSequence": code(),
        "ContentLabel": "LABEL", "ContentDescription": "CONTENT", "ContentCreatorName": "CREATOR^A",
        "PresentationCreationDate": "20230104", "PresentationCreationTime": "131313",
        "RTPlanLabel": "PLAN", "RTPlanDate": "20230105", "RTPlanTime": "141414",
        "StructureSetLabel": "SET", "StructureSetDate": "20230106", "StructureSetTime": "151515",
        "DoseSummationType": "PLAN", "TreatmentDate": "20230107", "TreatmentTime": "161616",
        "DocumentTitle": "TITLE", "MIMETypeOfEncapsulatedDocument": "application/pdf",
        "EncapsulatedDocument": b"%PDF", "HangingProtocolName": "HANGING",
        "HangingProtocolDescription": "HANGING", "HangingProtocolLevel": "SITE",
        "HangingProtocolCreator": "CREATOR", "HangingProtocolCreationDateTime": "20230108101010",
        "HangingProtocolDefinitionSequence": Sequence([hanging]), "NumberOfPriorsReferenced": 0,
        "HangingProtocolUserIdentificationCodeSequence": code(), "ImplantName": "IMPLANT",
        "ImplantPartNumber": "PART", "ImplantSize": "SIZE", "ImplantAssemblyTemplateName": "ASSY",
        "ImplantAssemblyTemplateIssuer": "ISSUER", "ProcedureTypeCodeSequence": code(),
        "ImplantTemplateGroupName": "GROUP", "ImplantTemplateGroupIssuer": "ISSUER",
        "UserContentLabel": "USER", "UserContentLongLabel": "USER CONTENT",
        "OverlayNumber": "1", "CurveNumber": "1", "LUTNumber": "1", "NumberOfFrames": "1",
        "DataPointRows": 1, "DataPointColumns": 1, "SamplesPerPixel": 1,
        "PhotometricInterpretation": "MONOCHROME2", "Rows": 2, "Columns": 2, "BitsAllocated": 8,
        "BitsStored": 8, "HighBit": 7, "PixelRepresentation": 0, "PixelData": b"\0\1\2\3",
    }
    values.update(changes)
    made = Dataset()
    for keyword, value in values.items():
        if value is not None:
            setattr(made, keyword, value)
    # Of an inventory; pydicom's dictionary does not have them.
    for tag, vr, value in ((0x00080401, "LO", "PURPOSE"), (0x00080403, "CS", "STUDY"),
                           (0x00080426, "CS", "COMPLETE"), (0x00080428, "UL", 3)):
        made[tag] = DataElement(tag, vr, value)
    if "PixelData" in made:
        made["PixelData"].VR = "OW"
    return made


def write(made, path):
    meta = FileMetaDataset()
    meta.MediaStorageSOPClassUID = made.SOPClassUID
    meta.MediaStorageSOPInstanceUID = made.SOPInstanceUID
    meta.TransferSyntaxUID = "1.2.840.10008.1.2.1"
    meta.ImplementationClassUID = "2.25.1"
    os.makedirs(os.path.dirname(path), exist_ok=True)
    file = FileDataset(str(path), made, file_meta=meta, preamble=bytes(128))
    file.is_little_endian, file.is_implicit_VR = True, False
    file.save_as(str(path), write_like_original=False)
