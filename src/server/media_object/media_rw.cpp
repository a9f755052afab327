#include "server/media_object/media_rw.h"

#include "disc/media_processor.h"
#include "foundation/com_base.h"
#include "foundation/com_values.h"

namespace quillon {

namespace {

// A host passes a BSTR, or any text that ends in a zero; null is an empty text.
TextView UpToZero(BSTR text) { return {text, TextLength(text)}; }

}  // namespace

CQuillonMediaRW::CQuillonMediaRW() { SetClassName(OLESTR("CQuillonMediaRW")); }

HRESULT CQuillonMediaRW::RefuseArguments() { return FailWith(E_INVALIDARG, kMsgArgumentsInvalid); }

HRESULT CQuillonMediaRW::FailWith(HRESULT result, UINT message) {
  result_ = result;
  try {
    builder_.SetErrorMessage(message);
  } catch (...) {  // no memory for the sentence: the result has to do
  }
  return S_FALSE;
}

HRESULT CQuillonMediaRW::FailWithDefault(HRESULT result, UINT message) {
  if (builder_.ErrorMessage().empty()) return FailWith(result, message);
  result_ = result;
  return S_FALSE;
}

HRESULT CQuillonMediaRW::GetFlag(bool flag, VARIANT_BOOL* pVal) {
  result_ = S_OK;
  if (pVal == nullptr) return RefuseArguments();
  *pVal = ToVariantBool(flag);
  return S_OK;
}

HRESULT CQuillonMediaRW::PutFlag(bool& flag, VARIANT_BOOL newVal) {
  result_ = S_OK;
  flag = newVal == VARIANT_TRUE;
  return S_OK;
}

HRESULT CQuillonMediaRW::GetText(const Text& text, BSTR* pVal, UINT message) {
  result_ = S_OK;
  if (pVal == nullptr) return RefuseArguments();
  *pVal = nullptr;
  if (text.empty()) return S_OK;
  *pVal = SysAllocStringLen(text.data(), static_cast<UINT>(text.size()));
  return *pVal == nullptr ? FailWith(E_OUTOFMEMORY, message) : S_OK;
}

HRESULT CQuillonMediaRW::PutText(bool (CDicomDirProcessor::*setter)(TextView), BSTR newVal,
                                 UINT message) {
  result_ = S_OK;
  try {
    (builder_.*setter)(UpToZero(newVal));
    return S_OK;
  } catch (...) {
    return FailWith(E_OUTOFMEMORY, message);
  }
}

HRESULT CQuillonMediaRW::PutCheckedText(bool (CDicomDirProcessor::*setter)(TextView), BSTR newVal,
                                        UINT message, UINT refusal) {
  result_ = S_FALSE;
  try {
    if (!(builder_.*setter)(UpToZero(newVal))) return FailWith(S_FALSE, refusal);
    result_ = S_OK;
    return S_OK;
  } catch (...) {
    return FailWith(E_OUTOFMEMORY, message);
  }
}

HRESULT CQuillonMediaRW::get_IheLabel(BSTR* pVal) {
  return GetText(builder_.IheLabel(), pVal, kMsgCannotGetIheLabel);
}

HRESULT CQuillonMediaRW::get_AllowAddHierarchyTree(VARIANT_BOOL* pVal) {
  return GetFlag(builder_.allowAddHierarchyTree, pVal);
}

HRESULT CQuillonMediaRW::put_AllowAddHierarchyTree(VARIANT_BOOL newVal) {
  return PutFlag(builder_.allowAddHierarchyTree, newVal);
}

HRESULT CQuillonMediaRW::get_UseHierarchyForDicomObjects(VARIANT_BOOL* pVal) {
  return GetFlag(builder_.useHierarchyForDicomObjects, pVal);
}

HRESULT CQuillonMediaRW::put_UseHierarchyForDicomObjects(VARIANT_BOOL newVal) {
  return PutFlag(builder_.useHierarchyForDicomObjects, newVal);
}

HRESULT CQuillonMediaRW::get_ClearAfterWrite(VARIANT_BOOL* pVal) {
  return GetFlag(builder_.clearAfterWrite, pVal);
}

HRESULT CQuillonMediaRW::put_ClearAfterWrite(VARIANT_BOOL newVal) {
  return PutFlag(builder_.clearAfterWrite, newVal);
}

HRESULT CQuillonMediaRW::get_PerformFullErase(VARIANT_BOOL* pVal) {
  return GetFlag(builder_.performFullErase, pVal);
}

HRESULT CQuillonMediaRW::put_PerformFullErase(VARIANT_BOOL newVal) {
  return PutFlag(builder_.performFullErase, newVal);
}

HRESULT CQuillonMediaRW::get_SimulateCreation(VARIANT_BOOL* pVal) {
  return GetFlag(builder_.simulateCreation, pVal);
}

HRESULT CQuillonMediaRW::put_SimulateCreation(VARIANT_BOOL newVal) {
  return PutFlag(builder_.simulateCreation, newVal);
}

HRESULT CQuillonMediaRW::get_EjectMediumAfterCreation(VARIANT_BOOL* pVal) {
  return GetFlag(builder_.ejectMediumAfterCreation, pVal);
}

HRESULT CQuillonMediaRW::put_EjectMediumAfterCreation(VARIANT_BOOL newVal) {
  return PutFlag(builder_.ejectMediumAfterCreation, newVal);
}

HRESULT CQuillonMediaRW::get_IncludeOtherContent(VARIANT_BOOL* pVal) {
  return GetFlag(builder_.includeOtherContent, pVal);
}

HRESULT CQuillonMediaRW::put_IncludeOtherContent(VARIANT_BOOL newVal) {
  return PutFlag(builder_.includeOtherContent, newVal);
}

HRESULT CQuillonMediaRW::get_PerformDirectCopy(VARIANT_BOOL* pVal) {
  return GetFlag(builder_.performDirectCopy, pVal);
}

HRESULT CQuillonMediaRW::put_PerformDirectCopy(VARIANT_BOOL newVal) {
  return PutFlag(builder_.performDirectCopy, newVal);
}

HRESULT CQuillonMediaRW::get_VolumeName(BSTR* pVal) {
  return GetText(builder_.VolumeName(), pVal, kMsgCannotGetVolumeName);
}

HRESULT CQuillonMediaRW::put_VolumeName(BSTR newVal) {
  return PutText(&CDicomDirProcessor::SetVolumeName, newVal, kMsgCannotSetVolumeName);
}

HRESULT CQuillonMediaRW::get_DicomRootDirectory(BSTR* pVal) {
  return GetText(builder_.DicomRootDirectory(), pVal, kMsgCannotGetDicomRootDirectory);
}

HRESULT CQuillonMediaRW::put_DicomRootDirectory(BSTR newVal) {
  return PutText(&CDicomDirProcessor::SetDicomRootDirectory, newVal,
                 kMsgCannotSetDicomRootDirectory);
}

HRESULT CQuillonMediaRW::get_DicomObjectDirectory(BSTR* pVal) {
  return GetText(builder_.DicomObjectDirectory(), pVal, kMsgCannotGetDicomObjectDirectory);
}

HRESULT CQuillonMediaRW::put_DicomObjectDirectory(BSTR newVal) {
  return PutText(&CDicomDirProcessor::SetDicomObjectDirectory, newVal,
                 kMsgCannotSetDicomObjectDirectory);
}

HRESULT CQuillonMediaRW::get_OtherContentDirectory(BSTR* pVal) {
  return GetText(builder_.OtherContentDirectory(), pVal, kMsgCannotGetOtherContentDirectory);
}

HRESULT CQuillonMediaRW::put_OtherContentDirectory(BSTR newVal) {
  return PutText(&CDicomDirProcessor::SetOtherContentDirectory, newVal,
                 kMsgCannotSetOtherContentDirectory);
}

HRESULT CQuillonMediaRW::get_DirectCopyDirectory(BSTR* pVal) {
  return GetText(builder_.DirectCopyDirectory(), pVal, kMsgCannotGetDirectCopyDirectory);
}

HRESULT CQuillonMediaRW::put_DirectCopyDirectory(BSTR newVal) {
  return PutCheckedText(&CDicomDirProcessor::SetDirectCopyDirectory, newVal,
                        kMsgCannotSetDirectCopyDirectory, kMsgDirectCopyDirectoryInvalid);
}

HRESULT CQuillonMediaRW::get_UniquePatientId(BSTR* pVal) {
  return GetText(builder_.UniquePatientId(), pVal, kMsgCannotGetUniquePatientId);
}

HRESULT CQuillonMediaRW::put_UniquePatientId(BSTR newVal) {
  return PutCheckedText(&CDicomDirProcessor::SetUniquePatientId, newVal,
                        kMsgCannotSetUniquePatientId, kMsgUniquePatientIdInvalid);
}

HRESULT CQuillonMediaRW::get_ErrMessageText(BSTR* pVal) {
  return GetText(builder_.ErrorMessage(), pVal, kMsgCannotGetErrorText);
}

HRESULT CQuillonMediaRW::get_Result(LONG* pVal) {
  if (pVal == nullptr) return RefuseArguments();
  *pVal = result_;
  return S_OK;
}

template <typename Operation>
HRESULT CQuillonMediaRW::Add(Operation operation, VARIANT_BOOL* pbResult, UINT message) {
  result_ = S_OK;
  if (pbResult == nullptr) return RefuseArguments();
  try {
    *pbResult = ToVariantBool(operation());
    return S_OK;
  } catch (...) {
    FailWithDefault(E_FAIL, message);
    // What an interrupted add leaves behind cannot be trusted.
    builder_.DiscardPatientList();
    return S_FALSE;
  }
}

HRESULT CQuillonMediaRW::AddFile(BSTR bstrFilename, VARIANT_BOOL* pbResult) {
  return Add([&] { return builder_.AddFile(UpToZero(bstrFilename)); }, pbResult, kMsgCannotAddFile);
}

HRESULT CQuillonMediaRW::AddDirectory(BSTR bstrDirectory, VARIANT_BOOL* pbResult) {
  return Add(
      [&] { return builder_.AddDirectory(UpToZero(bstrDirectory), /*createAfterwards=*/false); },
      pbResult, kMsgCannotAddDirectory);
}

HRESULT CQuillonMediaRW::CreateDicomFileSet(VARIANT_BOOL* pbSuccess) {
  builder_.ClearIheLabel();
  result_ = S_OK;
  if (pbSuccess == nullptr) return RefuseArguments();
  try {
    const bool isCreated = builder_.CreateDicomFileSet({}, {});
    if (!isCreated) builder_.ClearIheLabel();
    *pbSuccess = ToVariantBool(isCreated);
    return S_OK;
  } catch (...) {
    builder_.ClearIheLabel();
    return FailWithDefault(E_FAIL, kMsgCannotCreateDicomDir);
  }
}

HRESULT CQuillonMediaRW::Write(VARIANT_BOOL* pbSuccess) {
  result_ = S_OK;
  if (pbSuccess == nullptr) return RefuseArguments();
  try {
    if (!builder_.WriteMedia({}, builder_.simulateCreation, builder_.performFullErase,
                             builder_.ejectMediumAfterCreation, builder_.clearAfterWrite)) {
      return FailWithDefault(S_FALSE, kMsgOperationFailed);
    }
    builder_.SetErrorMessage(kMsgFilesetWritten);
    *pbSuccess = VARIANT_TRUE;
    return S_OK;
  } catch (...) {
    builder_.DiscardPatientList();
    return FailWithDefault(S_FALSE, kMsgOperationFailed);
  }
}

template <typename Question>
HRESULT CQuillonMediaRW::AskAboutDisc(VARIANT_BOOL* pVal, Question question) {
  if (pVal == nullptr) return RefuseArguments();
  *pVal = VARIANT_FALSE;
  try {
    if (!builder_.CheckOperatingSystem()) return S_FALSE;
    CQuillonMediaProcessor processor;
    if (question(processor, *pVal)) return S_OK;
    builder_.SetErrorMessage(processor.ErrorMessage());
    return S_FALSE;
  } catch (...) {
    try {
      FailAsThrown(builder_, kMsgCannotDetermineMediaType);
    } catch (...) {  // no memory for the sentence: the answer has to do
    }
    return S_FALSE;
  }
}

HRESULT CQuillonMediaRW::get_CDRWHasContent(VARIANT_BOOL* pVal) {
  return AskAboutDisc(pVal, [](CQuillonMediaProcessor& processor, VARIANT_BOOL& answer) {
    bool hasContent = false;
    if (!processor.CDRWHasContent(hasContent)) return false;
    answer = ToVariantBool(hasContent);
    return true;
  });
}

HRESULT CQuillonMediaRW::get_CDIsRecordable(VARIANT_BOOL* pVal) {
  return AskAboutDisc(pVal, [](CQuillonMediaProcessor& processor, VARIANT_BOOL& answer) {
    bool isRecordable = false;
    if (!processor.CDIsRecordable(isRecordable) || !isRecordable) return false;
    answer = VARIANT_TRUE;
    return true;
  });
}

template <typename Total>
HRESULT CQuillonMediaRW::GetTotal(bool (CDicomDirProcessor::*count)(Total&), Total& total) {
  try {
    if ((builder_.*count)(total)) return S_OK;
  } catch (...) {  // no memory: there is no total
  }
  total = 0;
  return S_FALSE;
}

HRESULT CQuillonMediaRW::get_TotalSizeOfFileSet(std::uint64_t* pVal) {
  if (pVal == nullptr) return RefuseArguments();
  return GetTotal(&CDicomDirProcessor::GetTotalSize, *pVal);
}

HRESULT CQuillonMediaRW::get_TotalNumberOfFilesInFileSet(ULONG* pVal) {
  if (pVal == nullptr) return RefuseArguments();
  std::uint32_t count = 0;
  const HRESULT result = GetTotal(&CDicomDirProcessor::GetTotalFileCount, count);
  *pVal = count;
  return result;
}

HRESULT CQuillonMediaRW::Wipe() {
  try {
    builder_.Wipe();
  } catch (...) {  // no memory: what could not be removed stays
  }
  return S_OK;
}

}  // namespace quillon
