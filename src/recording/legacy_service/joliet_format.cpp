// The one format of the legacy service: data as ISO 9660 and Joliet.
#include <optional>

#include "image/volume_name.h"
#include "legacy_session.h"
#include "recorders/com_answers.h"
#include "storage_scan.h"
#include "text_properties.h"

namespace quillon::platform {
namespace {

constexpr const OLECHAR* kVolumeName = u"VolumeName";
constexpr PROPID kVolumeNameId = 2;

class JolietFormat final : public ComObject<Refusing<IJolietDiscMaster>, IID_IJolietDiscMaster> {
 public:
  explicit JolietFormat(std::shared_ptr<LegacySession> session) : session_(std::move(session)) {}

  HRESULT STDMETHODCALLTYPE AddData(IStorage* storage, LONG fileOverwrite) override {
    return answer([&]() -> DiscResult {
      if (storage == nullptr) return E_POINTER;
      ImageNode added;
      added.isDirectory = true;
      HRESULT hr = scanStorage(*storage, added);
      if (FAILED(hr)) return hr;
      std::shared_ptr<const ImageLayout> layout;
      hr = session_->layOut(added, layout);
      if (FAILED(hr)) return hr;
      // The disc has its say again when it is recorded; a recorder without an answer has none here.
      std::optional<std::uint32_t> room;
      if (!askRoom(room).failed() && room && layout->sectors() > *room) return IMAPI_E_DISCFULL;
      return mergeLegacyContent(added, *session_->content, fileOverwrite != 0);
    });
  }

  HRESULT STDMETHODCALLTYPE GetJolietProperties(IPropertyStorage** propStg) override {
    return answer([&]() -> DiscResult {
      if (propStg == nullptr) return E_POINTER;
      *propStg = new TextProperties({{kVolumeNameId, kVolumeName, session_->volumeName}});
      return S_OK;
    });
  }

  HRESULT STDMETHODCALLTYPE SetJolietProperties(IPropertyStorage* propStg) override {
    return answer([&]() -> DiscResult {
      if (propStg == nullptr) return E_POINTER;
      std::optional<std::u16string> name;
      const HRESULT hr = readTextProperty(*propStg, kVolumeName, name);
      if (FAILED(hr)) return hr;
      if (name && !isLegalVolumeName(*name)) return E_INVALIDARG;
      if (name) session_->volumeName = *name;
      const std::size_t known = name ? 1 : 0;
      return countTextProperties(*propStg) > known ? IMAPI_S_PROPERTIESIGNORED : S_OK;
    });
  }

 private:
  template <typename Body>
  HRESULT answer(Body body) {
    return legacyAnswer([&]() -> DiscResult {
      if (!session_->isOpen) return IMAPI_E_NOTOPENED;
      return session_->hasFormat ? DiscResult(body()) : IMAPI_E_WRONGFORMAT;
    });
  }

  // Nothing when there is no recorder or no disc.
  DiscResult askRoom(std::optional<std::uint32_t>& room) const {
    LegacyRecorder* target = session_->recorder();
    if (target == nullptr) return S_OK;
    MediaFacts facts;
    DiscResult result = target->media(facts);
    if (!result.failed() && facts.present) room = roomOf(target->recorder().identity(), facts);
    return result;
  }

  std::shared_ptr<LegacySession> session_;
};

}  // namespace

HRESULT createJolietFormat(std::shared_ptr<LegacySession> session, void** object) {
  *object = static_cast<IJolietDiscMaster*>(new JolietFormat(std::move(session)));
  return S_OK;
}

}  // namespace quillon::platform
