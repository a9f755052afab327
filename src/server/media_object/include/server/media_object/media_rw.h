// CQuillonMediaRW: the one object that the server exports, as a plain class. Keeps the settings of
// one media-creation job, forwards each operation to the file set builder, and keeps the outcome
// of the last call in Result (an HRESULT) and ErrMessageText (a sentence).
//
// One thread at a time. Booleans are VARIANT_BOOL: -1 is true, a setter takes only -1 as true.
// Every operation sets Result to S_OK on entry unless told otherwise below. A null out-pointer:
// Result E_INVALIDARG, "One or more arguments are invalid.", S_FALSE. String getters hand out a
// BSTR that the caller frees; an empty text is a null string. No exception leaves an operation.
#pragma once

#include <cstdint>

#include "dicomobjects/dicom_object_processor.h"
#include "fileset/dicom_dir_processor.h"
#include "foundation/base_item.h"

namespace quillon {

class CQuillonMediaRW : public CBaseItem {
 public:
  CQuillonMediaRW();

  HRESULT get_IheLabel(BSTR* pVal);
  HRESULT get_AllowAddHierarchyTree(VARIANT_BOOL* pVal);
  HRESULT put_AllowAddHierarchyTree(VARIANT_BOOL newVal);
  HRESULT get_UseHierarchyForDicomObjects(VARIANT_BOOL* pVal);
  HRESULT put_UseHierarchyForDicomObjects(VARIANT_BOOL newVal);
  HRESULT get_ClearAfterWrite(VARIANT_BOOL* pVal);
  HRESULT put_ClearAfterWrite(VARIANT_BOOL newVal);
  HRESULT get_PerformFullErase(VARIANT_BOOL* pVal);
  HRESULT put_PerformFullErase(VARIANT_BOOL newVal);
  HRESULT get_SimulateCreation(VARIANT_BOOL* pVal);
  HRESULT put_SimulateCreation(VARIANT_BOOL newVal);
  HRESULT get_EjectMediumAfterCreation(VARIANT_BOOL* pVal);
  HRESULT put_EjectMediumAfterCreation(VARIANT_BOOL newVal);
  // Refused values (over 32 characters; a path that fails the path check, is too long, or has a
  // drive where none may be) leave the old value; the put still answers S_OK.
  HRESULT get_VolumeName(BSTR* pVal);
  HRESULT put_VolumeName(BSTR newVal);
  HRESULT get_DicomRootDirectory(BSTR* pVal);
  HRESULT put_DicomRootDirectory(BSTR newVal);
  HRESULT get_DicomObjectDirectory(BSTR* pVal);
  HRESULT put_DicomObjectDirectory(BSTR newVal);
  HRESULT get_ErrMessageText(BSTR* pVal);
  HRESULT get_Result(LONG* pVal);  // does not reset Result
  // *pbResult: -1 when the file was added, is there already, or has no Study, Series or SOP
  // Instance UID; 0 otherwise, with the reason in ErrMessageText.
  HRESULT AddDirectory(BSTR bstrDirectory, VARIANT_BOOL* pbResult);
  HRESULT AddFile(BSTR bstrFilename, VARIANT_BOOL* pbResult);
  // Moves every added file into the file set. Empties the patient list.
  HRESULT CreateDicomFileSet(VARIANT_BOOL* pbSuccess);
  // Delivers the file set in the root directory: to the disc in the first recorder, or with
  // PerformDirectCopy to DirectCopyDirectory. ErrMessageText tells of success too. A failure is
  // S_FALSE, also in Result, and leaves *pbSuccess alone. With ClearAfterWrite the root directory
  // is deleted afterwards, also after a failure.
  HRESULT Write(VARIANT_BOOL* pbSuccess);
  // Of the files added since the last creation and the other content. S_FALSE and 0 when there
  // are none.
  HRESULT get_TotalSizeOfFileSet(std::uint64_t* pVal);
  HRESULT get_TotalNumberOfFilesInFileSet(ULONG* pVal);
  HRESULT get_IncludeOtherContent(VARIANT_BOOL* pVal);
  HRESULT put_IncludeOtherContent(VARIANT_BOOL newVal);
  HRESULT get_OtherContentDirectory(BSTR* pVal);
  HRESULT put_OtherContentDirectory(BSTR newVal);
  HRESULT get_PerformDirectCopy(VARIANT_BOOL* pVal);
  HRESULT put_PerformDirectCopy(VARIANT_BOOL newVal);
  // A refused path: S_FALSE, also in Result.
  HRESULT get_DirectCopyDirectory(BSTR* pVal);
  HRESULT put_DirectCopyDirectory(BSTR newVal);
  // Removes the root directory and what the job left behind; empties the patient list.
  HRESULT Wipe();
  // Whether the disc in the first recorder is a rewritable one that holds data, and whether it can
  // be recorded. *pVal is 0 unless the answer is yes; S_FALSE, with a sentence, when there is no
  // answer, and for a disc that is not recordable. Neither resets Result.
  HRESULT get_CDRWHasContent(VARIANT_BOOL* pVal);
  HRESULT get_CDIsRecordable(VARIANT_BOOL* pVal);
  // The header of a DICOM file as text: its XML transformed with the stylesheet at a path or an
  // http(s) URL. Result is not reset on entry. An empty file name or location or a null pointer:
  // "One or more arguments are invalid.", S_FALSE, Result unchanged. Otherwise S_OK, also when the
  // header cannot be rendered: Result is S_FALSE then, *pbstrHeaderText null, and ErrMessageText
  // tells why. The first call switches the toolkit's value checking off for the process.
  HRESULT LoadHeaderTextFromFile(BSTR bstrFilename, BSTR bstrStylesheetLocation,
                                 BSTR* pbstrHeaderText);
  HRESULT get_UniquePatientId(BSTR* pVal);
  HRESULT put_UniquePatientId(BSTR newVal);

