#include "win32/com/com_error.h"

#include <exception>
#include <string>

#include "win32/com/bstr.h"

namespace zintra::win32 {

namespace {

// Automation servers (Word among them) raise their run-time errors as FACILITY_CONTROL
// codes; late binding reads the number in the low word.
int32_t RunTimeNumber(HRESULT hr) {
  if (FAILED(hr) && HRESULT_FACILITY(hr) == FACILITY_CONTROL) return HRESULT_CODE(hr);
  return static_cast<int32_t>(hr);
}

}  // namespace

int32_t ErrorNumberOf(HRESULT hr, const EXCEPINFO* info) {
  if (hr == DISP_E_EXCEPTION && info) {
    if (info->wCode != 0) return info->wCode;
    if (info->scode != 0) return RunTimeNumber(info->scode);
  }
  switch (hr) {
    case DISP_E_UNKNOWNNAME:
    case DISP_E_MEMBERNOTFOUND:
      return kErrNoSuchMember;
    case DISP_E_TYPEMISMATCH:
      return kErrTypeMismatch;
    case DISP_E_OVERFLOW:
      return kErrOverflow;
    case DISP_E_BADPARAMCOUNT:
    case DISP_E_PARAMNOTOPTIONAL:
      return kErrWrongArgumentCount;
    case E_INVALIDARG:
      return kErrInvalidCall;
    case E_NOINTERFACE:
      return kErrNoInterface;
    case CO_E_CLASSSTRING:
    case REGDB_E_CLASSNOTREG:
    case CLASS_E_CLASSNOTAVAILABLE:
      return kErrCannotCreateObject;
    default:
      return RunTimeNumber(hr);
  }
}

void ThrowComError(HRESULT hr, const EXCEPINFO* info, std::string_view what) {
  int32_t number = ErrorNumberOf(hr, info);
  std::string description;
  std::string source;
  if (info) {
    description = Bstr::ToUtf8(info->bstrDescription);
    source = Bstr::ToUtf8(info->bstrSource);
  }
  if (description.empty()) description = ZError::StandardDescription(number);
  if (description.empty()) {
    char code[16];
    // The server's own code when it gave one, else the call's.
    snprintf(code, sizeof code, "0x%08lX",
             static_cast<unsigned long>(number < 0 ? static_cast<uint32_t>(number)
                                                   : static_cast<uint32_t>(hr)));
    description = std::string(what) + " failed (" + code + ")";
  }
  if (source.empty()) source = std::string(what);
  throw ZError(number, description, source);
}

HRESULT ReportError(const ZError& error, EXCEPINFO* info) {
  if (info) {
    *info = EXCEPINFO{};
    // Run-time numbers travel in wCode, platform codes (negative HRESULTs) in scode.
    if (error.Number() > 0 && error.Number() <= 0xFFFF) {
      info->wCode = static_cast<WORD>(error.Number());
    } else {
      info->scode = static_cast<SCODE>(error.Number());
    }
    info->bstrDescription = Bstr(error.Description()).Detach();
    info->bstrSource = Bstr(error.Source()).Detach();
    return DISP_E_EXCEPTION;
  }
  if (error.Number() < 0) return static_cast<HRESULT>(error.Number());
  return error.Number() == kErrNoSuchMember ? DISP_E_MEMBERNOTFOUND : E_FAIL;
}

HRESULT GuardCall(std::string_view where, EXCEPINFO* info, const std::function<HRESULT()>& body) {
  try {
    return body();
  } catch (const ZError& e) {
    return ReportError(e, info);
  } catch (const std::exception& e) {
    if (info) {
      *info = EXCEPINFO{};
      info->scode = E_UNEXPECTED;
      info->bstrDescription = Bstr(std::string(where) + ": " + e.what()).Detach();
      info->bstrSource = Bstr(where).Detach();
      return DISP_E_EXCEPTION;
    }
    return E_UNEXPECTED;
  } catch (...) {
    return E_UNEXPECTED;
  }
}

}  // namespace zintra::win32
