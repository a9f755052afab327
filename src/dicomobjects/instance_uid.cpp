#include "dicomobjects/instance_uid.h"

#include "value_text.h"

namespace quillon {

namespace {

constexpr OLECHAR kComponentEnd = OLESTR('.');

}  // namespace

bool ParseInstanceUidText(TextView uid, bool acceptShort, InstanceUidParts& parts) {
  parts = {};
  const std::size_t rootAt = uid.find(kMakerUidRoot);
  if (rootAt == TextView::npos) {
    if (uid.size() <= kMakerUidRoot.size() && !acceptShort) return false;
    parts.key = uid;
    return true;
  }
  if (rootAt != 0) return false;
  const TextView rest = uid.substr(kMakerUidRoot.size());
  const std::size_t lastDot = rest.rfind(kComponentEnd);
  if (lastDot == TextView::npos || lastDot == 0 || lastDot + 1 == rest.size()) return false;
  parts.key = rest.substr(0, lastDot);
  // A UID has no signs; one that does gives the first frame.
  const std::int32_t index = LeadingNumber(rest.substr(lastDot + 1));
  parts.frameIndex = index < 0 ? 0 : static_cast<std::uint32_t>(index);
  parts.isMakerForm = true;
  return true;
}

Text FrameKeyOf(const InstanceUidParts& parts) {
  Text key(parts.key);
  if (parts.frameIndex != 0) key.append(1, kComponentEnd).append(NumberText(parts.frameIndex));
  return key;
}

}  // namespace quillon
