// One GET over HTTP or HTTPS, with libcurl.
#pragma once

#include <string>

#include "platform/com.h"
#include "xml_limits.h"

namespace quillon::platform {

// The results that the HTTP component of Windows answers with.
inline constexpr HRESULT kHttpInvalidUrl = resultOf(0x800C0002);
inline constexpr HRESULT kHttpCannotConnect = resultOf(0x800C0004);
inline constexpr HRESULT kHttpNotFound = resultOf(0x800C0005);
inline constexpr HRESULT kHttpDownloadFailed = resultOf(0x800C0008);
inline constexpr HRESULT kHttpTimeout = resultOf(0x800C000B);
inline constexpr HRESULT kHttpUnknownProtocol = resultOf(0x800C000D);

struct HttpFailure {
  HRESULT result = S_OK;
  std::string reason;
};

struct HttpRequest {
  std::string url;
  std::string user;
  std::string password;
};

struct HttpResponse {
  LONG status = 0;
  std::string statusText;
  std::string contentType;
  std::string body;
};

// Whether a URL can be fetched at all, without asking a server.
HttpFailure checkUrl(const std::string& url);

// Follows redirects; verifies the server's certificate against the system's store, or what
// SSL_CERT_FILE and SSL_CERT_DIR name. Any status is an answer; what comes without one is a
// failure, as is a body above the limit.
HttpFailure fetch(const HttpRequest& request, const HttpLimits& limits, HttpResponse& response);

}  // namespace quillon::platform
