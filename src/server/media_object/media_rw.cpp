#include "server/media_object/media_rw.h"

#include "disc/media_processor.h"
#include "foundation/com_base.h"
#include "foundation/com_values.h"

namespace quillon {

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
                                 UINT message, UINT refusal) {
  result_ = S_OK;
  try {
    const bool isTaken = (builder_.*setter)(UpToZero(newVal));
    return isTaken || refusal == 0 ? S_OK : FailWith(S_FALSE, refusal);
  } catch (...) {
    return FailWith(E_OUTOFMEMORY, message);
  }
}

// The properties that are an option or a text of the builder.
#define QUILLON_FLAG(id, name, option, help)                 \
  HRESULT CQuillonMediaRW::get_##name(VARIANT_BOOL* pVal) {  \
    return GetFlag(builder_.option, pVal);                   \
  }                                                          \
  HRESULT CQuillonMediaRW::put_##name(VARIANT_BOOL newVal) { \
    return PutFlag(builder_.option, newVal);                 \
  }
#define QUILLON_TEXT(id, name, refusal, getHelp, putHelp)                                 \
  HRESULT CQuillonMediaRW::get_##name(BSTR* pVal) {                                       \
    return GetText(builder_.name(), pVal, kMsgCannotGet##name);                           \
  }                                                                                       \
  HRESULT CQuillonMediaRW::put_##name(BSTR newVal) {                                      \
    return PutText(&CDicomDirProcessor::Set##name, newVal, kMsgCannotSet##name, refusal); \
  }
#define QUILLON_GET(...)
#define QUILLON_CALL(...)
#define QUILLON_CALL_OUT(...)
#define QUILLON_CALL_IN_OUT(...)
#define QUILLON_CALL_IN_IN_OUT(...)
#include "server/com_server/operations.inc"

HRESULT CQuillonMediaRW::get_IheLabel(BSTR* pVal) {
  return GetText(builder_.IheLabel(), pVal, kMsgCannotGetIheLabel);
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
