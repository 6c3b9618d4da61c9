// IDTExtensibility2 as Office declares it in its add-in designer type library: the
// dual interface through which Outlook connects, starts and disconnects a COM add-in.
// Declared here by hand (the type library is not part of any SDK we build with), with
// the interface's own IID so that QueryInterface from Office finds it.
//
// Method order and DISPIDs are Office's: OnConnection 1, OnDisconnection 2,
// OnAddInsUpdate 3, OnStartupComplete 4, OnBeginShutdown 5. `custom` is a by-reference
// SAFEARRAY of VARIANTs (empty from Outlook). ZintraAddin.Connect implements it; a host
// that loads the add-in calls it through this vtable.
#pragma once

#include "win32/com/windows_api.h"

#if defined(_MSC_VER)
#define ZINTRA_COM_UUID(text) __declspec(uuid(text))
#else
#define ZINTRA_COM_UUID(text)
#endif

namespace zintra::win32 {

inline constexpr DISPID kDispIdOnConnection = 1;
inline constexpr DISPID kDispIdOnDisconnection = 2;
inline constexpr DISPID kDispIdOnAddInsUpdate = 3;
inline constexpr DISPID kDispIdOnStartupComplete = 4;
inline constexpr DISPID kDispIdOnBeginShutdown = 5;

// COM interfaces have no virtual destructor.
#if defined(__GNUC__)
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wnon-virtual-dtor"
#endif
struct ZINTRA_COM_UUID("B65AD801-ABAF-11D0-BB8B-00A0C90F2744") IDTExtensibility2Com
    : public IDispatch {
  virtual HRESULT STDMETHODCALLTYPE OnConnection(IDispatch* Application, int ConnectMode,
                                                 IDispatch* AddInInst, SAFEARRAY** custom) = 0;
  virtual HRESULT STDMETHODCALLTYPE OnDisconnection(int RemoveMode, SAFEARRAY** custom) = 0;
  virtual HRESULT STDMETHODCALLTYPE OnAddInsUpdate(SAFEARRAY** custom) = 0;
  virtual HRESULT STDMETHODCALLTYPE OnStartupComplete(SAFEARRAY** custom) = 0;
  virtual HRESULT STDMETHODCALLTYPE OnBeginShutdown(SAFEARRAY** custom) = 0;
};
#if defined(__GNUC__)
#pragma GCC diagnostic pop
#endif

// ZintraAddin.Connect and ZintraAddin.WordLetterHandler.
// {9BEC0744-C867-448C-B6F9-3BDDCEC8859F}
inline constexpr CLSID kClsidConnect = {
    0x9bec0744, 0xc867, 0x448c, {0xb6, 0xf9, 0x3b, 0xdd, 0xce, 0xc8, 0x85, 0x9f}};
// {0A55C397-02E5-4A44-9C70-F5D93D826D11}
inline constexpr CLSID kClsidWordLetterHandler = {
    0x0a55c397, 0x02e5, 0x4a44, {0x9c, 0x70, 0xf5, 0xd9, 0x3d, 0x82, 0x6d, 0x11}};
inline constexpr wchar_t kConnectProgId[] = L"ZintraAddin.Connect";
inline constexpr wchar_t kWordLetterHandlerProgId[] = L"ZintraAddin.WordLetterHandler";

}  // namespace zintra::win32

#if defined(__CRT_UUID_DECL)
__CRT_UUID_DECL(zintra::win32::IDTExtensibility2Com, 0xb65ad801, 0xabaf, 0x11d0, 0xbb, 0x8b, 0x00,
                0xa0, 0xc9, 0x0f, 0x27, 0x44)
#endif
