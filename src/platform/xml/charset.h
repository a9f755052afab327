// Text out of the bytes of an HTTP answer.
#pragma once

#include <string>
#include <string_view>

namespace quillon::platform {

// Decodes by the charset of the Content-Type header, else the byte order mark, else the encoding
// that an XML declaration names, else as UTF-8; bytes that are not UTF-8 after all are taken for
// Windows-1252. A charset that nobody knows counts as none. Bytes that a charset does not define
// become U+FFFD. The byte order mark is not part of the text.
std::u16string decodeBody(std::string_view bytes, std::string_view contentType);

}  // namespace quillon::platform
