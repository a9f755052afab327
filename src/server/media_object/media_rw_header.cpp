// The header of one DICOM file as text.
#include <new>

#include "dicom/dict.h"
#include "dicomobjects/dicom_util.h"
#include "dicomobjects/header_text.h"
#include "dicomobjects/xml_document.h"
#include "foundation/com_values.h"
#include "server/media_object/media_rw.h"

namespace quillon {

namespace {

constexpr std::uint32_t kMaxHeaderValues = 100;

struct PrivateUid {
  const char* uid;
  const char* description;
  DcUidKind kind;
};
constexpr PrivateUid kPrivateImageStorage{"1.2.392.876543.9125.1.1.2", "Private Image Storage",
                                          DcUidKind::SopClass};
constexpr PrivateUid kPrivateCompression{"1.2.840.987654.1.2.1", "Tarn Private Wavelet Compression",
                                         DcUidKind::TransferSyntax};

// While it lives, missing attributes do not stop the reading of an object's properties.
class OptionalInstanceUidScope {
 public:
  explicit OptionalInstanceUidScope(CDicomObjectProcessor& processor) : processor_(processor) {
    processor_.SetInstanceUidOptional(true);
  }
  ~OptionalInstanceUidScope() { processor_.SetInstanceUidOptional(false); }
  OptionalInstanceUidScope(const OptionalInstanceUidScope&) = delete;
  OptionalInstanceUidScope& operator=(const OptionalInstanceUidScope&) = delete;

 private:
  CDicomObjectProcessor& processor_;
};

// A file that is too short for an element, and has no meta information, reads as an empty data set.
// It is no DICOM file: an empty header would say that it is one.
bool HoldsNothing(const CDicomUtil& util) {
  const DcFileMetaInfo& metaInfo = util.GetMetaInfo();
  return util.GetElementList()->size() == 0 && metaInfo.sopClassUid.empty() &&
         metaInfo.sopInstanceUid.empty() && metaInfo.transferSyntaxUid.empty();
}

}  // namespace

bool CQuillonMediaRW::PrepareToolkit() {
  if (isToolkitPrepared_) return true;
  DcDict& dictionary = theDictionary();
  if (dcSetValueChecking(false) != kDcOk) return false;
  DcUid known = DcUid::None;
  if (dictionary.getUidDef(kPrivateImageStorage.uid, &known) != kDcOk) {
    for (const PrivateUid& one : {kPrivateImageStorage, kPrivateCompression}) {
      static_cast<void>(dictionary.add(one.uid, one.description, nullptr, one.kind));
    }
  }
  isToolkitPrepared_ = true;
  return true;
}

bool CQuillonMediaRW::ReadHeaderXml(TextView fileName, Text& xml) {
  CDicomUtil util;
  if (!util.ReadFile(fileName, /*deferPixelData=*/true) || HoldsNothing(util)) {
    return builder_.Fail(kMsgCannotReadDicomInformation, {fileName});
  }
  const OptionalInstanceUidScope optional(renderer_);
  CDicomObjectProperties properties;
  if (!renderer_.ReadProperties(util, properties)) return builder_.FailAs(renderer_);
  const HeaderOptions options{builder_.currentPractice, builder_.characterSet};
  if (!util.GetHeaderXml(xml, kMaxHeaderValues, /*includePixelData=*/false, options) ||
      xml.empty()) {
    return builder_.Fail(kMsgCannotGetHeaderInformation, {fileName});
  }
  return true;
}

bool CQuillonMediaRW::RenderHeader(TextView fileName, TextView stylesheetLocation, Text& header) {
  Text xml;
  if (!PrepareToolkit() || !ReadHeaderXml(fileName, xml)) return false;
  CXmlDocument document;
  if (!document.SetCurrentXMLDocument(xml, /*async=*/false)) return builder_.FailAs(document);
  CXmlDocument stylesheet;
  if (!stylesheet.SetCurrentXMLDocumentFromLocation(stylesheetLocation, /*async=*/false)) {
    return builder_.FailAs(stylesheet);
  }
  if (document.TransformXMLDocument(stylesheet, header, /*async=*/false) && !header.empty()) {
    return true;
  }
  // A transform that made nothing is none for the document, which has no sentence for it.
  if (document.ErrorMessage().empty()) {
    return builder_.Fail(kMsgCannotGetHeaderInformation, {fileName});
  }
  return builder_.FailAs(document);
}

bool CQuillonMediaRW::LoadHeader(TextView fileName, HeaderForm form, Text& header) {
  try {
    if (fileName.empty()) return builder_.Fail(kMsgArgumentsInvalid);
    if (!PrepareToolkit() || !ReadHeaderXml(fileName, header)) return false;
    if (form == HeaderForm::Columns) header = HeaderTextOf(header);
    return true;
  } catch (...) {
    return builder_.Fail(kMsgCannotGetHeaderInformation, {fileName});
  }
}

HRESULT CQuillonMediaRW::LoadHeaderTextFromFile(BSTR bstrFilename, BSTR bstrStylesheetLocation,
                                                BSTR* pbstrHeaderText) {
  const TextView fileName = UpToZero(bstrFilename);
  const TextView location = UpToZero(bstrStylesheetLocation);
  if (fileName.empty() || location.empty() || pbstrHeaderText == nullptr) {
    return FailWith(result_, kMsgArgumentsInvalid);
  }
  *pbstrHeaderText = nullptr;
  try {
    Text header;
    if (!RenderHeader(fileName, location, header)) {
      result_ = S_FALSE;
      return S_OK;
    }
    *pbstrHeaderText = SysAllocStringLen(header.data(), static_cast<UINT>(header.size()));
    if (*pbstrHeaderText == nullptr) throw std::bad_alloc();
    result_ = S_OK;
  } catch (...) {
    result_ = S_FALSE;
    try {
      builder_.Fail(kMsgCannotGetHeaderInformation, {fileName});
    } catch (...) {  // no memory for the sentence: the result has to do
    }
  }
  return S_OK;
}

}  // namespace quillon
