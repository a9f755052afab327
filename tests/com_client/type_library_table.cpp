#include "server_module.h"

namespace quillon::client {

#ifdef _WIN32
namespace {

std::string taken(BSTR text) {
  std::string out = utf8Of(text, SysStringLen(text));
  SysFreeString(text);
  return out;
}

std::string typeName(const TYPEDESC& type) {
  switch (type.vt) {
    case VT_PTR:
      return typeName(*type.lptdesc) + "*";
    case VT_BSTR:
      return "BSTR";
    case VT_BOOL:
      return "VARIANT_BOOL";
    case VT_I4:
      return "LONG";
    case VT_UI4:
      return "ULONG";
    case VT_UI8:
      return "ULONGLONG";
    case VT_HRESULT:
      return "HRESULT";
    default:
      return "type " + std::to_string(type.vt);
  }
}

std::string kindName(INVOKEKIND kind) {
  if (kind == INVOKE_PROPERTYGET) return "get";
  return kind == INVOKE_PROPERTYPUT ? "put" : "call";
}

std::string functionLine(ITypeInfo& info, const FUNCDESC& function) {
  BSTR names[8] = {};
  UINT count = 0;
  info.GetNames(function.memid, names, 8, &count);
  BSTR help = nullptr;
  // A getter and its setter share their identifier; documentation is asked for by place.
  info.GetDocumentation(function.memid, nullptr, &help, nullptr, nullptr);
  std::string line = std::to_string(static_cast<unsigned>(function.oVft) / sizeof(void*)) + ' ' +
                     kindName(function.invkind) + ' ';
  std::vector<std::string> texts;
  for (UINT i = 0; i < count; ++i) texts.push_back(taken(names[i]));
  line += texts.empty() ? "?" : texts[0];
  line += " [" + std::to_string(function.memid) + "] (";
  for (SHORT i = 0; i < function.cParams; ++i) {
    const ELEMDESC& parameter = function.lprgelemdescParam[i];
    const USHORT flags = parameter.paramdesc.wParamFlags;
    if (i > 0) line += ", ";
    line += (flags & PARAMFLAG_FRETVAL) != 0 ? "retval "
            : (flags & PARAMFLAG_FIN) != 0   ? "in "
                                             : "?";
    line += typeName(parameter.tdesc);
    const std::size_t name = static_cast<std::size_t>(i) + 1;
    if (function.invkind == INVOKE_FUNC && name < texts.size()) line += " " + texts[name];
  }
  return line + ") \"" + taken(help) + "\"\n";
}

}  // namespace

std::string typeLibraryTable(const std::string& path) {
  BSTR widePath = bstrOf(path);
  ComPtr<ITypeLib> library;
  HRESULT hr = LoadTypeLibEx(widePath, REGKIND_NONE, library.Put());
  SysFreeString(widePath);
  if (FAILED(hr)) return shown(hr) + "\n";
  ComPtr<ITypeInfo> dispatch;
  ComPtr<ITypeInfo> info;
  HREFTYPE reference = 0;
  hr = library->GetTypeInfoOfGuid(IID_IQuillonMediaRW, dispatch.Put());
  // The other half of the dual interface: the one with a vtable.
  if (SUCCEEDED(hr)) hr = dispatch->GetRefTypeOfImplType(static_cast<UINT>(-1), &reference);
  if (SUCCEEDED(hr)) hr = dispatch->GetRefTypeInfo(reference, info.Put());
  TYPEATTR* attributes = nullptr;
  if (SUCCEEDED(hr)) hr = info->GetTypeAttr(&attributes);
  if (FAILED(hr)) return shown(hr) + "\n";
  std::string table;
  for (UINT i = 0; i < attributes->cFuncs; ++i) {
    FUNCDESC* function = nullptr;
    if (FAILED(info->GetFuncDesc(i, &function))) continue;
    table += functionLine(*info, *function);
    info->ReleaseFuncDesc(function);
  }
  info->ReleaseTypeAttr(attributes);
  return table;
}
#else
std::string typeLibraryTable(const std::string&) { return "no type libraries here\n"; }
#endif

}  // namespace quillon::client
