#include "http_transfer.h"

#include <curl/curl.h>

#include <array>
#include <cstdlib>
#include <memory>
#include <mutex>
#include <new>
#include <string_view>

#include "messages.h"

namespace quillon::platform {
namespace {

constexpr const char* kProtocols = "http,https";
constexpr long kMostRedirects = 10;

struct FreeHandle {
  void operator()(CURL* handle) const { curl_easy_cleanup(handle); }
};
using Handle = std::unique_ptr<CURL, FreeHandle>;

struct FreeUrl {
  void operator()(CURLU* url) const { curl_url_cleanup(url); }
};
using Url = std::unique_ptr<CURLU, FreeUrl>;

void prepareCurl() {
  static std::once_flag prepared;
  std::call_once(prepared, [] { curl_global_init(CURL_GLOBAL_DEFAULT); });
}

struct Receiver {
  HttpResponse& response;
  std::size_t bodyLimit;
  bool isTooLarge = false;
};

// Answering less than what came ends the transfer.
std::size_t onBody(char* bytes, std::size_t, std::size_t count, void* context) {
  auto& receiver = *static_cast<Receiver*>(context);
  std::string& body = receiver.response.body;
  if (count > receiver.bodyLimit - body.size()) {
    receiver.isTooLarge = true;
    return 0;
  }
  try {
    body.append(bytes, count);
  } catch (const std::bad_alloc&) {
    return 0;
  }
  return count;
}

// The status line of each answer on the way; the last one counts.
std::size_t onHeader(char* bytes, std::size_t, std::size_t count, void* context) {
  auto& response = static_cast<Receiver*>(context)->response;
  std::string_view line(bytes, count);
  if (!line.starts_with("HTTP/")) return count;
  line = line.substr(0, line.find_first_of("\r\n"));
  const std::size_t code = line.find(' ');
  const std::size_t text = code == std::string_view::npos ? code : line.find(' ', code + 1);
  try {
    response.statusText = text == std::string_view::npos ? "" : line.substr(text + 1);
    response.body.clear();
  } catch (const std::bad_alloc&) {
    return 0;
  }
  return count;
}

HRESULT resultOfCurl(CURLcode code) {
  switch (code) {
    case CURLE_URL_MALFORMAT:
      return kHttpInvalidUrl;
    case CURLE_UNSUPPORTED_PROTOCOL:
      return kHttpUnknownProtocol;
    case CURLE_COULDNT_RESOLVE_HOST:
    case CURLE_COULDNT_RESOLVE_PROXY:
      return kHttpNotFound;
    case CURLE_COULDNT_CONNECT:
      return kHttpCannotConnect;
    case CURLE_OPERATION_TIMEDOUT:
      return kHttpTimeout;
    case CURLE_OUT_OF_MEMORY:
      return E_OUTOFMEMORY;
    default:
      return kHttpDownloadFailed;
  }
}

// The library itself does not look at the variables that name the trusted certificates.
void setTrust(CURL* handle) {
  if (const char* file = std::getenv("SSL_CERT_FILE"); file != nullptr && *file != '\0') {
    curl_easy_setopt(handle, CURLOPT_CAINFO, file);
  }
  if (const char* directory = std::getenv("SSL_CERT_DIR");
      directory != nullptr && *directory != '\0') {
    curl_easy_setopt(handle, CURLOPT_CAPATH, directory);
  }
}

void setLimits(CURL* handle, const HttpLimits& limits) {
  curl_easy_setopt(handle, CURLOPT_PROTOCOLS_STR, kProtocols);
  curl_easy_setopt(handle, CURLOPT_REDIR_PROTOCOLS_STR, kProtocols);
  curl_easy_setopt(handle, CURLOPT_FOLLOWLOCATION, 1L);
  curl_easy_setopt(handle, CURLOPT_MAXREDIRS, kMostRedirects);
  curl_easy_setopt(handle, CURLOPT_CONNECTTIMEOUT_MS, limits.connectMilliseconds);
  curl_easy_setopt(handle, CURLOPT_LOW_SPEED_LIMIT, 1L);
  curl_easy_setopt(handle, CURLOPT_LOW_SPEED_TIME, limits.stallSeconds);
  curl_easy_setopt(handle, CURLOPT_TIMEOUT, limits.totalSeconds);
  curl_easy_setopt(handle, CURLOPT_NOSIGNAL, 1L);  // the host's signals are its own
}

Url parsed(const std::string& text, CURLUcode& code) {
  Url url(curl_url());
  if (url == nullptr) throw std::bad_alloc();
  code = curl_url_set(url.get(), CURLUPART_URL, text.c_str(),
                      CURLU_URLENCODE | CURLU_NON_SUPPORT_SCHEME);
  return url;
}

bool isFetched(CURLU* url) {
  char* scheme = nullptr;
  if (curl_url_get(url, CURLUPART_SCHEME, &scheme, 0) != CURLUE_OK) return false;
  const std::unique_ptr<char, decltype(&curl_free)> owner(scheme, curl_free);
  const std::string_view name = scheme;
  return name == "http" || name == "https";
}

}  // namespace

HttpFailure checkUrl(const std::string& url) {
  prepareCurl();
  CURLUcode code = CURLUE_OK;
  const Url parts = parsed(url, code);
  const bool hasZero = url.find('\0') != std::string::npos;
  if (code != CURLUE_OK || hasZero) {
    const std::string why = hasZero ? "It holds a zero" : curl_url_strerror(code);
    return {kHttpInvalidUrl, sentenceWithPlace("\"" + url + "\" is not a URL: " + why, {}, 0, 0)};
  }
  if (!isFetched(parts.get())) {
    return {kHttpUnknownProtocol,
            "Only what an http or https server offers is fetched, not \"" + url + "\"."};
  }
  return {};
}

HttpFailure fetch(const HttpRequest& request, const HttpLimits& limits, HttpResponse& response) {
  prepareCurl();
  const Handle handle(curl_easy_init());
  if (handle == nullptr) return {E_OUTOFMEMORY, {}};
  CURLUcode urlCode = CURLUE_OK;
  const Url url = parsed(request.url, urlCode);
  Receiver receiver{response, limits.bodyBytes};
  std::array<char, CURL_ERROR_SIZE> said{};
  setLimits(handle.get(), limits);
  setTrust(handle.get());
  curl_easy_setopt(handle.get(), CURLOPT_CURLU, url.get());
  curl_easy_setopt(handle.get(), CURLOPT_USERAGENT, "Quillon");
  curl_easy_setopt(handle.get(), CURLOPT_ACCEPT_ENCODING, "");
  curl_easy_setopt(handle.get(), CURLOPT_ERRORBUFFER, said.data());
  curl_easy_setopt(handle.get(), CURLOPT_WRITEFUNCTION, onBody);
  curl_easy_setopt(handle.get(), CURLOPT_WRITEDATA, &receiver);
  curl_easy_setopt(handle.get(), CURLOPT_HEADERFUNCTION, onHeader);
  curl_easy_setopt(handle.get(), CURLOPT_HEADERDATA, &receiver);
  if (!request.user.empty()) {
    curl_easy_setopt(handle.get(), CURLOPT_USERNAME, request.user.c_str());
    curl_easy_setopt(handle.get(), CURLOPT_PASSWORD, request.password.c_str());
    curl_easy_setopt(handle.get(), CURLOPT_HTTPAUTH, CURLAUTH_BASIC | CURLAUTH_DIGEST);
  }
  const CURLcode code = curl_easy_perform(handle.get());
  if (receiver.isTooLarge) {
    return {kHttpDownloadFailed,
            "The answer is larger than " + std::to_string(limits.bodyBytes) + " bytes."};
  }
  if (code != CURLE_OK) {
    const char* const why = said[0] != '\0' ? said.data() : curl_easy_strerror(code);
    return {resultOfCurl(code), sentenceWithPlace(why, {}, 0, 0)};
  }
  long status = 0;
  curl_easy_getinfo(handle.get(), CURLINFO_RESPONSE_CODE, &status);
  response.status = static_cast<LONG>(status);
  const char* type = nullptr;
  curl_easy_getinfo(handle.get(), CURLINFO_CONTENT_TYPE, &type);
  response.contentType = type == nullptr ? "" : type;
  return {};
}

}  // namespace quillon::platform