  // Not of the interface: the builder behind it, for a host that is built together with the system
  // and creates its file set in steps.
  [[nodiscard]] CDicomDirProcessor& Builder() { return builder_; }

 private:
  HRESULT GetFlag(bool flag, VARIANT_BOOL* pVal);
  HRESULT PutFlag(bool& flag, VARIANT_BOOL newVal);
  HRESULT GetText(const Text& text, BSTR* pVal, UINT message);
  // The setter's verdict is not told.
  HRESULT PutText(bool (CDicomDirProcessor::*setter)(TextView), BSTR newVal, UINT message);
  // The setter's verdict is told, with a sentence.
  HRESULT PutCheckedText(bool (CDicomDirProcessor::*setter)(TextView), BSTR newVal, UINT message,
                         UINT refusal);
  template <typename Operation>
  HRESULT Add(Operation operation, VARIANT_BOOL* pbResult, UINT message);
  // Asks a media processor of its own.
  template <typename Question>
  HRESULT AskAboutDisc(VARIANT_BOOL* pVal, Question question);
  template <typename Total>
  HRESULT GetTotal(bool (CDicomDirProcessor::*count)(Total&), Total& total);
  // Of LoadHeaderTextFromFile. False with the sentence in the builder.
  bool PrepareToolkit();
  bool ReadHeaderXml(TextView fileName, Text& xml);
  bool RenderHeader(TextView fileName, TextView stylesheetLocation, Text& header);
  HRESULT RefuseArguments();
  // Both S_FALSE; the second keeps a sentence that the builder has.
  HRESULT FailWith(HRESULT result, UINT message);
  HRESULT FailWithDefault(HRESULT result, UINT message);

  HRESULT result_ = S_OK;
  CDicomObjectProcessor renderer_;
  bool isToolkitPrepared_ = false;
  CDicomDirProcessor builder_;
};

}  // namespace quillon
