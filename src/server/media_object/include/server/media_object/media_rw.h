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

enum class HeaderForm { Xml, Columns };

class CQuillonMediaRW : public CBaseItem {
 public:
  CQuillonMediaRW();

  // What the operations of operations.inc do beyond their help texts:
  //
  // put_* of the texts: a refused value (over 32 characters; a path that fails the path check, is
  //   too long, or has a drive where none may be) leaves the old one; the put still answers S_OK.
  //   put_DirectCopyDirectory and put_UniquePatientId tell: S_FALSE, also in Result.
  // get_Result does not reset Result.
  // AddFile, AddDirectory: *pbResult is -1 when the file was added, is there already, or has no
  //   Study, Series or SOP Instance UID; 0 otherwise, with the reason in ErrMessageText.
  // CreateDicomFileSet moves every added file into the file set. Empties the patient list.
  // Write delivers the file set in the root directory: to the disc in the first recorder, or with
  //   PerformDirectCopy to DirectCopyDirectory. ErrMessageText tells of success too. A failure is
  //   S_FALSE, also in Result, and leaves *pbSuccess alone. With ClearAfterWrite the root directory
  //   is deleted afterwards, also after a failure.
  // get_TotalSizeOfFileSet, get_TotalNumberOfFilesInFileSet: of the files added since the last
  //   creation and the other content. S_FALSE and 0 when there are none.
  // Wipe removes the root directory and what the job left behind; empties the patient list.
  // get_CDRWHasContent, get_CDIsRecordable: whether the disc in the first recorder is a rewritable
  //   one that holds data, and whether it can be recorded. *pVal is 0 unless the answer is yes;
  //   S_FALSE, with a sentence, when there is no answer, and for a disc that is not recordable.
  //   Neither resets Result.
  // LoadHeaderTextFromFile: the header of a DICOM file as text, its XML transformed with the
  //   stylesheet at a path or an http(s) URL. Result is not reset on entry. An empty file name or
  //   location or a null pointer: "One or more arguments are invalid.", S_FALSE, Result unchanged.
  //   Otherwise S_OK, also when the header cannot be rendered: Result is S_FALSE then,
  //   *pbstrHeaderText null, and ErrMessageText tells why. The first call switches the toolkit's
  //   value checking off for the process.
#define QUILLON_METHOD(method, parameters, arguments) HRESULT method parameters;
#include "server/com_server/operations.inc"

  // Not of the interface: a header in a form that no stylesheet is needed for, the XML itself or
  // what HeaderTextOf makes of it. False, with the sentence in ErrMessageText, as
  // LoadHeaderTextFromFile fails.
  [[nodiscard]] bool LoadHeader(TextView fileName, HeaderForm form, Text& header);

  // Not of the interface: the builder behind it, for a host that is built together with the system
  // and creates its file set in steps.
  [[nodiscard]] CDicomDirProcessor& Builder() { return builder_; }

 private:
  HRESULT GetFlag(bool flag, VARIANT_BOOL* pVal);
  HRESULT PutFlag(bool& flag, VARIANT_BOOL newVal);
  HRESULT GetText(const Text& text, BSTR* pVal, UINT message);
  // refusal tells the setter's verdict, which is not told when it is 0.
  HRESULT PutText(bool (CDicomDirProcessor::*setter)(TextView), BSTR newVal, UINT message,
                  UINT refusal);
  template <typename Operation>
  HRESULT Add(Operation operation, VARIANT_BOOL* pbResult, UINT message);
  // Asks a media processor of its own.
  template <typename Question>
  HRESULT AskAboutDisc(VARIANT_BOOL* pVal, Question question);
  template <typename Total>
  HRESULT GetTotal(bool (CDicomDirProcessor::*count)(Total&), Total& total);
  // Of LoadHeaderTextFromFile. False with the sentence in the builder.
  [[nodiscard]] bool PrepareToolkit();
  [[nodiscard]] bool ReadHeaderXml(TextView fileName, Text& xml);
  [[nodiscard]] bool RenderHeader(TextView fileName, TextView stylesheetLocation, Text& header);
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
